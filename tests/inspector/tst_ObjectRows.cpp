#include "ObjectRows.h"

#include "analysis/ObjectKind.h"
#include "support/PdfBuilder.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

ObjectFacts factsOf(const std::string& file)
{
    auto source = std::make_shared<SourceText>(SharedBytes::ofString(file));
    source->makeListing(false);
    const pdfObjectCatalog& catalog = source->theCatalog();
    return {source, ObjectStates::of(catalog), ObjectKinds::of(catalog), {}, {}};
}

/// The objects of a scan in the table that says nothing else of them, with what the others are.
std::shared_ptr<const TabledObjects> tabled(const pdfObjectCatalog& catalog, CrossReference table)
{
    for (std::int64_t number = 1; number < 20; ++number) {
        const auto object = catalog.find(number);
        const bool isFree = std::any_of(table.freed.begin(), table.freed.end(),
            [number](const CrossReference::Freed& freed) { return freed.number == number; });
        if (object && !isFree)
            table.placed.push_back({object->range().begin, static_cast<std::uint32_t>(number)});
    }
    return TabledObjects::of(catalog, std::move(table));
}

/// Rows as "number.version", the trailers left out.
QString rowsOf(const ObjectFacts& facts, const char* filter, ObjectOrder order = {})
{
    const ObjectFilterReading reading = readObjectFilter(filter);
    QStringList names;
    for (const std::uint32_t index : makeObjectRows(facts, reading.filter, order).shown) {
        if (facts.number(index) != trailerNumber)
            names.append(u"%1.%2"_s.arg(facts.number(index))
                             .arg(facts.value(index, ObjectColumn::isVersion)));
    }
    return names.join(u' ');
}

} // namespace

class TestObjectRows : public QObject
{
    Q_OBJECT

private slots:
    void choosesAndSorts_data();
    void choosesAndSorts();
    void refusesWhatItDoesNotUnderstand_data();
    void refusesWhatItDoesNotUnderstand();
    void saysWhatEachObjectIs_data();
    void saysWhatEachObjectIs();
    void showsTheFirstOfTooMany();
};

void TestObjectRows::choosesAndSorts_data()
{
    QTest::addColumn<QByteArray>("filter");
    QTest::addColumn<ObjectOrder>("order");
    QTest::addColumn<QString>("rows");
    const auto row = [](const char* filter, const QString& rows, ObjectOrder order = {}) {
        QTest::addRow("%s, by %d%s", filter, int(order.column), order.isDescending ? " down" : "")
            << QByteArray(filter) << order << rows;
    };
    const ObjectOrder number{ObjectColumn::isNumber, false};
    row("", u"1.1 2.1 3.1 3.2 4.1 5.1 6.1 7.1 8.1 9.1"_s, number);
    row("17 3", u"3.1 3.2"_s);
    row("2-4 v:1", u"2.1 3.1 4.1"_s, number);
    row("font", u"3.1 6.1 3.2"_s);
    row("TYPE:Font", u"3.1 3.2"_s);
    row("type:font type:pages", u"2.1 3.1 3.2"_s, number);
    row("font state:replaced", u"3.1"_s);
    row("v>1", u"3.2"_s);
    row("v<=1 font", u"3.1 6.1"_s);
    row("gen>=7 ", u""_s);
    row("size>150", u"6.1"_s);
    row("offset<16", u"1.1"_s);
    row("font", u"6.1 3.1 3.2"_s, {ObjectColumn::isSize, true});
    row("font", u"3.1 3.2 6.1"_s, {ObjectColumn::isKind, false});
    row("font", u"6.1 3.1 3.2"_s, {ObjectColumn::isKind, true});
    row("font", u"6.1 3.2 3.1"_s, {ObjectColumn::isState, false});
    row("9223372036854775807", u""_s);
    row("in:6", u"7.1 9.1 8.1"_s, {ObjectColumn::isContainer, false});
    row("in<6", u""_s);
    row("in>=6 form", u"7.1"_s);
    row("1-8 unreachable", u"8.1"_s, number);
    row("state:unused 1-8", u"8.1"_s, number);
    row("state:freed", u"4.1"_s);
    row("state:unreadable", u"9.1"_s);
    row("uses:2", u"1.1"_s);
    row("state:current 1-9", u"1.1 2.1 3.2 5.1 6.1 7.1"_s, number);
    row("1-9", u"1.1 2.1 5.1 6.1 3.2 7.1 8.1 9.1 4.1 3.1"_s, {ObjectColumn::isState, false});
    row("7-9", u"7.1 8.1 9.1"_s, {ObjectColumn::isUses, true});
    row("7-9", u"8.1 9.1 7.1"_s, {ObjectColumn::isKind, false});
}

