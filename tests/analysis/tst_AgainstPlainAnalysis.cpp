#include "support/AnalysisDifferences.h"
#include "support/RandomSource.h"
#include "support/Rows.h"

#include <QTest>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>

using namespace std::string_literals;
using namespace tarnwick;

namespace {

/// Drops stretches of the text for as long as it still fails.
std::string shrunk(std::string text)
{
    for (std::size_t size = text.size() / 2; size > 0; size /= 2)
        for (std::size_t at = 0; at < text.size();) {
            std::string shorter = text;
            shorter.erase(at, size);
            if (analysisDifferences(shorter).empty())
                at += size;
            else
                text = std::move(shorter);
        }
    return text;
}

bool agrees(const std::string& text, const std::string& origin)
{
    if (analysisDifferences(text).empty())
        return true;
    const std::string shorter = shrunk(text);
    qWarning() << origin.c_str() << QByteArray::fromStdString(shorter)
               << analysisDifferences(shorter).c_str();
    return false;
}

} // namespace

/// Holds the analysis against a plain one that follows the same rules step by step.
class TestAgainstPlainAnalysis : public QObject
{
    Q_OBJECT

private slots:
    void listsSource_data();
    void listsSource();
    void describesObjects_data();
    void describesObjects();
    void agreesOnRandomTexts();
    void agreesWhereKeywordsStand();
    void agreesOnBothSidesOfLimits_data();
    void agreesOnBothSidesOfLimits();
    void agreesOnCorpus();
};

using ListsSource = Rows<std::string, std::string>;

