#include "support/FileSizeLimit.h"
#include "support/Files.h"
#include "versions/VersionCuts.h"
#include "versions/VersionWriter.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <stop_token>
#include <utility>

using namespace Qt::StringLiterals;
using namespace tarnwick;

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

} // namespace

class TestVersionWriter : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void writesEachPrefix();
    void stopsAtTheFirstFailure();
    void refusesAFolderThatIsNone();
    void cancelLeavesWholeFiles();

private:
    /// @param goesOn told how far it is; whether more is to be written.
    VersionResult write(const std::function<bool(std::uint64_t, std::uint64_t)>& goesOn = {})
    {
        const VersionWriter writer(viewOf(theFile), "r", ".pdf");
        std::stop_source source;
        return writer.write(theFolder.toStdString(),
            VersionWriter::all(versionCuts(viewOf(theFile))), source.get_token(),
            [&](std::uint64_t done, std::uint64_t total) {
                if (goesOn && !goesOn(done, total))
                    source.request_stop();
            });
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
    theFolder = theHome->filePath(u"new/r-Copy-pdf"_s);
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

void TestVersionWriter::stopsAtTheFirstFailure()
{
    const auto size = static_cast<rlim_t>(theFile.size());
    const std::pair<rlim_t, std::size_t> limits[] = {
        {14, 0}, // one byte short of the first
        {15, 1},
        {rlim_t{4} << 20, 2}, // between the third's slices
        {size - 1, 2},
    };
    for (const auto& [limit, written] : limits) {
        QDir(theFolder).removeRecursively();
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
}

void TestVersionWriter::refusesAFolderThatIsNone()
{
    writeFile(theHome->filePath(u"file"_s), {});
    QVERIFY(QFile::link(u"/dev/null/none"_s, theHome->filePath(u"link"_s)));
    for (const QString& name : {u"file"_s, u"file/a/b"_s, u"link"_s, QString(256, u'n')}) {
        theFolder = theHome->filePath(name);
        const VersionResult result = write();
        QCOMPARE(result.outcome, VersionResult::Outcome::isFailed);
        QCOMPARE(result.path, theFolder.toStdString());
    }
    QCOMPARE(QDir(theHome->path()).entryList(QDir::Files | QDir::Hidden | QDir::System).size(), 2);
}

void TestVersionWriter::cancelLeavesWholeFiles()
{
    const VersionResult result = write([](std::uint64_t done, std::uint64_t) {
        return done < (5U << 20U); // within the third version
    });
    QCOMPARE(result.outcome, VersionResult::Outcome::isCancelled);
    QCOMPARE(result.filesWritten, 2U);
    QCOMPARE(names(), QStringList({u"r-001.pdf"_s, u"r-002.pdf"_s}));
}

QTEST_APPLESS_MAIN(TestVersionWriter)
#include "tst_VersionWriter.moc"
