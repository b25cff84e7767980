#include "analysis/BlockMasks.h"
#include "analysis/ByteClasses.h"

#include <QtTest>

#include <random>
#include <string>

using namespace tarnwick;

/// The vector form must say of every byte what the portable form says.
class TestBlockMasks : public QObject
{
    Q_OBJECT

private slots:
    void agreesWithThePortableForm();
    void findsLineBreaks();
};

void TestBlockMasks::agreesWithThePortableForm()
{
    // Every pair of bytes that matters, in every place of a block, at every offset of blocks.
    const std::string letters = "bjamOFxriXMTy\n\v\f\r\x85\x09\x0E\x84\x86\xFF/ ";
    std::mt19937 random(20);
    std::uniform_int_distribution<std::size_t> pick(0, letters.size() - 1);
    std::string text;
    for (int i = 0; i < 20000; ++i)
        text += letters[pick(random)];
    for (std::size_t offset = 0; offset <= text.size(); ++offset) {
        const BlockMasks fast = blockMasks(text, offset);
        const BlockMasks portable = portableBlockMasks(text, offset);
        QCOMPARE(fast.breaks, portable.breaks);
        QCOMPARE(fast.suspects, portable.suspects);
    }
}

void TestBlockMasks::findsLineBreaks()
{
    std::string every;
    for (int byte = 0; byte < 256; ++byte)
        every += static_cast<char>(byte);
    std::string breaks;
    for (std::size_t at = nextLineBreak(every, 0); at < every.size();
         at = nextLineBreak(every, at + 1))
        breaks += every[at];
    QCOMPARE(breaks, std::string("\n\v\f\r\x85"));
    for (const std::size_t length : {0u, 1u, 63u, 64u, 65u, 1000u}) {
        const std::string text = std::string(length, 'x') + "\r";
        QCOMPARE(nextLineBreak(text, 0), length);
        QCOMPARE(nextLineBreak(text, text.size()), text.size());
    }
}

QTEST_APPLESS_MAIN(TestBlockMasks)
#include "tst_BlockMasks.moc"