void TestAgainstPlainAnalysis::listsSource_data()
{
    const ListsSource row;
    row("nothing", "", "");
    row("one byte", "x", "gx\n");
    row("only line ends", "\n\r\n\v\f\x85", "");
    row("high bytes", "%\xE2\xE3", "g%âã\n");
    row("keywords within words", "an object\nxendobjx\na%%EOFb",
        "dan object\nrxendobjx\n\nra%%EOFb\n\nb0 0 1 \n");
    row("an object", "1 0 obj\n<</Type/Catalog/Pages 2 0 R>>\nendobj",
        "d1 0 obj\ng<</Type/Catalog/Pages 2 0 R>>\nrendobj\n\nr1 0 1 Catalog, Pages (2, 0, 1)\n");
    row("trimmed of every white space", " \t\xA0 x y\xA0\t", "gx y\n");
    row("a NUL is no white space", "\0x\0"s, "g");
    row("a stream of one line", "stream\nhello world\nendstream", "b[…stream length 11…]\n");
    row("a stream of two lines", "stream\nab\ncd\nendstream", "b[…stream length 5…]\n");
    row("CR LF counts two", "stream\r\nab\r\ncd\r\nendstream", "b[…stream length 8…]\n");
    row("white space counts in a stream", "stream\n \t\xA0\nendstream", "b[…stream length 3…]\n");
    row("an empty line of data", "stream\n\nendstream", "b[…stream length 0…]\n");
    row("endstream again shows one less", "stream\nabc\nendstream\nendstream\nendstream\n",
        "b[…stream length 3…]\nb[…stream length 2…]\nb[…stream length 1…]\n");
    row("endstream without a stream", "endstream\nendstream",
        "b[…stream length 0…]\nb[…stream length 0…]\n");
    row("stream within a stream starts again", "stream\nabc\nupstream\nd\nendstream",
        "b[…stream length 1…]\n");
    row("a line with stream and XML in a stream is data", "stream\nab\nstream /XML\nendstream",
        "b[…stream length 14…]\n");
    row("endobj beside endstream is not seen", "1 0 obj\nstream\nx\nendstream endobj\n",
        "d1 0 obj\nb[…stream length 1…]\n");
    row("a stream without end hides the rest", "1 0 obj\nstream\nendobj\n2 0 obj\n%%EOF",
        "d1 0 obj\n");
    row("XML shows", "5 0 obj\n<</Subtype/XML>>\nstream\n<x>\n\n </x>\nendstream\nendobj",
        "d5 0 obj\ng<</Subtype/XML>>\ng<x>\ng</x>\nrendobj\n\nb5 0 1 <</Subtype/XML>>\n");
    row("compressed XML is elided", "<</Subtype/XML/Filter/FlateDecode>>\nstream\nab\nendstream",
        "g<</Subtype/XML/Filter/FlateDecode>>\nb[…stream length 2…]\n");
    row("compressed XML beside its keyword is no stream",
        "<</XML/FlateDecode>>stream\nab\nendstream",
        "g<</XML/FlateDecode>>stream\ngab\nb[…stream length 0…]\n");
    row("XML without a stream shows the next stream",
        "/XML\nendobj\nstream\nab\nendstream\nstream\nab\nendstream",
        "g/XML\nrendobj\n\ngab\nb[…stream length 2…]\nb0 0 1 \n");
    row("a table", "xref\n0 1", "d\nxref\ng0 1\n");
    row("a trailer", "trailer\n<</Size 6 /Root 1 0 R>>\nstartxref\n1234\n%%EOF",
        "d\ntrailer\ng<</Size 6 /Root 1 0 R>>\nd\nstartxref\ng1234\nr%%EOF\n\n"
        "rTrailer 1 , Root (1, 0, 1), Size 6\n");
    row("a trailer on one line is not read", "trailer <</Size 6/Root 1 0 R>>\nstartxref",
        "d\ntrailer <</Size 6/Root 1 0 R>>\nd\nstartxref\nrTrailer 1 , Size 0\n");
    row("a trailer without startxref is no record", "trailer\n<</Size 6>>\n1 0 obj\nendobj",
        "d\ntrailer\ng<</Size 6>>\nd1 0 obj\nrendobj\n\nb1 0 1 \n");
    row("an endobj makes a trailer's record", "trailer\nendobj",
        "d\ntrailer\nrendobj\n\nrTrailer 1 , Size 0\n");
    row("startxref makes the last object's record again", "1 0 obj\nx\nendobj\nstartxref",
        "d1 0 obj\ngx\nrendobj\n\nd\nstartxref\nb1 0 1 x\nb1 0 1 x\n");
    row("startxref without lines makes none", "startxref\nendobj", "d\nstartxref\nrendobj\n\n");
    row("lines before the first object make a record", "%PDF-1.4\nb\nendobj",
        "g%PDF-1.4\ngb\nrendobj\n\nb0 0 1 b\n");
    row("a line that holds obj starts an object", "1 0 obj\n/Subject (an object)\nx\nendobj",
        "d1 0 obj\nd/Subject (an object)\ngx\nrendobj\n\nb0 0 1 x\n");
    row("obj goes before startxref", "a startxref obj", "da startxref obj\n");
    row("a save raises the version", "1 0 obj\nendobj\n%%EOF\n1 0 obj\nendobj\n%%EOF\nstartxref\n",
        "d1 0 obj\nrendobj\n\nr%%EOF\n\nd1 0 obj\nrendobj\n\nr%%EOF\n\nd\nstartxref\n"
        "b1 0 1 \nb1 0 2 \nb1 0 3 \n");
    row("a marker in a stream raises nothing", "1 0 obj\nstream\n%%EOF\nendstream\nendobj",
        "d1 0 obj\nb[…stream length 5…]\nrendobj\n\nb1 0 1 \n");
    row("sorted by version, then number, else as found",
        "3 0 obj\na\nendobj\n1 0 obj\nendobj\n3 0 obj\nb\nendobj\nx\nendobj\nx\n0 x\nendobj",
        "d3 0 obj\nga\nrendobj\n\nd1 0 obj\nrendobj\n\nd3 0 obj\ngb\nrendobj\n\ngx\nrendobj\n\n"
        "gx\ng0 x\nrendobj\n\nb1 0 1 \nb3 0 1 a\nb3 0 1 b\nb3 0 1 b\nb3 0 1 b\n");
}

