#include "analysis/SourceText.h"
#include "support/PlainAnalysis.h"
#include "versions/VersionCuts.h"

#include <QTest>

#include <filesystem>
#include <fstream>
#include <iterator>

using namespace tarnwick;

/// What small files of every shape are listed as: kept for ever, as files beside them, so that a
/// change that alters a listing shows as a difference that somebody has to want.
class TestGoldenListings : public QObject
{
    Q_OBJECT

private slots:
    void listsAsBefore_data();
    void listsAsBefore();
};

namespace {

using plain::ColouredText;

const std::filesystem::path folder = TARNWICK_TEST_DATA "/golden";

std::string contents(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<ColouredText> piecesOf(const StyledText& text)
{
    std::vector<ColouredText> pieces;
    text.forEachPiece([&](ColourRole role, std::u16string_view characters) {
        pieces.push_back({"drgb"[static_cast<std::size_t>(role)], std::u16string(characters)});
    });
    return pieces;
}

/// A line for each line of the pieces: the letter of its colour, a space, its characters, those
/// beyond printable ASCII as \xNN or \uNNNN.
QByteArray shown(const std::vector<ColouredText>& pieces)
{
    QByteArray text;
    QByteArray line;
    for (const ColouredText& piece : pieces) {
        for (const char16_t one : piece.text) {
            if (one == u'\n') {
                text += QByteArray(1, piece.role) + (line.isEmpty() ? "" : " ") + line + '\n';
                line.clear();
            } else if (one < ' ' || one > '~' || one == '\\') {
                line += one < 256 ? "\\x" + QByteArray::number(one, 16).rightJustified(2, '0')
                                  : "\\u" + QByteArray::number(one, 16).rightJustified(4, '0');
            } else {
                line += static_cast<char>(one);
            }
        }
    }
    return text;
}

QByteArray report(const std::vector<ColouredText>& listing,
    const std::vector<ColouredText>& objectList, const std::string& summary,
    const std::vector<std::size_t>& cuts)
{
    QByteArray text = "== listing\n" + shown(listing) + "== objects\n" + shown(objectList)
        + "== summary\n" + QByteArray::fromStdString(summary) + "\n== versions\n";
    for (const std::size_t cut : cuts)
        text += QByteArray::number(static_cast<qulonglong>(cut)) + '\n';
    return text;
}

QByteArray reportOf(const std::string& bytes)
{
    const auto kept = std::make_shared<const std::string>(bytes);
    SourceText source({*kept, kept});
    std::vector<ColouredText> listing = piecesOf(source.makeListing(true));
    const std::vector<ColouredText> objectList = piecesOf(source.makeObjectList());
    listing.resize(listing.size() - objectList.size());
    return report(listing, objectList, source.theCatalog().makeSummary(), versionCuts(bytes));
}

QByteArray plainReportOf(const std::string& bytes)
{
    const plain::Analysis analysis = plain::analyse(bytes);
    return report(analysis.listing, analysis.objectList, analysis.summary, plain::cuts(bytes));
}

} // namespace

void TestGoldenListings::listsAsBefore_data()
{
    QTest::addColumn<std::filesystem::path>("file");
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() == ".pdf")
            QTest::newRow(entry.path().stem().c_str()) << entry.path();
    }
}

void TestGoldenListings::listsAsBefore()
{
    QFETCH(std::filesystem::path, file);
    const std::string bytes = contents(file);
    const QByteArray expected
        = QByteArray::fromStdString(contents(file.replace_extension(".expected")));
    QVERIFY(!expected.isEmpty());
    // As lists of lines, so that a failure names the first one that differs.
    QCOMPARE(reportOf(bytes).split('\n'), expected.split('\n'));
    QCOMPARE(plainReportOf(bytes).split('\n'), expected.split('\n'));
}

Q_DECLARE_METATYPE(std::filesystem::path)

QTEST_APPLESS_MAIN(TestGoldenListings)
#include "tst_GoldenListings.moc"
