#include "support/CompanionRun.h"
#include "support/Files.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

const QByteArray threeSaves = "%PDF-1.7\n%%EOF\nsecond save\n%%EOF\nthird\n%%EOF";

} // namespace

/// Runs the companion as a script would: by its exit status and what it prints.
class TestCompanion : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void tellsWrongUseFromBadFiles_data();
    void tellsWrongUseFromBadFiles();
    void printsTexts();
    void looksIntoObjects_data();
    void looksIntoObjects();
    void escapesWhatIsNotAscii();
    void reportsAFullDisk();
    void printsTheCuts();
    void hashesWhatItExports();
    void exportsVersionsBesideOtherFiles();
    void saysWhyVersionsFailed();

private:
    QString path(const QString& name) const { return theFolder.filePath(name); }
    QStringList names(const QString& folder) const
    {
        return QDir(path(folder)).entryList(QDir::Files | QDir::Hidden);
    }
    /// Runs "versions" in the test's folder.
    CompanionRun versions(const QStringList& arguments, const QByteArray& input = {}) const
    {
        return runCompanion(
            QStringList(u"versions"_s) + arguments, {theFolder.path(), input, {}, {}});
    }

    QTemporaryDir theFolder;
};

void TestCompanion::initTestCase()
{
    writeFile(path(u"small.pdf"_s),
        "%PDF-1.4\n%\xE2\n1 0 obj\n<< /Type /Catalog \"\\ >>\nendobj\n%%EOF\n");
}

void TestCompanion::tellsWrongUseFromBadFiles_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("message");
    const auto row = [](const char* name, const QString& words, int status, const char* message) {
        QTest::newRow(name) << words.split(u' ', Qt::SkipEmptyParts) << status
                            << QByteArray(message);
    };
    const QString small = path(u"small.pdf"_s);
    row("nothing", QString(), 2, "no command");
    row("an unknown command", u"look "_s + small, 2, "unknown command look");
    row("an unknown option", u"listing --jsn "_s + small, 2, "unknown option --jsn");
    row("no file", u"listing"_s, 2, "no file");
    row("two files", u"listing a b"_s, 2, "more than one file");
    row("an option that the command has not", u"summary --json "_s + small, 2,
        "summary has no --json");
    row("two forms at once", u"versions a.pdf --hashes --json"_s, 2, "exclude each other");
    row("an option without its value", u"versions --export"_s, 2, "--export needs a value");
    row("no such file", u"listing "_s + path(u"none.pdf"_s), 1,
        "none.pdf: No such file or directory");
    row("a folder", u"summary "_s + theFolder.path(), 1, "Is a directory");
    row("a name that begins with a dash", u"listing -- -x"_s, 1, "-x: No such file or directory");
    row("options behind the file", u"listing "_s + small + u" --json"_s, 0, "");
    row("help", u"--help"_s, 0, "");
    row("no object", u"object "_s + small, 2, "no object number");
    row("a word for an object", u"uses -- "_s + small + u" -1"_s, 2,
        "this is no object number: -1");
    row("too many numbers", u"uses "_s + small + u" 1 0"_s, 2, "too many numbers");
    row("a version that is none", u"object "_s + small + u" 1 --at-version x"_s, 2,
        "--at-version needs a number, not x");
    row("two forms at once", u"object --raw --json "_s + small + u" 1"_s, 2, "exclude each other");
    row("an object that is not there", u"object "_s + small + u" 99999999999"_s, 1,
        "there is no object 99999999999 in the listing");
    row("a generation that is not there", u"object "_s + small + u" 1 3"_s, 1, "there is 1 0 1");
    row("an object without stream", u"object --raw "_s + small + u" 1"_s, 1, "has no stream");
    row("no tree", u"tree /dev/null"_s, 1, "no trailer with a Root and no catalog");
}

void TestCompanion::tellsWrongUseFromBadFiles()
{
    QFETCH(QStringList, words);
    QFETCH(int, status);
    QFETCH(QByteArray, message);
    const CompanionRun outcome = runCompanion(words);
    QCOMPARE(outcome.status, status);
    QVERIFY2(outcome.errors.contains(message), outcome.errors.constData());
    QCOMPARE(outcome.output.isEmpty(), status != 0);
    QCOMPARE(outcome.errors.isEmpty(), status == 0);
}

