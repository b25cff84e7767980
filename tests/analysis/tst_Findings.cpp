#include "analysis/Findings.h"
#include "analysis/SourceText.h"

#include "support/PdfBuilder.h"

#include <QtTest>

#include <set>

using namespace tarnwick;

/// What a check says of files, and that it says nothing of sound ones.
class TestFindings : public QObject
{
    Q_OBJECT

private slots:
    void saysWhatIsThere_data();
    void saysWhatIsThere();
    void findsWhatIsNotListed();
    void keepsSomeAndCountsAll();
    void namesEachRuleOnce();
};

namespace {

SourceText scanned(const std::string& bytes)
{
    SourceText source(SharedBytes::ofString(bytes));
    source.makeListing(false);
    return source;
}

QString codesOf(const Findings& findings)
{
    QStringList codes;
    for (const Finding& finding : findings.list) {
        const std::string_view name = ruleOf(finding.code).name;
        codes.append(QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size())));
    }
    return codes.join(u' ');
}

std::string replaced(std::string text, const std::string& what, const std::string& by)
{
    const std::size_t place = text.find(what);
    if (place != std::string::npos)
        text.replace(place, what.size(), by);
    return text;
}

PdfBuilder document(PdfBuilder::Xref kind = PdfBuilder::Xref::isTable)
{
    PdfBuilder builder;
    builder.setXref(kind).addPage("text");
    return builder;
}

/// A file of which object 9 is this; what stands around it is sound.
std::string withObject(const std::string& body)
{
    PdfBuilder builder = document();
    builder.addObject(body);
    return builder.bytes();
}

} // namespace

void TestFindings::saysWhatIsThere_data()
{
    QTest::addColumn<std::string>("file");
    QTest::addColumn<QString>("codes");
    const auto row = [](const char* name, const std::string& file, const char* codes) {
        QTest::newRow(name) << file << QString::fromLatin1(codes);
    };
    const std::string sound = document().bytes();
    const std::string saved = document().addUpdate(1, "<< /Type /Catalog /Pages 2 0 R >>").bytes();
    row("a sound file", sound, "");
    row("a sound file with a save", saved, "");
    row("streams for all", document(PdfBuilder::Xref::isStream).bytes(), "objects-hidden");
    row("nothing", "", "no-header no-marker no-startxref");
    row("bytes before the header, all counted from it", "junk\n" + sound, "bytes-before-header");
    row("blank lines behind the marker", sound + "\r\n \n\n", "");
    row("bytes behind the marker", sound + std::string(3, '\0'), "bytes-behind-marker");
    row("no startxref", replaced(sound, "startxref", "startxxxx"), "no-startxref");
    row("no number behind startxref", replaced(sound, "startxref\n", "startxref\nx"),
        "startxref-elsewhere");
    row("a startxref into the middle", replaced(sound, "startxref\n", "startxref\n1"),
        "startxref-elsewhere");
    row("a table that ends early", replaced(sound, "xref\n0 ", "xref\n0 1"), "table-broken");
    row("objects moved", replaced(sound, "%PDF-1.7", "%PDF-1.7\n%moved"),
        "startxref-elsewhere table-entry-elsewhere table-entry-elsewhere table-entry-elsewhere "
        "table-entry-elsewhere table-entry-elsewhere");
    row("an entry that says 0", replaced(sound, "0000000015 00000 n", "0000000000 00000 n"),
        "table-entry-elsewhere");
    row("Prev to nowhere", replaced(saved, "/Prev ", "/Prev 1"), "prev-elsewhere");
    const std::size_t prev = saved.find("/Prev ") + 6;
    const std::string last = saved.substr(saved.rfind("startxref") + 10);
    row("Prev in a ring",
        std::string(saved).replace(prev, saved.find_first_not_of("0123456789", prev) - prev,
            last.substr(0, last.find('\n'))),
        "prev-loop");
    row("a length too short", withObject("<</Length 1>>\nstream\nabc\nendstream"),
        "length-differs");
    row("a length that counts the line end", withObject("<</Length 4>>\nstream\nabc\nendstream"),
        "");
    row("a length elsewhere that is too short",
        withObject("<</Length 8 0 R>>\nstream\nabc\nendstream\nendobj\n8 0 obj\n1"),
        "length-differs");
    row("one that may be another in an object stream",
        withObject("<</Length 8 0 R>>\nstream\nabc\nendstream\nendobj\n8 0 obj\n1\nendobj\n"
                   "9 0 obj\n<</Type/ObjStm/N 1/Length 0>>\nstream\n\nendstream"),
        "objects-hidden");
    row("a table with a stream beside it", replaced(sound, "/Root", "/XRefStm 9 /Root"), "hybrid");
    row("a stream without end", withObject("<</Length 3>>\nstream\nabc\n"), "object-not-listed");
    row("a marker in a stream", withObject("<</Length 5>>\nstream\n%%EOF\nendstream"),
        "marker-in-object");
    row("two objects of a number", withObject("1\nendobj\n7 0 obj\n2\nendobj\n7 0 obj\n3"),
        "object-twice");
    row("a file within a file is data",
        withObject(
            "<</Length " + std::to_string(sound.size()) + ">>\nstream\n" + sound + "\nendstream"),
        "marker-in-object");
    row("an object on one line", withObject("1\nendobj 7 0 obj 2\nendobj"), "object-not-listed");
    row("an object behind a comment with a word of structure",
        withObject("1 % a stream\nendobj\n7 0 obj\n2\nendobj\n8 0 obj\n<<>>\nstream\nendstream"),
        "object-not-listed object-not-listed");
    row("what acts", withObject("[<</S/JavaScript>><</S/L#61unch>><</S/SubmitForm>>(/S/Launch)]"),
        "javascript launch submit-form");
    row("what acts in an object that is not listed",
        withObject("1\nendobj 7 0 obj <</S/Launch>>\nendobj"), "object-not-listed launch");
    row("a linearized file whose first object is on one line",
        "%PDF-1.7\n1 0 obj<</Linearized 1/L 3>>endobj\n" + sound.substr(9),
        "startxref-elsewhere table-entry-elsewhere table-entry-elsewhere table-entry-elsewhere "
        "table-entry-elsewhere table-entry-elsewhere object-not-listed linearized");
    row("a file embedded", withObject("<</Type/EmbeddedFile/Length 0>>\nstream\n\nendstream"),
        "embedded-file");
    row("a file embedded, named before it stands",
        withObject(
            "<</EF<</F 7 0 R>>>>\nendobj\n7 0 obj\n<</Type/EmbeddedFile/Length 0>>\nstream\n\n"
            "endstream"),
        "embedded-file");
    row("a file embedded that does not say so", withObject("<</EF<</F 7 0 R>>>>"), "embedded-file");
    row("encrypted", replaced(sound, "/Root", "/Encrypt 9 0 R/Root"), "encrypted");
}

