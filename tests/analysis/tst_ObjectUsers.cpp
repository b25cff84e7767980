#include "analysis/NameSearch.h"
#include "analysis/ObjectKind.h"
#include "analysis/ObjectUsers.h"
#include "analysis/SourceText.h"
#include "analysis/SourceTree.h"
#include "analysis/StoredStream.h"

#include "support/Rows.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using namespace tarnwick;

/// Who refers to an object, and what objects are.
class TestObjectUsers : public QObject
{
    Q_OBJECT

private slots:
    void countsOnlyCode_data();
    void countsOnlyCode();
    void tellsAtOnceAndStops();
    void keepsSomeAndCountsAll();
    void namesKinds_data();
    void namesKinds();
    void findsStreams_data();
    void findsStreams();
    void tellsTheWay();
    void tellsWhatWasReplaced();
    void followsFromTheTrailer_data();
    void followsFromTheTrailer();
    void seesWhatIsHidden();
};

namespace {

SourceText scanned(const std::string& bytes)
{
    SourceText source(SharedBytes::ofString(bytes));
    source.makeListing(false);
    return source;
}

} // namespace

using CountsOnlyCode = Rows<QByteArray, QString>;

void TestObjectUsers::countsOnlyCode_data()
{
    const CountsOnlyCode row;
    const auto object
        = [](const QByteArray& body) { return QByteArray("3 0 obj\n" + body + "\nendobj\n"); };
    row("nobody", "", "");
    row("a value", object("<</A 7 0 R>>"), "3");
    row("itself, twice", "7 0 obj\n[7 0 R 7 0 R]\nendobj\n", "7 7");
    row("another generation and another number", object("[7 2 R 17 0 R 70 0 R]"), "3");
    row("broken over lines", object("[7\r\n0\r\nR]"), "3");
    row("zeros before it", object("[007 0 R]"), "3");
    row("a string", object("<</A (see 7 0 R) /B 7 0 R>>"), "3");
    row("a string in brackets within", object("<</A (a\\) (b) 7 0 R) /B (%) /C 7 0 R>>"), "3");
    row("a comment", object("<</A 1 % 7 0 R\n/B 7 0 R>>"), "3");
    row("a stream", object("<</L 7 0 R>>\nstream\n[7 0 R]\nendstream"), "3");
    row("a dictionary beside the word stream", object("<</L 7 0 R>>stream\n[7 0 R]\nendstream"),
        "3");
    row("metadata in the open", object("<</Subtype/XML/L 7 0 R>>\nstream\n<a>7 0 R</a>\nendstream"),
        "3");
    row("a key that only sounds like one", object("<</Params 7 0 R/Beam 7 0 R>>"), "3 3");
    row("behind the end of an object that the listing goes on with",
        object("1 % streams\nendobj\n4 0 obj\n[7 0 R]") + object("<<>>\nstream\nendstream"), "?");
    row("a trailer", "trailer\n<</Root 7 0 R>>\nstartxref\n0\n%%EOF\n", "8000001");
    row("an object without end", "3 0 obj\n[7 0 R]\n", "?");
    row("a string that is not closed ends with its object", object("(7 0 R") + object("[7 0 R]"),
        "3");
    row("a record that is made again", object("[7 0 R]") + "startxref\n", "3");
    row("two saves", object("[7 0 R]") + "%%EOF\n" + object("[7 0 R]"), "3 3");
    row("the file's first bytes", "7 0 R", "?");
    row("behind ten thousand objects",
        QByteArray(object("[1 0 R]")).repeated(10000) + object("[7 0 R]"), "3");
}

void TestObjectUsers::countsOnlyCode()
{
    const auto [file, users] = CountsOnlyCode::fetch();
    const SourceText source = scanned(file.toStdString());
    const ObjectUses uses = ObjectUsers(source.theCatalog()).find(7);
    QStringList found;
    for (const ObjectUse& use : uses.uses)
        found.append(
            use.user ? QString::number(source.theCatalog().object(*use.user).objNo()) : u"?"_s);
    QCOMPARE(found.join(u' '), users);
    QCOMPARE(uses.count, uses.uses.size());
    QVERIFY(uses.isComplete);
}

void TestObjectUsers::tellsAtOnceAndStops()
{
    std::string file = "1 0 obj\n[7 0 R]\nendobj\n";
    file.resize(std::size_t{64} << 20, ' ');
    const SourceText source = scanned(file + "[7 0 R]");
    std::stop_source stop;
    std::vector<std::size_t> counts;
    const ObjectUses uses = ObjectUsers(source.theCatalog())
                                .find(
                                    7,
                                    [&](const ObjectUses& soFar, std::size_t done) {
                                        counts.push_back(soFar.count);
                                        QVERIFY(done < file.size() / 2);
                                        stop.request_stop();
                                    },
                                    stop.get_token());
    QCOMPARE(counts, std::vector<std::size_t>{1});
    QCOMPARE(uses.count, std::size_t{1});
    QVERIFY(!uses.isComplete);
}

