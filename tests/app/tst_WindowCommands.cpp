#include "AppDelegate.h"
#include "Windows.h"
#include "frame/CommandRouter.h"
#include "frame/DocumentController.h"
#include "frame/DocumentWindow.h"
#include "inspector/SourceViewController.h"
#include "pdf/PDFDocumentText.h"
#include "support/Files.h"
#include "support/PdfBuilder.h"
#include "support/Rows.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

enum class Way
{
    isMouse,
    isShortcut, ///< Alt and a letter
    isMenuBar, ///< Alt alone, then the arrows: the menu bar takes the keyboard
};

QMenu* menuOf(const DocumentWindow& window, const char* name)
{
    return window.findChild<QMenu*>(QLatin1String(name));
}

/// Opens a menu as a user does. @returns whether it is open.
bool open(DocumentWindow& window, QMenu* menu, Way way)
{
    QMenuBar* const bar = window.menuBar();
    const QString title = menu->title();
    const char letter = title.at(title.indexOf(u'&') + 1).toLower().toLatin1();
    if (way == Way::isMouse) {
        const QPoint place = bar->actionGeometry(menu->menuAction()).center();
        QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, place);
    } else if (way == Way::isShortcut) {
        QTest::keyClick(window.windowHandle(), letter, Qt::AltModifier);
    } else {
        bar->setFocus(Qt::MenuBarFocusReason);
        bar->setActiveAction(menu->menuAction());
    }
    return QApplication::activePopupWidget() == menu;
}

/// Leaves the menus. @returns whether the window has the keyboard again.
bool comeBack(DocumentWindow& window, QWidget* focus)
{
    window.menuBar()->setActiveAction(nullptr);
    window.activateWindow(); // not every platform comes back by itself
    focus->setFocus();
    return QTest::qWaitForWindowActive(&window);
}

/// The commands that a menu offers, separated by blanks.
QString offered(const QMenu& menu)
{
    QStringList commands;
    for (const QAction* action : menu.actions()) {
        if (action->isEnabled() && !action->isSeparator())
            commands << action->objectName();
    }
    return commands.join(u' ');
}

} // namespace

/// The program's windows as they are made: what their menus offer and do.
class TestWindowCommands : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void menusOfferTheSameByKeyAndMouse_data();
    void menusOfferTheSameByKeyAndMouse();
    void cleanupTestCase() { theDelegate.reset(); }

private:
    DocumentWindow* newWindow(const QString& identifier);

    QTemporaryDir theFolder;
    std::unique_ptr<AppDelegate> theDelegate;
    Document* theDocument = nullptr;
};

