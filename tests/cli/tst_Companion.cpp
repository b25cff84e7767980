#include "support/CompanionRun.h"
#include "support/Files.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

/// Runs the companion as a script would: by its exit status and what it prints.
class TestCompanion : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void tellsWrongUseFromBadFiles_data();
    void tellsWrongUseFromBadFiles();
    void printsTexts();
    void escapesWhatIsNotAscii();
    void reportsAFullDisk();

private:
    QString path(const char* name) const { return theFolder.filePath(QString::fromUtf8(name)); }

    QTemporaryDir theFolder;
};

void TestCompanion::initTestCase()
{
    writeFile(
        path("small.pdf"), "%PDF-1.4\n%\xE2\n1 0 obj\n<< /Type /Catalog \"\\ >>\nendobj\n%%EOF\n");
}

void TestCompanion::tellsWrongUseFromBadFiles_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("message");
    const auto row = [](const char* name, const QString& words, int status, const char* message) {
        QTest::newRow(name) << words.split(QLatin1Char(' '), Qt::SkipEmptyParts) << status
                            << QByteArray(message);
    };
    const QString small = path("small.pdf");
    row("nothing", QString(), 2, "no command");
    row("an unknown command", QStringLiteral("look ") + small, 2, "unknown command look");
    row("an unknown option", QStringLiteral("listing --jsn ") + small, 2, "unknown option --jsn");
    row("no file", QStringLiteral("listing"), 2, "no file");
    row("two files", QStringLiteral("listing a b"), 2, "more than one file");
    row("an option that the command has not", QStringLiteral("summary --json ") + small, 2,
        "summary has no --json");
    row("an option without its value", QStringLiteral("versions --export"), 2,
        "--export needs a value");
    row("no such file", QStringLiteral("listing ") + path("none.pdf"), 1,
        "none.pdf: No such file or directory");
    row("a folder", QStringLiteral("summary ") + theFolder.path(), 1, "Is a directory");
    row("a name that begins with a dash", QStringLiteral("listing -- -x"), 1,
        "-x: No such file or directory");
    row("options behind the file", QStringLiteral("listing ") + small + QStringLiteral(" --json"),
        0, "");
    row("help", QStringLiteral("--help"), 0, "");
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
    QCOMPARE(print("listing", path("small.pdf"), {}),
        "%PDF-1.4\n%\u00E2\n1 0 obj\n<< /Type /Catalog \"\\ >>\nendobj\n\n%%EOF\n\n" + object);
    QCOMPARE(print("objects", path("small.pdf"), {}), object);
    QCOMPARE(print("summary", path("small.pdf"), {}),
        QByteArray("contains 1 objects, consisting of:\n0 pages\n1 catalogs, "
                   "0 info objects, 0 trailers.\nMaximum version = 1\n"));
    QCOMPARE(
        print("objects", QStringLiteral("-"), "7 0 obj\nx\nendobj\n"), QByteArray("7 0 1 x\n"));
}

void TestCompanion::escapesWhatIsNotAscii()
{
    const QByteArray out
        = runCompanion({QStringLiteral("listing"), QStringLiteral("--json"), path("small.pdf")})
              .output;
    QVERIFY(std::all_of(out.begin(), out.end(), [](char c) { return c > 0 && c < 0x7F; }));
    QStringList texts;
    for (const QByteArray& line : out.split('\n').mid(0, 5)) {
        const QJsonObject piece = QJsonDocument::fromJson(line).object();
        texts.append(piece.value(QStringLiteral("role")).toString() + QLatin1Char(' ')
            + piece.value(QStringLiteral("text")).toString());
    }
    QCOMPARE(texts,
        (QStringList{QStringLiteral("green %PDF-1.4\n"), QStringLiteral("green %\u00E2\n"),
            QStringLiteral("default 1 0 obj\n"),
            QStringLiteral("green << /Type /Catalog \"\\ >>\n"),
            QStringLiteral("red endobj\n\n")}));
}

void TestCompanion::reportsAFullDisk()
{
    if (!QFile::exists(QStringLiteral("/dev/full")))
        QSKIP("there is no /dev/full here");
    const CompanionRun outcome = runCompanion(
        {QStringLiteral("listing"), path("small.pdf")}, {{}, {}, QStringLiteral("/dev/full"), {}});
    QCOMPARE(outcome.status, 1);
    QVERIFY2(outcome.errors.contains("No space left"), outcome.errors.constData());
}

QTEST_GUILESS_MAIN(TestCompanion)
#include "tst_Companion.moc"
