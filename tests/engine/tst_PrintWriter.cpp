#include "PrintPagination.h"
#include "pdf/PDFDocument.h"

#include "support/LostPages.h"
#include "support/PageContents.h"
#include "support/PdfBuilder.h"
#include "support/Rows.h"

#include <QTest>

#include <algorithm>
#include <cmath>

using namespace tarnwick;

namespace {

using Sheet = PrintSheet;

constexpr int margin = 72;
const PrintPaper letter{{612, 792}, {margin, margin}};

/// Differs in all four corners, so that a page turned or mirrored wrongly shows; its font comes
/// from the resources.
const std::string drawing = "1 0 0 rg 20 20 200 90 re f 0 0 1 rg 400 560 60 150 re f\n"
                            "0.5 g 60 640 90 40 re f BT 0 g /F1 40 Tf 90 400 Td (Sheet) Tj ET";

std::string reference(int number)
{
    return std::to_string(number) + " 0 R";
}

QList<Sheet> sheetsOf(OpenedDocument& document)
{
    QList<Sheet> sheets;
    for (int page = 0; page < document->pageCount(); ++page)
        sheets += PrintPagination::sheets(page, document->pageSize(page), {468, 648});
    return sheets;
}

FileBytes printed(OpenedDocument& document, const QList<Sheet>& sheets)
{
    const PDFFileRequest* const request = document->requestPrint(letter, sheets, document.get());
    OpenedDocument::waitFor(request);
    return request->file().bytes;
}

int inkOf(const QImage& image)
{
    int ink = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            ink += image.pixel(x, y) != qRgb(255, 255, 255) ? 1 : 0;
    }
    return ink;
}

/// Pixels whose colours are apart by more than a rounding's worth of an edge.
int differences(const QImage& one, const QImage& other)
{
    int count = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QRgb a = one.pixel(x, y);
            const QRgb b = other.pixel(x, y);
            const int apart = std::max({std::abs(qRed(a) - qRed(b)),
                std::abs(qGreen(a) - qGreen(b)), std::abs(qBlue(a) - qBlue(b))});
            count += apart > 40 ? 1 : 0;
        }
    }
    return count;
}

QImage wholeSheet(OpenedDocument& paper, int index)
{
    return PageContents::image(paper.get(), index, 1, QRect(0, 0, 612, 792));
}

/// Checks that each sheet shows what its part of the page shows.
void compareSheets(OpenedDocument& document, const QList<Sheet>& sheets)
{
    OpenedDocument paper(printed(document, sheets));
    QCOMPARE(paper->pageCount(), static_cast<int>(sheets.size()));
    for (int index = 0; index < sheets.size(); ++index) {
        const Sheet& sheet = sheets.at(index);
        const QRect area = sheet.area.toRect();
        const QRect place(QPoint(margin, margin), area.size());
        const QImage source = PageContents::image(document.get(), sheet.page, sheet.scale, area);
        const QImage copy = PageContents::image(paper.get(), index, 1, place);
        QCOMPARE(paper->pageSize(index), letter.size);
        QVERIFY(inkOf(source) > 500);
        QVERIFY2(differences(source, copy) * 1000 < inkOf(source), "the sheet shows other things");
        const int rim = inkOf(wholeSheet(paper, index)) - inkOf(copy);
        QVERIFY2(rim <= area.width() + area.height(), "ink in the margins");
    }
}

/// A page with an annotation. @param appearance entries of its appearance stream.
std::string annotated(const std::string& annotation, const std::string& page,
    const std::string& appearance = "/Subtype /Form /BBox [ 0 0 10 20 ]")
{
    PdfBuilder builder;
    const int normal
        = builder.addStream("0 0.6 0 rg 0 0 10 20 re f 1 0 0 rg 0 0 5 5 re f", appearance);
    const int note
        = builder.addObject("<< /Type /Annot /Subtype /Stamp /Rect [ 200 200 320 260 ] /AP << /N "
            + reference(normal) + " >> " + annotation + " >>");
    builder.addDrawing(drawing, "/Annots [ " + reference(note) + " ] " + page);
    return builder.bytes();
}

} // namespace

class TestPrintWriter : public QObject
{
    Q_OBJECT

private slots:
    void showsTheSame_data();
    void showsTheSame();
    void showsPartsOfPages();
    void printsAnnotationsForPaper();
    void decrypts();
    void leavesBehindWhatDoesNotShow();
    void sharesPages();
    void namesThePagesThatLackSomething();
};

using ShowsTheSame = Rows<std::string>;