void TestCompanion::printsTexts()
{
    const auto print = [](const char* command, const QString& file, const QByteArray& input) {
        return runCompanion({QLatin1String(command), file}, {{}, input, {}, {}}).output;
    };
    const QByteArray object = "1 0 1 Catalog\n";
    QCOMPARE(print("listing", path(u"small.pdf"_s), {}),
        "%PDF-1.4\n%\u00E2\n1 0 obj\n<< /Type /Catalog \"\\ >>\nendobj\n\n%%EOF\n\n" + object);
    QCOMPARE(print("objects", path(u"small.pdf"_s), {}), object);
    QCOMPARE(print("summary", path(u"small.pdf"_s), {}),
        QByteArray("contains 1 objects, consisting of:\n0 pages\n1 catalogs, "
                   "0 info objects, 0 trailers.\nMaximum version = 1\n"));
    QCOMPARE(print("objects", u"-"_s, "7 0 obj\nx\nendobj\n"), QByteArray("7 0 1 x\n"));
}

void TestCompanion::looksIntoObjects_data()
{
    QTest::addColumn<QString>("words");
    QTest::addColumn<QByteArray>("output");
    QTest::addColumn<int>("status");
    const auto row = [](const char* name, const QString& words, const QByteArray& output,
                         int status = 0) { QTest::newRow(name) << words << output << status; };
    const QByteArray page = "3 0 obj\n<</Type/Page/Parent 2 0 R/Contents 4 0 R>>\nendobj\n";
    row("the latest of an object", u"object - 3"_s, page);
    row("an earlier one", u"object - 3 --at-version 1"_s, "3 0 obj\n<</Old 9 0 R>>\nendobj\n");
    row("a stream's source", u"object - 4 0"_s,
        "4 0 obj\n<</Length 5 0 R>>stream\n[...stream length 3...]\nendstream\nendobj\n");
    row("a stream's bytes", u"object - 4 --raw"_s,
        "a\xFF"
        "b");
    row("known facts", u"object - 5 --json"_s,
        R"({"schema":"object","schemaVersion":1,"number":5,"generation":0,"version":1,)"
        R"("kind":"Number","replacedIn":null,"offset":191,"length":16,)"
        R"("source":"5 0 obj\n3\nendobj","stream":null,"references":[],)"
        R"("all":[{"generation":0,"version":1,"offset":191}]})"
        "\n");
    row("users", u"uses - 2"_s,
        "30\t1 0 1\tCatalog\t/Pages\n90\t2 0 1\tPages\t/A[1]/B#20\n242\t3 0 2\tPage\t/Parent\n");
    row("nobody", u"uses - 8"_s, "");
    row("a tree with loops and a hole", u"tree -"_s,
        "Trailer\n  /Root 1 0 R Catalog\n    /Pages 2 0 R Pages\n      /Kids[0] 3 0 R Page\n"
        "        /Parent 2 0 R Pages (loop)\n        /Contents 4 0 R Stream\n"
        "          /Length 5 0 R Number\n      /A[1]/B#20 2 0 R Pages (loop)\n"
        "  /Info 6 0 R (not in the listing)\n");
    row("what object streams hold is said", u"uses - 8 --json"_s,
        R"({"schema":"uses","schemaVersion":1,"number":8,"count":0,"uses":[],)"
        R"("notSeen":{"objectStreams":1,"objects":12}})"
        "\n",
        4);
}

void TestCompanion::looksIntoObjects()
{
    QFETCH(QString, words);
    QFETCH(QByteArray, output);
    QFETCH(int, status);
    const QByteArray file = "1 0 obj\n<</Type/Catalog/Pages 2 0 R>>\nendobj\n"
                            "2 0 obj\n<</Type/Pages/Kids[3 0 R]/A[1<</B#20 2 0 R>>]>>\nendobj\n"
                            "3 0 obj\n<</Old 9 0 R>>\nendobj\n"
                            "4 0 obj\n<</Length 5 0 R>>stream\na\xFF"
                            "b\nendstream\nendobj\n"
                            "5 0 obj\n3\nendobj\n%%EOF\n"
                            "3 0 obj\n<</Type/Page/Parent 2 0 R/Contents 4 0 R>>\nendobj\n"
                            "trailer\n<</Root 1 0 R/Info 6 0 R>>\nstartxref\n0\n%%EOF\n";
    const QByteArray hidden = status == 4
        ? QByteArray("7 0 obj\n<</Type/ObjStm/N 12>>\nstream\nendstream\nendobj\n")
        : QByteArray();
    const CompanionRun run = runCompanion(words.split(u' '), {{}, hidden + file, {}, {}});
    QCOMPARE(run.output, output);
    QCOMPARE(run.status, status);
    QCOMPARE(run.errors.isEmpty(), status == 0);
}

