#include "analysis/SourceText.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using namespace tarnwick;

/// What the comparison with the plain analysis does not see: how the analysis is asked, and that it
/// stays quick and small.
class TestSourceText : public QObject
{
    Q_OBJECT

private slots:
    void anEmptyTextHasALine();
    void keepsTheLinesOfObjects();
    void readsLinksThroughAccessors();
    void reachesFar();
    void sharesLinesBetweenRecords();
    void handsTheListingOverAsItGrows();
    void stopsWhenAsked();
};

namespace {

QString lineOf(const StyledText& text, std::size_t index)
{
    std::u16string line;
    text.appendLine(index, 0, std::string::npos, line);
    return QString::fromStdU16String(line);
}

} // namespace

void TestSourceText::anEmptyTextHasALine()
{
    QCOMPARE(StyledText().lineCount(), std::size_t{1});
    QCOMPARE(StyledText().lineLength(0), std::size_t{0});
}

void TestSourceText::keepsTheLinesOfObjects()
{
    SourceText source(SharedBytes::ofString(
        "%PDF\nendobj\n9 0 obj\na\nstream\nobj\nendstream\n b \nendobj\nc\nstartxref\ntrailer\nd\n"
        "startxref\n/XML\n7 0 obj\nstream\n<x>\nendstream\nendobj\n"));
    source.makeListing(false);
    QList<QByteArrayList> lines;
    for (std::size_t i = 0; i < source.theCatalog().size(); ++i) {
        QByteArrayList list;
        for (const std::string_view line : source.theCatalog().object(i).theStringArray())
            list.append(QByteArray(line.data(), static_cast<qsizetype>(line.size())));
        lines.append(list);
    }
    const QList<QByteArrayList> expected{{"%PDF"}, {"9 0 obj", "a", "b"},
        {"9 0 obj", "a", "b", "c"}, {"8000001 0 obj", "d"}, {"7 0 obj", "<x>"}};
    QCOMPARE(lines, expected);
}

void TestSourceText::readsLinksThroughAccessors()
{
    SourceText source(SharedBytes::ofString(
        "%%EOF\n2 0 obj\n/Type /Pages /Parent 1 0 R /Kids [ 3 0 R ] /Count 7\nendobj\n"));
    source.makeListing(false);
    const pdfObject node = source.theCatalog().object(0);
    QCOMPARE(node.objVer(), 2);
    QVERIFY(node.theParent() == std::optional(ObjectRef{1, 0, 2}));
    QVERIFY(!node.theRoot());
    QVERIFY(node.theChildren() == std::vector{ObjectRef({3, 0, 2})});
    QCOMPARE(node.thePageCount(), 7);
    QCOMPARE(node.theSize(), 0);
}

/// Further than records and pieces have room to say.
void TestSourceText::reachesFar()
{
    const std::size_t length = std::size_t{3} << 20;
    SourceText source(SharedBytes::ofString("1 0 obj\n" + std::string(std::size_t{17} << 20, '\n')
        + "far\nendobj\n" + std::string(length, 'b') + "  \nc\n"));
    const StyledText text = source.makeListing(true);
    QCOMPARE(text.lineCount(), std::size_t{8});
    QCOMPARE(text.lineLength(4), length);
    QCOMPARE(lineOf(text, 4), QString(static_cast<qsizetype>(length), u'b'));
    QCOMPARE(lineOf(text, 5), u"c"_s);
    QCOMPARE(lineOf(text, 6), u"1 0 1 far"_s);
}

/// Without sharing, a hundred thousand ends behind one object would take hours and terabytes. A
/// page's first records are small enough to be read again, its last ones are not.
void TestSourceText::sharesLinesBetweenRecords()
{
    for (const auto& [kind, link] : {std::pair("Catalog", "Pages"), std::pair("Page", "Parent")}) {
        const std::string name(link);
        std::string bytes = "1 0 obj\n<< /Type /" + std::string(kind) + " /" + name + " 2 0 R\n";
        for (int i = 0; i < 100'000; ++i)
            bytes += "/Extra 1\nno slash here\nendobj\n";
        SourceText source(SharedBytes::ofString(bytes + '/' + name + " 3 0 R\nendobj\n"));
        const StyledText list = source.makeListing(false);
        QCOMPARE(list.pieceCount(), std::size_t{100'001});
        const QString expected
            = u"1 0 1 %1, %2 (%3, 0, 1)"_s.arg(QLatin1String(kind), QLatin1String(link));
        QCOMPARE(lineOf(list, 0), expected.arg(2));
        QCOMPARE(lineOf(list, 99'999), expected.arg(2));
        QCOMPARE(lineOf(list, 100'000), expected.arg(3));
    }
}

void TestSourceText::handsTheListingOverAsItGrows()
{
    std::string bytes;
    for (int i = 0; i < 20000; ++i)
        bytes += "line\n";
    SourceText source(SharedBytes::ofString(bytes));
    std::size_t calls = 0;
    std::size_t pieces = 0;
    QVERIFY(source.scan([&](std::span<const Piece> some) {
        ++calls;
        pieces += some.size();
    }));
    QCOMPARE(pieces, std::size_t{20000});
    QVERIFY2(calls > 1, "a long listing comes in parts");
}

void TestSourceText::stopsWhenAsked()
{
    SourceText source(
        SharedBytes::ofString("1 0 obj\nendobj\n" + std::string(std::size_t{16} << 20, 'x')));
    std::stop_source stop;
    stop.request_stop();
    QCOMPARE(source.makeListing(true, stop.get_token()).pieceCount(), std::size_t{0});
    QCOMPARE(source.theCatalog().size(), std::size_t{0});
}

QTEST_APPLESS_MAIN(TestSourceText)
#include "tst_SourceText.moc"
