#include "ByteMatches.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace tarnwick;

using Problem = BytePattern::Reading::Problem;
using Kind = ByteMatches::Answer::Kind;

namespace {

std::u16string_view units(const QString& text)
{
    return {reinterpret_cast<const char16_t*>(text.utf16()), std::size_t(text.size())};
}

std::string_view view(const QByteArray& bytes)
{
    return {bytes.data(), std::size_t(bytes.size())};
}

ByteMatches searched(const QByteArray& bytes, const BytePattern& pattern)
{
    ByteMatches matches(view(bytes), pattern);
    while (!matches.isComplete())
        matches.add(ByteMatches::search(view(bytes), pattern, matches.searchedTo()));
    return matches;
}

QList<int> offsets(const ByteMatches& matches)
{
    QList<int> found;
    ByteMatches::Answer answer = matches.next(0);
    while (answer.kind == Kind::isFound && !answer.isWrapped) {
        found += int(answer.offset);
        answer = matches.next(answer.offset + 1);
    }
    return found;
}

} // namespace

class TestByteSearch : public QObject
{
    Q_OBJECT

private slots:
    void findsPatterns();
    void refusesPatterns();
    void stepsThroughBlocks();
};

void TestByteSearch::findsPatterns()
{
    using Offsets = QList<int>;
    const auto found = [](const QByteArray& bytes, const QString& digits) {
        const BytePattern::Reading reading = BytePattern::ofHex(units(digits));
        const ByteMatches matches = searched(bytes, reading.pattern);
        const Offsets places = offsets(matches);
        const bool isCounted = matches.count() == quint64(places.size());
        return reading.problem == Problem::isNone && isCounted ? places : Offsets{-1};
    };
    const QByteArray bytes = QByteArray::fromHex("DEADBEEF00DEADC0DE");
    QCOMPARE(found(bytes, u"DE AD"_s), (Offsets{0, 5}));
    QCOMPARE(found(bytes, u"dead"_s), (Offsets{0, 5}));
    QCOMPARE(found(bytes, u"0xDE 0XADBE"_s), (Offsets{0})); // 0x before each run
    QCOMPARE(found(bytes, u"AD ?? EF"_s), (Offsets{1}));
    QCOMPARE(found(bytes, u"?? DE"_s), (Offsets{4, 7}));
    QCOMPARE(found(bytes, u"DE ??"_s), (Offsets{0, 5})); // any byte needs one there
    QCOMPARE(found(bytes, u"D? ?D"_s), (Offsets{0, 5}));
    QCOMPARE(found(bytes, u"?E"_s), (Offsets{0, 2, 5, 8}));
    QCOMPARE(found(bytes, u"DEADBEEF00DEADC0DE"_s), (Offsets{0})); // the whole
    QCOMPARE(found(bytes, u"DEADBEEF00DEADC0DE00"_s), Offsets()); // and more than it
    QCOMPARE(found(bytes, u"DF"_s), Offsets());
    QCOMPARE(found("aaaaa", u"61 61"_s), (Offsets{0, 2})); // matches do not overlap
    QCOMPARE(found("aaaaa", u"61 ??"_s), (Offsets{0, 2})); // nor with any bytes in them
    QCOMPARE(found("", u"61"_s), Offsets());
    QCOMPARE(found(bytes, u"  "_s), Offsets()); // nothing to look for
}

void TestByteSearch::refusesPatterns()
{
    const auto refused = [](const QString& digits) {
        const BytePattern::Reading reading = BytePattern::ofHex(units(digits));
        const QString place
            = QString::fromUtf16(reading.place.data(), qsizetype(reading.place.size()));
        return std::pair(reading.pattern.isEmpty() ? reading.problem : Problem::isNone, place);
    };
    QCOMPARE(refused(u"DE AG"_s), std::pair(Problem::isNoDigit, u"G"_s));
    QCOMPARE(refused(u"DE,AD"_s), std::pair(Problem::isNoDigit, u","_s));
    QCOMPARE(refused(u"DE A"_s), std::pair(Problem::isHalfByte, u"A"_s));
    QCOMPARE(refused(u"DEA D"_s), std::pair(Problem::isHalfByte, u"A"_s));
    QCOMPARE(refused(u"0x"_s), std::pair(Problem::isHalfByte, u"x"_s)); // 0x alone
    QCOMPARE(refused(u"?? ??"_s), std::pair(Problem::isAllUnknown, QString())); // no digit
}

void TestByteSearch::stepsThroughBlocks()
{
    // Matches at the bytes' ends, across the end of a block, and many in one block.
    const auto block = qsizetype(ByteMatches::blockSize);
    QByteArray bytes(3 * block, '.');
    const auto put = [&bytes](qsizetype offset) { bytes.replace(offset, 3, "abc"); };
    const QList<qsizetype> places{0, block - 2, 2 * block + 5, 2 * block + 8, 3 * block - 3};
    for (const qsizetype place : places)
        put(place);
    const BytePattern pattern = BytePattern::ofBytes("abc");
    ByteMatches matches(view(bytes), pattern);
    const auto step
        = [&] { matches.add(ByteMatches::search(view(bytes), pattern, matches.searchedTo())); };
    QCOMPARE(matches.next(0).kind, Kind::isUnknown);
    step();
    QCOMPARE(matches.next(1).offset, std::size_t(block - 2));
    QCOMPARE(matches.next(std::size_t(block - 1)).kind, Kind::isUnknown);
    QCOMPARE(matches.previous(5).offset, std::size_t(0));
    QCOMPARE(matches.previous(0).kind, Kind::isUnknown); // it would be the last of all
    QCOMPARE(matches.previous(std::size_t(2 * block)).kind, Kind::isUnknown);
    while (!matches.isComplete())
        step();
    QCOMPARE(int(matches.count()), 5);
    for (qsizetype index = 0; index < places.size(); ++index) {
        const auto place = std::size_t(places[index]);
        QCOMPARE(matches.number(place), quint64(index + 1));
        const ByteMatches::Answer next = matches.next(place + 1);
        QCOMPARE(next.offset, std::size_t(places[(index + 1) % 5]));
        QCOMPARE(next.isWrapped, index == 4);
        const ByteMatches::Answer previous = matches.previous(place);
        QCOMPARE(previous.offset, std::size_t(places[(index + 4) % 5]));
        QCOMPARE(previous.isWrapped, index == 0);
    }
    // What begins in a block and ends behind it takes its last bytes from the next one.
    const QByteArray letters = '.' + QByteArray(block + 3, 'a');
    QCOMPARE(searched(letters, BytePattern::ofBytes("aa")).count(), quint64((block + 3) / 2));
    const ByteMatches none = searched(bytes, BytePattern::ofBytes("ABC"));
    QCOMPARE(none.next(5).kind, Kind::isNone);
    QCOMPARE(none.previous(5).kind, Kind::isNone);
}

QTEST_APPLESS_MAIN(TestByteSearch)
#include "tst_ByteSearch.moc"
