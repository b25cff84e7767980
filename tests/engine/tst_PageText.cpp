// The characters of a page as the engine hands them over: which, in which order, and where.

#include "pdf/PDFDocument.h"

#include "support/PageContents.h"
#include "support/PdfBuilder.h"
#include "support/Rows.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

/// A page drawn in Courier, each glyph 0.6 em wide; there are glyphs from "A" on.
/// @param characters what they stand for, in UTF-16 (ISO 32000-2, 9.10.3).
std::string fileOf(const std::string& content, const QStringList& characters)
{
    PdfBuilder builder;
    QByteArray map = "1 begincodespacerange <00> <ff> endcodespacerange "
        + QByteArray::number(characters.size()) + " beginbfchar ";
    for (qsizetype index = 0; index < characters.size(); ++index) {
        map += '<' + QByteArray::number('A' + int(index), 16) + "> <";
        for (const QChar unit : characters.at(index))
            map += QByteArray::number(unit.unicode(), 16).rightJustified(4, '0');
        map += "> ";
    }
    map += "endbfchar";
    const int toUnicode = builder.addStream(map.toStdString());
    const int font
        = builder.addObject("<< /Type /Font /Subtype /Type1 /BaseFont /Courier /ToUnicode "
            + std::to_string(toUnicode) + " 0 R >>");
    builder.addDrawing("BT /F1 10 Tf " + content + " ET",
        "/Resources << /Font << /F1 " + std::to_string(font) + " 0 R >> >>");
    return builder.bytes();
}

PDFPageText textOf(const std::string& content, const QStringList& characters)
{
    OpenedDocument document(fileOf(content, characters));
    return PageContents::texts(document.get(), PDFTextDetail::isWithQuads).value(0);
}

/// What "A", "B" and so on stand for where the order of letters counts.
const QStringList letters = {u"א"_s, u"ב"_s, u"ג"_s, // A B C
    u"x"_s, u"y"_s, u"1"_s, u"2"_s, u" "_s, u"("_s, u")"_s, // D E F G H I J
    u"\u05b8"_s, u"\u0644\u0627"_s, u"\u0633"_s, u"\u0661"_s, // K mark, L ligature, M seen, N one
    u"\U0001e900"_s, u"."_s, u"א x"_s, u"\ufffd"_s}; // O P Q R

double leftOf(const PDFPageText& text, qsizetype index)
{
    return text.quads.at(index).boundingRect().left();
}

} // namespace

class TestPageText : public QObject
{
    Q_OBJECT

private slots:
    void joinsSurrogates_data();
    void joinsSurrogates();
    void ordersLines_data();
    void ordersLines();
    void quadsStayWithTheirGlyphs();
    void givesTheText();
    void givesQuadsInPageSpace();
    void givesTheLookOfTheText();
};

using JoinsSurrogates = Rows<QStringList, QString>;

void TestPageText::joinsSurrogates_data()
{
    const JoinsSurrogates row;
    const QString high(QChar(0xd83d));
    const QString low(QChar(0xdc4d));
    row("a pair alone", {u"\U0001F44D"_s}, u"\U0001F44D"_s);
    row("a skin tone", {u"\U0001F44D\U0001F3FD"_s}, u"\U0001F44D\U0001F3FD"_s);
    row("a flag", {u"\U0001F1EA\U0001F1FA"_s, u"a"_s}, u"\U0001F1EA\U0001F1FAa"_s);
    row("joined by U+200D", {u"\U0001F468\u200D\U0001F4BB"_s}, u"\U0001F468\u200D\U0001F4BB"_s);
    row("halves of two glyphs", {high, low}, u"\U0001F44D"_s);
    row("a lone half is none", {high, u"a"_s}, u"\ufffda"_s);
    row("two high halves", {high + u"\U0001F44D"_s}, u"\ufffd\U0001F44D"_s);
    row("halves the wrong way round", {low + high}, u"\ufffd\ufffd"_s);
}

void TestPageText::joinsSurrogates()
{
    const auto [characters, expected] = JoinsSurrogates::fetch();
    const std::string glyphs = characters.size() > 1 ? "(AB)" : "(A)";
    const PDFPageText text = textOf("72 700 Td " + glyphs + " Tj", characters);
    QCOMPARE(text.string, expected + u'\n');
    QCOMPARE(text.quads.size(), text.string.size());
    // What one glyph stands for begins where the glyph does, and nothing reaches beyond it.
    QCOMPARE(leftOf(text, 0), 72.0);
    const double width = 6 * double(characters.size());
    for (const PDFQuad& quad : text.quads.first(text.quads.size() - 1))
        QVERIFY(quad.boundingRect().right() <= 72 + width + 0.01);
}

