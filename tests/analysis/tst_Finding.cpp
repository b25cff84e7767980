#include "analysis/ReferenceScan.h"
#include "analysis/SourceLexer.h"
#include "analysis/SourceText.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using namespace tarnwick;

/// Finding one's way in a file's source: references in lines, objects by number and by offset,
/// lines by offset.
class TestFinding : public QObject
{
    Q_OBJECT

private slots:
    void seesReferences_data();
    void seesReferences();
    void readsNoFurtherThanNeeded();
    void takesSourceApart_data();
    void takesSourceApart();
    void findsObjects();
    void findsEveryObjectOfAnyText();
    void findsLinesAndTheWayBack();
};

namespace {

QString describe(const ScannedReference& found)
{
    QString text
        = u"%1-%2:%3 %4"_s.arg(found.begin).arg(found.end).arg(found.objNo).arg(found.objGen);
    return found.objVer ? text + u" v%1"_s.arg(*found.objVer) : text;
}

QString describe(const std::vector<ScannedReference>& found)
{
    QStringList texts;
    for (const ScannedReference& one : found)
        texts.append(describe(one));
    return texts.join(u',');
}

SourceText scanned(const std::string& bytes)
{
    SourceText source(SharedBytes::ofString(bytes));
    source.makeListing(true);
    return source;
}

} // namespace

void TestFinding::seesReferences_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isList");
    QTest::addColumn<QString>("expected");
    const auto source = [](const char* name, const char* text, const char* expected) {
        QTest::newRow(name) << QString::fromLatin1(text) << false << QString::fromLatin1(expected);
    };
    const auto list = [](const char* name, const char* text, const char* expected) {
        QTest::newRow(name) << QString::fromLatin1(text) << true << QString::fromLatin1(expected);
    };
    source("one", "/Root 17 0 R", "6-12:17 0");
    source("several in brackets", "[1 0 R 2 3 R]", "1-6:1 0,7-12:2 3");
    source("numbers before it", "0 0 17 0 R", "4-10:17 0");
    source("no blank between", "/A/B<</C>>17 0 R/D", "10-16:17 0");
    source("broken over lines", "17\r\n 0\nR", "0-8:17 0");
    source("object 0", "0 0 R", "0-5:0 0");
    source("a number of eleven digits", "99999999999 0 R", "0-15:99999999999 0");
    source("a number that nothing holds", "99999999999999999999 0 R", "0-24:9223372036854775807 0");
    source("a colour is none", "1 0 0 RG", "");
    source("a sign makes none", "-17 0 R", "");
    source("a fraction makes none", "1.7 0 R", "");
    source("a word makes none", "Im17 0 R", "");
    source("a letter alone is none", "R 0 R", "");
    source("parts stand apart", "17 0R", "");
    source("a separator of lines alone is no blank", "17\v0 R", "");
    list("of a page", "3 0 2 Page, Parent (2, 0, 2), Content (4, 1, 2)",
        "19-28:2 0 v2,38-47:4 1 v2");
    list("kids", "Kids [(3, 0, 1), (4, 0, 1)]", "6-15:3 0 v1,17-26:4 0 v1");
    list("source is none in a list", "9 0 1 << /A 4 0 R (1,2,3) >>", "");
    list("a negative number", "(-3, 0, 1)", "");
}

void TestFinding::seesReferences()
{
    QFETCH(QString, text);
    QFETCH(bool, isList);
    QFETCH(QString, expected);
    const std::u16string wide = text.toStdU16String();
    const auto find = [&](std::size_t begin, std::size_t count) {
        return isList ? ReferenceScan::inObjectList(wide, begin, count)
                      : ReferenceScan::inSource(wide, begin, count);
    };
    const std::vector<ScannedReference> all = find(0, wide.size());
    QCOMPARE(describe(all), expected);
    if (!isList)
        QCOMPARE(describe(ReferenceScan::inSource(text.toLatin1().toStdString(), 0, wide.size())),
            expected);
    // Every position and every stretch of three finds what the whole line has there.
    for (std::size_t position = 0; position <= wide.size(); ++position) {
        const auto at = isList ? ReferenceScan::listReferenceAt(wide, position)
                               : ReferenceScan::sourceReferenceAt(wide, position);
        std::optional<ScannedReference> there;
        std::vector<ScannedReference> touched;
        for (const ScannedReference& one : all) {
            if (one.begin <= position && position <= one.end)
                there = one;
            if (one.begin < std::min(position + 3, wide.size()) && position < one.end)
                touched.push_back(one);
        }
        QVERIFY2(at == there, qPrintable(QString::number(position)));
        QCOMPARE(describe(find(position, 3)), describe(touched));
    }
}

