#include "AppDelegate.h"

#include "OpenFailureAlert.h"
#include "PDFEngineProcess.h"
#include "PasswordPrompt.h"
#include "Windows.h"
#include "files/OpenedFiles.h"
#include "frame/CommandRouter.h"
#include "frame/DocumentWindow.h"
#include "frame/RecentFileMenu.h"
#include "frame/RecentFiles.h"
#include "inspector/SourceViewController.h"
#include "support/Files.h"
#include "support/Panels.h"
#include "support/PdfBuilder.h"
#include "support/Rows.h"
#include "text/ListedLines.h"
#include "text/PlainTextView.h"

#include <QApplication>
#include <QLabel>
#include <QListWidget>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

const QString notOpened = u"The CGDocument couldn't be opened.\n"_s;

/// What offers the source: in the dialog of an opening, which may be about to come up, or in one
/// that says why there is no document. Null without one.
QPushButton* offer(bool isOpening = false)
{
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (const QWidget* dialog : widgets) {
        if (dialog->inherits("QProgressDialog") != isOpening
            || !(isOpening || (dialog->inherits("QDialog") && dialog->isVisible())))
            continue;
        for (QPushButton* button : dialog->findChildren<QPushButton*>()) {
            if (button->text() == u"Open &Source"_s && button->isEnabled() && !button->isHidden())
                return button;
        }
    }
    return nullptr;
}

QString textOf(const PlainTextView* view)
{
    return linesOf(*view->textStorage()).join(u'\n');
}

/// Which commands of an open file's the window's menu offers.
QString offered(const DocumentWindow& window)
{
    QStringList commands = u"openSource openBytes openVersions openPlainPDF exportPDFversions "
                           "exportFlatPDF exportPlainText exportRichText print"_s.split(u' ');
    window.router()->validate();
    commands.removeIf(
        [&](const QString& command) { return !window.commandAction(command)->isEnabled(); });
    return commands.join(u' ');
}

} // namespace

/// The source of files that the PDF engine refuses, cannot read yet, or is not to be asked about.
class TestSourceAlone : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void isOfferedAndShown_data();
    void isOfferedAndShown();
    void showsWhileTheFileOpens_data();
    void showsWhileTheFileOpens();
    void refusedFilesShareAButton();
    void recentFilesOfferIt();
    void mendedFileOpensBesideIt();

private:
    QString write(const QByteArray& bytes) const;
    /// The engine waits with each opening until release().
    void holdEngine();
    void release() const { writeFile(theFolder->filePath(u"go"_s), {}); }
    /// The inspector, whose stored file shows; null when none comes.
    SourceViewController* inspector() const;
    DocumentController& controller() const { return *theDelegate->controller(); }

    std::unique_ptr<QTemporaryDir> theFolder;
    std::unique_ptr<AppDelegate> theDelegate;
};

void TestSourceAlone::init()
{
    QSettings().clear();
    setPDFEnginePathForTests(qApp->applicationDirPath() + u"/tarnwick-pdf-engine"_s);
    theFolder = std::make_unique<QTemporaryDir>();
    theDelegate = std::make_unique<AppDelegate>();
    registerWindows(*theDelegate);
}

void TestSourceAlone::cleanup()
{
    release(); // what waits
    theDelegate.reset();
    qDeleteAll(allShown<OpenFailureAlert>());
}

QString TestSourceAlone::write(const QByteArray& bytes) const
{
    const QString path = theFolder->filePath(u"a.pdf"_s);
    writeFile(path, bytes);
    return path;
}

void TestSourceAlone::holdEngine()
{
    const QString path = theFolder->filePath(u"engine"_s);
    const QString real = qApp->applicationDirPath() + u"/tarnwick-pdf-engine"_s;
    writeFile(path,
        u"#!/bin/sh\nwhile ! [ -e '%1/go' ] && [ -e '%1' ]; do /bin/sleep 0.02; done\n"
        "exec '%2' \"$@\"\n"_s.arg(theFolder->path(), real)
            .toUtf8());
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    setPDFEnginePathForTests(path);
}