using OrdersLines = Rows<std::string, QString>;

void TestPageText::ordersLines_data()
{
    const OrdersLines row;
    row("Latin stays", "(DE) Tj", u"xy"_s);
    row("in the order of sight", "(CBA) Tj", u"אבג"_s);
    row("from the right", "12 0 Td (A) Tj -6 0 Td (B) Tj -6 0 Td (C) Tj", u"אבג"_s);
    row("word by word from the right", "30 0 Td (BA) Tj -12 0 Td (CH) Tj", u"אב ג"_s);
    row("numbers run to the right", "(BHFGHA) Tj", u"א 12 ב"_s);
    row("a number between letters from the right", "18 0 Td (A) Tj -12 0 Td (FG) Tj -6 0 Td (B) Tj",
        u"א12ב"_s);
    row("Arabic numbers", "(MHNNHM) Tj", u"\u0633 \u0661\u0661 \u0633"_s);
    row("Latin among Hebrew", "(CHDEHFHBA) Tj", u"אב xy 1 ג"_s);
    row("Hebrew among Latin", "(DEDHBAHED) Tj", u"xyx אב yx"_s);
    row("Latin between letters from the right",
        "54 0 Td (A) Tj -6 0 Td (B) Tj -6 0 Td (H) Tj -30 0 Td (DEDED) Tj -6 0 Td (H) Tj"
        " -6 0 Td (A) Tj -6 0 Td (C) Tj -6 0 Td (B) Tj -6 0 Td (C) Tj",
        u"אב xyxyx אגבג"_s);
    row("a full stop", "(PCBA) Tj", u"אבג."_s);
    row("brackets named by what they do", "(JBIA) Tj", u"א(ב)"_s);
    row("brackets named by their shapes", "(IBJA) Tj", u"א(ב)"_s);
    row("brackets of Latin text named for Hebrew", "(DJEIHA) Tj", u"x(y) א"_s);
    row("blanks drawn before the words between them",
        "42 0 Td (DE) Tj -42 0 Td (H) Tj 18 0 Td (H) Tj -12 0 Td (BA) Tj 18 0 Td (CB) Tj",
        u"xy בג אב "_s);
    row("a mark drawn before its letter", "[ (C) (K) 600 (BA) ] TJ", u"אב\u05b8ג"_s);
    row("a mark drawn behind its letter",
        "12 0 Td (A) Tj -6 0 Td (B) Tj 0 0 Td (K) Tj -6 0 Td (C) Tj", u"אב\u05b8ג"_s);
    row("a mark before a letter that the file does not name", "[ (AH) (K) 600 (RA) ] TJ",
        u"א\ufffd\u05b8 א"_s);
    row("a glyph that stands for two letters", "(MLM) Tj", u"\u0633\u0644\u0627\u0633"_s);
    row("a gap is a space", "[ (CB) -200 (A) ] TJ", u"א בג"_s);
    row("drawn twice, as for bold", "(CBA) Tj 0.3 0 Td (CBA) Tj", u"אבג\nאבג"_s);
    row("beyond the basic plane", "(OBO) Tj", u"\U0001e900ב\U0001e900"_s);
    row("as in a mirror", "1 0 0 1 0 0 Tm -1 0 0 1 172 700 Tm (ABC) Tj", u"אבג"_s);
    row("upwards", "0 1 -1 0 172 600 Tm (CBA) Tj", u"אבג"_s);
    row("places say nothing where a glyph stands for a stretch", "(QDA) Tj", u"א xxא"_s);
    // Which of two words comes first, their own line cannot tell.
    row("a paragraph from the right", "(CBBA) Tj 0 -12 Td (BHDED) Tj", u"אבבג\nxyx ב"_s);
    row("a paragraph from the left", "(DEDEDEDE) Tj 0 -12 Td (BHDED) Tj", u"xyxyxyxy\nב xyx"_s);
    row("a paragraph from the left on a page from the right",
        "(ABHBAHCB) Tj 0 -99 Td (DEHBAHEDHD) Tj", u"בג אב בא\n\nxy אב yx x"_s);
    row("a long Latin word in a paragraph from the right",
        "(ABHBAHCB) Tj 0 -99 Td (DEDEDEDEHBA) Tj", u"בג אב בא\n\nאב xyxyxyxy"_s);
}

