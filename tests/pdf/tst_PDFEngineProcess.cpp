#include "PDFEngineProcess.h"

#include "support/Files.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace tarnwick;

class TestPDFEngineProcess : public QObject
{
    Q_OBJECT

private slots:
    void givesNothingOfItsEnvironment();
};

void TestPDFEngineProcess::givesNothingOfItsEnvironment()
{
    const QTemporaryDir folder;
    const QString engine = folder.filePath(u"engine"_s);
    const QString report = folder.filePath(u"report"_s);
    writeFile(engine, "#!/bin/sh\nexport -p >" + report.toUtf8() + "\n");
    QVERIFY(QFile::setPermissions(engine, QFile::ReadOwner | QFile::ExeOwner));
    setPDFEnginePathForTests(engine);
    qputenv("TARNWICK_SECRET", "1");
    PDFEngineProcess process;
    QSignalSpy ended(&process, &PDFEngineProcess::ended);
    QVERIFY(process.start(*FileBytes::copy("bytes"), 4096));
    QVERIFY(ended.count() > 0 || ended.wait());
    const QByteArray variables = contentOf(report);
    QVERIFY(variables.contains("PWD"));
    QVERIFY2(!variables.contains("TARNWICK") && !variables.contains("HOME"), variables.constData());
}

QTEST_GUILESS_MAIN(TestPDFEngineProcess)
#include "tst_PDFEngineProcess.moc"