void TestPrintWriter::showsTheSame_data()
{
    const ShowsTheSame row;
    const auto page = [&](const char* name, const std::string& entries) {
        row(name, PdfBuilder().addDrawing(drawing, entries).bytes());
    };
    page("a page as most are", "");
    page("turned to the right", "/Rotate 90");
    page("upside down", "/Rotate 180");
    page("a crop box away from the origin", "/CropBox [ 50 100 550 700 ]");
    page("a media box around the origin", "/MediaBox [ -100 -50 500 750 ]");
    page("turned, cropped and enlarged", "/Rotate 270 /UserUnit 1.5 /CropBox [ 50 10 500 700 ]");

    PdfBuilder inherited;
    const int content = inherited.addStream(drawing);
    const int leaf = inherited.addObject(
        "<< /Type /Page /Parent 2 0 R /Contents " + reference(content) + " >>");
    inherited.addUpdate(2,
        "<< /Type /Pages /Count 1 /Kids [ " + reference(leaf)
            + " ] /MediaBox [ 0 0 500 800 ] /Rotate 90"
              " /Resources << /Font << /F1 3 0 R >> >> >>");
    row("everything inherited", inherited.bytes());

    PdfBuilder pieces;
    const int first = pieces.addStream("1 0 0 rg 20 20 200 90 re");
    const int second = pieces.addStream("f 0 0 1 rg 400 560 60 150 re f");
    pieces.addDrawing(
        "", "/Contents [ " + reference(first) + " 99 0 R " + reference(second) + " ]");
    row("contents in pieces, one missing", pieces.bytes());

    row("a group that mixes colours as inks",
        PdfBuilder()
            .addDrawing("/D gs " + drawing + " 1 1 0 rg 150 80 300 500 re f",
                "/Group << /S /Transparency /CS /DeviceCMYK >> /Resources << /Font << /F1 3 0 R >>"
                " /ExtGState << /D << /BM /Difference >> >> >>")
            .bytes());

    PdfBuilder layers;
    const int layer = layers.addObject("<< /Type /OCG /Name (L) >>");
    layers.setCatalogEntries("/OCProperties << /OCGs [ " + reference(layer) + " ] /D << /OFF [ "
        + reference(layer) + " ] >> >>");
    layers.addDrawing("/OC /L BDC 0 g 0 0 612 300 re f EMC " + drawing,
        "/Resources << /Font << /F1 3 0 R >> /Properties << /L " + reference(layer) + " >> >>");
    row("a layer that is off", layers.bytes());

    row("an annotation", annotated("/F 4", ""));
    row("an annotation on a turned page", annotated("/F 4", "/Rotate 90 /UserUnit 1.25"));
    row("an appearance with a matrix",
        annotated("/F 4", "", "/Subtype /Form /BBox [ 0 0 10 20 ] /Matrix [ 0 1 -1 0 3 4 ]"));
    row("an appearance that does not say it is a form",
        annotated("/F 4", "", "/BBox [ 0 0 10 20 ]"));
    row("an annotation whose looks are the library's",
        annotated("/F 4 /AP null /Subtype /Square /C [ 0 1 0 ] /IC [ 1 0 1 ]", ""));

    PdfBuilder field;
    const int on
        = field.addStream("0 0.6 0 rg 0 0 90 90 re f", "/Subtype /Form /BBox [ 0 0 90 90 ]");
    const int off = field.addStream("0 g 0 0 90 90 re f", "/Subtype /Form /BBox [ 0 0 90 90 ]");
    const int box
        = field.addObject("<< /Type /Annot /Subtype /Widget /FT /Btn /T (b) /F 4 /AS /Yes /V /Yes"
                          " /Rect [ 200 200 290 290 ] /AP << /N << /Yes "
            + reference(on) + " /Off " + reference(off) + " >> >> >>");
    field.setCatalogEntries("/AcroForm << /Fields [ " + reference(box) + " ] >>");
    field.addDrawing(drawing, "/Annots [ " + reference(box) + " ]");
    row("a form field that is on", field.bytes());
}

void TestPrintWriter::showsTheSame()
{
    const auto [file] = ShowsTheSame::fetch();
    OpenedDocument document(file);
    compareSheets(document, sheetsOf(document));
    OpenedDocument paper(printed(document, sheetsOf(document)));
    QCOMPARE(PageContents::strings(paper.get()), PageContents::strings(document.get()));
}

void TestPrintWriter::showsPartsOfPages()
{
    OpenedDocument document(
        PdfBuilder()
            .addDrawing(drawing + " 0 1 1 rg 100 -900 200 900 re f", "/MediaBox [ 0 -900 468 740 ]")
            .addDrawing(drawing)
            .bytes());
    QTRY_VERIFY(document->pageSize(1) != document->pageSize(0)); // sizes follow the opening
    const QList<Sheet> sheets = sheetsOf(document);
    QCOMPARE(sheets.size(), 4);
    compareSheets(document, {sheets.at(3), sheets.at(1), sheets.at(0), sheets.at(2)});
}

