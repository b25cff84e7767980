#include "TextPrintJob.h"

#include "NoticeLine.h"
#include "files/FileBytes.h"
#include "frame/DocumentWindow.h"
#include "text/PlainTextStorage.h"

#include "support/FileSizeLimit.h"
#include "support/Files.h"
#include "support/Panels.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QPrintDialog>
#include <QProgressDialog>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <memory>

#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace tarnwick;

/// Prints texts into files, through the dialog.
class TestTextPrintJob : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void printsIntoAFile();
    void proposesNoOpenedFile();
    void refusesTheOpenedFileBeforeItAsks();
    void aCancelledJobKeepsWhatStoodThere();
    void aFullDiskKeepsWhatStoodThere();

private:
    /// The dialog of a job that has just been begun.
    QPrintDialog* begin(qsizetype lines = 3, const QStringList& missing = {})
    {
        const auto text = std::make_shared<PlainTextStorage>(u"line\n"_s.repeated(lines));
        theJob = new TextPrintJob(text, QFont(), u"report.pdf"_s, missing, theWindow.get());
        return shown<QPrintDialog>();
    }
    static QLineEdit* field(const QPrintDialog* dialog)
    {
        return dialog->findChild<QLineEdit*>(u"filename"_s);
    }
    static void confirm(const QPrintDialog* dialog)
    {
        dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    }
    QString notice() const
    {
        const QList<Notice> unread = theWindow->noticeLine()->unread();
        return unread.size() == 1 ? unread.first().text : QString::number(unread.size());
    }
    QString path(const QString& name) const { return theHome->filePath(name); }
    QStringList names() const
    {
        return QDir(theHome->path()).entryList(QDir::Files | QDir::Hidden);
    }

    std::unique_ptr<QTemporaryDir> theHome;
    std::unique_ptr<DocumentWindow> theWindow;
    QPointer<TextPrintJob> theJob;
};

void TestTextPrintJob::initTestCase()
{
    QApplication::setQuitOnLastWindowClosed(false);
    std::signal(SIGXFSZ, SIG_IGN); // as the program does
}

void TestTextPrintJob::init()
{
    theHome = std::make_unique<QTemporaryDir>();
    QVERIFY(theHome->isValid());
    qputenv("HOME", theHome->path().toLocal8Bit());
    theWindow = std::make_unique<DocumentWindow>(u"Test Window"_s);
    theWindow->show();
    writeFile(path(u"report.pdf"_s), "evidence");
}

void TestTextPrintJob::printsIntoAFile()
{
    const QString said
        = u"“report.pdf” has been printed into “report.pdf” in “%1”."_s.arg(theHome->path());
    for (const QString& lack : {u""_s, u"No text from page 2. "_s}) {
        const QPrintDialog* const dialog = begin(3, lack.trimmed().split(u'|', Qt::SkipEmptyParts));
        QCOMPARE(field(dialog)->text(), path(u"report.pdf"_s));
        answerNext(QMessageBox::Yes); // whether to replace it
        confirm(dialog);
        QTRY_VERIFY(!theJob);
        QVERIFY(contentOf(path(u"report.pdf"_s)).startsWith("%PDF-"));
        QCOMPARE(notice(), lack + said);
        const bool isIncomplete
            = theWindow->noticeLine()->unread().first().kind == Notice::Kind::isIncomplete;
        QCOMPARE(isIncomplete, !lack.isEmpty());
        theWindow->noticeLine()->closeAll();
    }
}

void TestTextPrintJob::proposesNoOpenedFile()
{
    const auto one = FileBytes::read(path(u"report.pdf"_s));
    writeFile(path(u"report-2.pdf"_s), "of another window");
    const auto other = FileBytes::read(path(u"report-2.pdf"_s));
    QCOMPARE(field(begin())->text(), path(u"report-3.pdf"_s));
}

void TestTextPrintJob::refusesTheOpenedFileBeforeItAsks()
{
    const auto bytes = FileBytes::read(path(u"report.pdf"_s));
    QCOMPARE(::link(qPrintable(path(u"report.pdf"_s)), qPrintable(path(u"link.pdf"_s))), 0);
    QPrintDialog* const dialog = begin();
    for (const QString& name : {u"report.pdf"_s, u"link.pdf"_s}) {
        field(dialog)->setText(path(name));
        QTimer::singleShot(0, qApp, [] { // an older road asks here
            if (auto* const box = shown<QMessageBox>(); box && box->button(QMessageBox::Yes))
                box->button(QMessageBox::Yes)->click();
        });
        confirm(dialog);
        QTRY_VERIFY(shown<QMessageBox>());
        QVERIFY(shown<QMessageBox>()->text().contains(u"is open"_s));
        shown<QMessageBox>()->accept();
        QTRY_VERIFY(!shown<QMessageBox>());
        QVERIFY(dialog->isVisible());
    }
    dialog->reject();
    QTRY_VERIFY(!theJob);
    QCOMPARE(contentOf(path(u"report.pdf"_s)), QByteArray("evidence"));
}

void TestTextPrintJob::aCancelledJobKeepsWhatStoodThere()
{
    const QPrintDialog* const dialog = begin(1'000'000);
    field(dialog)->setText(path(u"report.pdf"_s));
    answerNext(QMessageBox::Yes);
    confirm(dialog);
    QTRY_VERIFY(theWindow->findChild<QProgressDialog*>());
    theWindow->findChild<QProgressDialog*>()->findChild<QPushButton*>()->click();
    QTRY_VERIFY(!theJob);
    QCOMPARE(contentOf(path(u"report.pdf"_s)), QByteArray("evidence"));
    QCOMPARE(names(), QStringList(u"report.pdf"_s));
    QCOMPARE(notice(), u"0"_s);
}

void TestTextPrintJob::aFullDiskKeepsWhatStoodThere()
{
    const auto print = [this](rlim_t limit) {
        const QPrintDialog* const dialog = begin(300);
        field(dialog)->setText(path(u"report.pdf"_s));
        answerNext(QMessageBox::Yes);
        const FileSizeLimit full(limit);
        confirm(dialog);
        return QTest::qWaitFor([this] { return !theJob; }, 30'000) && !shown<QDialog>();
    };
    QVERIFY(print(RLIM_INFINITY));
    const auto size = static_cast<rlim_t>(contentOf(path(u"report.pdf"_s)).size());
    for (const rlim_t limit : {rlim_t{3'000}, size - 3'000, size - 4}) {
        theWindow->noticeLine()->closeAll();
        writeFile(path(u"report.pdf"_s), "evidence");
        QVERIFY(print(limit));
        QCOMPARE(contentOf(path(u"report.pdf"_s)), QByteArray("evidence"));
        QCOMPARE(names(), QStringList(u"report.pdf"_s));
        QVERIFY(notice().startsWith(u"“report.pdf” has not been printed: "_s));
    }
}

QTEST_MAIN(TestTextPrintJob)
#include "tst_TextPrintJob.moc"
