#include "analysis/StrayBytes.h"

#include "support/Rows.h"

#include <QTest>

using namespace tarnwick;

class TestStrayBytes : public QObject
{
    Q_OBJECT

private slots:
    void findsHeaderAndEnd_data();
    void findsHeaderAndEnd();
};

using FindsHeaderAndEnd = Rows<QByteArray, int, int>;

void TestStrayBytes::findsHeaderAndEnd_data()
{
    const FindsHeaderAndEnd row;
    row("empty", "", -1, -1);
    row("only junk: nothing is before or behind", "\0\0\0", -1, -1);
    row("whole", "%PDF-1.7\n%%EOF", 0, 14);
    row("a line end belongs to the marker's line", "%PDF-1.7\n%%EOF\n", 0, 15);
    row("CR LF is one line end", "%PDF-%%EOF\r\n\r\n", 0, 12);
    row("so do blanks, and nothing else", "%PDF-%%EOF \tx\n", 0, 12);
    row("the last marker counts", "%PDF-%%EOF\n%%EOF\nx", 0, 17);
    row("the first header counts", "x%PDF-%PDF-", 1, -1);
    row("a marker before the header", "%%EOF\n%PDF-1.7", 6, 6);
    // Words are found across the stretches that are searched at once, from either end.
    const QByteArray much(4 << 20, '\0');
    row("far", much.chopped(2) + "%PDF-" + "%%EOF" + much, int(much.size()) - 2,
        int(much.size()) + 8);
    row("across stretches", "%PDF-%%EOF" + much.chopped(3), 0, 10);
}

void TestStrayBytes::findsHeaderAndEnd()
{
    const auto [file, header, end] = FindsHeaderAndEnd::fetch();
    const StrayBytes stray
        = findStrayBytes(std::string_view(file.data(), std::size_t(file.size())));
    QCOMPARE(stray.header ? int(*stray.header) : -1, header);
    QCOMPARE(stray.end ? int(*stray.end) : -1, end);
}

QTEST_APPLESS_MAIN(TestStrayBytes)
#include "tst_StrayBytes.moc"
