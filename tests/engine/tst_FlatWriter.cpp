#include "analysis/SourceText.h"
#include "pdf/PDFDocument.h"

#include "support/OpenedDocument.h"
#include "support/PageContents.h"
#include "support/PdfBuilder.h"
#include "support/Rows.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

QByteArray flatOf(const std::string& file)
{
    OpenedDocument document(file);
    const FileBytes flat = document.flat();
    return QByteArray(flat.view().data(), static_cast<qsizetype>(flat.size()));
}

/// The flattened document's objects as a scan by lines and keywords describes them, in UTF-8: a
/// letter for the colour (d, r, g, b), then the text with "|" for each line feed.
QByteArrayList objectsOf(const std::string& file)
{
    SourceText source(SharedBytes::ofString(flatOf(file).toStdString()));
    QByteArrayList list;
    source.makeListing(false).forEachPiece([&list](ColourRole role, std::u16string_view text) {
        const QByteArray line = QString::fromStdU16String(std::u16string(text)).toUtf8();
        list.append(QByteArray(1, "drgb"[static_cast<std::size_t>(role)]) + ' '
            + QByteArray(line).replace('\n', '|'));
    });
    return list;
}

} // namespace

class TestFlatWriter : public QObject
{
    Q_OBJECT

private slots:
    void writesTheseBytes();
    void unpacksWhatTheFilePacked();
    void keepsLongNamesWhole();
    void readsLikeWhatItIs();
    void keepsEveryPage_data();
    void keepsEveryPage();
    void decrypts();
    void keepsStreamsFromEndingEarly();
    void showsHarmlessXmlOnly();
    void reportsTheSameBytesAgain();
};

void TestFlatWriter::writesTheseBytes()
{
    PdfBuilder builder;
    builder.setVersion("1.5").setInfo("<< /Title (T) /Gone 99 0 R /Size -.50 >>");
    builder.addDrawing("q Q", "/Rotate 90 /Annots [ ] /Flags [ true null (a) <0a> ]");
    const QByteArray expected = "%PDF-1.5\n%\xe2\xe3\xcf\xd3\n"
                                "1 0 obj\n<< /Type /Catalog /Pages 3 0 R >>\nendobj\n"
                                "2 0 obj\n<< /Gone null /Size -0.5 /Title (T) >>\nendobj\n"
                                "3 0 obj\n<< /Type /Pages /Kids [ 4 0 R ] /Count 1 >>\nendobj\n"
                                "4 0 obj\n<< /Type /Page /Annots [ ] /Flags [ true null (a) <0a> ] "
                                "/MediaBox [ 0 0 612 792 ] /Resources << /Font << /F1 6 0 R >> >> "
                                "/Rotate 90 /Contents 5 0 R /Parent 3 0 R >>\nendobj\n"
                                "5 0 obj\n<< /Length 3 >>\nstream\nq Q\nendstream\nendobj\n"
                                "6 0 obj\n<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>\n"
                                "endobj\n";
    const QByteArray flat = flatOf(builder.bytes());
    QCOMPARE(flat.left(expected.size()), expected);
    const QByteArray table = flat.mid(expected.size());
    QVERIFY(table.startsWith("xref\n0 7\n0000000000 65535 f \n0000000015 00000 n \n"));
    const QByteArray start = QByteArray::number(expected.size());
    QVERIFY(table.endsWith(QByteArray(
        "trailer\n<< /Info 2 0 R /Root 1 0 R /Size 7 >>\nstartxref\n" + start + "\n%%EOF\n")));
    const QByteArray last = table.mid(table.indexOf("trailer") - 20, 10);
    QCOMPARE(flat.mid(last.toInt(), 7), QByteArray("6 0 obj"));
}

void TestFlatWriter::unpacksWhatTheFilePacked()
{
    PdfBuilder builder;
    builder.addPage("one").addPage("two");
    const QByteArray fromTable = flatOf(builder.bytes());
    const QByteArray fromStreams = flatOf(builder.setXref(PdfBuilder::Xref::isStream).bytes());
    QCOMPARE(fromStreams, fromTable);
}

/// The content stream goes on using the name that the file gives the font.
void TestFlatWriter::keepsLongNamesWhole()
{
    for (const std::size_t length : {126U, 127U, 128U, 300U}) {
        const std::string name = "a#20b" + std::string(length - 3, 'n');
        PdfBuilder builder;
        builder.addPage("text", "/Resources << /Font << /" + name + " 3 0 R >> >>");
        for (const auto xref : {PdfBuilder::Xref::isTable, PdfBuilder::Xref::isStream}) {
            const QByteArray flat = flatOf(builder.setXref(xref).bytes());
            QVERIFY(flat.contains(QByteArray::fromStdString("<< /" + name + " 5 0 R >>")));
        }
    }
}

