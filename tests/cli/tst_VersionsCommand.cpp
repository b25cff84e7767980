#include "support/CompanionRun.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

const QByteArray threeSaves = "%PDF-1.7\n%%EOF\nsecond save\n%%EOF\nthird\n%%EOF";

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

} // namespace

class TestVersionsCommand : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void printsTheCuts_data();
    void printsTheCuts();
    void exportsBesideOtherFiles_data();
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
    void write(const QString& name, const QByteArray& content) const
    {
        QFile file(theHome->filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    }
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

void TestVersionsCommand::printsTheCuts_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("plain");
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("no marker") << QByteArray("%PDF-1.7\n") << QByteArray()
                               << QByteArray("{\"incremental\":false,\"cuts\":[]}\n");
    QTest::newRow("one save, at the end")
        << QByteArray("%PDF-1.7 a longer body\n%%EOF\n") << QByteArray("1\t29\t29\n")
        << QByteArray("{\"incremental\":false,\"cuts\":[29]}\n");
    QTest::newRow("three saves") << threeSaves << QByteArray("1\t15\t15\n2\t33\t18\n3\t44\t11\n")
                                 << QByteArray("{\"incremental\":true,\"cuts\":[15,33,44]}\n");
}

void TestVersionsCommand::printsTheCuts()
{
    QFETCH(QByteArray, file);
    write(u"a.pdf"_s, file);
    const CompanionRun plain = run({u"a.pdf"_s});
    QCOMPARE(plain.status, 0);
    QTEST(plain.output, "plain");
    const CompanionRun json = run({u"--json"_s, u"-"_s}, file);
    QCOMPARE(json.status, 0);
    QTEST(json.output, "json");
}

void TestVersionsCommand::exportsBesideOtherFiles_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("second");
    QTest::newRow("a PDF") << u"report.pdf"_s << u"report-002.pdf"_s;
    QTest::newRow("no extension") << u"notes"_s << u"notes-002"_s;
    QTest::newRow("quotes and a line end") << u"a\n'b\".PDF"_s << u"a\n'b\"-002.PDF"_s;
    QTest::newRow("standard input") << u"-"_s << u"stdin-002"_s;
}

void TestVersionsCommand::exportsBesideOtherFiles()
{
    QFETCH(QString, file);
    QFETCH(QString, second);
    QVERIFY(QDir(theHome->path()).mkpath(u"out/deep"_s));
    write(u"out/deep/other"_s, "other");
    if (file != u"-"_s)
        write(file, threeSaves);
    const CompanionRun result = run({file, u"--export"_s, u"out/deep"_s}, threeSaves);
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.status, 0);
    QCOMPARE(names(u"out/deep"_s).size(), 4);
    QCOMPARE(contentOf(theHome->filePath(u"out/deep/"_s + second)), threeSaves.first(33));
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
    write(u"a.pdf"_s, threeSaves);
    write(u"file"_s, "file");
    QVERIFY(QDir(theHome->path()).mkpath(u"linked"_s));
    QVERIFY(QFile::link(u"../a.pdf"_s, theHome->filePath(u"linked/a-001.pdf"_s)));
    const CompanionRun result = run({u"a.pdf"_s, u"--export"_s, folder});
    QCOMPARE(result.status, 1);
    QVERIFY2(result.errors.contains(reason), result.errors.constData());
    QCOMPARE(contentOf(theHome->filePath(u"a.pdf"_s)), threeSaves);
    QCOMPARE(contentOf(theHome->filePath(u"file"_s)), QByteArray("file"));
}

void TestVersionsCommand::leavesWholeVersionsOnAFullDisk()
{
    write(u"a.pdf"_s, threeSaves);
    const CompanionRun result = run({u"a.pdf"_s, u"--export"_s, u"out"_s}, {}, 40);
    QCOMPARE(result.status, 1);
    QVERIFY(result.errors.contains("a-003.pdf"));
    QCOMPARE(names(u"out"_s), QStringList({u"a-001.pdf"_s, u"a-002.pdf"_s}));
}

QTEST_APPLESS_MAIN(TestVersionsCommand)
#include "tst_VersionsCommand.moc"