void TestPageText::ordersLines()
{
    const auto [content, expected] = OrdersLines::fetch();
    const PDFPageText text = textOf("72 700 Td " + content, letters);
    QCOMPARE(text.string, expected + u'\n');
    QCOMPARE(text.quads.size(), text.string.size());
}

void TestPageText::quadsStayWithTheirGlyphs()
{
    const std::string drawn = "CHDEHFHBA"; // and a gap, which is a space
    const PDFPageText text = textOf("72 700 Td [ (" + drawn + ") -300 (B) ] TJ", letters);
    QCOMPARE(text.string, u"ב אב xy 1 ג\n"_s);
    const QList<int> glyphs = {-1, -1, 8, 7, 6, 2, 3, 4, 5, 1, 0};
    QCOMPARE(leftOf(text, 0), 72 + 9 * 6 + 3.0);
    QCOMPARE(text.quads.at(1).boundingRect().left(), 72 + 9 * 6.0);
    QCOMPARE(text.quads.at(1).boundingRect().right(), 72 + 9 * 6 + 3.0);
    for (qsizetype index = 2; index < glyphs.size(); ++index)
        QCOMPARE(leftOf(text, index), 72.0 + 6 * glyphs.at(index));
}

void TestPageText::givesTheText()
{
    PdfBuilder builder;
    builder.addPage("one\ntwo").addPage().addPage("three");
    OpenedDocument document(builder.bytes());
    PDFTextRequest* const request
        = document->requestText(0, 2, PDFTextDetail::isPlain, document.get());
    QSignalSpy ready(request, &PDFTextRequest::pageReady);
    QSignalSpy progressed(request, &PDFRequest::progressed);
    QVERIFY(OpenedDocument::waitFor(request));
    QStringList pages;
    for (const QList<QVariant>& page : std::as_const(ready))
        pages.append(page.at(1).value<PDFPageText>().string);
    QCOMPARE(pages.join(u'|'), u"one\ntwo\n||three\n"_s);
    QCOMPARE(progressed.last(), QList<QVariant>({3, 3}));
}

void TestPageText::givesQuadsInPageSpace()
{
    OpenedDocument document(PdfBuilder().addPage("ab", "/MediaBox [ 0 100 612 792 ]").bytes());
    const auto text = PageContents::texts(document.get(), PDFTextDetail::isWithQuads).value(0);
    QVERIFY(!text.string.isEmpty());
    QCOMPARE(text.quads.size(), text.string.size());
    const QPolygonF letter = text.quads.at(0);
    QCOMPARE(letter.size(), 4);
    QVERIFY2(letter.boundingRect().contains(QPointF(74, 70)), "the baseline is 72 below the top");
    QVERIFY(letter.at(0).x() < letter.at(1).x() && letter.at(0).y() < letter.at(3).y());
    QVERIFY(text.quads.at(1).at(0).x() > letter.at(0).x());
    QVERIFY(text.quads.at(text.string.indexOf(u'\n')).isEmpty());
}

void TestPageText::givesTheLookOfTheText()
{
    PdfBuilder builder;
    const int bold
        = builder.addObject("<< /Type /Font /Subtype /Type1 /BaseFont /Times-BoldItalic >>");
    builder.addDrawing("BT /F1 12 Tf 72 700 Td (plain) Tj 1 0 0 rg /F2 20 Tf (red) Tj ET",
        "/Resources << /Font << /F1 3 0 R /F2 " + std::to_string(bold) + " 0 R >> >>");
    OpenedDocument document(builder.bytes());
    const auto text = PageContents::texts(document.get(), PDFTextDetail::isWithAttributes).value(0);
    QCOMPARE(text.runs.size(), 2);
    const PDFTextRun& plain = text.runs.at(0);
    QCOMPARE(text.string.mid(plain.start, plain.length), u"plain"_s);
    QVERIFY(plain.family == u"Helvetica" && !plain.isBold && !plain.isItalic);
    QCOMPARE(plain.sizeInPoints, 12.0);
    const PDFTextRun& red = text.runs.at(1);
    QCOMPARE(text.string.mid(red.start, red.length), u"red\n"_s);
    QVERIFY(red.family == u"Times" && red.isBold && red.isItalic);
    QCOMPARE(red.colour, QColor(Qt::red));
}

QTEST_GUILESS_MAIN(TestPageText)
#include "tst_PageText.moc"