void TestFlatWriter::readsLikeWhatItIs()
{
    const QByteArray font = "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>|";

    // A catalog and a page among their likes.
    PdfBuilder catalog;
    catalog.addPage();
    const int metadata = catalog.addObject("<< /Type /Pages >>");
    catalog.setCatalogEntries("/Names << /Dests << >> >> /PageMode /UseNone /PageLabels << /Nums"
                              " [ ] >> /Metadata "
        + std::to_string(metadata)
        + " 0 R"
          " /AF << /Names 3 0 R /Note (Pages 7 0 R) >>");
    QCOMPARE(objectsOf(catalog.bytes()),
        QByteArrayList({"r 1 0 1 Catalog, Pages (4, 0, 1), Metadata (2, 0, 1), Names (3, 0, 1)|",
            "b 2 0 1 << /Type /#50ages >>|", "b 3 0 1 << /Dests << >> >>|",
            "g 4 0 1 Pages, Page count 1, Kids [(6, 0, 1)]|", "b 5 0 1 " + font,
            "d 6 0 1 Page, Parent (4, 0, 1), Content (7, 0, 1)|", "b 7 0 1 << /Length 37 >>|",
            "r Trailer 1 , Root (1, 0, 1), Size 8|"}));

    PdfBuilder page;
    const int note = page.addObject("<< /Type /Annot /Subtype /Text /Rect [ 0 0 9 9 ] /Contents"
                                    " (/Type /Catalog) /Parent 1 0 R >>");
    page.addPage("",
        "/StructParents 7 /Annots [ " + std::to_string(note)
            + " 0 R << /Type /Annot /Contents (x) /Parent 9 0 R >> ] /CatalogX /Pages");
    QCOMPARE(objectsOf(page.bytes()),
        QByteArrayList(
            {"r 1 0 1 Catalog, Pages (2, 0, 1)|", "g 2 0 1 Pages, Page count 1, Kids [(3, 0, 1)]|",
                "d 3 0 1 Page, Parent (2, 0, 1), Content (4, 0, 1)|", "b 4 0 1 << /Length 37 >>|",
                "b 5 0 1 << /Type /Annot /Subtype /Text /Contents <2f54797065202f436174616c6f67> "
                "/Parent 1 0 R /Rect [ 0 0 9 9 ] >>|",
                "b 6 0 1 " + font, "r Trailer 1 , Root (1, 0, 1), Size 7|"}));

    // Contents in pieces.
    PdfBuilder contents;
    const int first = contents.addStream("q");
    const int second = contents.addStream("Q");
    contents.addPage("",
        "/Resources << >> /Contents [ " + std::to_string(first) + " 0 R " + std::to_string(second)
            + " 0 R ]");
    QCOMPARE(objectsOf(contents.bytes()),
        QByteArrayList(
            {"r 1 0 1 Catalog, Pages (2, 0, 1)|", "g 2 0 1 Pages, Page count 1, Kids [(3, 0, 1)]|",
                "d 3 0 1 Page, Parent (2, 0, 1), Content (4, 0, 1)|", "b 4 0 1 [ 5 0 R 6 0 R ]|",
                "b 5 0 1 << /Length 1 >>|", "b 6 0 1 << /Length 1 >>|",
                "r Trailer 1 , Root (1, 0, 1), Size 7|"}));

    // No pages, and an object that calls itself Names.
    PdfBuilder names;
    const int kept = names.addObject("<< /Type /Names /X /PageX >>");
    names.setCatalogEntries("/Extra " + std::to_string(kept) + " 0 R");
    QCOMPARE(objectsOf(names.bytes()),
        QByteArrayList(
            {"r 1 0 1 Catalog, Pages (2, 0, 1)|", "g 2 0 1 Pages, Page count 0, Kids []|",
                "g 3 0 1 Names << /Type /Names /X /#50ageX >>|",
                "r Trailer 1 , Root (1, 0, 1), Size 4|"}));

    // A page that stands in the tree twice, and kids that do not exist.
    PdfBuilder twice;
    twice.addPage("", "/Resources << >>");
    twice.addUpdate(2, "<< /Type /Pages /Kids [ 5 0 R null 77 0 R 5 0 R ] /Count 9 >>");
    QCOMPARE(objectsOf(twice.bytes()),
        QByteArrayList({"r 1 0 1 Catalog, Pages (2, 0, 1)|",
            "g 2 0 1 Pages, Page count 2, Kids [(3, 0, 1), (4, 0, 1)]|",
            "d 3 0 1 Page, Parent (2, 0, 1), Content (5, 0, 1)|",
            "d 4 0 1 Page, Parent (2, 0, 1), Content (5, 0, 1)|", "b 5 0 1 << /Length 37 >>|",
            "r Trailer 1 , Root (1, 0, 1), Size 6|"}));
}

