#include "document/VersionCuts.h"
#include "document/VersionWriter.h"
#include "support/Files.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <sys/resource.h>
#include <unistd.h>

namespace {

/// Three saves; the last block is long enough to be written in several slices.
QByteArray threeSaves()
{
    return "%PDF-1.7\n%%EOF\n" + QByteArray(5000, 'b') + "%%EOF\r\n" + QByteArray(9 << 20, 'c')
        + "%%EOF\n";
}

std::string_view viewOf(const QByteArray& bytes)
{
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

/// As if the disk were full once a file has this many bytes.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        getrlimit(RLIMIT_FSIZE, &theOld);
        const rlimit limit = {bytes, theOld.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &theOld); }

private:
    rlimit theOld = {};
};

} // namespace

class TestVersionWriter : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void writesEachPrefix();
    void stopsAtTheFirstFailure_data();
    void stopsAtTheFirstFailure();
    void refusesAFolderThatIsNone_data();
    void refusesAFolderThatIsNone();
    void refusesANameThatIsTooLong();
    void neverReplacesTheOpenedFile();
    void cancelLeavesWholeFiles();
    void stopsWhenTheFolderDisappears();

private:
    VersionResult write(const VersionWriter::Progress& progress = {})
    {
        const VersionWriter writer(viewOf(theFile), "r", ".pdf");
        return writer.write(theFolder.toStdString(), versionCuts(viewOf(theFile)), progress);
    }
    QStringList names() const
    {
        return QDir(theFolder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    const QByteArray theFile = threeSaves();
    std::unique_ptr<QTemporaryDir> theHome;
    QString theFolder;
};

void TestVersionWriter::init()
{
    theHome = std::make_unique<QTemporaryDir>();
    QVERIFY(theHome->isValid());
    theFolder = theHome->filePath(QStringLiteral("new/r-Copy-pdf"));
}

void TestVersionWriter::writesEachPrefix()
{
    QVERIFY(QDir().mkpath(theFolder));
    writeFile(theFolder + u"/r-001.pdf", QByteArray(70'000, 'o')); // is replaced
    std::uint64_t last = 0;
    std::uint64_t whole = 0;
    const VersionResult result = write([&](std::uint64_t done, std::uint64_t total) {
        const bool isGrowing = done >= last;
        last = done;
        whole = total;
        return isGrowing;
    });
    QCOMPARE(result.outcome, VersionResult::Outcome::isDone);
    QCOMPARE(result.filesWritten, 3U);
    QCOMPARE(last, whole);
    QCOMPARE(names().size(), 3);
    QCOMPARE(contentOf(theFolder + u"/r-001.pdf"), theFile.first(15));
    QCOMPARE(contentOf(theFolder + u"/r-002.pdf"), theFile.first(15 + 5000 + 6));
    QVERIFY(contentOf(theFolder + u"/r-003.pdf") == theFile);
}

void TestVersionWriter::stopsAtTheFirstFailure_data()
{
    QTest::addColumn<qulonglong>("limit");
    QTest::addColumn<std::size_t>("written");
    const auto row = [](const char* name, qulonglong limit, std::size_t written) {
        QTest::newRow(name) << limit << written;
    };
    row("one byte short of the first", 14ULL, 0U);
    row("the first fits", 15ULL, 1U);
    row("between slices", 4ULL << 20U, 2U);
    row("one byte short of the third", static_cast<qulonglong>(threeSaves().size()) - 1U, 2U);
}

void TestVersionWriter::stopsAtTheFirstFailure()
{
    QFETCH(qulonglong, limit);
    QFETCH(std::size_t, written);
    VersionResult result;
    {
        const FileSizeLimit full(limit);
        result = write();
    }
    QCOMPARE(result.outcome, VersionResult::Outcome::isFailed);
    QCOMPARE(result.filesWritten, written);
    QVERIFY(result.path.ends_with(std::to_string(written + 1) + ".pdf"));
    QVERIFY(!result.reason.empty());
    QCOMPARE(names().size(), static_cast<int>(written));
    if (written > 0)
        QCOMPARE(contentOf(theFolder + u"/r-001.pdf"), theFile.first(15));
}

void TestVersionWriter::refusesAFolderThatIsNone_data()
{
    QTest::addColumn<QString>("folder");
    QTest::newRow("a file has its name") << QStringLiteral("file");
    QTest::newRow("a folder above it is a file") << QStringLiteral("file/a/b");
    QTest::newRow("it leads nowhere") << QStringLiteral("link");
    QTest::newRow("its name is too long") << QString(256, QLatin1Char('n'));
}

void TestVersionWriter::refusesAFolderThatIsNone()
{
    QFETCH(QString, folder);
    writeFile(theHome->filePath(QStringLiteral("file")), {});
    QVERIFY(
        QFile::link(QStringLiteral("/dev/null/none"), theHome->filePath(QStringLiteral("link"))));
    theFolder = theHome->filePath(folder);
    const VersionResult result = write();
    QCOMPARE(result.outcome, VersionResult::Outcome::isFailed);
    QCOMPARE(result.path, theFolder.toStdString());
    QCOMPARE(QDir(theHome->path()).entryList(QDir::Files | QDir::Hidden | QDir::System).size(), 2);
}

void TestVersionWriter::refusesANameThatIsTooLong()
{
    const VersionWriter writer(viewOf(theFile), std::string(251, 'n'), ".pdf");
    const VersionResult result
        = writer.write(theFolder.toStdString(), versionCuts(viewOf(theFile)));
    QCOMPARE(result.outcome, VersionResult::Outcome::isFailed);
    QCOMPARE(result.filesWritten, 0U);
    QCOMPARE(names(), QStringList());
}

void TestVersionWriter::neverReplacesTheOpenedFile()
{
    QVERIFY(QDir().mkpath(theFolder));
    const std::string opened = theHome->filePath(QStringLiteral("opened.pdf")).toStdString();
    writeFile(QString::fromStdString(opened), theFile);
    const std::string second = theFolder.toStdString() + "/r-002.pdf";
    for (const auto makeLink : {::symlink, ::link}) {
        QFile::remove(QString::fromStdString(second));
        QCOMPARE(makeLink(opened.c_str(), second.c_str()), 0);
        VersionWriter writer(viewOf(theFile), "r", ".pdf");
        writer.setOpenedFile(fileIdentity(opened));
        const VersionResult result
            = writer.write(theFolder.toStdString(), versionCuts(viewOf(theFile)));
        QCOMPARE(result.outcome, VersionResult::Outcome::isRefused);
        QCOMPARE(result.filesWritten, 1U);
        QCOMPARE(fileIdentity(second), fileIdentity(opened));
        QVERIFY(contentOf(QString::fromStdString(opened)) == theFile);
    }
}

void TestVersionWriter::cancelLeavesWholeFiles()
{
    const VersionResult result = write([](std::uint64_t done, std::uint64_t) {
        return done < (5U << 20U); // within the third version
    });
    QCOMPARE(result.outcome, VersionResult::Outcome::isCancelled);
    QCOMPARE(result.filesWritten, 2U);
    QCOMPARE(names(), QStringList({QStringLiteral("r-001.pdf"), QStringLiteral("r-002.pdf")}));
}

void TestVersionWriter::stopsWhenTheFolderDisappears()
{
    const VersionResult result = write([&](std::uint64_t done, std::uint64_t) {
        return done < 15 || !QDir(theFolder).exists() || QDir(theFolder).removeRecursively();
    });
    QCOMPARE(result.outcome, VersionResult::Outcome::isFailed);
    QVERIFY(!QDir(theFolder).exists());
}

QTEST_APPLESS_MAIN(TestVersionWriter)
#include "tst_VersionWriter.moc"
