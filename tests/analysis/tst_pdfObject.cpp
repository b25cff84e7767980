#include "support/Listings.h"

#include "analysis/DecimalInteger.h"

#include <QtTest>

#include <limits>

using namespace Listings;

class TestPdfObject : public QObject
{
    Q_OBJECT

private slots:
    void describes_data();
    void describes();
    void keepsItsLines();
    void readsLinksThroughAccessors();
    void sharesLinesBetweenRecords_data();
    void sharesLinesBetweenRecords();
    void readsDecimalIntegers_data();
    void readsDecimalIntegers();
};

void TestPdfObject::describes_data()
{
    QTest::addColumn<std::string>("bytes");
    QTest::addColumn<QByteArray>("expected");
    const auto row
        = [](const char* name, std::initializer_list<const char*> lines, const char* line) {
              QTest::newRow(name) << file(lines) + "endobj\n" << QByteArray(line);
          };
    // Header lines and kinds.
    row("numbers of the header", {"12 3 obj", "x"}, "12 3 1 x");
    row("two spaces make an empty generation", {"12  0 obj", "x"}, "12 0 1 x");
    row("two pieces are no header numbers", {"12 obj", "x"}, "0 0 1 x");
    row("no number at all", {"x 0 obj", "y"}, "0 0 1 y");
    row("signs", {"-3 +4 obj"}, "-3 4 1 ");
    row("beyond 64 bits", {"9223372036854775808 9223372036854775807 obj"},
        "0 9223372036854775807 1 ");
    row("no header line", {"%PDF-1.4", "x"}, "0 0 1 x");
    row("kind on the header line", {"5 0 obj<</Type/Page/Parent 3 0 R>>"}, "5 0 1 Page");
    row("Pages before Page", {"1 0 obj", "/Type /Pages"}, "1 0 1 Pages, Page count 0, Kids []");
    row("the last line with a kind decides", {"1 0 obj", "/Type /Catalog", "/Type /Pages"},
        "1 0 1 Pages, Page count 0, Kids []");
    row("a Type without one of the names changes nothing",
        {"1 0 obj", "/Type /Catalog", "/Type /Font"}, "1 0 1 Catalog");
    row("kind and Type on two lines", {"1 0 obj", "/Type", "/Catalog"}, "1 0 1 /Type");
    row("Info for another reason", {"1 0 obj", "/Type /Annot /Info 7 0 R"},
        "1 0 1 Info /Type /Annot /Info 7 0 R");
    row("a high number is a trailer", {"9000000 0 obj", "/Type /Page /Size 4 "},
        "Trailer 1 , Size 4");
    // Entries.
    row("all links of a catalog",
        {"1 0 obj", "<< /Type /Catalog", "/Pages 2 0 R", "/Metadata 5 0 R", "/Names 6 1 R", ">>"},
        "1 0 1 Catalog, Pages (2, 0, 1), Metadata (5, 0, 1), Names (6, 1, 1)");
    row("a direct Names dictionary", {"1 0 obj", "/Type /Catalog /Names << /Dests 7 0 R >>"},
        "1 0 1 Catalog, Names (0, 0, 0)");
    row("two spaces behind the key", {"1 0 obj", "/Type /Catalog /Pages  2 0 R"},
        "1 0 1 Catalog, Pages (0, 2, 1)");
    row("a tab is no separator", {"1 0 obj", "/Type /Catalog /Pages\t2 0 R", "x"},
        "1 0 1 Catalog, Pages (0, 0, 1)");
    row("one line has no entries", {"1 0 obj << /Type /Catalog /Pages 2 0 R >>"}, "1 0 1 Catalog");
    row("a piece runs on over lines", {"1 0 obj", "/Type /Catalog /Pages", "2", "0 R"},
        "1 0 1 Catalog, Pages (2, 0, 1)");
    row("PageMode holds no Pages, PagesX does",
        {"1 0 obj", "/Type /Catalog /PageMode 1 2 3", "/PagesX 4 5 6"},
        "1 0 1 Catalog, Pages (4, 5, 1)");
    row("Kids with spaces",
        {"2 0 obj", "<< /Type /Pages", "/Kids [ 3 0 R 4 0 R ]", "/Count 2", ">>"},
        "2 0 1 Pages, Page count 2, Kids [(3, 0, 1), (4, 0, 1)]");
    row("Kids glued to the bracket", {"2 0 obj", "<</Type/Pages/Kids[3 0 R 4 0 R]/Count 2>>"},
        "2 0 1 Pages, Page count 0, Kids [(0, 0, 1), (4, 0, 1)]");
    row("odd Kids", {"2 0 obj", "/Type /Pages /Kids [3 R 3 0 5 R x R 7 ]"},
        "2 0 1 Pages, Page count 0, Kids [(3, 0, 1), (3, 5, 1), (0, 0, 1)]");
    row("Kids over lines, and again",
        {"2 0 obj", "/Type /Pages /Kids [ 3 0", "R", "] /Other [ 8 0 R ]", "/Kids [ 4 0 R ]"},
        "2 0 1 Pages, Page count 0, Kids [(3, 0, 1), (4, 0, 1)]");
    row("Kids of too few tokens", {"2 0 obj", "/Type /Pages /Kids [1R"},
        "2 0 1 Pages, Page count 0, Kids []");
    row("an indirect Count", {"2 0 obj", "/Type /Pages /Count 5 0 R"},
        "2 0 1 Pages, Page count 5, Kids []");
    row("a later Parent wins",
        {"3 0 obj", "<< /Type /Page /Parent 2 0 R /Contents [4 0 R] /StructParents 0 >>"},
        "3 0 1 Page, Parent (0, 0, 0), Content (0, 0, 1)");
    // Small pages are read again when they are asked about, large ones during the scan.
    const std::string filler(5000, 'x');
    row("a large page", {"3 0 obj", "/Type /Page /Parent 2 0 R", filler.c_str(), "/Contents 4 0 R"},
        "3 0 1 Page, Parent (2, 0, 1), Content (4, 0, 1)");
    row("a page with a generation", {"3 7 obj", "/Type /Page /Parent 2 0 R"},
        "3 7 1 Page, Parent (2, 0, 1)");
    row("a trailer's entries",
        {"trailer", "<< /Size 22 /Root 1 0 R /Info 5 0 R /ID [<ab> <cd>] >>"},
        "Trailer 1 , Root (1, 0, 1), Info (5, 0, 1), Size 22");
    row("a trailer on one line", {"trailer << /Size 22 >>"}, "Trailer 1 , Size 0");
    // Texts.
    const std::string hundredTwenty(120, 'a');
    const std::string whole = "1 0 1 " + hundredTwenty;
    QTest::newRow("120 characters are whole") << "1 0 obj\n" + hundredTwenty + "  \nendobj\n"
                                              << QByteArray::fromStdString(whole);
    QTest::newRow("121 are cut") << "1 0 obj\n" + hundredTwenty + "b\nendobj\n"
                                 << QByteArray::fromStdString(whole) + "\u2026";
    QTest::newRow("Names are never cut")
        << "1 0 obj\n/Type/Names" + hundredTwenty + "b\nendobj\n"
        << QByteArray::fromStdString("1 0 1 Names /Type/Names" + hundredTwenty + "b");
    QTest::newRow("a text far behind its header")
        << "1 0 obj\n" + std::string(std::size_t{17} << 20, '\n') + "far\nendobj\n"
        << QByteArray("1 0 1 far");
}