void TestObjectRows::choosesAndSorts()
{
    QFETCH(QByteArray, filter);
    QFETCH(ObjectOrder, order);
    QFETCH(QString, rows);
    PdfBuilder builder;
    builder.addPage("One").addObject(
        "<< /Type /FontDescriptor /Padding (" + std::string(200, 'x') + ") >>");
    builder.addUpdate(3, "<< /Type /Font /Later 1 >>");
    ObjectFacts facts = factsOf(builder.bytes());
    CrossReference table;
    table.kinds = {"", "Form", "Font"};
    table.members = {{7, 6, 0, 1, 0}, {8, 6, 2, 0, 1}, {9, 6, 1, 0, 1, false}};
    table.references = {2};
    table.freed = {{builder.bytes().rfind("xref\n"), 4}};
    table.roots = {1, 7};
    facts.tabled = tabled(facts.catalog(), table);
    facts.connections
        = ObjectConnections::of({facts.source, facts.states, facts.kinds, facts.tabled});
    QCOMPARE(rowsOf(facts, filter.constData(), order), rows);
}

void TestObjectRows::refusesWhatItDoesNotUnderstand_data()
{
    QTest::addColumn<QByteArray>("mistakes"); // of the filter, which is no more
    for (const char* text :
        {"foo:bar", "size>abc", "size>", "state:new", "17x", "17-", ":", "size>>2", "v:-1",
            "99999999999999999999", "type:", "type>font", "state>replaced", "=5"})
        QTest::addRow("%s", text) << QByteArray(text);
}

void TestObjectRows::refusesWhatItDoesNotUnderstand()
{
    QFETCH(QByteArray, mistakes);
    const auto reading = readObjectFilter("font " + mistakes.toStdString() + " 17");
    QCOMPARE(reading.mistakes, std::vector{mistakes.toStdString()});
}

void TestObjectRows::saysWhatEachObjectIs_data()
{
    QTest::addColumn<QByteArray>("file");
    PdfBuilder versions;
    for (int version = 0; version < 1000; ++version)
        versions.addPage().addUpdate(3, "<< /Type /Version" + std::to_string(version) + " >>");
    QTest::addRow("an object replaced in each of 1,000 versions")
        << QByteArray::fromStdString(versions.bytes());
    const auto row
        = [](const char* name, const QByteArray& bytes) { QTest::addRow("%s", name) << bytes; };
    row("numbers that no table has room for",
        "0 0 obj\n1\nendobj\n99999999999 0 obj\n<< /Type /Far >>\nendobj\n%%EOF\n"
        "99999999999 0 obj\n2\nendobj\n-4 0 obj\n3\nendobj\n-4 0 obj\n3\nendobj\n");
    row("twice in one version", "1 0 obj\n1\nendobj\n1 0 obj\n2\nendobj\n1 0 obj\n3\nendobj\n");
    row("lines that are two objects", "1 0 obj\n1\nendobj\nendobj\n2 0 obj\n<<");
    QByteArray trailers;
    for (int trailer = 0; trailer < 20'000; ++trailer)
        trailers += "trailer\n<< /Size 1 >>\nstartxref\n%%EOF\n";
    row("many trailers", trailers);
    row("nothing", "");
}

/// For all objects at once what is otherwise found out for one.
void TestObjectRows::saysWhatEachObjectIs()
{
    QFETCH(QByteArray, file);
    const ObjectFacts facts = factsOf(file.toStdString());
    const pdfObjectCatalog& catalog = facts.catalog();
    std::size_t rows = 0;
    for (std::size_t index = 0; index < catalog.size(); ++index) {
        const pdfObject object = catalog.object(index);
        QCOMPARE(facts.kinds->kind(index), objectKind(catalog, object));
        const std::vector<pdfObject> all = object.objNo() == trailerNumber
            ? std::vector{object}
            : catalog.findAll(object.objNo());
        const bool isRow = std::any_of(
            all.begin(), all.end(), [index](const pdfObject& one) { return one.index() == index; });
        QCOMPARE(facts.states->isRepetition(index), !isRow);
        if (!isRow)
            continue;
        ++rows;
        QCOMPARE(std::int64_t{facts.states->nextVersion(index)},
            objectState(catalog, object).replacedIn.value_or(0));
    }
    QCOMPARE(facts.states->count(), rows);
}

void TestObjectRows::showsTheFirstOfTooMany()
{
    constexpr auto most = std::int64_t{ObjectRows::mostShown};
    std::string file;
    constexpr std::int64_t count = 1'200'000; // numbered from the last one down
    for (std::int64_t number = count; number > 0; --number)
        file += std::to_string(number) + " 0 obj\nendobj\n";
    const ObjectFacts facts = factsOf(file);
    for (const bool isDescending : {false, true}) {
        const ObjectRows rows = makeObjectRows(facts, {}, {ObjectColumn::isNumber, isDescending});
        QCOMPARE(rows.matching, std::size_t{count});
        QCOMPARE(rows.shown.size(), ObjectRows::mostShown);
        const auto number
            = [&](std::uint32_t index) { return facts.catalog().object(index).objNo(); };
        QCOMPARE(number(rows.shown.front()), isDescending ? count : 1);
        QCOMPARE(number(rows.shown.back()), isDescending ? count + 1 - most : most);
    }
}

QTEST_APPLESS_MAIN(TestObjectRows)

#include "tst_ObjectRows.moc"
