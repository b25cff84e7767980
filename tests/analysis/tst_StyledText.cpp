#include "support/Listings.h"

#include <QtTest>

using namespace Listings;

class TestStyledText : public QObject
{
    Q_OBJECT

private slots:
    void isOneEmptyLineWithoutText();
    void servesTheLinesOfItsPieces_data();
    void servesTheLinesOfItsPieces();
    void cutsStretchesFromAnyLine();
};

void TestStyledText::isOneEmptyLineWithoutText()
{
    QCOMPARE(StyledText().lineCount(), std::size_t{1});
    QCOMPARE(StyledText().lineLength(0), std::size_t{0});
}

namespace {

std::string manyObjects(int count)
{
    std::string bytes;
    for (int i = count; i > 0; --i) {
        const std::string number = std::to_string(i);
        bytes += number + " 0 obj\n<< /Length " + number + " >>\nstream\n\xFF\nendstream\nendobj\n";
        if (i % 7 == 0)
            bytes += "xref\n0 1\ntrailer\n<< /Size 1 >>\nstartxref\n%%EOF\n";
    }
    return bytes;
}

QString lineOf(const StyledText& text, std::size_t index, std::size_t position = 0,
    std::size_t count = std::string::npos)
{
    std::u16string line;
    text.appendLine(index, position, count, line);
    return QString::fromStdU16String(line);
}

std::string pageTree(int kids)
{
    std::string bytes = "2 0 obj\n/Type /Pages /Kids [ ";
    for (int i = 1; i <= kids; ++i)
        bytes += std::to_string(i * i) + " " + std::to_string(i % 3) + " R ";
    return bytes + "]\nendobj\n";
}

} // namespace

void TestStyledText::servesTheLinesOfItsPieces_data()
{
    QTest::addColumn<std::string>("bytes");
    QTest::addColumn<bool>("withSource");
    QTest::newRow("an object") << file({"1 0 obj", "x", "endobj"}) << true;
    QTest::newRow("no line end") << std::string("%PDF-1.7") << true;
    QTest::newRow("lines of several strides") << manyObjects(500) << true;
    QTest::newRow("an object list out of order") << manyObjects(500) << false;
    QTest::newRow("a line longer than a piece can say")
        << "a\n" + std::string(std::size_t{3} << 20, 'b') + "  \nc\n"
        << true;
}

void TestStyledText::servesTheLinesOfItsPieces()
{
    QFETCH(std::string, bytes);
    QFETCH(bool, withSource);
    SourceText source(SharedBytes::ofString(bytes));
    const StyledText text = source.makeListing(withSource);

    QStringList expected{QString()};
    QList<ColourRole> roles;
    text.forEachPiece([&](ColourRole role, std::u16string_view piece) {
        for (const char16_t character : piece) {
            if (character != u'\n') {
                expected.last() += QChar(character);
                continue;
            }
            roles.append(role);
            expected.append(QString());
        }
    });
    QCOMPARE(text.lineCount(), static_cast<std::size_t>(expected.size()));
    for (qsizetype i = 0; i < expected.size(); ++i) {
        std::u16string line;
        const auto index = static_cast<std::size_t>(i);
        const ColourRole role = text.appendLine(index, 0, std::string::npos, line);
        QCOMPARE(QString::fromStdU16String(line), expected.at(i));
        QCOMPARE(text.lineLength(index), line.size());
        QCOMPARE(role, i < roles.size() ? roles.at(i) : ColourRole::isDefault);
    }
}

void TestStyledText::cutsStretchesFromAnyLine()
{
    const std::string bytes = file({"9 0 obj", "<< /Length 44 >>", "stream", "a", "endstream",
                                  "endobj", "1 0 obj", "/Type /Page /Parent 1 2 R", "endobj"})
        + "3 0 obj\n" + std::string(150, 'x') + "\nendobj\n" + pageTree(40) + pageTree(0)
        + pageTree(1);
    SourceText source(SharedBytes::ofString(bytes));
    const StyledText text = source.makeListing(true);
    for (std::size_t index = 0; index < text.lineCount(); ++index) {
        const QString whole = lineOf(text, index);
        for (const std::size_t count : {1u, 7u, 1000u}) {
            for (std::size_t position = 0; position <= text.lineLength(index); ++position) {
                QCOMPARE(lineOf(text, index, position, count),
                    whole.mid(static_cast<qsizetype>(position), static_cast<qsizetype>(count)));
            }
        }
    }
}

QTEST_APPLESS_MAIN(TestStyledText)
#include "tst_StyledText.moc"