void TestPrintWriter::printsAnnotationsForPaper()
{
    const auto isPrinted = [](const char* annotation) {
        OpenedDocument document(annotated(annotation, ""));
        OpenedDocument paper(printed(document, {{0, {0, 0, 468, 600}, 1}}));
        // Its upper right corner, 300 points from the page's left and 540 from its top.
        return wholeSheet(paper, 0).pixelColor(margin + 300, margin + 540) != QColor(Qt::white);
    };
    QVERIFY(isPrinted("/F 4"));
    QVERIFY2(isPrinted("/F 36"), "not meant for the screen");
    QVERIFY2(!isPrinted("/F 0"), "not meant for paper");
    QVERIFY2(!isPrinted("/F 6"), "hidden");
    QVERIFY(!isPrinted("/F 4 /Subtype /Popup"));
}

void TestPrintWriter::decrypts()
{
    OpenedDocument document(*FileBytes::read(
        QString::fromLatin1(TARNWICK_TEST_DATA "/encrypted-without-password.pdf")));
    const FileBytes bytes = printed(document, sheetsOf(document));
    QVERIFY(bytes.view().find("/Encrypt") == std::string_view::npos);
    OpenedDocument paper(bytes);
    const QStringList texts = PageContents::strings(document.get());
    QVERIFY(!texts.value(0).isEmpty());
    QCOMPARE(PageContents::strings(paper.get()), texts);
}

void TestPrintWriter::leavesBehindWhatDoesNotShow()
{
    PdfBuilder builder;
    builder.setInfo("<< /Title (T) >>");
    const int link = builder.addObject(
        "<< /Type /Annot /Subtype /Link /Rect [ 0 0 9 9 ] /A << /S /URI /URI (http://x) >> >>");
    builder.addDrawing(drawing, "/Annots [ " + reference(link) + " ] /AA << >>");
    builder.setCatalogEntries("/Outlines << >> /Names << >> /AcroForm << /Fields [ ] >>"
                              " /OpenAction << /S /JavaScript /JS (app.alert\\(1\\)) >>");
    OpenedDocument document(builder.bytes());
    const FileBytes bytes = printed(document, sheetsOf(document));
    QVERIFY(bytes.size() > 0);
    for (const char* key :
        {"/Outlines", "/Names", "/AcroForm", "/JavaScript", "/Annots", "/AA", "/URI", "/Title"})
        QVERIFY2(bytes.view().find(key) == std::string_view::npos, key);
}

void TestPrintWriter::sharesPages()
{
    PdfBuilder builder;
    builder.addDrawing(drawing).addSharedPage().addSharedPage("/Rotate 90 /CropBox [ 0 0 9 9 ]");
    OpenedDocument document(builder.bytes());
    QList<Sheet> sheets;
    for (int copy = 0; copy < 50; ++copy)
        sheets += sheetsOf(document);
    const FileBytes bytes = printed(document, sheets);
    const QByteArray file(bytes.view().data(), static_cast<qsizetype>(bytes.size()));
    QCOMPARE(file.count("/Subtype /Form"), 2);
    QCOMPARE(file.count("/P Do"), 3);
    QCOMPARE(OpenedDocument(bytes)->pageCount(), 150);
}

/// Pages that share what cannot be read lack it each; a page that is not there lacks nothing.
void TestPrintWriter::namesThePagesThatLackSomething()
{
    PdfBuilder builder;
    const int broken = builder.addObject("<< /Length 5 /X ( >>");
    const int sound = builder.addStream(drawing);
    builder.addDrawing(drawing);
    for (int page = 0; page < 2; ++page)
        builder.addPage({}, "/Contents [ " + reference(sound) + " " + reference(broken) + " ]");
    LostPages::addUnreadable(builder);
    builder.addPage({}, "/Contents [ 99 0 R ]");
    OpenedDocument document(builder.bytes());
    QList<Sheet> sheets = sheetsOf(document);
    sheets.append({77, {0, 0, 100, 100}, 1});
    const PDFFileRequest* const print = document->requestPrint(letter, sheets, document.get());
    const PDFFileRequest* const flat = document->requestFlat(document.get());
    PDFLosses expected;
    expected.add({1, 2, PDFLoss::isDamagedInPart});
    expected.add(3, PDFLoss::isDamaged);
    QVERIFY(OpenedDocument::waitFor(print) && OpenedDocument::waitFor(flat));
    QCOMPARE(print->file().losses.ranges(), expected.ranges());
    QCOMPARE(flat->file().losses.ranges(), expected.ranges());
    OpenedDocument paper(print->file().bytes);
    QList<bool> isInked;
    for (int page = 0; page < paper->pageCount(); ++page)
        isInked.append(inkOf(wholeSheet(paper, page)) > 0);
    QCOMPARE(isInked, QList<bool>({true, true, true, false, false, false}));
    QCOMPARE(flat->file().lostObjects, 2);
    QCOMPARE(OpenedDocument(flat->file().bytes)->pageCount(), 5);
}

QTEST_GUILESS_MAIN(TestPrintWriter)
#include "tst_PrintWriter.moc"