void TestFinding::readsNoFurtherThanNeeded()
{
    const std::string blanks(ReferenceScan::reach, ' ');
    QVERIFY(!ReferenceScan::sourceReferenceAt("17" + blanks + "0 R", 0));
    QVERIFY(ReferenceScan::sourceReferenceAt("17" + blanks.substr(5) + "0 R", 0));
    const std::string digits(ReferenceScan::reach, '1');
    QVERIFY2(!ReferenceScan::sourceReferenceAt(digits + digits + " 0 R", 2 * digits.size() + 3),
        "what stands before the digits is not known");
}

void TestFinding::takesSourceApart_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("tokens");
    const auto row = [](const char* name, const char* source, const char* tokens) {
        QTest::newRow(name) << QString::fromLatin1(source) << QString::fromLatin1(tokens);
    };
    row("a dictionary", "<</A/B#20C[1 -2 .5]/D(x)>>", "<< /A /B#20C [ i1 i-2 r.5 ] /D s(x) >>");
    row("references", "[1 0 R 5 6 7 R 0 R]", "[ R1 i5 R6 i0 kR ]");
    row("a comment between", "1 % 2 0 R\n0 R", "R1");
    row("strings hide", "(a(2 0 R)\\)b)<41>(c", "s(a(2 0 R)\\)b) h<41> s(c");
    row("damage", "> ) 1-2 +. --1 <", "k> k) k1-2 k+. k--1 h<");
    row("words", "17 0 obj<<>>stream", "i17 i0 kobj << >> kstream");
}

void TestFinding::takesSourceApart()
{
    QFETCH(QString, source);
    QFETCH(QString, tokens);
    const std::string text = source.toStdString();
    SourceLexer lexer(text, 0, text.size());
    QStringList found;
    for (SourceToken token = lexer.next(); token.kind != TokenKind::isEnd; token = lexer.next()) {
        // A prefix for what its text does not tell.
        constexpr const char* prefixes[] = {"", "", "", "", "", "", "i", "r", "s", "h", "R", "k"};
        const QString prefix = QLatin1String(prefixes[static_cast<std::size_t>(token.kind)]);
        found.append(token.kind == TokenKind::isReference ? prefix + QString::number(token.number)
                                                          : prefix
                    + source.mid(static_cast<qsizetype>(token.begin),
                        static_cast<qsizetype>(token.end - token.begin)));
    }
    QCOMPARE(found.join(u' '), tokens);
    QCOMPARE(nameText("/B#20C#4"), std::string("B C#4"));
}

void TestFinding::findsObjects()
{
    std::string file = "5 0 obj\na\nendobj\n5 0 obj\nb\nendobj\nstartxref\n%%EOF\n";
    for (int save = 2; save <= 3000; ++save)
        file += save % 2 == 0 ? "7 0 obj\nx\nendobj\n%%EOF\n" : "%%EOF\n";
    file += "5 1 obj\nc\nendobj\ntrailer\nd\nstartxref\n";
    const SourceText source = scanned(file);
    const pdfObjectCatalog& catalog = source.theCatalog();
    const auto text = [](const std::optional<pdfObject>& object) {
        return object ? std::string(object->theText()) : std::string("none");
    };
    QCOMPARE(text(catalog.find(5)), std::string("c"));
    QVERIFY2(text(catalog.find(5, 3000)) == "b", "over more versions than are searched");
    QCOMPARE(catalog.find(5, 1)->index(), std::size_t{1}); // not the one made at startxref
    QCOMPARE(catalog.find(7, 5)->objVer(), 4);
    QCOMPARE(catalog.find(trailerNumber)->objVer(), 3001);
    for (const auto& [number, version] :
        {std::pair<std::int64_t, int>{7, 1}, {5, 0}, {0, 9}, {99999999999, 9}, {-1, 9}})
        QCOMPARE(text(catalog.find(number, version)), std::string("none"));
    QStringList all;
    for (const pdfObject& object : catalog.findAll(5))
        all.append(QString::fromStdString(text(object)));
    QCOMPARE(all.join(u' '), u"a b c"_s);
    QCOMPARE(catalog.findAll(7).size(), std::size_t{1500});
    QVERIFY(catalog.findAll(6).empty());
}

