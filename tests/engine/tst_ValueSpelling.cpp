#include "ValueSpelling.h"

#include <QTest>

using namespace tarnwick;

class TestValueSpelling : public QObject
{
    Q_OBJECT

private slots:
    void spellsNames();
    void spellsStrings();
    void writesReals();
};

void TestValueSpelling::spellsNames()
{
    const auto spelt = [](const char* name, ObjectType kind, bool isStrict) {
        ValueSpelling spelling(kind, isStrict);
        spelling.avoid("Kids");
        return QByteArray::fromStdString(spelling.name(name));
    };
    const ObjectType plain = ObjectType::isPlain;
    QCOMPARE(spelt("Font", plain, false), "/Font");
    QCOMPARE(spelt("", plain, false), "/");
    QCOMPARE(spelt("a b#(\xe9", plain, false), "/a#20b#23#28#e9");
    // Words that begin objects, end streams or mark XML would mislead, wherever they stand.
    QCOMPARE(spelt("obj-subobj", plain, false), "/#6fbj-sub#6fbj");
    QCOMPARE(spelt("endstream", plain, false), "/end#73tream");
    QCOMPARE(spelt("XMLData", plain, false), "/#58MLData");
    QCOMPARE(spelt("ObjStm", plain, false), "/ObjStm");
    // Kinds of objects do where one is asked to be strict, but for the object's own kind.
    QCOMPARE(spelt("PageMode", plain, false), "/PageMode");
    QCOMPARE(spelt("PageMode", plain, true), "/#50ageMode");
    QCOMPARE(spelt("PageElement", ObjectType::isPage, true), "/PageElement");
    QCOMPARE(spelt("Pages", ObjectType::isPage, true), "/#50ages");
    QCOMPARE(spelt("CatalogX", ObjectType::isPages, true), "/#43atalogX");
    QCOMPARE(spelt("StructKids", plain, false), "/Struct#4bids");
}

void TestValueSpelling::spellsStrings()
{
    const auto spelt = [](const char* string, bool isStrict) {
        ValueSpelling spelling(ObjectType::isPlain, isStrict);
        spelling.avoid("Kids");
        return QByteArray::fromStdString(spelling.string(string));
    };
    QCOMPARE(spelt("Annual report", false), "(Annual report)");
    QCOMPARE(spelt("a(b)\\", false), "(a\\(b\\)\\\\)");
    QCOMPARE(spelt("a\nb", false), "<610a62>");
    QCOMPARE(spelt("\x85", false), "<85>"); // it breaks lines elsewhere
    QCOMPARE(spelt("an object", false), "<616e206f626a656374>");
    QCOMPARE(spelt("http://a", false), "(http://a)");
    QCOMPARE(spelt("/Page", true), "<2f50616765>");
    QCOMPARE(spelt("Kids", false), "<4b696473>");
}

void TestValueSpelling::writesReals()
{
    QCOMPARE(realText(0.5f), std::string("0.5"));
    QCOMPARE(realText(0.1f), std::string("0.1")); // the shortest that reads back
    QCOMPARE(realText(12.0f), std::string("12"));
    QCOMPARE(realText(-0.0f), std::string("0"));
    QCOMPARE(realText(1e10f), std::string("10000000000"));
    QCOMPARE(realText(1e-7f), std::string("0.0000001"));
    QCOMPARE(realText(std::numeric_limits<float>::infinity()), std::string("0"));
}

QTEST_APPLESS_MAIN(TestValueSpelling)
#include "tst_ValueSpelling.moc"