void TestAgainstPlainAnalysis::listsSource()
{
    const auto [source, expected] = ListsSource::fetch();
    const plain::Analysis analysis = plain::analyse(source);
    if (source[0] != '\0')
        QCOMPARE(shownPieces(analysis.listing) + shownPieces(analysis.objectList), expected);
    QVERIFY(agrees(source, "listing"));
}

using DescribesObjects = Rows<std::string, std::string>;

void TestAgainstPlainAnalysis::describesObjects_data()
{
    const DescribesObjects row;
    row("catalog with all links",
        "1 0 obj\n<< /Type /Catalog\n/Pages 2 0 R\n/Metadata 5 0 R\n/Names 6 0 R\n>>",
        "r1 0 1 Catalog, Pages (2, 0, 1), Metadata (5, 0, 1), Names (6, 0, 1)");
    row("direct Names", "1 0 obj\n/Type /Catalog /Names << /Dests 7 0 R >>",
        "r1 0 1 Catalog, Names (0, 0, 0)");
    row("two spaces", "1 0 obj\n/Type /Catalog\n/Pages  2 0 R", "r1 0 1 Catalog, Pages (0, 2, 1)");
    row("a tab", "1 0 obj\n/Type /Catalog\n/Pages\t2 0 R x", "r1 0 1 Catalog, Pages (0, 0, 1)");
    row("the last key wins", "1 0 obj\n/Type /Catalog /Pages 2 0 R /PagesX 3 0 R",
        "r1 0 1 Catalog, Pages (3, 0, 1)");
    row("all on the header line", "1 0 obj << /Type /Catalog /Pages 2 0 R >>", "r1 0 1 Catalog");
    row("page tree node", "2 0 obj\n<< /Type /Pages\n/Kids [ 3 0 R 4 0 R ]\n/Count 2\n>>",
        "g2 0 1 Pages, Page count 2, Kids [(3, 0, 1), (4, 0, 1)]");
    row("a bracket at the key hides the first kid",
        "2 0 obj\n<</Type/Pages/Kids[3 0 R 4 0 R]/Count 2>>",
        "g2 0 1 Pages, Page count 0, Kids [(0, 0, 1), (4, 0, 1)]");
    row("kids in odd shapes",
        "2 0 obj\n/Type /Pages /Kids [3 R] x [7 0 5 R [ 1 [x [-2 9 R]R /Parent 1 0 R",
        "g2 0 1 Pages, Parent (1, 0, 1), Page count 0, Kids [(3, 0, 1), (7, 5, 1), (-2, 9, 1)]");
    row("kids again", "2 0 obj\n/Type /Pages /Kids [ 3 0\nR\n] /Other [ 8 0 R ]\n/Kids [ 4 0 R ]",
        "g2 0 1 Pages, Page count 0, Kids [(3, 0, 1), (4, 0, 1)]");
    row("kids of too few pieces", "2 0 obj\n/Type /Pages /Kids [1R",
        "g2 0 1 Pages, Page count 0, Kids []");
    row("no kids", "2 0 obj\n/Type /Pages /Kids [] /Count 5 0 R",
        "g2 0 1 Pages, Page count 5, Kids []");
    row("kids over several lines", "2 0 obj\n/Type /Pages /Kids\n[\n3\n0\nR\n4 0 R\n]",
        "g2 0 1 Pages, Page count 0, Kids [(3, 0, 1), (4, 0, 1)]");
    row("page", "3 0 obj\n<< /Type /Page /Parent 2 0 R /Contents 4 0 R >>",
        "d3 0 1 Page, Parent (2, 0, 1), Content (4, 0, 1)");
    row("StructParents is taken as Parent",
        "3 0 obj\n<< /Type /Page /Parent 2 0 R /StructParents 0 >>",
        "d3 0 1 Page, Parent (0, 0, 0)");
    row("contents in an array", "3 0 obj\n/Type /Page /Contents [4 0 R 5 0 R]",
        "d3 0 1 Page, Content (0, 0, 1)");
    row("the later Type line decides", "3 0 obj\n/Type /Catalog\n/Type /Page\n/Type /Font",
        "d3 0 1 Page");
    row("Type and name on two lines", "3 0 obj\n/Type\n/Catalog", "b3 0 1 /Type");
    row("an annotation with Info", "3 0 obj\n/Type /Annot /Info 7 0 R",
        "g3 0 1 Info /Type /Annot /Info 7 0 R");
    row("names", "3 0 obj\n/a\n/Type /Names", "g3 0 1 Names /a");
    row("trailer", "8000001 0 obj\n<< /Size 22 /Root 1 0 R /Info 5 0 R >>\n/Type /Page",
        "rTrailer 1 , Root (1, 0, 1), Info (5, 0, 1), Size 22");
    row("signs", "+5 -0 obj", "b5 0 1 ");
    row("the least number", "-9223372036854775808 007 obj", "b-9223372036854775808 7 1 ");
    row("past the greatest number", "9223372036854775808 9223372036854775807 obj",
        "b0 9223372036854775807 1 ");
    row("no number", "x 0 obj\ny", "b0 0 1 y");
    row("two pieces", "12 obj", "b0 0 1 ");
    row("an empty piece", "12  0 obj", "b12 0 1 ");
    row("120 characters stand whole", "9 0 obj\n" + std::string(120, 'x'),
        "b9 0 1 " + std::string(120, 'x'));
    row("121 are cut", "9 0 obj\n" + std::string(121, 'x'),
        "b9 0 1 " + std::string(120, 'x') + "…");
    row("names are never cut", "9 0 obj\n/Type/Names" + std::string(120, 'x'),
        "g9 0 1 Names /Type/Names" + std::string(120, 'x'));
}