void TestFindings::saysWhatIsThere()
{
    QFETCH(std::string, file);
    QFETCH(QString, codes);
    const Findings findings = findFacts(scanned(file).theCatalog());
    QCOMPARE(codesOf(findings), codes);
    QVERIFY(findings.isComplete);
    for (const Finding& finding : findings.list)
        QVERIFY(finding.offset <= file.size());
}

void TestFindings::findsWhatIsNotListed()
{
    const std::string file = "%PDF\n1 0 obj << /A 1 >> endobj 2 0 obj 3 endobj\n"
                             "4 0 obj\n1 % streams\nendobj\n5 0 obj\n2\nendobj\n6 0 "
                             "obj\n<<>>\nstream\nendstream\nendobj\n"
                             "7\n0\nobj\n8\nendobj\n";
    const SourceText source = scanned(file);
    for (const auto& [number, text] : {std::pair(1, "1 0 obj << /A"), {2, "2 0 obj 3"},
             {5, "5 0 obj\n2\n"}, {7, "7\n0\nobj\n8"}}) {
        const std::optional<ByteRange> range = findUnlisted(source.theCatalog(), number);
        QVERIFY2(range && range->end <= file.size(), text);
        QVERIFY2(
            std::string_view(file).substr(range->begin, range->size()).starts_with(text), text);
    }
    QVERIFY2(!findUnlisted(source.theCatalog(), 4), "is listed");
    QVERIFY(!findUnlisted(source.theCatalog(), 9));
}

void TestFindings::keepsSomeAndCountsAll()
{
    std::string file = "%PDF-1.7\n";
    for (std::size_t number = 0; number < Findings::mostKept + 5; ++number)
        file += "9 0 obj\n<</S/Launch>>\nendobj\n";
    const Findings findings = findFacts(scanned(file + "%%EOF\n").theCatalog());
    const auto count
        = [&](FindingCode code) { return findings.counts.at(static_cast<std::size_t>(code)); };
    QCOMPARE(count(FindingCode::isLaunch), Findings::mostKept + 5);
    QCOMPARE(count(FindingCode::isObjectTwice), Findings::mostKept + 4);
    QCOMPARE(findings.list.size(), 2 * Findings::mostKept + 1);
}

void TestFindings::namesEachRuleOnce()
{
    std::set<std::string_view> names;
    for (std::size_t code = 0; code < findingCodeCount; ++code) {
        const FindingRule& rule = ruleOf(static_cast<FindingCode>(code));
        QCOMPARE(static_cast<std::size_t>(rule.code), code);
        QVERIFY(names.insert(rule.name).second);
    }
}

QTEST_APPLESS_MAIN(TestFindings)
#include "tst_Findings.moc"
