#include "support/CompanionRun.h"
#include "support/Files.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

const QByteArray threeSaves = "%PDF-1.7\n%%EOF\nsecond save\n%%EOF\nthird\n%%EOF";

} // namespace

class TestVersionsCommand : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void printsTheCuts();
    void exportsBesideOtherFiles();
    void saysWhyItFailed_data();
    void saysWhyItFailed();
    void leavesWholeVersionsOnAFullDisk();

private:
    /// Runs "versions" in the test's folder. @param limit bytes that a file may have, 0 for any.
    CompanionRun run(
        const QStringList& arguments, const QByteArray& input = {}, rlim_t limit = 0) const
    {
        const auto limitFiles = [limit] {
            const rlimit limits = {limit, limit};
            ::setrlimit(RLIMIT_FSIZE, &limits);
        };
        return runCompanion(QStringList(u"versions"_s) + arguments,
            {theHome->path(), input, {}, limit > 0 ? std::function<void()>(limitFiles) : nullptr});
    }
    QString path(const QString& name) const { return theHome->filePath(name); }
    QStringList names(const QString& folder) const
    {
        return QDir(theHome->filePath(folder)).entryList(QDir::Files | QDir::Hidden);
    }

    std::unique_ptr<QTemporaryDir> theHome;
};

void TestVersionsCommand::init()
{
    theHome = std::make_unique<QTemporaryDir>();
    QVERIFY(theHome->isValid());
}

void TestVersionsCommand::printsTheCuts()
{
    writeFile(path(u"a.pdf"_s), threeSaves);
    const CompanionRun plain = run({u"a.pdf"_s});
    QCOMPARE(plain.status, 0);
    QCOMPARE(plain.output, QByteArray("1\t15\t15\n2\t33\t18\n3\t44\t11\n"));
    QCOMPARE(run({u"--json"_s, u"-"_s}, threeSaves).output,
        QByteArray("{\"incremental\":true,\"cuts\":[15,33,44]}\n"));
    QCOMPARE(run({u"--json"_s, u"-"_s}, "%PDF-1.7\n").output,
        QByteArray("{\"incremental\":false,\"cuts\":[]}\n"));
}

void TestVersionsCommand::exportsBesideOtherFiles()
{
    QVERIFY(QDir(theHome->path()).mkpath(u"out/deep"_s));
    writeFile(path(u"out/deep/other"_s), "other");
    writeFile(path(u"a\n'b\".PDF"_s), threeSaves);
    for (const QString& file : {u"a\n'b\".PDF"_s, u"-"_s}) {
        const CompanionRun result = run({file, u"--export"_s, u"out/deep"_s}, threeSaves);
        QCOMPARE(result.errors, QByteArray());
        QCOMPARE(result.status, 0);
    }
    QCOMPARE(names(u"out/deep"_s).size(), 7);
    QCOMPARE(contentOf(path(u"out/deep/a\n'b\"-002.PDF"_s)), threeSaves.first(33));
    QCOMPARE(contentOf(path(u"out/deep/stdin-002"_s)), threeSaves.first(33));
}

void TestVersionsCommand::saysWhyItFailed_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QByteArray>("reason");
    QTest::newRow("a file has the folder's name") << u"file"_s << QByteArray("Not a directory");
    QTest::newRow("a version's name leads to the file")
        << u"linked"_s << QByteArray("This is the opened file");
    QTest::newRow("nobody may write there") << u"/proc/none"_s << QByteArray("No such file");
}

void TestVersionsCommand::saysWhyItFailed()
{
    QFETCH(QString, folder);
    QFETCH(QByteArray, reason);
    writeFile(path(u"a.pdf"_s), threeSaves);
    writeFile(path(u"file"_s), "file");
    QVERIFY(QDir(theHome->path()).mkpath(u"linked"_s));
    QVERIFY(QFile::link(u"../a.pdf"_s, path(u"linked/a-001.pdf"_s)));
    const CompanionRun result = run({u"a.pdf"_s, u"--export"_s, folder});
    QCOMPARE(result.status, 1);
    QVERIFY2(result.errors.contains(reason), result.errors.constData());
    QCOMPARE(contentOf(path(u"a.pdf"_s)), threeSaves);
    QCOMPARE(contentOf(path(u"file"_s)), QByteArray("file"));
}

void TestVersionsCommand::leavesWholeVersionsOnAFullDisk()
{
    writeFile(path(u"a.pdf"_s), threeSaves);
    const CompanionRun result = run({u"a.pdf"_s, u"--export"_s, u"out"_s}, {}, 40);
    QCOMPARE(result.status, 1);
    QVERIFY(result.errors.contains("a-003.pdf"));
    QCOMPARE(names(u"out"_s), QStringList({u"a-001.pdf"_s, u"a-002.pdf"_s}));
}

QTEST_APPLESS_MAIN(TestVersionsCommand)
#include "tst_VersionsCommand.moc"