void TestAgainstPlainAnalysis::describesObjects()
{
    const auto [object, expected] = DescribesObjects::fetch();
    QCOMPARE(shownPieces(plain::analyse(object + "\nendobj").objectList), expected + "\n");
    QVERIFY(agrees(object + "\nendobj", "object"));
}

void TestAgainstPlainAnalysis::agreesOnRandomTexts()
{
    const auto count = qEnvironmentVariableIntValue("TARNWICK_RANDOM_TEXTS");
    const std::uint64_t last = count > 0 ? static_cast<std::uint64_t>(count) : 1000;
    for (std::uint64_t seed = 1; seed <= last; ++seed) {
        const std::string ofSeed = " of seed " + std::to_string(seed);
        QVERIFY(agrees(randomSource::soup(seed), "soup" + ofSeed));
        QVERIFY(agrees(randomSource::shuffledLines(seed), "shuffled lines" + ofSeed));
        QVERIFY(agrees(randomSource::damagedFile(seed), "damaged file" + ofSeed));
    }
}

/// Every place of a keyword relative to a block of 64 bytes, in a line of its own letters (so that
/// each place could begin it), in a line of others, and inside a stream.
void TestAgainstPlainAnalysis::agreesWhereKeywordsStand()
{
    for (const std::string keyword : {"endstream", "stream", "endobj", "obj", "%%EOF", "startxref",
             "xref", "trailer", "/XML", "/FlateDecode /XML", "\n", "\xA0"})
        for (std::size_t before = 0; before < 70; ++before)
            for (const char filler : {keyword.front(), keyword.back(), 'x'})
                for (const char* start : {"", "1 0 obj\nstream\n", "1 0 obj\n/XML\n"}) {
                    const std::string text = start + std::string(before, filler) + keyword
                        + std::string(before % 5, filler) + "\ny\nendstream\nendobj\nstartxref";
                    QVERIFY(agrees(text, keyword + " at " + std::to_string(before)));
                }
}

