// What a real engine says of documents as a whole, brought together with what their source tells.

#include "analysis/SourceText.h"
#include "findings/FileFindings.h"
#include "support/OpenedDocument.h"
#include "support/PdfBuilder.h"

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

std::string replaced(std::string text, const std::string& what, const std::string& by)
{
    const std::size_t place = text.find(what);
    return place == std::string::npos ? text : text.replace(place, what.size(), by);
}

/// A document of a page with further objects, the first of which is number 6.
std::string with(const std::string& entries, const std::vector<std::string>& objects,
    PdfBuilder::Xref kind = PdfBuilder::Xref::isTable)
{
    PdfBuilder builder;
    builder.setXref(kind).addPage("A page", entries);
    for (const std::string& object : objects)
        builder.addObject(object);
    return builder.bytes();
}

std::string withFont(const std::string& font)
{
    return with(
        "/Resources << /Font << /F1 3 0 R /F2 6 0 R >> >>", {"<< /Type /Font " + font + " >>"});
}

std::string withImage(const std::string& image)
{
    return with("/Resources << /XObject << /I 6 0 R >> >>", {image});
}

FileFindings checkOf(const std::string& file, const QString& password = {})
{
    OpenedDocument document(file);
    if (!password.isEmpty())
        document->unlock(password);
    if (!QTest::qWaitFor([&] { return document->state() == PDFDocument::State::isOpen; }))
        return {};
    const PDFCheckRequest* const request = document->requestCheck(document.get());
    OpenedDocument::waitFor(request);
    SourceText source(SharedBytes::ofString(file));
    source.scan({});
    return joinFindings(source.theCatalog(), findFacts(source.theCatalog()),
        request->succeeded() ? &request->check() : nullptr);
}

} // namespace

class TestDocumentCheck : public QObject
{
    Q_OBJECT

private slots:
    void saysWhatItMended_data();
    void saysWhatItMended();
    void tellsOfEncryption();
    void knowsWhatMattersMost();
};

void TestDocumentCheck::saysWhatItMended_data()
{
    QTest::addColumn<std::string>("file");
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("words"); // of the sentence
    QTest::addColumn<int>("place"); // an object whose place it has, else 0
    const auto row = [](const char* name, const std::string& file, const QString& code = {},
                         const QString& words = {},
                         int place = 0) { QTest::newRow(name) << file << code << words << place; };
    constexpr auto inStreams = PdfBuilder::Xref::isStream;
    const std::string sound = with({}, {});
    const std::string packed = with({}, {}, inStreams);
    row("a sound file", sound);
    row("no startxref", replaced(sound, "startxref", "startxxxx"), u"rebuilt"_s, u"no startxref"_s);
    row("a startxref into the middle", replaced(sound, "startxref\n", "startxref\n1"), u"rebuilt"_s,
        u"none where startxref leads"_s);
    row("an object elsewhere", replaced(sound, "0000000015 00000 n", "0000000019 00000 n"),
        u"rebuilt"_s, u"where it says"_s);
    row("too many pages said", replaced(sound, "/Count 1", "/Count 7"), u"page-count-differs"_s,
        u"says that it has 7 pages; 1 are"_s);
    row("no number of pages", replaced(sound, "/Count 1", "/Xount 1"), u"page-count-differs"_s,
        u"does not say"_s);
    row("a page within the node", replaced(sound, "5 0 R ]", "<< /Type /Page >> ]"),
        u"page-inside"_s, u"within object 2 "_s, 2);
    row("a page that is not there", replaced(sound, "5 0 R ]", "5 0 R 99 0 R ]"),
        u"page-unreadable"_s, u"object 99,"_s);
    row("a ring of nodes", replaced(sound, "5 0 R ]", "5 0 R 2 0 R ]"), u"page-tree-loop"_s,
        u"object 2,"_s, 2);
    row("a font that is not embedded", withFont("/Subtype /TrueType /BaseFont /Arial"),
        u"font-not-embedded"_s, u"font Arial, first on page 1,"_s, 6);
    row("a composite one",
        withFont(
            "/Subtype /Type0 /BaseFont /Song /DescendantFonts [ << /FontDescriptor << >> >> ]"),
        u"font-not-embedded"_s, u"font Song,"_s, 6);
    row("an embedded one",
        withFont("/Subtype /TrueType /BaseFont /A /FontDescriptor << /FontFile2 4 0 R >>"));
    row("one made of procedures", withFont("/Subtype /Type3"));
    row("a font that is not there", with("/Resources << /Font << /F1 77 0 R >> >>", {}),
        u"font-not-embedded"_s, u"missing or cannot be read"_s);
    row("an image of an unknown filter",
        withImage("<< /Subtype /Image /Filter /What /Length 1 >>\nstream\nx\nendstream"),
        u"image-lost"_s, u"filter /What is"_s, 6);
    row("an image that cannot be read", withImage("<< /Subtype /Image ["), u"image-lost"_s,
        u"cannot be read"_s, 6);
    row("a page without area", with("/MediaBox [ 0 0 0 0 ]", {}), u"page-size-unknown"_s,
        u"for page 1; 612 x 792"_s);
    std::string many;
    for (std::uint32_t link = 0; link <= maximumLinks; ++link)
        many += "null ";
    row("more links than are shown", with("/Annots [ " + many + "]", {}), u"links-lost"_s,
        u"20001 annotations on page 1"_s);
    row("an entry of a stream that leads elsewhere", replaced(packed, "4 0 obj", "4 0 xbj"),
        u"stream-entry-elsewhere"_s, u"that object 4 is at offset "_s);
    row("objects in streams", packed, u"objects-hidden"_s, u"objects lie in 1 object streams"_s);
}