SourceViewController* TestSourceAlone::inspector() const
{
    SourceViewController* found = nullptr;
    const auto isThere = [&] {
        for (const DocumentWindow* window : controller().windows()) {
            if (auto* const content = qobject_cast<SourceViewController*>(window->content()))
                found = content;
        }
        return found && !found->isFilling();
    };
    return QTest::qWaitFor(isThere, 30'000) ? found : nullptr;
}

using IsOfferedAndShown = Rows<QByteArray, QString, QString, QString, QString>;

void TestSourceAlone::isOfferedAndShown_data()
{
    const IsOfferedAndShown row;
    const QString data = QString::fromLatin1(TARNWICK_TEST_DATA);
    const QString alert = u"“a.pdf” could not be opened."_s;
    const QString refusal = u"It is not a PDF, or too damaged to be read as one."_s;
    const char* const commands = "openSource openBytes openVersions print";
    row("no PDF", "Dear Sir", alert, refusal, "Dear Sir", commands);
    row("nothing", "", alert, "The file is empty.", "", commands);
    row("saved twice", "1 0 obj\n1\nendobj\n%%EOF\n2 0 obj\n2\nendobj\n%%EOF\n", alert,
        "The file has no document catalog, so it cannot be read as a PDF.", "1 0 obj",
        "openSource openBytes openVersions exportPDFversions print");
    row("for the owners of certificates",
        "%PDF-1.7\n1 0 obj\n<< /Type /Catalog /Pages 2 0 R >>\nendobj\n2 0 obj\n<< /Type /Pages "
        "/Kids "
        "[] /Count 0 >>\nendobj\ntrailer\n<< /Root 1 0 R /Encrypt << /Filter /Adobe.PubSec /V 4 >> "
        "/ID [<00> <00>] >>\n",
        alert, "", "%PDF-1.7", commands);
    row("a password", contentOf(data + u"/locked-aes-256.pdf"_s),
        "“a.pdf” is protected. &Password:",
        "It is protected by a password. Open the file again to be asked for it.", "%PDF-1.7",
        commands);
}

void TestSourceAlone::isOfferedAndShown()
{
    const auto [bytes, question, reason, lower, commands] = IsOfferedAndShown::fetch();
    const QString path = write(bytes);
    controller().openFiles({path});
    QTRY_VERIFY_WITH_TIMEOUT(offer(), 30'000);
    QStringList labels;
    for (const QLabel* label : offer()->window()->findChildren<QLabel*>())
        labels << label->text();
    QVERIFY(labels.contains(question) && !offer()->isDefault());
    const auto* const alert = qobject_cast<OpenFailureAlert*>(offer()->window());
    const QString said = alert ? alert->informativeText() : reason;
    offer()->click();

    const SourceViewController* const content = inspector();
    QVERIFY(content);
    QTRY_VERIFY_WITH_TIMEOUT(!content->upperTextView()->gaps().isEmpty(), 30'000);
    QCOMPARE(content->upperTextView()->gaps().constFirst().note,
        QString(u"There is no flattened PDF. " + said));
    QCOMPARE(said, reason.isEmpty() ? said : reason);
    QCOMPARE(textOf(content->upperTextView()), QString());
    QVERIFY(textOf(content->lowerTextView()).left(lower.size()) == lower);
    QCOMPARE(content->lowerTextView()->gaps().isEmpty(), !bytes.isEmpty());
    QCOMPARE(textOf(content->bottomTextView()), notOpened);
    const DocumentWindow& window = *DocumentWindow::of(content);
    QCOMPARE(window.windowTitle(), u"\u203C\uFE0Fa.pdf"_s);
    QTRY_COMPARE(offered(window), commands);
    QTRY_VERIFY(!shown<PasswordPrompt>() && !shown<OpenFailureAlert>());
    QVERIFY(OpenedFiles::contains(path.toStdString()));
    QCOMPARE(controller().recentFiles()->paths(), {path});

    // Opening it says the same again, the window stays, and its source is that window.
    controller().openFiles({path});
    QTRY_VERIFY_WITH_TIMEOUT(shown<PasswordPrompt>() || shown<OpenFailureAlert>(), 30'000);
    controller().openSources({path});
    QTRY_COMPARE(controller().windows().size(), 1);
    QCOMPARE(inspector(), content);
    if (auto* const prompt = shown<PasswordPrompt>()) {
        QVERIFY(!offer() && !prompt->isModal());
        emit prompt->passwordEntered(u"geheim"_s);
        QTRY_COMPARE_WITH_TIMEOUT(controller().windows().size(), 2, 30'000);
        QTRY_VERIFY_WITH_TIMEOUT(textOf(content->upperTextView()).startsWith(u"1 0 1 Catalog"_s)
                || textOf(content->upperTextView()).startsWith(u"%PDF-1.7"_s),
            30'000);
        QVERIFY(content->upperTextView()->gaps().isEmpty());
    }
}

using WhileTheFileOpens = Rows<QString, QString, int>;

void TestSourceAlone::showsWhileTheFileOpens_data()
{
    const WhileTheFileOpens row;
    row("the document comes behind it", "wait", "", 2);
    row("given up, the source stays", "cancel", "Its opening was cancelled.", 2);
    row("its window closes: nothing is left to come", "close", "", 0);
    row("it is quit", "quit", "", 0);
}

void TestSourceAlone::showsWhileTheFileOpens()
{
    const auto [what, reason, windows] = WhileTheFileOpens::fetch();
    holdEngine();
    const QString path = write(QByteArray::fromStdString(PdfBuilder().addPage("Hello").bytes()));
    controller().openFiles({path});
    QTRY_VERIFY_WITH_TIMEOUT(offer(true), 30'000);
    offer(true)->click();
    const SourceViewController* const content = inspector();
    QVERIFY(content && controller().isOpening());
    QTRY_VERIFY(textOf(content->lowerTextView()).startsWith(u"%PDF-1.7"_s));
    QCOMPARE(textOf(content->bottomTextView()), QString());
    QTRY_VERIFY(!offer(true));
    auto* const cancel = content->findChild<QToolButton*>(u"upperCancel"_s);
    QVERIFY(cancel->isVisible());
    if (what == "cancel"_L1) {
        cancel->click();
        DocumentWindow::send(content, u"openVersions"_s); // takes nothing of the engine
    } else if (what == "close"_L1)
        DocumentWindow::of(content)->close();
    else if (what == "quit"_L1)
        controller().closeAll();
    else
        release();
    QTRY_VERIFY_WITH_TIMEOUT(!controller().isOpening(), 30'000);
    // Without a window the start window comes, and with a quit program nothing.
    const auto count = [this] {
        qsizetype shown = 0;
        for (const FrameDocument* document : controller().documents())
            shown += document->windows().size();
        return shown;
    };
    QTRY_COMPARE(count(), windows);
    if (windows == 0)
        return;
    QTRY_COMPARE(content->upperTextView()->gaps().isEmpty(), reason.isEmpty());
    if (reason.isEmpty())
        QTRY_VERIFY_WITH_TIMEOUT(
            textOf(content->bottomTextView()).contains(u"Flattened PDF (Quartz 2D)"_s), 30'000);
    else
        QCOMPARE(content->upperTextView()->gaps().constFirst().note,
            QString(u"There is no flattened PDF. " + reason));
}

/// What could not be read has no source.
void TestSourceAlone::refusedFilesShareAButton()
{
    const QString one = write("Dear Sir");
    const QString other = theFolder->filePath(u"b.pdf"_s);
    writeFile(other, "Dear Madam");
    controller().openFiles({theFolder->filePath(u"none.pdf"_s)});
    QTRY_VERIFY(shown<OpenFailureAlert>());
    const auto* const alert = shown<OpenFailureAlert>();
    QVERIFY(!offer());
    controller().openFiles({one, other});
    QTRY_VERIFY_WITH_TIMEOUT(!controller().isOpening(), 30'000);
    QMenu* const menu = offer()->menu();
    QCOMPARE(menu->actions().size(), 4); // and a line before "All"
    emit offer()->clicked(); // as its key does when the menu has closed
    QVERIFY(alert->isVisible() && controller().documents().isEmpty());
    menu->actions().constLast()->trigger();
    QTRY_COMPARE_WITH_TIMEOUT(controller().documents().size(), 2, 30'000);
    QTRY_VERIFY(alert->isVisible());
}

/// By mouse and by key, in the start window and in the menu.
void TestSourceAlone::recentFilesOfferIt()
{
    const QString path = write(QByteArray::fromStdString(PdfBuilder().addPage("Hello").bytes()));
    controller().recentFiles()->add(path);
    for (const QString& way : {u"list mouse"_s, u"list key"_s, u"menu mouse"_s, u"menu key"_s}) {
        theDelegate->showStartWindow();
        const DocumentWindow* const window = controller().windows().constFirst();
        auto* const list = window->findChild<QListWidget*>(u"recentList"_s);
        auto* const menu = window->findChild<QMenu*>(u"recentMenu"_s);
        QTRY_COMPARE(list->count(), 1);
        const bool isByKey = way.endsWith(u"key"_s);
        if (way.startsWith(u"list"_s)) {
            const QPoint place = list->visualItemRect(list->item(0)).center();
            QContextMenuEvent event(
                isByKey ? QContextMenuEvent::Keyboard : QContextMenuEvent::Mouse, place,
                list->viewport()->mapToGlobal(place));
            QApplication::sendEvent(isByKey ? list : list->viewport(), &event);
        } else {
            menu->popup({});
            menu->setActiveAction(menu->actions().constFirst());
            if (isByKey)
                QTest::keyClick(menu, Qt::Key_F10, Qt::ShiftModifier);
            else
                QTest::mouseClick(menu, Qt::RightButton, {},
                    menu->actionGeometry(menu->actions().constFirst()).center());
        }
        QWidget* const context = QApplication::activePopupWidget();
        QVERIFY2(qobject_cast<RecentFileMenu*>(context), qPrintable(way));
        QTest::keyClick(context, Qt::Key_S);
        const SourceViewController* const content = inspector();
        QVERIFY(content && !QApplication::activePopupWidget());
        QCOMPARE(controller().windows().size(), 1);
        DocumentWindow::of(content)->close();
        QTRY_VERIFY(controller().documents().isEmpty());
    }
}

/// What was refused may open another time; the old source stays what it was.
void TestSourceAlone::mendedFileOpensBesideIt()
{
    controller().openSources({write("Dear Sir")});
    const SourceViewController* const content = inspector();
    QTRY_VERIFY_WITH_TIMEOUT(!content->upperTextView()->gaps().isEmpty(), 30'000);
    const QString path = write(QByteArray::fromStdString(PdfBuilder().addPage("Hello").bytes()));
    for (const int documents : {2, 2}) {
        controller().openFiles({path});
        QTRY_VERIFY_WITH_TIMEOUT(!controller().isOpening(), 30'000);
        QCOMPARE(controller().documents().size(), documents);
    }
    QVERIFY(textOf(content->lowerTextView()).startsWith(u"Dear Sir"_s));
}

QTEST_MAIN(TestSourceAlone)
#include "tst_SourceAlone.moc"
