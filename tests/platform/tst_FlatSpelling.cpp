#include "platform/engine/FlatSpelling.h"

#include <QTest>

Q_DECLARE_METATYPE(FlatKind)

class TestFlatSpelling : public QObject
{
    Q_OBJECT

private slots:
    void spellsNames_data();
    void spellsNames();
    void spellsStrings_data();
    void spellsStrings();
    void writesReals_data();
    void writesReals();
};

void TestFlatSpelling::spellsNames_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<FlatKind>("kind");
    QTest::addColumn<bool>("isStrict");
    QTest::addColumn<QByteArray>("expected");
    const auto row = [](const char* fact, const char* name, FlatKind kind, bool isStrict,
                         const char* expected) {
        QTest::newRow(fact) << QByteArray(name) << kind << isStrict << QByteArray(expected);
    };
    const FlatKind plain = FlatKind::isPlain;
    row("an ordinary name", "Font", plain, false, "/Font");
    row("the empty name", "", plain, false, "/");
    row("delimiters, spaces and high bytes", "a b#(\xe9", plain, false, "/a#20b#23#28#e9");
    row("a word that begins an object", "subobj", plain, false, "/sub#6fbj");
    row("a word that ends a stream", "endstream", plain, false, "/end#73tream");
    row("each occurrence", "obj-obj", plain, false, "/#6fbj-#6fbj");
    row("capitals make another word", "ObjStm", plain, false, "/ObjStm");
    row("a marker of XML streams", "XMLData", plain, false, "/#58MLData");
    row("a foreign kind, when it misleads nobody", "PageMode", plain, false, "/PageMode");
    row("a foreign kind in a plain object", "PageMode", plain, true, "/#50ageMode");
    row("a page may say Page", "PageElement", FlatKind::isPage, true, "/PageElement");
    row("a page must not say Pages", "Pages", FlatKind::isPage, true, "/#50ages");
    row("a node must not say Catalog", "CatalogX", FlatKind::isPages, true, "/#43atalogX");
    row("the word avoided", "StructKids", plain, false, "/Struct#4bids");
}

void TestFlatSpelling::spellsNames()
{
    QFETCH(QByteArray, name);
    QFETCH(FlatKind, kind);
    QFETCH(bool, isStrict);
    QFETCH(QByteArray, expected);
    FlatSpelling spelling(kind, isStrict);
    spelling.avoid("Kids");
    QCOMPARE(QByteArray::fromStdString(spelling.name(name.toStdString())), expected);
}

void TestFlatSpelling::spellsStrings_data()
{
    QTest::addColumn<QByteArray>("string");
    QTest::addColumn<bool>("isStrict");
    QTest::addColumn<QByteArray>("expected");
    const auto row = [](const char* fact, const char* string, bool isStrict, const char* expected) {
        QTest::newRow(fact) << QByteArray(string) << isStrict << QByteArray(expected);
    };
    row("text", "Annual report", false, "(Annual report)");
    row("parentheses and backslashes", "a(b)\\", false, "(a\\(b\\)\\\\)");
    row("a line break", "a\nb", false, "<610a62>");
    row("a byte that breaks lines elsewhere", "\x85", false, "<85>");
    row("a word that begins an object", "an object", false, "<616e206f626a656374>");
    row("an address", "http://a", false, "(http://a)");
    row("a slash where names count", "/Page", true, "<2f50616765>");
    row("the word avoided", "Kids", false, "<4b696473>");
}

void TestFlatSpelling::spellsStrings()
{
    QFETCH(QByteArray, string);
    QFETCH(bool, isStrict);
    QFETCH(QByteArray, expected);
    FlatSpelling spelling(FlatKind::isPlain, isStrict);
    spelling.avoid("Kids");
    QCOMPARE(QByteArray::fromStdString(spelling.string(string.toStdString())), expected);
}

void TestFlatSpelling::writesReals_data()
{
    QTest::addColumn<float>("number");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("fraction") << 0.5f << QByteArray("0.5");
    QTest::newRow("shortest that reads back") << 0.1f << QByteArray("0.1");
    QTest::newRow("whole") << 12.0f << QByteArray("12");
    QTest::newRow("negative zero") << -0.0f << QByteArray("0");
    QTest::newRow("large, without exponent") << 1e10f << QByteArray("10000000000");
    QTest::newRow("small, without exponent") << 1e-7f << QByteArray("0.0000001");
    QTest::newRow("infinite") << std::numeric_limits<float>::infinity() << QByteArray("0");
}

void TestFlatSpelling::writesReals()
{
    QFETCH(float, number);
    QFETCH(QByteArray, expected);
    QCOMPARE(QByteArray::fromStdString(flatReal(number)), expected);
}

QTEST_APPLESS_MAIN(TestFlatSpelling)
#include "tst_FlatSpelling.moc"
