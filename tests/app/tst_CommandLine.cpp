#include <QProcess>
#include <QTest>

class TestCommandLine : public QObject
{
    Q_OBJECT

private slots:
    void answersWithoutADisplay_data();
    void answersWithoutADisplay();
};

void TestCommandLine::answersWithoutADisplay_data()
{
    QTest::addColumn<QString>("words");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("errors");
    const auto row = [](const char* words, int status, const char* output, const char* errors) {
        QTest::newRow(words) << QString::fromLatin1(words) << status << QString::fromLatin1(output)
                             << QString::fromLatin1(errors);
    };
    row("--version", 0, "Tarnwick ", "");
    row("-v", 0, "Tarnwick ", "");
    row("-h", 0, "Usage: ", "");
    row("--help file.pdf", 0, "Usage: ", "");
    // The toolkit's options are the toolkit's, whatever letters they have.
    row("-platformtheme none -platform nowhere --version", 0, "Tarnwick ", "");
    row("-platform offscreen -platformtheme none --nonsense", 1, "", "Unknown option 'nonsense'.");
    row("-platform offscreen --nonsense -- -v", 1, "", "Unknown option 'nonsense'.");
}

void TestCommandLine::answersWithoutADisplay()
{
    QFETCH(const QString, words);
    QFETCH(const QString, output);
    QFETCH(const QString, errors);
    QProcess program;
    program.start(QString::fromLatin1(TARNWICK_PROGRAM), words.split(u' '));
    QVERIFY(program.waitForFinished());
    QTEST(program.exitCode(), "status");
    const QString printed = QString::fromLocal8Bit(program.readAllStandardOutput());
    const QString complaint = QString::fromLocal8Bit(program.readAllStandardError());
    QVERIFY2(printed.contains(output), qPrintable(printed));
    QVERIFY2(complaint.contains(errors), qPrintable(complaint));
}

QTEST_APPLESS_MAIN(TestCommandLine)
#include "tst_CommandLine.moc"