void TestPdfObject::describes()
{
    QFETCH(std::string, bytes);
    QFETCH(QByteArray, expected);
    const QByteArrayList lines = objects(bytes);
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first(), expected);
}

void TestPdfObject::keepsItsLines()
{
    SourceText source(SharedBytes::ofString(file({"%PDF", "endobj", "1 0 obj", "a", "stream", "obj",
        "endstream", " b ", "endobj", "c", "startxref", "trailer", "d", "startxref", "/XML",
        "7 0 obj", "stream", "<x>", "endstream", "endobj"})));
    source.makeListing(false);
    QList<QByteArrayList> lines;
    for (std::size_t i = 0; i < source.theCatalog().size(); ++i) {
        QByteArrayList list;
        for (const std::string_view line : source.theCatalog().object(i).theStringArray())
            list.append(QByteArray(line.data(), static_cast<qsizetype>(line.size())));
        lines.append(list);
    }
    const QList<QByteArrayList> expected{{"%PDF"}, {"1 0 obj", "a", "b"},
        {"1 0 obj", "a", "b", "c"}, {"8000001 0 obj", "d"}, {"7 0 obj", "<x>"}};
    QCOMPARE(lines, expected);
}

void TestPdfObject::readsLinksThroughAccessors()
{
    SourceText source(SharedBytes::ofString(file(
        {"%%EOF", "2 0 obj", "/Type /Pages /Parent 1 0 R /Kids [ 3 0 R ] /Count 7", "endobj"})));
    source.makeListing(false);
    const pdfObject node = source.theCatalog().object(0);
    QCOMPARE(node.objVer(), 2);
    QVERIFY(node.theParent() == std::optional(ObjectRef{1, 0, 2}));
    QVERIFY(!node.theRoot());
    QVERIFY(node.theChildren() == std::vector{ObjectRef({3, 0, 2})});
    QCOMPARE(node.thePageCount(), 7);
    QCOMPARE(node.theSize(), 0);
}

