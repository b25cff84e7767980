#include "support/Listings.h"

#include <QtTest>

using namespace Listings;

namespace {

/// "\r\n" and the like cannot be written as lines of file().
std::string raw(const QByteArray& bytes)
{
    return bytes.toStdString();
}

} // namespace

class TestSourceText : public QObject
{
    Q_OBJECT

private slots:
    void listsPieces_data();
    void listsPieces();
    void ordersObjectsByVersionAndNumber();
    void countsByKind();
    void handsTheListingOverAsItGrows();
    void stopsWhenAsked();
};

void TestSourceText::listsPieces_data()
{
    QTest::addColumn<std::string>("bytes");
    QTest::addColumn<QByteArrayList>("expected");
    const auto row = [](const char* name, const std::string& bytes, const QByteArrayList& pieces) {
        QTest::newRow(name) << bytes << pieces;
    };
    const QByteArray nine = "b [\u2026stream length 9\u2026]|";
    const auto length = [](int number) -> QByteArray {
        return "b [\u2026stream length " + QByteArray::number(number) + "\u2026]|";
    };
    row("nothing in nothing", "", {});
    row("blank lines show nothing", raw(" \t\xA0\r\n\n\x0B\x0C\x85"), {});
    row("a line's white space goes, also no-break spaces", raw("\xA0 a b\t\xA0\n"), {"g a b|"});
    row("an object", file({"1 0 obj", "<<>>", "endobj"}), {"d 1 0 obj|", "g <<>>|", "r endobj||"});
    row("sections stand off", file({"xref", "0 1", "trailer", "<<>>", "startxref", "9", "%%EOF"}),
        {"d |xref|", "g 0 1|", "d |trailer|", "g <<>>|", "d |startxref|", "g 9|", "r %%EOF||"});
    row("startxref with an obj is a header", file({"startxref obj"}), {"d startxref obj|"});
    row("keywords inside words count", file({"an object", "xendobjx", "a%%EOFb"}),
        {"d an object|", "r xendobjx||", "r a%%EOFb||"});
    row("a stream is its length", file({"stream", "BT ET q Q", "endstream"}), {nine});
    row("lines of a stream count with one break each", file({"stream", "ab", "cd", "endstream"}),
        {length(5)});
    row("CR LF counts two", raw("stream\r\nabc\r\nendstream\r\n"), {length(5)});
    row("a stream without data", file({"stream", "endstream"}), {length(0)});
    row("a stray endstream shows one less", file({"stream", "abc", "endstream", "endstream"}),
        {length(3), length(2)});
    row("stream within a stream starts the count again",
        file({"stream", "abc", "upstream", "de", "endstream"}), {length(2)});
    row("a line with stream and /XML in a stream is data",
        file({"stream", "ab", "stream /XML", "endstream"}), {length(14)});
    row("endstream endobj is an end of stream only", file({"stream", "a", "endstream endobj"}),
        {length(1)});
    row("an open stream hides the rest", file({"a", "stream", "endobj", "%%EOF"}), {"g a|"});
    row("the file ends in the line that ends a stream", raw("stream\nabc\nendstream"), {length(3)});
    row("lines of XML are shown, without a length",
        file({"5 0 obj", "<</Subtype/XML>>", "stream", "<a>", "", " b ", "endstream", "endobj"}),
        {"d 5 0 obj|", "g <</Subtype/XML>>|", "g <a>|", "g b|", "r endobj||"});
    row("compressed XML is a stream like others",
        file({"<</Subtype/XML/Filter/FlateDecode>>", "stream", "abc", "endstream"}),
        {"g <</Subtype/XML/Filter/FlateDecode>>|", length(3)});
    row("stream behind compressed XML on one line starts nothing",
        file({"<</XML/FlateDecode>>stream", "abc", "endstream"}),
        {"g <</XML/FlateDecode>>stream|", "g abc|", length(0)});
    row("XML without a stream opens the next one",
        file({"/XML", "endobj", "stream", "abc", "endstream", "stream", "de", "endstream"}),
        {"g /XML|", "r endobj||", "g abc|", length(2)});
    row("high bytes are characters", raw("%\xE2\xE3\n"), {"g %\u00E2\u00E3|"});
}

void TestSourceText::listsPieces()
{
    QFETCH(std::string, bytes);
    QFETCH(QByteArrayList, expected);
    QCOMPARE(listing(bytes), expected);
}

void TestSourceText::ordersObjectsByVersionAndNumber()
{
    const std::string bytes = file({"3 0 obj", "a", "endobj", "trailer", "<< /Size 4 >>", "1 0 obj",
        "b", "endobj", "trailer", "<< /Size 5 >>", "startxref", "%%EOF", "3 0 obj", "c", "endobj",
        "3 0 obj", "d", "endobj", "x", "endobj", "2 0 obj", "e", "endobj"});
    const QByteArrayList expected{
        "1 0 1 b", "3 0 1 a", "Trailer 1 , Size 5", "2 0 2 e", "3 0 2 c", "3 0 2 d", "3 0 2 d"};
    QCOMPARE(objects(bytes), expected);

    SourceText source(SharedBytes::ofString(bytes));
    source.makeListing(false);
    QCOMPARE(source.theCatalog().object(0).objNo(), 3);
    QCOMPARE(source.theCatalog().object(1).objNo(), 1);
}

void TestSourceText::countsByKind()
{
    QCOMPARE(SourceText(SharedBytes()).theCatalog().makeSummary(),
        std::string("contains 0 objects, consisting of:\n0 pages\n0 catalogs, "
                    "0 info objects, 0 trailers.\nMaximum version = 0"));
    SourceText source(SharedBytes::ofString(
        file({"1 0 obj", "/Type /Catalog", "endobj", "2 0 obj", "/Type /Pages", "endobj", "3 0 obj",
            "/Type /Page", "endobj", "4 0 obj", "/Type /Info", "endobj", "5 0 obj", "/Type /Names",
            "endobj", "%%EOF", "6 0 obj", "endobj", "trailer", "startxref", "%%EOF"})));
    source.makeListing(false);
    QCOMPARE(source.theCatalog().makeSummary(),
        std::string("contains 7 objects, consisting of:\n1 pages\n1 catalogs, "
                    "1 info objects, 1 trailers.\nMaximum version = 2"));
}

void TestSourceText::handsTheListingOverAsItGrows()
{
    std::string bytes;
    for (int i = 0; i < 20000; ++i)
        bytes += "line\n";
    SourceText source(SharedBytes::ofString(bytes));
    std::size_t calls = 0;
    std::size_t pieces = 0;
    QVERIFY(source.scan([&](std::span<const Piece> some) {
        ++calls;
        pieces += some.size();
    }));
    QCOMPARE(pieces, std::size_t{20000});
    QVERIFY2(calls > 1, "a long listing comes in parts");
}

void TestSourceText::stopsWhenAsked()
{
    std::string bytes = file({"1 0 obj", "endobj"});
    bytes.append(std::size_t{16} << 20, 'x');
    SourceText source(SharedBytes::ofString(bytes));
    std::stop_source stop;
    stop.request_stop();
    QCOMPARE(source.makeListing(true, stop.get_token()).pieceCount(), std::size_t{0});
    QCOMPARE(source.theCatalog().size(), std::size_t{0});
}

QTEST_APPLESS_MAIN(TestSourceText)
#include "tst_SourceText.moc"
