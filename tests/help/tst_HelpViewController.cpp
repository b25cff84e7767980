#include "help/HelpViewController.h"

#include "pages/PDFView.h"
#include "pdf/PDFDocument.h"
#include "support/Files.h"
#include "support/PdfBuilder.h"

#include <QFile>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace tarnwick;

class TestHelpViewController : public QObject
{
    Q_OBJECT

private slots:
    void showsTheManualAnewEachTime();
    void staysEmptyWithoutAManual();
};

void TestHelpViewController::showsTheManualAnewEachTime()
{
    const QTemporaryDir folder;
    const QString manual = folder.filePath(u"manual.pdf"_s);
    writeFile(manual, QByteArray::fromStdString(PdfBuilder().addPage("Help").bytes()));
    HelpViewController help(manual);
    help.show();
    QTRY_VERIFY_WITH_TIMEOUT(help.helpPDFView()->document(), 30'000);
    QCOMPARE(help.helpPDFView()->document(), help.thePDFDocument());
    help.helpPDFView()->setScaleFactor(3.0);
    QVERIFY(!help.helpPDFView()->autoScales());
    help.autoZoom();
    QVERIFY(help.helpPDFView()->autoScales());

    const QPointer<PDFDocument> first = help.thePDFDocument();
    help.hide();
    QVERIFY(!first);
    QCOMPARE(help.helpPDFView()->document(), nullptr);
    help.show();
    QTRY_VERIFY_WITH_TIMEOUT(help.helpPDFView()->document(), 30'000);
}

void TestHelpViewController::staysEmptyWithoutAManual()
{
    const QString noPdf = QFile::decodeName(__FILE__);
    for (const QString& file : {u"/nonexistent/TarnwickHelp.pdf"_s, noPdf}) {
        HelpViewController help(file);
        help.show();
        const auto isDecided = [&help] {
            return !help.thePDFDocument()
                || help.thePDFDocument()->state() == PDFDocument::State::isRefused;
        };
        QTRY_VERIFY_WITH_TIMEOUT(isDecided(), 30'000);
        QCOMPARE(help.helpPDFView()->document(), nullptr);
    }
}

QTEST_MAIN(TestHelpViewController)
#include "tst_HelpViewController.moc"
