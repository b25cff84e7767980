#include "document/IncrementalUpdate.h"
#include "document/VersionCuts.h"
#include "document/VersionNaming.h"

#include <QTest>

class TestVersionCuts : public QObject
{
    Q_OBJECT

private slots:
    void cutsAfterEachMarker_data();
    void cutsAfterEachMarker();
    void namesFollowThePath_data();
    void namesFollowThePath();
    void numbersHaveThreeDigitsOrMore();
    void updatesHaveAMarkerBeforeTheTail();
};

void TestVersionCuts::cutsAfterEachMarker_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QList<std::size_t>>("expected");
    const auto row = [](const char* name, const QByteArray& file, const QList<std::size_t>& cuts) {
        QTest::newRow(name) << file << cuts;
    };
    row("empty file", "", {});
    row("marker ends the file", "a%%EOF", {6});
    row("LF is in the version", "a%%EOF\n", {7});
    row("CR LF: the LF is in no version", "a%%EOF\r\n", {7});
    row("last marker without line end", "a%%EOF\nb%%EOF", {7, 13});
    row("junk after the last marker is in no version", "a%%EOF\n\n\njunk", {7});
    row("a marker right behind loses its first byte", "%%EOF%%EOF\n", {6});
    row("the search goes on behind the lost byte", "%%EOF%%EOF\n%%EOF\n", {6, 17});
    row("three percent signs end the marker's byte and begin the next", "%%EOF%%%EOF\n", {6, 12});
    row("case counts", "%%eof\n", {});
}

void TestVersionCuts::cutsAfterEachMarker()
{
    QFETCH(QByteArray, file);
    QFETCH(QList<std::size_t>, expected);
    const std::vector<std::size_t> cuts = versionCuts(file.toStdString());
    QCOMPARE(QList<std::size_t>(cuts.begin(), cuts.end()), expected);
}

void TestVersionCuts::namesFollowThePath_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QByteArray>("second");
    QTest::addColumn<QByteArray>("folder");
    const auto row
        = [](const char* name, const char* path, const char* second, const char* folder) {
              QTest::newRow(name) << QByteArray(path) << QByteArray(second) << QByteArray(folder);
          };
    row("plain", "/home/a/report.pdf", "report-002.pdf", "report-Copy-pdf");
    row("no extension", "/a/notes", "notes-002", "notes-Copy");
    row("dot in a folder's name", "/a.b/notes", "notes-002", "notes-Copy");
    row("two extensions", "a.tar.gz", "a.tar-002.gz", "a.tar-Copy-gz");
    row("upper case stays", "A.PDF", "A-002.PDF", "A-Copy-PDF");
    row("hidden file", "/a/.hidden", ".hidden-002", ".hidden-Copy");
    row("hidden file with extension", ".h.pdf", ".h-002.pdf", ".h-Copy-pdf");
    row("dot at the end", "draft.", "draft.-002", "draft.-Copy");
    row("slash at the end", "/a/b.pdf//", "b-002.pdf", "b-Copy-pdf");
    row("line end and quote", "a\n\"b.pdf", "a\n\"b-002.pdf", "a\n\"b-Copy-pdf");
    row("not UTF-8", "\xff\xfe.pdf", "\xff\xfe-002.pdf", "\xff\xfe-Copy-pdf");
    row("no name at all", "/", "-002", "-Copy");
}

void TestVersionCuts::namesFollowThePath()
{
    QFETCH(QByteArray, path);
    const FileNameParts parts = fileNameParts(path.toStdString());
    const std::string second = versionFileName(parts.base, 2, versionExtension(parts));
    QTEST(QByteArray::fromStdString(second), "second");
    QTEST(QByteArray::fromStdString(versionFolderName(parts)), "folder");
}

void TestVersionCuts::numbersHaveThreeDigitsOrMore()
{
    QCOMPARE(versionFileName("r", 999, ".pdf"), std::string("r-999.pdf"));
    QCOMPARE(versionFileName("r", 1000, ".pdf"), std::string("r-1000.pdf"));
}

void TestVersionCuts::updatesHaveAMarkerBeforeTheTail()
{
    const std::string marker = "%%EOF";
    const std::string body = "%PDF-1.7\n1 0 obj\nendobj\n";
    QVERIFY(!isIncrementallyUpdated(""));
    QVERIFY(!isIncrementallyUpdated(marker + std::string(14, ' ')));
    QVERIFY(!isIncrementallyUpdated(marker + std::string(19, ' ')));
    QVERIFY(isIncrementallyUpdated(marker + std::string(20, ' ')));
    QVERIFY(!isIncrementallyUpdated(body + marker + "\r\n"));
    QVERIFY(isIncrementallyUpdated(body + marker + "\n" + body + marker + "\n"));
    QVERIFY(isIncrementallyUpdated(std::string(1, '\0') + marker + body));
    QVERIFY(!isIncrementallyUpdated("%%eof" + body));
}

QTEST_APPLESS_MAIN(TestVersionCuts)
#include "tst_VersionCuts.moc"
