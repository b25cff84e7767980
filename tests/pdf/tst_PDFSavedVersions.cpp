// What each save of a file has changed, by real engines from files whose saves are known.

#include "pdf/PDFSavedVersions.h"

#include "support/PdfBuilder.h"
#include "support/Rows.h"
#include "support/SavedFile.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

using Form = SavedFile::Form;

/// Objects 1 to 5 in a table: catalog, pages, font, content, page.
PdfBuilder onePage()
{
    return PdfBuilder().addPage("A page");
}

SavedFile started()
{
    return SavedFile(onePage().bytes());
}

/// A file of two saves of which the first begins anew behind what is put before it.
std::string rewritten()
{
    SavedFile file = started();
    const std::size_t shift = file.bytes().size();
    file.object(1, "<< /Type /Catalog /Pages 7 0 R >>");
    file.object(7, "<< /Type /Pages /Kids [ 8 0 R ] /Count 1 >>");
    file.object(8, "<< /Type /Page /Parent 7 0 R /MediaBox [ 0 0 9 9 ] >>");
    return shift > 0 ? file.save(Form::isTable, -1).bytes() : std::string();
}

/// The two parts of a linearized file, as far as its cross-references go.
SavedFile linearized()
{
    const std::string end = "startxref\n0\n%%EOF\n";
    std::string first = "%PDF-1.4\n3 0 obj\n<< /Linearized 1 >>\nendobj\n";
    const std::size_t start = first.size();
    const std::size_t catalog = start + 230;
    const auto line = [](std::size_t offset) {
        return QByteArray::number(static_cast<qulonglong>(offset))
                   .rightJustified(10, '0')
                   .toStdString()
            + " 00000 n \n";
    };
    std::string table = "xref\n3 1\n" + line(9) + "1 1\n" + line(catalog)
        + "trailer\n<< /Size 4 /Root 1 0 R /Prev ";
    const std::string object = "1 0 obj\n<< /Type /Catalog /Pages 2 0 R >>\nendobj\n";
    const std::size_t pages = catalog + object.size();
    const std::string second = "2 0 obj\n<< /Type /Pages /Kids [ ] /Count 0 >>\nendobj\n";
    table += std::to_string(pages + second.size()) + " >>\n" + end;
    first += table + std::string(catalog - start - table.size(), '\n') + object + second;
    first += "xref\n0 1\n0000000000 65535 f \n2 1\n" + line(pages)
        + "trailer\n<< /Size 4 /Root 1 0 R >>\nstartxref\n" + std::to_string(start) + "\n%%EOF\n";
    return SavedFile(first);
}

QString listed(const QString& sign, const std::vector<std::uint32_t>& numbers)
{
    QString text;
    for (const std::uint32_t number : numbers)
        text += u' ' + sign + QString::number(number);
    return text;
}

/// "marker/save +added ~replaced -freed flag; ...", with "?" for what cannot be known.
QString shown(const PDFSavedVersions& saves)
{
    QStringList lines;
    for (const SavedVersion& version : saves.versions()) {
        QString line = QString::number(version.marker) + u'/' + QString::number(version.save);
        if (!version.changes)
            line += u" ?"_s;
        else
            line += listed(u"+"_s, version.changes->added)
                + listed(u"~"_s, version.changes->replaced)
                + listed(u"-"_s, version.changes->freed);
        for (const VersionFlag flag : version.flags)
            line += u' ' + QString::fromLatin1(nameOf(flag).data());
        lines << line;
    }
    return lines.join(u"; "_s);
}

} // namespace

class TestPDFSavedVersions : public QObject
{
    Q_OBJECT

private slots:
    void knowsWhatEachSaveChanged_data();
    void knowsWhatEachSaveChanged();
};

using KnowsWhatEachSaveChanged = Rows<std::string, QString>;