/// Without sharing, a quarter of a million ends behind one object would take hours and terabytes.
void TestPdfObject::sharesLinesBetweenRecords_data()
{
    QTest::addColumn<std::string>("kind");
    QTest::addColumn<std::string>("link");
    QTest::newRow("catalog") << std::string("Catalog") << std::string("Pages");
    // Its first records are small enough to be read again, its last ones are not.
    QTest::newRow("page") << std::string("Page") << std::string("Parent");
}

void TestPdfObject::sharesLinesBetweenRecords()
{
    QFETCH(std::string, kind);
    QFETCH(std::string, link);
    std::string bytes = file({"1 0 obj"}) + "<< /Type /" + kind + " /" + link + " 2 0 R\n";
    for (int i = 0; i < 100'000; ++i)
        bytes += "/Extra 1\nno slash here\nendobj\n";
    bytes += '/' + link + " 3 0 R\nendobj\n";
    SourceText source(SharedBytes::ofString(bytes));
    source.makeListing(false);
    const std::size_t count = source.theCatalog().size();
    QCOMPARE(count, std::size_t{100'001});
    const auto line = [&source](std::size_t index) {
        return QString::fromStdU16String(source.theCatalog().object(index).descriptionLine());
    };
    const auto expected = [&](int target) {
        return QStringLiteral("1 0 1 %1, %2 (%3, 0, 1)\n")
            .arg(QString::fromStdString(kind), QString::fromStdString(link))
            .arg(target);
    };
    QCOMPARE(line(0), expected(2));
    QCOMPARE(line(count - 2), expected(2));
    QCOMPARE(line(count - 1), expected(3));
}

void TestPdfObject::readsDecimalIntegers_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("isNumber");
    QTest::addColumn<qint64>("value");
    const auto row = [](const char* text, bool isNumber, qint64 value = 0) {
        QTest::newRow(*text ? text : "empty") << QByteArray(text) << isNumber << value;
    };
    row("0", true, 0);
    row("007", true, 7);
    row("+5", true, 5);
    row("-0", true, 0);
    row("9223372036854775807", true, std::numeric_limits<qint64>::max());
    row("-9223372036854775808", true, std::numeric_limits<qint64>::min());
    row("9223372036854775808", false);
    row("", false);
    row("+", false);
    row("-", false);
    row("+-5", false);
    row("--5", false);
    row("5 ", false);
    row(" 5", false);
    row("0x5", false);
    row("5.0", false);
}

void TestPdfObject::readsDecimalIntegers()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, isNumber);
    QFETCH(qint64, value);
    const auto number = decimalInteger(text.toStdString());
    QCOMPARE(number.has_value(), isNumber);
    QCOMPARE(number.value_or(0), value);
}

QTEST_APPLESS_MAIN(TestPdfObject)
#include "tst_pdfObject.moc"
