#include "versions/IncrementalUpdate.h"
#include "versions/VersionCuts.h"
#include "versions/VersionNaming.h"

#include "support/Rows.h"

#include <QTest>

using namespace tarnwick;

class TestVersionCuts : public QObject
{
    Q_OBJECT

private slots:
    void cutsAfterEachMarker_data();
    void cutsAfterEachMarker();
    void namesFollowThePath();
    void updatesHaveAMarkerBeforeTheTail();
};

using CutsAfterEachMarker = Rows<QByteArray, QList<std::size_t>>;

void TestVersionCuts::cutsAfterEachMarker_data()
{
    const CutsAfterEachMarker row;
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
    const auto [file, expected] = CutsAfterEachMarker::fetch();
    const std::vector<std::size_t> cuts = versionCuts(file.toStdString());
    QCOMPARE(QList<std::size_t>(cuts.begin(), cuts.end()), expected);
}

void TestVersionCuts::namesFollowThePath()
{
    const auto names = [](const std::string& path) {
        const FileNameParts parts = fileNameParts(path);
        return QByteArray::fromStdString(versionFolderName(parts) + '/'
            + versionFileName(parts.base, 2, versionExtension(parts)));
    };
    QCOMPARE(names("/home/a/report.pdf"), "report-Copy-pdf/report-002.pdf");
    QCOMPARE(names("/a/notes"), "notes-Copy/notes-002");
    QCOMPARE(names("/a.b/notes"), "notes-Copy/notes-002");
    QCOMPARE(names("a.tar.gz"), "a.tar-Copy-gz/a.tar-002.gz");
    QCOMPARE(names("A.PDF"), "A-Copy-PDF/A-002.PDF");
    QCOMPARE(names("/a/.hidden"), ".hidden-Copy/.hidden-002");
    QCOMPARE(names(".h.pdf"), ".h-Copy-pdf/.h-002.pdf");
    QCOMPARE(names("draft."), "draft.-Copy/draft.-002");
    QCOMPARE(names("/a/b.pdf//"), "b-Copy-pdf/b-002.pdf");
    QCOMPARE(names("a\n\"b.pdf"), "a\n\"b-Copy-pdf/a\n\"b-002.pdf");
    QCOMPARE(names("\xff\xfe.pdf"), "\xff\xfe-Copy-pdf/\xff\xfe-002.pdf");
    QCOMPARE(names("/"), "-Copy/-002");
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