/// Of trees that count wrongly, or in which dictionaries stand where references belong.
using KeepsEveryPage = Rows<int, QByteArray, QStringList>;

void TestFlatWriter::keepsEveryPage_data()
{
    const KeepsEveryPage row;
#define ONE "<< /Type /Page /Contents 4 0 R /Resources << /Font << /F1 3 0 R >> >> >>"
#define TWO "<< /Contents 6 0 R /Resources << /Font << /F1 3 0 R >> >> >>"
#define SIZE "/MediaBox [ 0 0 300 400 ]"
    const QStringList both{u"one"_s, u"two"_s};
    row("pages", 2, "<< /Type /Pages " SIZE " /Kids [ " ONE " " TWO " ] /Count 2 >>", both);
    row("a node with pages", 2,
        "<< /Type /Pages /Kids [ << " SIZE " /Kids [ " ONE " null " TWO " ] >> ] >>", both);
    row("the root", 1,
        "<< /Type /Catalog /Pages << /Type /Pages " SIZE " /Kids [ " ONE " 7 0 R ] >> >>", both);
    row("more than Count says", 2, "<< /Type /Pages /Kids [ 5 0 R 7 0 R ] /Count 1 >>", both);
    row("fewer than none", 2, "<< /Type /Pages /Kids [ 5 0 R 7 0 R ] /Count -3 >>", both);
    row("a page between references to pages", 2,
        "<< /Type /Pages " SIZE " /Kids [ 7 0 R " ONE " 7 0 R ] /Count 3 >>",
        {both[1], both[0], both[1]});
#undef ONE
#undef TWO
#undef SIZE
}

void TestFlatWriter::keepsEveryPage()
{
    const auto [number, object, texts] = KeepsEveryPage::fetch();
    for (const auto xref : {PdfBuilder::Xref::isTable, PdfBuilder::Xref::isStream}) {
        PdfBuilder builder;
        builder.addPage("one", "/MediaBox [ 0 0 300 400 ]");
        builder.addPage("two", "/MediaBox [ 0 0 300 400 ]");
        builder.setXref(xref).addUpdate(number, object.toStdString());
        OpenedDocument document(builder.bytes());
        for (OpenedDocument flat(document.flat()); OpenedDocument * one : {&document, &flat}) {
            QCOMPARE(PageContents::strings(one->get()), texts);
            QCOMPARE((*one)->pageSize(0), QSizeF(300, 400));
        }
    }
}

void TestFlatWriter::decrypts()
{
    OpenedDocument document(*FileBytes::read(
        QString::fromLatin1(TARNWICK_TEST_DATA "/encrypted-without-password.pdf")));
    QCOMPARE(document->state(), PDFDocument::State::isOpen);
    const FileBytes flat = document.flat();
    QVERIFY(flat.view().find("/Title (T)") != std::string_view::npos);
    QVERIFY(flat.view().find("/Encrypt") == std::string_view::npos);
    QCOMPARE(OpenedDocument(flat)->pageCount(), 2);
}

void TestFlatWriter::keepsStreamsFromEndingEarly()
{
    PdfBuilder builder;
    builder.addDrawing("% a\nendstream\nendobj\n% and on\n");
    const QByteArray flat = flatOf(builder.bytes());
    QCOMPARE(flat.count("endstream"), 1);
    QVERIFY(flat.contains("/Filter /FlateDecode"));
    QCOMPARE(objectsOf(builder.bytes()).size(), 6);
}

void TestFlatWriter::showsHarmlessXmlOnly()
{
    PdfBuilder builder;
    const int harmless = builder.addStream("<x/>", "/Type /Metadata /Subtype /XML");
    const int misleading = builder.addStream("<x>9 0 obj</x>", "/Type /Metadata /Subtype /XML");
    builder.addPage();
    builder.setCatalogEntries("/A " + std::to_string(harmless) + " 0 R /B "
        + std::to_string(misleading) + " 0 R /C << /XML 1 >>");
    const QByteArray flat = flatOf(builder.bytes());
    QVERIFY(flat.contains("/Subtype /XML /Length 4 >>"));
    QVERIFY(flat.contains("/Subtype /#58ML /Length 14 >>"));
    QVERIFY(flat.contains("/C << /#58ML 1 >>"));
}

void TestFlatWriter::reportsTheSameBytesAgain()
{
    OpenedDocument document(PdfBuilder().addPage("one").addPage("two").bytes());
    const FileBytes first = document.flat();
    OpenedDocument::waitFor(document->requestText(0, 1, PDFTextDetail::isPlain, document.get()));
    const FileBytes second = document.flat();
    QVERIFY(first.size() > 0);
    QCOMPARE(second.view(), first.view());
}

QTEST_GUILESS_MAIN(TestFlatWriter)
#include "tst_FlatWriter.moc"
