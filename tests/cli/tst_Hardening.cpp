#include <QProcess>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

/// What the linker has left in the programs' headers, in any build, as binutils read it.
class TestHardening : public QObject
{
    Q_OBJECT

private slots:
    void hardensTheProgram_data();
    void hardensTheProgram();
};

namespace {

QString reading(const char* program, const QStringList& arguments)
{
    QProcess process;
    process.start(QLatin1String(program), arguments);
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput());
}

bool holds(const QString& text, const char* pattern)
{
    return QRegularExpression(QLatin1String(pattern)).match(text).hasMatch();
}

} // namespace

void TestHardening::hardensTheProgram_data()
{
    QTest::addColumn<QString>("path");
    for (const QString& path : QString::fromLatin1(TARNWICK_PROGRAMS).split(u'|'))
        QTest::newRow(qPrintable(path.section(u'/', -1))) << path;
}

void TestHardening::hardensTheProgram()
{
    QFETCH(QString, path);
    const auto read = [&path](const char* what) {
        return reading("readelf", {u"-W"_s, QLatin1String(what), path});
    };
    const QString dynamic = read("--dynamic");
    const QString segments = read("--segments");
    QVERIFY2(holds(dynamic, "FLAGS_1.* PIE"), "lies at one address always");
    QVERIFY2(holds(dynamic, "FLAGS_1.* NOW"), "resolves functions while it runs");
    QVERIFY2(!holds(dynamic, "TEXTREL"), "writes to its code");
    QVERIFY2(holds(segments, "GNU_RELRO"), "can write to resolved addresses");
    QVERIFY2(holds(segments, "GNU_STACK.* RW  "), "runs its stack");
    QVERIFY2(holds(segments, "LOAD.* R E ") && !holds(segments, "RWE"), "runs what it writes");
    const QString imports = read("--dyn-syms");
    QVERIFY2(holds(imports, "__stack_chk_fail"), "does not see its stack overrun");
#ifdef TARNWICK_FORTIFIED
    // The windows leave buffers of known size to Qt.
    const bool hasBuffers = !path.endsWith(u"/tarnwick"_s);
    QVERIFY2(!hasBuffers || holds(imports, "_chk@"), "calls unchecked functions");
#endif
#ifdef __CET__
    const QString main = reading("objdump", {u"--disassemble=main"_s, path});
    QVERIFY2(!holds(main, "<main>:") || holds(main, "<main>:\\n.*endbr64"), "is jumped into");
#endif
}

QTEST_APPLESS_MAIN(TestHardening)
#include "tst_Hardening.moc"
