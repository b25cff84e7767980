#include "compare/MergedText.h"
#include "compare/PagePairs.h"
#include "compare/PictureCells.h"
#include "compare/WordDiff.h"

#include "support/Rows.h"

#include <QTest>

#include <numeric>
#include <random>

using namespace tarnwick;

class TestDifferences : public QObject
{
    Q_OBJECT

private slots:
    void words_data();
    void words();
    void anySequencesLeadToEachOther();
    void pages_data();
    void pages();
    void pictures_data();
    void pictures();
};

using Words = Rows<QString, QString, QString>;

void TestDifferences::words_data()
{
    const Words row;
    row("the same twice", "to be paid", "to be paid", "");
    row("both are empty", "", "", "");
    row("white space does not count", "to be\npaid", " to  be paid\n", "");
    row("a changed price", "to pay 100.00 EUR", "to pay 120.00 EUR", "[100.00>120.00]");
    row("nothing in common", "a b", "c d e", "[a b>c d e]");
    row("added to an empty text", "", "all new", "[>all new]");
    row("removed at the end", "one two three", "one", "[two three>]");
    row("two places", "a b c d e", "a x c e", "[b>x][d>]");
    row("twice the same words", "a b a b a b", "a b a b", "[a b>]");
    row("the beginning moved to the end", "x a b c d", "a b c d x", "[x>][>x]");
    row("ideographs count one by one", "\u4e8c\u5341\u5186", "\u4e8c\u767e\u5186",
        "[\u5341>\u767e]");
    row("one of two units too", "\U00020001\U00020002", "\U00020001\U00020003",
        "[\U00020002>\U00020003]");
}

std::u16string_view unitsOf(const QString& text)
{
    return {reinterpret_cast<const char16_t*>(text.utf16()), std::size_t(text.size())};
}

QString spelled(const QString& text, const WordRange& range)
{
    return text.mid(qsizetype(range.begin), qsizetype(range.end - range.begin)).simplified();
}

/// A merged text without what was removed, or without what was added.
QString without(MergedText::Kind kind, const MergedText& merged)
{
    std::u16string text = merged.text;
    for (auto stretch = merged.stretches.rbegin(); stretch != merged.stretches.rend(); ++stretch) {
        if (stretch->kind == kind)
            text.erase(stretch->begin, stretch->end - stretch->begin);
    }
    QString result = QString::fromStdU16String(text).simplified();
    for (const char* bracket : {"[-", "-]", "{+", "+}"})
        result.remove(QLatin1String(bracket));
    return result;
}

void TestDifferences::words()
{
    const auto [before, after, expected] = Words::fetch();
    const WordDiff diff = compareWords(unitsOf(before), unitsOf(after));
    QString changes;
    for (const WordChange& change : diff.changes)
        changes
            += u'[' + spelled(before, change.before) + u'>' + spelled(after, change.after) + u']';
    QCOMPARE(changes, expected);
    const MergedText merged = mergedText(unitsOf(before), unitsOf(after), diff);
    QCOMPARE(merged.changes.size(), diff.changes.size());
    QCOMPARE(
        without(MergedText::Kind::isRemoved, merged).remove(u' '), after.simplified().remove(u' '));
    QCOMPARE(
        without(MergedText::Kind::isAdded, merged).remove(u' '), before.simplified().remove(u' '));
}

/// Edits of a shortest way, counted by the plain method with a table.
std::size_t fewestEdits(
    const std::vector<std::uint32_t>& before, const std::vector<std::uint32_t>& after)
{
    std::vector<std::size_t> row(after.size() + 1);
    std::iota(row.begin(), row.end(), 0u);
    for (std::size_t place = 0; place < before.size(); ++place) {
        std::size_t corner = std::exchange(row[0], place + 1);
        for (std::size_t other = 0; other < after.size(); ++other) {
            const std::size_t edits
                = before[place] == after[other] ? corner : 1 + std::min(row[other], row[other + 1]);
            corner = std::exchange(row[other + 1], edits);
        }
    }
    return row.back();
}

void TestDifferences::anySequencesLeadToEachOther()
{
    std::mt19937 random(7); // NOLINT: the same sequences each time
    for (int round = 0; round < 3000; ++round) {
        const auto some = [&random, letters = 1 + random() % 6] {
            std::vector<std::uint32_t> sequence(random() % 24);
            std::generate(sequence.begin(), sequence.end(),
                [&] { return static_cast<std::uint32_t>(random() % letters); });
            return sequence;
        };
        const auto before = some();
        const auto after = some();
        const std::size_t most = random() % 3 == 0 ? random() % 10 : usualEdits;
        const SequenceDiff diff = compareSequences(before, after, most);
        std::vector<std::uint32_t> made = before;
        std::size_t edits = 0;
        for (auto change = diff.changes.rbegin(); change != diff.changes.rend(); ++change) {
            const auto place = made.begin() + std::ptrdiff_t(change->before);
            const auto from = after.begin() + std::ptrdiff_t(change->after);
            made.insert(made.erase(place, place + std::ptrdiff_t(change->removed)), from,
                from + std::ptrdiff_t(change->added));
            edits += change->removed + change->added;
        }
        QCOMPARE(made, after);
        const std::size_t fewest = fewestEdits(before, after);
        QVERIFY(diff.isRewritten ? most < fewest : edits == fewest);
    }
}