void TestObjectUsers::keepsSomeAndCountsAll()
{
    std::string file = "1 0 obj\n(a) [";
    for (std::size_t use = 0; use < ObjectUses::mostKept + 5; ++use)
        file += "7 0 R ";
    const SourceText source = scanned(file + "]\nendobj\n");
    const ObjectUses uses = ObjectUsers(source.theCatalog()).find(7);
    QCOMPARE(uses.count, ObjectUses::mostKept + 5);
    QCOMPARE(uses.uses.size(), ObjectUses::mostKept);
}

using NamesKinds = Rows<QString, QString>;

void TestObjectUsers::namesKinds_data()
{
    const NamesKinds row;
    row("a type", "<</Type/Page/Annots[<</Type/Annot>>]>>", "Page");
    row("spelled with a code", "<< /Ty#70e /Fo#6Et >>", "Font");
    row("an XObject", "<</Type/XObject/Subtype/Image>>stream\nendstream", "Image");
    row("an image without type", "<</Subtype /Image>>", "Image");
    row("an annotation without type", "<</Subtype/Link/Rect[0 0 1 1]>>", "Annot");
    row("an action", "<</S/JavaScript/JS(x)>>", "Action");
    row("a type within a value is not its own", "<</A<</Type/Font>>/B[/Type/Page]>>", "Dictionary");
    row("a stream that says nothing", "<</Length 3>>\nstream\nabc\nendstream", "Stream");
    row("an array", "[/Type /Page]", "Array");
    row("a number", "12", "Number");
    row("a string", "(/Type /Page)", "String");
    row("nothing", "", "");
    row("a type to surprise a terminal", "<</Type/#1B#5B2J>>", "?[2J");
}

void TestObjectUsers::namesKinds()
{
    const auto [body, kind] = NamesKinds::fetch();
    const SourceText source = scanned("3 0 obj\n" + body.toStdString() + "\nendobj\n");
    const pdfObjectCatalog& catalog = source.theCatalog();
    QCOMPARE(QString::fromStdString(objectKind(catalog, catalog.object(0))), kind);
}

using FindsStreams = Rows<std::string, QByteArray, StoredStream::End>;

void TestObjectUsers::findsStreams_data()
{
    const FindsStreams row;
    using End = StoredStream::End;
    row("as long as it says", "<</Length 3>>\nstream\r\nabc\r\nendstream", "abc", End::isLength);
    row("the keyword within", "<</Length 11>>stream\nendstream a\nendstream", "endstream a",
        End::isLength);
    row("too short a length", "<</Length 2>>\nstream\nabc\nendstream", "abc", End::isKeyword);
    row("too long a length", "<</Length 999999999999999999999>>\nstream\nabc\r\nendstream", "abc",
        End::isKeyword);
    row("no length", "<<>>\nstream\nabcendstream", "abc", End::isKeyword);
    row("a negative one", "<</Length -3>>\nstream\nabc\nendstream", "abc", End::isKeyword);
}

void TestObjectUsers::findsStreams()
{
    const auto [body, data, end] = FindsStreams::fetch();
    const std::string file = "3 0 obj\n" + body + "\nendobj\n";
    const SourceText source = scanned(file);
    const ByteRange range = source.theCatalog().object(0).range();
    const ObjectSource object(file, range);
    const StoredStream stream = findStream(file, range, object, object.integer("Length"));
    QCOMPARE(QByteArray::fromStdString(file.substr(stream.range.begin, stream.range.size())), data);
    QVERIFY(stream.end == end);
}

void TestObjectUsers::tellsTheWay()
{
    std::string deep;
    for (int level = 0; level < 100; ++level)
        deep += '[';
    const std::string file = "3 0 obj\n<< /A 1 0 R /B [2 [3 0 R] << /C (4 0 R) /D#20E 5 0 R >>] /F "
        + deep + "6 0 R\nendobj\n";
    const SourceText source = scanned(file);
    const ObjectSource object(file, source.theCatalog().object(0).range());
    QStringList ways;
    forEachReference(file, object, [&](const PlacedReference& reference) {
        ways.append(QString::fromStdString(reference.path) + u'='
            + QString::number(reference.token.number));
        return ways.size() < 4;
    });
    const QString cut = u"/F"_s + u"[0]"_s.repeated(31) + u"=6"_s;
    QCOMPARE(ways, (QStringList{u"/A=1"_s, u"/B[1][0]=3"_s, u"/B[2]/D E=5"_s, cut}));
}

