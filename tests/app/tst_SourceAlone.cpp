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
#include <QProgressDialog>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

const QString notOpened = u"The CGDocument couldn't be opened.\n"_s;

QPushButton* buttonOf(const QWidget* dialog)
{
    for (QPushButton* button : dialog->findChildren<QPushButton*>()) {
        if (button->text() == u"Open &Source"_s && !button->isHidden())
            return button;
    }
    return nullptr;
}

/// The dialog that offers the source: what says that a file is being opened, which may be about to
/// come up, or what shows that it cannot be. Null without one.
QWidget* offer(bool isOpening = false)
{
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget* widget : widgets) {
        const bool isProgress = qobject_cast<QProgressDialog*>(widget) != nullptr;
        const auto* const button = qobject_cast<QDialog*>(widget) ? buttonOf(widget) : nullptr;
        if (button && button->isEnabled() && isProgress == isOpening
            && (isProgress || widget->isVisible()))
            return widget;
    }
    return nullptr;
}

QString textOf(const PlainTextView* view)
{
    return linesOf(*view->textStorage()).join(u'\n');
}

/// Everything that can be chosen in the window's menus among what an open file offers.
QString offered(const DocumentWindow& window)
{
    QStringList commands;
    window.router()->validate();
    for (const char* command : {"openSource", "openBytes", "openVersions", "openPlainPDF",
             "exportPDFversions", "exportFlatPDF", "exportPlainText", "exportRichText", "print"}) {
        if (window.commandAction(QString::fromLatin1(command))->isEnabled())
            commands << QString::fromLatin1(command);
    }
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
    SourceViewController* inspector() const;
    /// Waits for an inspector whose stored file shows.
    SourceViewController* shownInspector() const;

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
    const QList<DocumentWindow*> windows = theDelegate->controller()->windows();
    for (const DocumentWindow* window : windows) {
        if (auto* const content = qobject_cast<SourceViewController*>(window->content()))
            return content;
    }
    return nullptr;
}