/// Whatever the order of objects and the records that share lines.
void TestFinding::findsEveryObjectOfAnyText()
{
    const SourceText source
        = scanned("junk\nendobj\n3 0 obj\nx\nendobj\nendobj\n1 0 obj\n" + std::string(5000, 'y')
            + "\nendobj\n2 0 obj\nstream\nendobj\nendstream\nendobj\n%%EOF\n1 0 obj\nendobj\n");
    const pdfObjectCatalog& catalog = source.theCatalog();
    QCOMPARE(catalog.size(), std::size_t{6});
    for (std::size_t index = 0; index < catalog.size(); ++index) {
        const pdfObject object = catalog.object(index);
        QCOMPARE(catalog.listedObject(catalog.listIndex(object)).index(), index);
        QCOMPARE(catalog.recordAt(object.range().end - 1)->index(), index);
        QVERIFY(catalog.find(object.objNo(), object.objVer()));
    }
    QVERIFY(!catalog.recordAt(catalog.object(3).range().end)); // in the line of "endobj"
    QVERIFY(!catalog.recordAt(source.theString().size()));

    const std::string_view value = "1 0 obj\n[ 2 0 R ]"; // in part on the line that ends it
    const SourceText ended = scanned(std::string(value) + "endobj\n2 0 obj\n<< >>\nendobj\n");
    QCOMPARE(ended.theCatalog().object(0).range().end, value.size());
    QCOMPARE(ended.theCatalog().recordAt(value.size() - 1)->index(), std::size_t{0});
    QVERIFY(!ended.theCatalog().recordAt(value.size()));
}

void TestFinding::findsLinesAndTheWayBack()
{
    std::string file = "  %PDF\n\n1 0 obj\n<< >>\nstream\n" + std::string(900, 'z')
        + "\nendstream\nendobj\ntrailer\nd\nstartxref\n9\n%%EOF\n";
    for (int line = 0; line < 300; ++line)
        file += "line " + std::to_string(line) + '\n'
            + std::string(static_cast<std::size_t>(line % 20), ' ');
    SourceText source(SharedBytes::ofString(file));
    const StyledText text = source.makeListing(true);
    for (std::size_t line = 0; line + 1 < text.lineCount(); ++line) {
        std::u16string characters;
        text.appendLine(line, 0, std::string::npos, characters);
        const std::string bytes(characters.begin(), characters.end());
        const std::size_t offset = text.offsetOfLine(line).value();
        if (text.objectOfLine(line)) {
            QCOMPARE(text.lineOfObject(*text.objectOfLine(line)), std::optional(line));
        } else if (!bytes.empty() && !bytes.starts_with("[")) {
            QCOMPARE(file.compare(offset, bytes.size(), bytes), 0);
            QCOMPARE(text.lineOfOffset(offset), std::optional(line));
            QCOMPARE(text.lineOfOffset(offset + bytes.size() - 1), std::optional(line));
        }
    }
    // Of the whole stream the line that stands for it; of what stands before the first line that.
    QCOMPARE(text.lineOfOffset(file.find("zzz")), std::optional(std::size_t{3}));
    QCOMPARE(text.lineOfOffset(0), std::optional(std::size_t{0}));
    QCOMPARE(text.lineOfOffset(file.size()), text.lineOfOffset(file.find("line 299")));
    QVERIFY(!text.offsetOfLine(text.lineCount() - 1));
    QVERIFY(!StyledText().lineOfOffset(3));
}

QTEST_APPLESS_MAIN(TestFinding)
#include "tst_Finding.moc"