void TestWindowCommands::initTestCase()
{
    QSettings().clear();
    const QString file = theFolder.filePath(u"some words.pdf"_s);
    writeFile(file, QByteArray::fromStdString(PdfBuilder().addPage("some words").bytes()));
    theDelegate = std::make_unique<AppDelegate>();
    registerWindows(*theDelegate);
    theDelegate->applicationDidFinishLaunching({file});
    QTRY_VERIFY_WITH_TIMEOUT(!theDelegate->controller()->documents().isEmpty(), 30'000);
    theDocument = qobject_cast<Document*>(theDelegate->controller()->documents().constFirst());
    QTRY_VERIFY_WITH_TIMEOUT(theDocument->documentText()->isWhole(), 30'000);
}

DocumentWindow* TestWindowCommands::newWindow(const QString& identifier)
{
    QWidget* window = identifier == WindowIdentifiers::help
        ? theDelegate->plainWindowRegistry().make(identifier, nullptr)
        : theDelegate->windowRegistry().make(identifier, theDocument);
    window->show();
    window->activateWindow();
    return qobject_cast<DocumentWindow*>(window);
}

using Menus = Rows<QString, QString, QString, QString>;

void TestWindowCommands::menusOfferTheSameByKeyAndMouse_data()
{
    const Menus row;
    const QString windows = u"openSource openBytes openVersions openPlainPDF "_s;
    const QString mainWindows = u"openSource showPageSource openBytes openVersions openPlainPDF "_s;
    const QString pages
        = u"zoomIn zoomOut actualSize autoZoom fitPage rotateClockwise rotateCounterclockwise"_s;
    const QString find = u"selectAll performFind doFindNext doFindPrev"_s;
    row("main window, its pages", WindowIdentifiers::document, "thePDFView",
        "selectAll performFind", mainWindows + pages);
    row("main window, its text", WindowIdentifiers::document, "theTextView",
        "selectAll performFind", mainWindows + pages + u" toggleWrap"_s);
    row("main window, a field: zoom is still the pages'", WindowIdentifiers::document,
        "searchField", "copy selectAll performFind", mainWindows + pages);
    for (const QString& pane : {u"upperTextView"_s, u"lowerTextView"_s, u"bottomTextView"_s})
        row(qPrintable(u"inspector, "_s + pane), WindowIdentifiers::source, pane,
            find + u" filterObjects"_s,
            windows
                + u"zoomIn zoomOut actualSize toggleSideBySide toggleOnlyThisPane focusNextPane "_s
                + u"focusPreviousPane toggleWrap toggleGutter "_s
                + u"toggleObjectTable toggleObjectPanel"_s);
    row("bytes", WindowIdentifiers::bytes, "bytesView", find,
        windows + u"zoomIn zoomOut actualSize toggleGutter"_s);
    row("plain window", WindowIdentifiers::plainPDF, "thePDFView", "selectAll", windows + pages);
    row("help", WindowIdentifiers::help, "helpPDFView", "selectAll", pages);
}

void TestWindowCommands::menusOfferTheSameByKeyAndMouse()
{
    const auto [window, focus, edit, view] = Menus::fetch();
    DocumentWindow* const shown = newWindow(window);
    QVERIFY(QTest::qWaitForWindowActive(shown));
    if (const auto* const inspector = shown->findChild<SourceViewController*>())
        QTRY_VERIFY_WITH_TIMEOUT(!inspector->isFilling(), 30'000);
    auto* const widget = shown->findChild<QWidget*>(focus);
    widget->setFocus();
    for (const auto& [name, expected] : {std::pair("editMenu", edit), {"viewMenu", view}}) {
        QMenu* const menu = menuOf(*shown, name);
        QTRY_COMPARE_WITH_TIMEOUT((shown->router()->validate(), offered(*menu)), expected, 30'000);
        for (const Way way : {Way::isMouse, Way::isShortcut, Way::isMenuBar}) {
            QVERIFY2(
                open(*shown, menu, way), qPrintable(u"%1 %2"_s.arg(menu->title()).arg(int(way))));
            QCOMPARE(offered(*menu), expected);
            QTest::keyClick(menu, Qt::Key_Escape);
            QVERIFY(comeBack(*shown, widget));
        }
    }
    // A key leads to one place: among the items of a menu, and among the menus and the content.
    const auto keyOf = [](const QString& text) { return QKeySequence::mnemonic(text).toString(); };
    for (const QMenu* const menu : shown->menuBar()->findChildren<QMenu*>()) {
        QStringList keys;
        for (const QAction* const action : menu->actions())
            keys += keyOf(action->text());
        keys.removeAll(QString());
        QVERIFY2(keys.removeDuplicates() == 0, qPrintable(menu->title()));
    }
    QStringList keys;
    for (const QAction* const action : shown->menuBar()->actions())
        keys += keyOf(action->text());
    for (const QWidget* const part : shown->content()->findChildren<QWidget*>()) {
        const QString text = part->property("text").toString();
        const bool hasKey = part->inherits("QLabel") || part->inherits("QAbstractButton");
        const QString key = hasKey ? keyOf(text) : QString();
        QVERIFY2(key.isEmpty() || !keys.contains(key), qPrintable(text));
    }
    // What is chosen there reaches what had the keyboard.
    if (auto* const field = qobject_cast<QLineEdit*>(widget))
        field->setText(u"words"_s);
    QMenu* const menu = menuOf(*shown, "editMenu");
    QVERIFY(open(*shown, menu, Way::isShortcut));
    QTest::keyClick(menu, Qt::Key_A);
    QVERIFY(comeBack(*shown, widget));
    const auto canCopy = [&] {
        shown->router()->validate();
        return offered(*menu).startsWith(u"copy selectAll"_s);
    };
    QTRY_VERIFY_WITH_TIMEOUT(canCopy(), 30'000); // text is fetched when it is selected
    QVERIFY(open(*shown, menu, Way::isMenuBar));
    QVERIFY(offered(*menu).startsWith(u"copy selectAll"_s));
    QTest::keyClick(menu, Qt::Key_Escape);
    shown->close();
}

QTEST_MAIN(TestWindowCommands)
#include "tst_WindowCommands.moc"