/// Lines, streams and objects are stored in short forms where they are small and stand close.
using AgreesOnBothSidesOfLimits = Rows<std::size_t, std::string (*)(std::size_t)>;

void TestAgainstPlainAnalysis::agreesOnBothSidesOfLimits_data()
{
    const AgreesOnBothSidesOfLimits row;
    row("length of a line", 511, [](std::size_t size) {
        return std::string(size, 'x') + "\nendobj\n" + std::string(2 * size, 'x') + "\ny\n";
    });
    row("distance of lines", 15,
        [](std::size_t size) { return "1 0 obj\n" + std::string(size, ' ') + "x\nendobj\ny\n"; });
    row("length of a stream", 8191, [](std::size_t size) {
        return "1 0 obj\nstream\n" + std::string(size, 'x') + "\nendstream\nendobj\n";
    });
    row("length of a page", 4096, [](std::size_t size) {
        const std::string head = "3 7 obj\n/Type /Page /Parent 2 0 R\n";
        const std::string tail = "\n/Contents 4 0 R\n";
        return head + std::string(size - head.size() - tail.size(), 'x') + tail
            + "endobj\nendobj\n";
    });
    row("length of a node that grows", 4096, [](std::size_t size) {
        const std::string head = "2 0 obj\n/Type /Pages /Kids [ 3 0 R ]\n";
        return head + std::string(size - head.size() - 1, ' ') + "\nendobj\n/Kids [ 4 0 R 5 0 R ]\n"
            + "endobj\nendobj\nx\nstartxref\n/Count 7\nstartxref\n";
    });
    row("length of a text that comes late", 4096, [](std::size_t size) {
        const std::string head = "9 0 obj\n";
        return head + std::string(size - head.size(), '\n') + "endobj\nlate\nendobj\nendobj\n";
    });
    row("length of an object whose kind changes", 4096, [](std::size_t size) {
        const std::string head = "9 0 obj\n/Type /Info\n";
        return head + std::string(size - head.size(), '\n')
            + "endobj\n/Type /Catalog /Names 3 0 R\nendobj\n/Type /Info\nendobj\n";
    });
    row("object number", 0,
        [](std::size_t size) { return std::to_string(size) + " 0 obj\nx\nendobj\n"; });
    row("object number of a trailer", 0xFFFFFFFF,
        [](std::size_t size) { return std::to_string(size) + " 0 obj\n/Size 4 \nendobj\n"; });
}

/// Each text comes often enough to fill several of the blocks that pieces are found by.
void TestAgainstPlainAnalysis::agreesOnBothSidesOfLimits()
{
    const auto [limit, make] = AgreesOnBothSidesOfLimits::fetch();
    for (std::size_t size = limit - std::min(limit, std::size_t{3}); size < limit + 4; ++size) {
        std::string text;
        for (int i = 0; i < 100; ++i)
            text += make(size);
        QVERIFY(agrees(text, "size " + std::to_string(size)));
    }
}

void TestAgainstPlainAnalysis::agreesOnCorpus()
{
    const QByteArray folder
        = qEnvironmentVariable("TARNWICK_CORPUS", QString::fromLatin1(TARNWICK_CORPUS))
              .toLocal8Bit();
    if (folder.isEmpty())
        QSKIP("TARNWICK_CORPUS names no folder of PDF files");
    int count = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.toStdString())) {
        if (entry.path().extension() != ".pdf")
            continue;
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(file), {}};
        const std::string difference = analysisDifferences(bytes);
        QVERIFY2(difference.empty(), (entry.path().string() + ": " + difference).c_str());
        ++count;
    }
    QVERIFY(count > 0);
}

QTEST_APPLESS_MAIN(TestAgainstPlainAnalysis)
#include "tst_AgainstPlainAnalysis.moc"