void TestObjectUsers::tellsWhatWasReplaced()
{
    std::string file = "5 0 obj\nendobj\n5 0 obj\nendobj\n6 0 obj\nendobj\n%%EOF\n";
    for (int save = 2; save < 1500; ++save)
        file += "%%EOF\n7 0 obj\nendobj\n";
    const SourceText source = scanned(file + "5 0 obj\nendobj\n");
    const pdfObjectCatalog& catalog = source.theCatalog();
    const auto replaced = [&](std::size_t index) {
        return objectState(catalog, catalog.object(index)).replacedIn.value_or(0);
    };
    QCOMPARE(replaced(0), 1);
    QCOMPARE(replaced(1), 1500); // past more versions than are searched
    QCOMPARE(replaced(2), 0);
    QCOMPARE(replaced(3), 4);
    QCOMPARE(replaced(catalog.size() - 1), 0);
}

void TestObjectUsers::followsFromTheTrailer_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("nodes");
    QTest::addColumn<int>("limit");
    const auto row = [](const char* name, const QByteArray& file, const QString& nodes,
                         TreeLimit limit = TreeLimit::isNone) {
        QTest::newRow(name) << file << nodes << static_cast<int>(limit);
    };
    const auto object = [](int number, const QByteArray& body) -> QByteArray {
        return QByteArray::number(number) + " 0 obj\n" + body + "\nendobj\n";
    };
    const QByteArray trailer = "trailer\n<</Root 1 0 R>>\nstartxref\n%%EOF\n";
    row("nothing", "", u"none"_s);
    row("a ring", object(1, "[2 0 R]") + object(2, "[1 0 R 0 0 R 2 0 R]") + trailer,
        u"1:1s 2:2s 3:1l 3:0m 3:2l"_s);
    row("an object twice", object(1, "[2 0 R 2 0 R]") + object(2, "3") + trailer,
        u"1:1s 2:2s 2:2r"_s);
    row("the version of the trailer",
        object(1, "[2 0 R]") + trailer + object(1, "[3 0 R]") + trailer + object(1, "[4 0 R]"),
        u"1:1s 2:3m"_s);
    row("a list stands beside its object",
        object(1, "<</Next 2 0 R/A 3 0 R>>") + object(2, "[]") + object(3, "[]") + trailer,
        u"1:1s 1:2s 2:3s"_s);
    row("a cross-reference stream",
        object(4, "<</Type/XRef/Root 5 0 R>>\nstream\nendstream") + "startxref\n%%EOF\n",
        u"1:5m"_s);
    row("a catalog alone", object(4, "<</Type/Catalog/Pages 5 0 R>>"), u"1:5m"_s);
    QByteArray deep;
    for (int number = 1; number < 200; ++number)
        deep += object(number, '[' + QByteArray::number(number + 1) + " 0 R]");
    row("too deep", deep + trailer, {}, TreeLimit::isDepth);
    QByteArray wide = '[' + QByteArray("2 0 R ").repeated(60000) + ']';
    row("too wide", object(1, wide) + object(2, wide) + trailer, {}, TreeLimit::isNodes);
}

void TestObjectUsers::followsFromTheTrailer()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, nodes);
    QFETCH(int, limit);
    const SourceText source = scanned(file.toStdString());
    const SourceTree tree(source.theCatalog());
    const std::optional<pdfObject> start = tree.start();
    QStringList found;
    TreeLimit reached = TreeLimit::isNone;
    if (start)
        reached = tree.walk(*start, [&](const TreeNode& node) {
            found.append(u"%1:%2"_s.arg(node.depth).arg(node.objNo)
                + QLatin1Char("srlm"[static_cast<std::size_t>(node.kind)]));
        });
    QCOMPARE(static_cast<int>(reached), limit);
    QVERIFY(static_cast<std::size_t>(found.size()) <= SourceTree::mostNodes);
    if (reached == TreeLimit::isNone)
        QCOMPARE(start ? found.join(u' ') : u"none"_s, nodes);
    else
        QVERIFY(static_cast<std::size_t>(found.size()) >= SourceTree::mostDepth);
}

void TestObjectUsers::seesWhatIsHidden()
{
    const SourceText source = scanned(
        "1 0 obj\n<</Type/ObjStm/N 5>>\nstream\n/ObjStm\nendstream\nendobj\n"
        "2 0 obj\n<</Type/Obj#53tm/N 99999999999>>\nendobj\n"
        "4 0 obj<</Type/ObjStm/N 1>>endobj\n3 0 obj\n<</A/ObjStm/B(/Type/ObjStm)/N 7>>\nendobj\n");
    const HiddenObjects hidden = hiddenObjects(source.theCatalog());
    QCOMPARE(hidden.streams, std::size_t{3});
    QCOMPARE(hidden.objects, std::size_t{8388607 + 5 + 1});
}

QTEST_APPLESS_MAIN(TestObjectUsers)
#include "tst_ObjectUsers.moc"
