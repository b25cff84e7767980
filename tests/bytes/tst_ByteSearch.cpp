#include "ByteMatches.h"
#include "OffsetInput.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace tarnwick;

using Problem = BytePattern::Reading::Problem;
using Kind = ByteMatches::Answer::Kind;
Q_DECLARE_METATYPE(Problem)
Q_DECLARE_METATYPE(OffsetInput::Problem)

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
    void findsPatterns_data();
    void findsPatterns();
    void refusesPatterns_data();
    void refusesPatterns();
    void stepsThroughBlocks();
    void readsOffsets_data();
    void readsOffsets();
};

void TestByteSearch::findsPatterns_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("digits");
    QTest::addColumn<QList<int>>("found");
    const auto row = [](const char* name, const QByteArray& bytes, const char16_t* digits,
                         const QList<int>& found) {
        QTest::newRow(name) << bytes << QString::fromUtf16(digits) << found;
    };
    const QByteArray bytes = QByteArray::fromHex("DEADBEEF00DEADC0DE");
    row("pairs", bytes, u"DE AD", {0, 5});
    row("without blanks, in small letters", bytes, u"dead", {0, 5});
    row("with 0x before each run", bytes, u"0xDE 0XADBE", {0});
    row("any byte", bytes, u"AD ?? EF", {1});
    row("any byte at the beginning", bytes, u"?? DE", {4, 7});
    row("any byte at the end needs one there", bytes, u"DE ??", {0, 5});
    row("half a byte", bytes, u"D? ?D", {0, 5});
    row("halves alone", bytes, u"?E", {0, 2, 5, 8});
    row("the whole", bytes, u"DEADBEEF00DEADC0DE", {0});
    row("more than the whole", bytes, u"DEADBEEF00DEADC0DE00", {});
    row("other bytes", bytes, u"DF", {});
    row("matches do not overlap", "aaaaa", u"61 61", {0, 2});
    row("nor with any bytes in them", "aaaaa", u"61 ??", {0, 2});
    row("no bytes", "", u"61", {});
    row("nothing to look for", bytes, u"  ", {});
}

void TestByteSearch::findsPatterns()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QString, digits);
    QFETCH(const QList<int>, found);
    const BytePattern::Reading reading = BytePattern::ofHex(units(digits));
    QCOMPARE(reading.problem, Problem::isNone);
    const ByteMatches matches = searched(bytes, reading.pattern);
    QCOMPARE(offsets(matches), found);
    QCOMPARE(int(matches.count()), int(found.size()));
    for (qsizetype index = 0; index < found.size(); ++index) { // by its last byte as well
        const std::size_t last = std::size_t(found[index]) + reading.pattern.size() - 1;
        QCOMPARE(matches.within(last, last + 1), std::vector{std::size_t(found[index])});
    }
}

void TestByteSearch::refusesPatterns_data()
{
    QTest::addColumn<QString>("digits");
    QTest::addColumn<Problem>("problem");
    QTest::addColumn<QString>("place");
    QTest::newRow("a letter") << u"DE AG"_s << Problem::isNoDigit << u"G"_s;
    QTest::newRow("a sign") << u"DE,AD"_s << Problem::isNoDigit << u","_s;
    QTest::newRow("an odd digit") << u"DE A"_s << Problem::isHalfByte << u"A"_s;
    QTest::newRow("an odd run") << u"DEA D"_s << Problem::isHalfByte << u"A"_s;
    QTest::newRow("0x alone") << u"0x"_s << Problem::isHalfByte << u"x"_s;
    QTest::newRow("no digit") << u"?? ??"_s << Problem::isAllUnknown << QString();
}

void TestByteSearch::refusesPatterns()
{
    QFETCH(const QString, digits);
    QFETCH(const Problem, problem);
    QFETCH(const QString, place);
    const BytePattern::Reading reading = BytePattern::ofHex(units(digits));
    QCOMPARE(reading.problem, problem);
    QVERIFY(reading.place == units(place));
    QVERIFY(reading.pattern.isEmpty());
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

void TestByteSearch::readsOffsets_data()
{
    using Wrong = OffsetInput::Problem;
    QTest::addColumn<QString>("text");
    QTest::addColumn<Wrong>("problem");
    QTest::addColumn<quint64>("offset");
    const auto row = [](const QString& text, Wrong problem, quint64 offset = 0) {
        QTest::newRow(qPrintable(u"“%1”"_s.arg(text))) << text << problem << offset;
    };
    for (const QString& text : {u"2317"_s, u"@2317"_s, u" @ 2317 "_s, u"0x90D"_s, u"@0X90d"_s,
             u"2,317"_s, u"2.317"_s, u"2\u202F317"_s, u"002317"_s})
        row(text, Wrong::isNone, 2317);
    row(u"0"_s, Wrong::isNone, 0);
    row(u"10000"_s, Wrong::isNone, 10000); // the end
    for (const QString& text : {u"10001"_s, u"0xFFFFFFFFFFFFFFFFF"_s, u"99999999999999999999"_s})
        row(text, Wrong::isBehindEnd);
    for (const QString& text : {u""_s, u" "_s, u"@"_s})
        row(text, Wrong::isEmpty);
    for (const QString& text : {u"-5"_s, u"+5"_s, u"1.5"_s, u"12,34"_s, u",123"_s, u"1,,234"_s,
             u"0x"_s, u"0xG"_s, u"12 0 R"_s, u"@@5"_s, u"five"_s})
        row(text, Wrong::isNoNumber);
    row(u"90D"_s, Wrong::isHexWithoutSign);
}

void TestByteSearch::readsOffsets()
{
    QFETCH(const QString, text);
    QFETCH(const OffsetInput::Problem, problem);
    QFETCH(const quint64, offset);
    const OffsetInput input = readOffset(units(text), 10000);
    QCOMPARE(input.problem, problem);
    QCOMPARE(input.offset.has_value(), problem == OffsetInput::Problem::isNone);
    QCOMPARE(quint64(input.offset.value_or(0)), offset);
}

QTEST_APPLESS_MAIN(TestByteSearch)
#include "tst_ByteSearch.moc"