SourceViewController* TestSourceAlone::shownInspector() const
{
    const auto isThere = [this] { return inspector() && !inspector()->isFilling(); };
    return QTest::qWaitFor(isThere, 30'000) ? inspector() : nullptr;
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
    theDelegate->controller()->openFiles({path});
    QTRY_VERIFY_WITH_TIMEOUT(offer(), 30'000);
    const auto labels = offer()->findChildren<QLabel*>();
    QVERIFY(std::any_of(labels.begin(), labels.end(),
        [text = question](const QLabel* label) { return label->text() == text; }));
    QVERIFY(!buttonOf(offer())->isDefault());
    const auto* const alert = qobject_cast<OpenFailureAlert*>(offer());
    const QString said = alert ? alert->informativeText() : reason;
    buttonOf(offer())->click();

    const SourceViewController* const content = shownInspector();
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
    QCOMPARE(theDelegate->controller()->recentFiles()->paths(), {path});

    // Opening it says the same again, the window stays, and its source is that window.
    theDelegate->controller()->openFiles({path});
    QTRY_VERIFY_WITH_TIMEOUT(shown<PasswordPrompt>() || shown<OpenFailureAlert>(), 30'000);
    theDelegate->controller()->openSources({path});
    QTRY_COMPARE(theDelegate->controller()->windows().size(), 1);
    QCOMPARE(inspector(), content);
    if (auto* const prompt = shown<PasswordPrompt>()) {
        QVERIFY(!buttonOf(prompt) && !prompt->isModal());
        emit prompt->passwordEntered(u"geheim"_s);
        QTRY_COMPARE_WITH_TIMEOUT(theDelegate->controller()->windows().size(), 2, 30'000);
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
    theDelegate->controller()->openFiles({path});
    QTRY_VERIFY_WITH_TIMEOUT(offer(true), 30'000);
    buttonOf(offer(true))->click();
    const SourceViewController* const content = shownInspector();
    QVERIFY(content && theDelegate->controller()->isOpening());
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
        theDelegate->controller()->closeAll();
    else
        release();
    QTRY_VERIFY_WITH_TIMEOUT(!theDelegate->controller()->isOpening(), 30'000);
    // Without a window the start window comes, and with a quit program nothing.
    const auto count = [this] {
        qsizetype shown = 0;
        for (const FrameDocument* document : theDelegate->controller()->documents())
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
    theDelegate->controller()->openFiles({theFolder->filePath(u"none.pdf"_s)});
    QTRY_VERIFY(shown<OpenFailureAlert>());
    const auto* const alert = shown<OpenFailureAlert>();
    QVERIFY(!buttonOf(alert));
    theDelegate->controller()->openFiles({one, other});
    QTRY_VERIFY_WITH_TIMEOUT(!theDelegate->controller()->isOpening(), 30'000);
    QMenu* const menu = buttonOf(alert)->menu();
    QCOMPARE(menu->actions().size(), 4); // and a line before "All"
    emit buttonOf(alert)->clicked(); // as its key does when the menu has closed
    QVERIFY(alert->isVisible() && theDelegate->controller()->documents().isEmpty());
    menu->actions().constLast()->trigger();
    QTRY_COMPARE_WITH_TIMEOUT(theDelegate->controller()->documents().size(), 2, 30'000);
    QTRY_VERIFY(alert->isVisible());
}

/// By mouse and by key, in the menu and in the start window.
void TestSourceAlone::recentFilesOfferIt()
{
    const QString path = write(QByteArray::fromStdString(PdfBuilder().addPage("Hello").bytes()));
    const auto choose = [](const auto& ask) {
        ask();
        auto* const menu = qobject_cast<RecentFileMenu*>(QApplication::activePopupWidget());
        if (menu)
            QTest::keyClick(menu, Qt::Key_S);
        return menu != nullptr;
    };
    const auto hasOpened = [&] {
        const bool hasSource = shownInspector() != nullptr;
        const bool isAlone = theDelegate->controller()->windows().size() == 1;
        if (hasSource)
            DocumentWindow::of(inspector())->close();
        const auto isClosed = [this] { return theDelegate->controller()->documents().isEmpty(); };
        return hasSource && isAlone && QTest::qWaitFor(isClosed)
            && !QApplication::activePopupWidget();
    };
    theDelegate->controller()->recentFiles()->add(path);
    for (const bool isByKey : {false, true}) {
        theDelegate->showStartWindow();
        DocumentWindow* const window = theDelegate->controller()->windows().constFirst();
        auto* const list = window->findChild<QListWidget*>(u"recentList"_s);
        QTRY_COMPARE(list->count(), 1);
        const QPoint place = list->visualItemRect(list->item(0)).center();
        QVERIFY(choose([&] {
            QContextMenuEvent event(
                isByKey ? QContextMenuEvent::Keyboard : QContextMenuEvent::Mouse, place,
                list->viewport()->mapToGlobal(place));
            QApplication::sendEvent(isByKey ? list : list->viewport(), &event);
        }));
        QVERIFY(hasOpened());
    }
    for (const bool isByKey : {false, true}) {
        theDelegate->showStartWindow();
        DocumentWindow* const window = theDelegate->controller()->windows().constFirst();
        auto* const menu = window->findChild<QMenu*>(u"recentMenu"_s);
        menu->popup({});
        menu->setActiveAction(menu->actions().constFirst());
        QVERIFY(choose([&] {
            if (isByKey)
                QTest::keyClick(menu, Qt::Key_F10, Qt::ShiftModifier);
            else
                QTest::mouseClick(menu, Qt::RightButton, {},
                    menu->actionGeometry(menu->actions().constFirst()).center());
        }));
        QVERIFY(hasOpened());
    }
}

/// What was refused may open another time; the old source stays what it was.
void TestSourceAlone::mendedFileOpensBesideIt()
{
    theDelegate->controller()->openSources({write("Dear Sir")});
    const SourceViewController* const content = shownInspector();
    QTRY_VERIFY_WITH_TIMEOUT(!content->upperTextView()->gaps().isEmpty(), 30'000);
    const QString path = write(QByteArray::fromStdString(PdfBuilder().addPage("Hello").bytes()));
    for (const int documents : {2, 2}) {
        theDelegate->controller()->openFiles({path});
        QTRY_VERIFY_WITH_TIMEOUT(!theDelegate->controller()->isOpening(), 30'000);
        QCOMPARE(theDelegate->controller()->documents().size(), documents);
    }
    QVERIFY(textOf(content->lowerTextView()).startsWith(u"Dear Sir"_s));
}

QTEST_MAIN(TestSourceAlone)
#include "tst_SourceAlone.moc"
