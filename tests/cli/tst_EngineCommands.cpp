#include "support/CompanionRun.h"
#include "support/PdfBuilder.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

QByteArray twoPages()
{
    PdfBuilder builder;
    builder.addPage("First page").addPage("Second\nline");
    return QByteArray::fromStdString(builder.bytes());
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

} // namespace

class TestEngineCommands : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void writesWhatTheEngineMakes_data();
    void writesWhatTheEngineMakes();
    void readsStandardInput();
    void replacesTheOutput_data();
    void replacesTheOutput();
    void failsOnAFullDevice();
    void saysWhyItFailed_data();
    void saysWhyItFailed();
    void asksForThePassword();

private:
    /// Runs a command in the test's folder, without a terminal that could be asked for passwords.
    CompanionRun run(const QStringList& arguments, const QByteArray& input = {}) const
    {
        return runCompanion(arguments, {theHome->path(), input, {}, [] { ::setsid(); }});
    }
    QString path(const QString& name) const { return theHome->filePath(name); }
    void write(const QString& name, const QByteArray& content) const
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    }
    QStringList names() const
    {
        return QDir(theHome->path()).entryList(QDir::Files | QDir::Hidden | QDir::System);
    }

    std::unique_ptr<QTemporaryDir> theHome;
};

void TestEngineCommands::init()
{
    theHome = std::make_unique<QTemporaryDir>();
    QVERIFY(theHome->isValid());
    write(u"a.pdf"_s, twoPages());
}

void TestEngineCommands::writesWhatTheEngineMakes_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QByteArray>("start");
    QTest::addColumn<QByteArray>("held");
    QTest::newRow("flat") << u"flat"_s << QByteArray("%PDF-") << QByteArray("/Count 2");
    QTest::newRow("text") << u"text"_s << QByteArray("First page\n")
                          << QByteArray("\nSecond\nline\n");
    QTest::newRow("rtf") << u"rtf"_s << QByteArray("{\\rtf1")
                         << QByteArray("\nSecond\\par\nline\\par\n");
}

void TestEngineCommands::writesWhatTheEngineMakes()
{
    QFETCH(QString, command);
    QFETCH(QByteArray, start);
    QFETCH(QByteArray, held);
    const CompanionRun result = run({command, u"a.pdf"_s, u"-o"_s, u"out"_s});
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.status, 0);
    const QByteArray content = contentOf(path(u"out"_s));
    QVERIFY2(content.startsWith(start), content.constData());
    QVERIFY2(content.contains(held), content.constData());
    QCOMPARE(run({command, u"a.pdf"_s, u"-o"_s, u"-"_s}).output, content);
    QCOMPARE(names(), QStringList({u"a.pdf"_s, u"out"_s}));
}

void TestEngineCommands::readsStandardInput()
{
    const CompanionRun result = run({u"text"_s, u"-"_s, u"-o"_s, u"-"_s}, twoPages());
    QVERIFY2(result.output.contains("Second\nline\n"), result.errors.constData());
}

void TestEngineCommands::replacesTheOutput_data()
{
    QTest::addColumn<QString>("command");
    for (const char* command : {"flat", "text", "rtf"})
        QTest::newRow(command) << QString::fromLatin1(command);
}

void TestEngineCommands::replacesTheOutput()
{
    QFETCH(QString, command);
    const QString longest(255, u'n');
    write(longest, QByteArray(100'000, 'o'));
    QCOMPARE(run({command, u"a.pdf"_s, u"-o"_s, longest}).status, 0);
    QVERIFY(!contentOf(path(longest)).contains("ooo"));
}

void TestEngineCommands::failsOnAFullDevice()
{
    QVERIFY(QFile::link(u"/dev/full"_s, path(u"full"_s)));
    for (const QString& command : {u"text"_s, u"rtf"_s}) {
        const CompanionRun result = run({command, u"a.pdf"_s, u"-o"_s, u"full"_s});
        QCOMPARE(result.status, 1);
        QVERIFY2(result.errors.contains("full: No space left"), result.errors.constData());
    }
    QCOMPARE(names().size(), 2);
}

void TestEngineCommands::saysWhyItFailed_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("output");
    QTest::addColumn<QByteArray>("reason");
    QTest::newRow("no such file") << u"none.pdf"_s << u"out"_s << QByteArray("none.pdf: No such");
    QTest::newRow("a folder") << u"."_s << u"out"_s << QByteArray("directory");
    QTest::newRow("not a PDF") << u"text.pdf"_s << u"out"_s << QByteArray("text.pdf: ");
    QTest::newRow("the file itself")
        << u"a.pdf"_s << u"./a.pdf"_s << QByteArray("the file that is being exported");
    QTest::newRow("a link to the file")
        << u"a.pdf"_s << u"link.pdf"_s << QByteArray("the file that is being exported");
    QTest::newRow("into no folder") << u"a.pdf"_s << u"none/out"_s << QByteArray("No such file");
    QTest::newRow("onto a folder") << u"a.pdf"_s << u"/"_s << QByteArray("irectory");
}

void TestEngineCommands::saysWhyItFailed()
{
    QFETCH(QString, file);
    QFETCH(QString, output);
    QFETCH(QByteArray, reason);
    write(u"text.pdf"_s, "only text");
    QCOMPARE(::link(qPrintable(path(u"a.pdf"_s)), qPrintable(path(u"link.pdf"_s))), 0);
    for (const QString& command : {u"flat"_s, u"rtf"_s}) {
        const CompanionRun result = run({command, file, u"-o"_s, output});
        QCOMPARE(result.status, 1);
        QVERIFY2(result.errors.contains(reason), result.errors.constData());
    }
    QCOMPARE(names().size(), 3);
    QCOMPARE(contentOf(path(u"a.pdf"_s)), twoPages());
}

void TestEngineCommands::asksForThePassword()
{
    if (QStandardPaths::findExecutable(u"qpdf"_s).isEmpty())
        QSKIP("qpdf is not installed");
    QCOMPARE(QProcess::execute(u"qpdf"_s,
                 {u"--encrypt"_s, u"sesame"_s, u"owner"_s, u"256"_s, u"--"_s, path(u"a.pdf"_s),
                     path(u"locked.pdf"_s)}),
        0);
    const auto text = [this](const QStringList& options) {
        return run(QStringList({u"text"_s, u"locked.pdf"_s, u"-o"_s, u"-"_s}) + options);
    };
    QVERIFY(text({}).errors.contains("A password is needed"));
    write(u"wrong"_s, "Sesame\n");
    QVERIFY(text({u"--password-file"_s, u"wrong"_s}).errors.contains("not its password"));
    write(u"right"_s, "sesame\r\nmore\n");
    const CompanionRun result = text({u"--password-file"_s, u"right"_s});
    QVERIFY2(result.output.contains("Second\nline\n"), result.errors.constData());
    QCOMPARE(result.status, 0);
}

QTEST_APPLESS_MAIN(TestEngineCommands)
#include "tst_EngineCommands.moc"