void TestCompanion::escapesWhatIsNotAscii()
{
    const QByteArray out = runCompanion({u"listing"_s, u"--json"_s, path(u"small.pdf"_s)}).output;
    QVERIFY(std::all_of(out.begin(), out.end(), [](char c) { return c > 0 && c < 0x7F; }));
    QStringList texts;
    for (const QByteArray& line : out.split('\n').mid(0, 5)) {
        const QJsonObject piece = QJsonDocument::fromJson(line).object();
        texts.append(piece.value(u"role"_s).toString() + u' ' + piece.value(u"text"_s).toString());
    }
    QCOMPARE(texts,
        (QStringList{u"green %PDF-1.4\n"_s, u"green %\u00E2\n"_s, u"default 1 0 obj\n"_s,
            u"green << /Type /Catalog \"\\ >>\n"_s, u"red endobj\n\n"_s}));
}

void TestCompanion::reportsAFullDisk()
{
    if (!QFile::exists(u"/dev/full"_s))
        QSKIP("there is no /dev/full here");
    const CompanionRun outcome
        = runCompanion({u"listing"_s, path(u"small.pdf"_s)}, {{}, {}, u"/dev/full"_s, {}});
    QCOMPARE(outcome.status, 1);
    QVERIFY2(outcome.errors.contains("No space left"), outcome.errors.constData());
}

void TestCompanion::printsTheCuts()
{
    writeFile(path(u"a.pdf"_s), threeSaves);
    const CompanionRun plain = versions({u"a.pdf"_s});
    QCOMPARE(plain.status, 0);
    QCOMPARE(plain.output, QByteArray("1\t15\t15\n2\t33\t18\n3\t44\t11\n"));
    QCOMPARE(versions({u"--hashes"_s, u"-"_s}, "%PDF-1.7\n").output, QByteArray());
}

/// The table is for the program that everybody has.
void TestCompanion::hashesWhatItExports()
{
    const QString name = u"a\\\n'b\".pdf"_s;
    writeFile(path(name), threeSaves);
    const CompanionRun result = versions({name, u"--hashes"_s, u"--export"_s, u"sums"_s});
    QCOMPARE(result.status, 0);
    QCOMPARE(result.output.count('\n'), 3);
    QProcess check;
    check.setWorkingDirectory(path(u"sums"_s));
    check.start(u"sha256sum"_s, {u"--check"_s, u"--strict"_s});
    check.write(result.output);
    check.closeWriteChannel();
    QVERIFY(check.waitForFinished());
    QCOMPARE(check.exitCode(), 0);
}

void TestCompanion::exportsVersionsBesideOtherFiles()
{
    QVERIFY(QDir(theFolder.path()).mkpath(u"out/deep"_s));
    writeFile(path(u"out/deep/other"_s), "other");
    writeFile(path(u"a\n'b\".PDF"_s), threeSaves);
    for (const QString& file : {u"a\n'b\".PDF"_s, u"-"_s}) {
        const CompanionRun result = versions({file, u"--export"_s, u"out/deep"_s}, threeSaves);
        QCOMPARE(result.errors, QByteArray());
        QCOMPARE(result.status, 0);
    }
    QCOMPARE(names(u"out/deep"_s).size(), 7);
    QCOMPARE(contentOf(path(u"out/deep/a\n'b\"-002.PDF"_s)), threeSaves.first(33));
    QCOMPARE(contentOf(path(u"out/deep/stdin-002"_s)), threeSaves.first(33));
}

void TestCompanion::saysWhyVersionsFailed()
{
    writeFile(path(u"a.pdf"_s), threeSaves);
    writeFile(path(u"file"_s), "file");
    QVERIFY(QDir(theFolder.path()).mkpath(u"linked"_s));
    QVERIFY(QFile::link(u"../a.pdf"_s, path(u"linked/a-001.pdf"_s)));
    const std::pair<QString, QByteArray> folders[] = {
        {u"file"_s, "Not a directory"},
        {u"linked"_s, "an opened file is never written"},
        {u"/proc/none"_s, "No such file"},
    };
    for (const auto& [folder, reason] : folders) {
        const CompanionRun result = versions({u"a.pdf"_s, u"--export"_s, folder});
        QCOMPARE(result.status, 1);
        QVERIFY2(result.errors.contains(reason), result.errors.constData());
    }
    QCOMPARE(contentOf(path(u"a.pdf"_s)), threeSaves);
    QCOMPARE(contentOf(path(u"file"_s)), QByteArray("file"));
}

QTEST_GUILESS_MAIN(TestCompanion)
#include "tst_Companion.moc"