void TestDocumentCheck::saysWhatItMended()
{
    QFETCH(std::string, file);
    QFETCH(QString, code);
    QFETCH(QString, words);
    QFETCH(int, place);
    const FileFindings findings = checkOf(file);
    const auto found = std::find_if(findings.list.begin(), findings.list.end(),
        [&](const FileFinding& one) { return ruleOf(one.code).name == code.toStdString(); });
    if (code.isEmpty()) {
        QCOMPARE(findings.count(), std::size_t{0});
        return;
    }
    QVERIFY(found != findings.list.end());
    QVERIFY2(
        found->sentence.find(words.toStdString()) != std::string::npos, found->sentence.c_str());
    if (place > 0)
        QCOMPARE(found->offset.value_or(0), file.find(std::to_string(place) + " 0 obj"));
    QVERIFY(findings.gaps.empty());
}

void TestDocumentCheck::tellsOfEncryption()
{
    const auto bytes
        = FileBytes::read(QString::fromLatin1(TARNWICK_TEST_DATA "/locked-aes-256.pdf"));
    const FileFindings findings = checkOf(std::string(bytes->view()), u"geheim"_s);
    QCOMPARE(findings.list.size(), std::size_t{1});
    const std::string& sentence = findings.list.front().sentence;
    QVERIFY2(sentence.starts_with("The document is encrypted: AES with 256 bits (V 5, R 6"),
        sentence.c_str());
}

void TestDocumentCheck::knowsWhatMattersMost()
{
    const std::string text = replaced(
        replaced(withFont("/Subtype /TrueType /BaseFont /Arial"), "startxref", "startxxxx"),
        "/Catalog", "/Catalog /S /JavaScript");
    const FileFindings findings = checkOf(text);
    QVERIFY(findings.count() >= 4);
    QCOMPARE(findings.gravest()->code, FindingCode::isRebuilt);
    QVERIFY(findings.areGrave() && !checkOf(withFont("/BaseFont /Arial")).areGrave());
    QVERIFY(!FileFindings().areGrave());
}

QTEST_MAIN(TestDocumentCheck)
#include "tst_DocumentCheck.moc"