/// Pages by a letter for what they are made of ("?" is unknown), and, for versions of one file,
/// their objects' numbers as letters.
using Pages = Rows<QByteArray, QByteArray, QByteArray, QByteArray, QByteArray>;

void TestDifferences::pages_data()
{
    const Pages row;
    row("the same file twice", "abc", "abc", "", "", "0=0 1=1 2=2");
    row("no pages at all", "", "", "", "", "");
    row("nothing in common, equal numbers", "abc", "xyz", "", "", "0~0 1~1 2~2");
    row("nothing in common, others", "ab", "xyz", "", "", "0~0 1~1 +2");
    row("a page is inserted", "abc", "axbc", "", "", "0=0 +1 1=2 2=3");
    row("a page is removed", "abc", "ac", "", "", "0=0 -1 2=1");
    row("a page is changed", "abc", "axc", "", "", "0=0 1~1 2=2");
    row("a page is moved to the end", "abcd", "bcda", "", "", "1=0 2=1 3=2 0=3!");
    row("equal pages are paired in order", "aab", "ab", "", "", "0=0 -1 2=1");
    row("what is unknown is never the same", "a?c", "a?c", "", "", "0=0 1~1 2=2");
    row("objects pair what has changed", "abc", "xyzq", "ABC", "QABC", "+0 0~1 1~2 2~3");
    row("an object moved and changed", "abc", "bxc", "ABC", "BAC", "1=0! 0~1 2=2");
    row("a page rewritten as another object", "abc", "abc", "ABC", "AXC", "0=0 1=1 2=2");
}

std::vector<PageSign> signsOf(const QByteArray& pages, const QByteArray& objects)
{
    std::vector<PageSign> signs;
    for (const char page : pages) {
        PageSign sign;
        sign.object = objects.isEmpty() ? 0 : objects.at(qsizetype(signs.size()));
        sign.isKnown = page != '?';
        sign.digest.fill(std::uint8_t(page));
        signs.push_back(sign);
    }
    return signs;
}

void TestDifferences::pages()
{
    const auto [before, after, objects, otherObjects, expected] = Pages::fetch();
    const auto kinship = objects.isEmpty() ? PageKinship::isOfTwoFiles : PageKinship::isOfOneFile;
    QByteArray pairs;
    for (const PagePair& pair :
        pairPages(signsOf(before, objects), signsOf(after, otherObjects), kinship)) {
        if (pair.before < 0)
            pairs += '+' + QByteArray::number(pair.after);
        else if (pair.after < 0)
            pairs += '-' + QByteArray::number(pair.before);
        else
            pairs += QByteArray::number(pair.before) + (pair.isSame ? "=" : "~")
                + QByteArray::number(pair.after) + (pair.isMoved ? "!" : "");
        pairs += ' ';
    }
    QCOMPARE(pairs.trimmed(), expected);
}

using Pixels = QList<std::pair<QPoint, std::uint32_t>>;
using Pictures = Rows<QSize, QSize, Pixels, QByteArray>;

void TestDifferences::pictures_data()
{
    const Pictures row;
    row("nothing differs", {40, 40}, {40, 40}, {}, "");
    row("a pixel makes its cell", {40, 40}, {40, 40}, {{{17, 3}, 1}}, "16,0-32,16");
    row("the last cell ends with the picture", {40, 40}, {40, 40}, {{{39, 39}, 1}}, "32,32-40,40");
    row("cells that touch at a corner are one", {64, 64}, {64, 64}, {{{0, 0}, 1}, {{16, 16}, 1}},
        "0,0-32,32");
    row("cells apart are two", {64, 64}, {64, 64}, {{{0, 0}, 1}, {{63, 0}, 1}},
        "0,0-16,16 48,0-64,16");
    row("what only one has differs", {32, 16}, {32, 40}, {}, "0,16-32,40");
    row("a wider picture", {32, 16}, {33, 16}, {}, "32,0-33,16");
    row("no picture at all", {0, 0}, {20, 10}, {}, "0,0-20,10");
    row("neither is there", {0, 0}, {0, 0}, {}, "");
}

void TestDifferences::pictures()
{
    const auto [size, otherSize, changed, expected] = Pictures::fetch();
    std::vector<std::uint32_t> pixels(std::size_t(size.width() * size.height()));
    std::vector<std::uint32_t> others(std::size_t(otherSize.width() * otherSize.height()));
    for (const auto& [place, value] : changed)
        others[std::size_t(place.y() * otherSize.width() + place.x())] = value;
    QByteArray areas;
    for (const PictureArea& area : differingAreas({size.width(), size.height(), pixels},
             {otherSize.width(), otherSize.height(), others}))
        areas += QByteArray::number(area.left) + ',' + QByteArray::number(area.top) + '-'
            + QByteArray::number(area.right) + ',' + QByteArray::number(area.bottom) + ' ';
    QCOMPARE(areas.trimmed(), expected);
}

QTEST_APPLESS_MAIN(TestDifferences)
#include "tst_Differences.moc"