void TestPDFSavedVersions::knowsWhatEachSaveChanged_data()
{
    const KnowsWhatEachSaveChanged row;
    const std::string once = onePage().bytes();
    const auto startOf = [](const std::string& file) {
        return static_cast<std::int64_t>(SavedFile(file).startxref());
    };
    row("no PDF", "text", "");
    row("one save", once, "1/1");
    row("an object replaced, one added",
        started().object(4, "(new)").object(6, "null").save().bytes(), "1/1; 2/2 +6 ~4");
    row("streams for cross-reference and objects",
        started().packed(20, {{4, "(new)"}, {6, "null"}}).save(Form::isStream).bytes(),
        "1/1; 2/2 +6 +20 ~4");
    row("a stream that has a row of its own",
        onePage().setXref(PdfBuilder::Xref::isStream).addUpdate(3, "<< >>").bytes(), "1/1; 2/2 ~3");
    row("objects hidden from readers that know no streams",
        started().packed(20, {{4, "(new)"}, {6, "null"}}).freed(6).save(Form::isHybrid).bytes(),
        "1/1; 2/2 +6 +20 ~4");
    row("an object stream replaced with what is in it",
        started()
            .packed(20, {{6, "1"}, {7, "2"}})
            .save(Form::isStream)
            .packed(20, {{6, "1"}, {7, "3"}})
            .object(7, "4")
            .save(Form::isStream)
            .bytes(),
        "1/1; 2/2 +6 +7 +20; 3/3 ~6 ~7 ~20");
    row("freed, and the number used again",
        started().object(6, "1").save().freed(6).save().object(6, "2", 1).save().bytes(),
        "1/1; 2/2 +6; 3/3 -6; 4/4 +6");
    row("freed though it never was", started().freed(60).save().bytes(), "1/1; 2/2");
    row("free rows that say they are in use", started().row(4, 1, 0).save().bytes(), "1/1; 2/2 -4");
    row("nothing changed", started().save().bytes(), "1/1; 2/2");
    row("rows written again as they were", started().row(3, 1, once.find("3 0 obj")).save().bytes(),
        "1/1; 2/2");
    row("a comment with a cross-reference of its own", started().raw("% note\n").save().bytes(),
        "1/1; 2/2");
    row("a comment alone", once + "% note\n%%EOF\n", "1/1; 2/1 no-cross-reference");
    row("the last startxref again",
        once + "startxref\n" + std::to_string(startOf(once)) + "\n%%EOF\n",
        "1/1; 2/1 no-cross-reference");
    row("a marker in a stream",
        started().object(6, "<< /Length 9 >>\nstream\na\n%%EOF\nb\nendstream").save().bytes(),
        "1/1; 2/1 marker-in-stream; 3/2 +6");
    row("a whole file in a stream, its length elsewhere",
        started()
            .object(6, "<< /Length 7 0 R >>\nstream\n" + once + "\nendstream")
            .object(7, std::to_string(once.size()))
            .save()
            .bytes(),
        "1/1; 2/1 marker-in-stream; 3/2 +6 +7");
    row("a marker in a string", started().object(6, "(a %%EOF b)").save().bytes(),
        "1/1; 2/1 marker-in-object; 3/2 +6");
    row("the two parts of a linearized file", linearized().bytes(),
        "1/1 linearized-first-part; 2/1");
    row("one that was saved again",
        linearized().object(2, "<< /Kids [ ] >>").object(4, "1").save().bytes(),
        "1/1 linearized-first-part; 2/1; 3/2 +4 ~2");
    row("rewritten with other numbers", rewritten(), "1/1 not-in-chain; 2/2 +7 +8 ~1 -2 -3 -4 -5");
    row("a save passed over by the next",
        started().object(6, "1").save().object(7, "2").save(Form::isTable, startOf(once)).bytes(),
        "1/1; 2/2 +6 not-in-chain; 3/3 +7 -6");
    row("a startxref that leads nowhere", once + "startxref\n7\n%%EOF\n" + "% more\n",
        "1/1; 2/2 ? repaired bytes-behind-marker");
    row("what follows it",
        SavedFile(once).raw("startxref\n7\n%%EOF\n").object(6, "1").save().bytes(),
        "1/1; 2/2 ? repaired; 3/3 ? behind-unknown");
    row("Prev leads beyond the file", started().object(6, "1").save(Form::isTable, 1 << 20).bytes(),
        "1/1; 2/2 ? repaired");
    row("an object that stands beyond the file", started().row(6, 1, 1 << 20).save().bytes(),
        "1/1; 2/2 ? repaired");
    row("Prev in a ring",
        started()
            .object(6, "1")
            .save(Form::isTable, static_cast<std::int64_t>(started().object(6, "1").bytes().size()))
            .bytes(),
        "1/1 not-in-chain; 2/2 +6 -1 -2 -3 -4 -5 chain-loop");
    row("bytes before the header", "mail\n" + once, "1/1 bytes-before-header");
    row("a marker before it", "a mail that mentions %%EOF\n" + once,
        "1/1 no-cross-reference bytes-before-header; 2/1");
}

void TestPDFSavedVersions::knowsWhatEachSaveChanged()
{
    const auto [file, expected] = KnowsWhatEachSaveChanged::fetch();
    PDFSavedVersions saves(*FileBytes::copy(file));
    QTRY_VERIFY_WITH_TIMEOUT(saves.isFinished(), 60'000);
    QCOMPARE(saves.failure(), PDFFailure::isNone);
    QCOMPARE(shown(saves), expected);
}

QTEST_GUILESS_MAIN(TestPDFSavedVersions)
#include "tst_PDFSavedVersions.moc"
