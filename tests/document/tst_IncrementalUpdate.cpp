#include "document/IncrementalUpdate.h"

#include <QTest>

class TestIncrementalUpdate : public QObject
{
    Q_OBJECT

private slots:
    void looksForAMarkerBeforeTheTail_data();
    void looksForAMarkerBeforeTheTail();
};

void TestIncrementalUpdate::looksForAMarkerBeforeTheTail_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<bool>("expected");
    const auto row = [](const char* name, const QByteArray& file, bool expected) {
        QTest::newRow(name) << file << expected;
    };
    const QByteArray body = "%PDF-1.7\n1 0 obj\nendobj\n";
    row("no byte", {}, false);
    row("19 bytes that begin with a marker", QByteArray("%%EOF").leftJustified(19, ' '), false);
    row("20 bytes that begin with a marker", QByteArray("%%EOF").leftJustified(20, ' '), false);
    row("24 bytes: the marker reaches into the tail", QByteArray("%%EOF").leftJustified(24, ' '),
        false);
    row("25 bytes: the marker ends where the tail begins",
        QByteArray("%%EOF").leftJustified(25, ' '), true);
    row("no marker", body + body, false);
    row("one save", body + "%%EOF\r\n", false);
    row("two saves", body + "%%EOF\n" + body + "%%EOF\n", true);
    row("junk of 20 bytes behind the only marker", body + "%%EOF" + QByteArray(20, '\n'), true);
    row("junk of 19 bytes behind the only marker", body + "%%EOF" + QByteArray(19, '\n'), false);
    row("the marker stands in a stream", "stream\nq%%EOFQ\nendstream\n" + body, true);
    row("the marker follows a NUL", QByteArray("a\0%%EOF", 7) + QByteArray(20, 'x'), true);
    row("a marker in lower case is none", "%%eof" + body + body, false);
    row("a marker cut in two is none", "%%E OF" + body + body, false);
}

void TestIncrementalUpdate::looksForAMarkerBeforeTheTail()
{
    QFETCH(QByteArray, file);
    QTEST(isIncrementallyUpdated({file.constData(), static_cast<std::size_t>(file.size())}),
        "expected");
}

QTEST_APPLESS_MAIN(TestIncrementalUpdate)
#include "tst_IncrementalUpdate.moc"
