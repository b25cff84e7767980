// watch_windows [--engine PROGRAM] [--all] [--wait SECONDS] FILE... : opens each file beside the
// first one in the windows of the desktop program, does what a user does with it (scrolls, selects
// all, searches, opens the outline and the inspector, closes), and prints the longest event of the
// main thread for each file. Without a display, and with settings of its own. --all prints the
// longest event of every step; --wait is how long a step may wait for what it has begun (10).

#include "MeasuringApplication.h"

#include "AppDelegate.h"
#include "PDFEngineProcess.h"
#include "SearchField.h"
#include "Windows.h"
#include "document/Document.h"
#include "files/LargePages.h"
#include "frame/DocumentController.h"
#include "frame/DocumentWindow.h"
#include "inspector/SourceViewController.h"
#include "pages/PDFView.h"
#include "pdf/PDFDocumentText.h"
#include "text/PlainTextView.h"
#include "viewer/ViewController.h"

#include <QElapsedTimer>
#include <QFile>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QProgressDialog>
#include <QTabWidget>
#include <QTableView>
#include <QTemporaryDir>
#include <QTreeView>

#include <csignal>
#include <cstdio>
#include <functional>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

using Event = MeasuringApplication::Event;

MeasuringApplication* application()
{
    return static_cast<MeasuringApplication*>(QCoreApplication::instance());
}

/// Megabytes of a line of /proc/self/status.
qint64 megabytes(const QByteArray& name)
{
    QFile status(u"/proc/self/status"_s);
    status.open(QIODevice::ReadOnly);
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith(name))
            return line.mid(name.size() + 1).trimmed().split(' ').first().toLongLong() / 1024;
    }
    return 0;
}

/// Runs the event loop until something holds or its time is over.
void wait(const std::function<bool()>& isThere, int milliseconds)
{
    QElapsedTimer clock;
    clock.start();
    while (!isThere() && clock.elapsed() < milliseconds)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
}

void rest(int milliseconds)
{
    wait([] { return false; }, milliseconds);
}

/// What a user does with one document's windows, step by step.
class Visit
{
public:
    Visit(Document* document, int patience)
        : theDocument(document)
        , theViewer(DocumentWindow::of(document->windowForSheet())->findChild<ViewController*>())
        , thePatience(patience)
    {
    }
    void run()
    {
        PDFDocumentText* const text = theDocument->documentText();
        step(
            "show", [] {}, [text] { return !text->isFetching(); });
        scroll();
        step(
            "last page", [this] { theViewer->thePDFView()->goToLastPage(); },
            [this] { return isDrawn(); });
        step(
            "first page", [this] { theViewer->thePDFView()->goToFirstPage(); },
            [this] { return isDrawn(); });
        step(
            "zoom out", [this] { theViewer->thePDFView()->setScaleFactor(0.05); },
            [this] { return isDrawn(); });
        step(
            "zoom in", [this] { theViewer->thePDFView()->setScaleFactor(2); },
            [this] { return isDrawn(); });
        step(
            "turn", [this] { theViewer->thePDFView()->rotateClockwise(); },
            [this] { return isDrawn(); });
        step(
            "fit", [this] { theViewer->thePDFView()->fitWidth(); }, [this] { return isDrawn(); });
        point();
        step(
            "select all", [this] { theViewer->thePDFView()->selectAll(); },
            [text] { return text->isWhole(); });
        step(
            "copy", [this] { theViewer->thePDFView()->copy(); }, [] { return false; }, 500);
        search();
        textPane();
        outline();
        goToLabel();
        inspect();
    }

private:
    bool isDrawn() const { return !theViewer->thePDFView()->isDrawing(); }

    /// Does something as an event, and lets what follows from it happen.
    void step(const char* name, const std::function<void()>& act,
        const std::function<bool()>& isThere, int patience = 0)
    {
        application()->setPhase(name);
        QMetaObject::invokeMethod(theViewer, act, Qt::QueuedConnection);
        rest(50);
        wait(isThere, patience > 0 ? patience : thePatience);
        rest(200);
    }
    static void press(QWidget* widget, int key, Qt::KeyboardModifiers modifiers = {})
    {
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease})
            QCoreApplication::postEvent(widget, new QKeyEvent(type, key, modifiers));
    }
    void scroll()
    {
        step(
            "scroll",
            [this] {
                for (int time = 0; time < 20; ++time)
                    press(theViewer->thePDFView(), Qt::Key_PageDown);
            },
            [this] { return isDrawn(); });
    }
    void point()
    {
        QWidget* const viewport = theViewer->thePDFView()->viewport();
        step(
            "point",
            [viewport] {
                for (int x = 50; x < 500; x += 90) {
                    const QPointF place(x, x);
                    QCoreApplication::postEvent(viewport,
                        new QMouseEvent(QEvent::MouseMove, place, viewport->mapToGlobal(place),
                            Qt::NoButton, Qt::NoButton, {}));
                }
            },
            [] { return false; }, 300);
    }
    void search()
    {
        const auto find = [this](const QString& text) {
            theViewer->searchField()->setStringValue(text);
            theViewer->doSearchAction();
        };
        const auto isOver = [this] { return !theViewer->isSearching(); };
        step(
            "search", [find] { find(u"e"_s); }, isOver);
        step(
            "next", [this] { theViewer->doFindNext(); }, [] { return false; }, 500);
        step(
            "search again", [find] { find(u"qq"_s); }, isOver);
    }
    void textPane()
    {
        PlainTextView* const pane = theViewer->theTextView();
        const auto keys = [pane](int key, Qt::KeyboardModifiers modifiers = {}) {
            return [pane, key, modifiers] { press(pane, key, modifiers); };
        };
        const auto soon = [] { return false; };
        step("text end", keys(Qt::Key_End, Qt::ControlModifier), soon, 300);
        step("text up", keys(Qt::Key_PageUp), soon, 300);
        step("text all", keys(Qt::Key_A, Qt::ControlModifier), soon, 300);
        step("text copy", keys(Qt::Key_C, Qt::ControlModifier), soon, 300);
    }
    void outline()
    {
        auto* const tree = theViewer->findChild<QTreeView*>(u"outlineView"_s);
        auto* const tabs = theViewer->findChild<QTabWidget*>(u"sideTabs"_s);
        const auto soon = [] { return false; };
        step(
            "outline", [tabs] { tabs->setCurrentIndex(tabs->count() - 1); }, soon, 500);
        step(
            "expand", [tree] { press(tree, Qt::Key_Asterisk); }, soon, 500);
        step(
            "outline end", [tree] { press(tree, Qt::Key_End); }, soon, 500);
        step(
            "outline letter", [tree] { press(tree, Qt::Key_Q); }, soon, 300);
        step(
            "thumbnails", [tabs] { tabs->setCurrentIndex(0); }, soon, 500);
    }
    void goToLabel()
    {
        auto* const field = theViewer->findChild<QLineEdit*>(u"pageField"_s);
        step(
            "page field",
            [field] {
                field->setText(u"no such page"_s);
                press(field, Qt::Key_Return);
            },
            [] { return false; }, 300);
    }
    void inspect()
    {
        const auto isFilled = [this] {
            const SourceViewController* const inspector = theInspector();
            return inspector && !inspector->isFilling();
        };
        step(
            "inspector", [this] { theDocument->openSource(); }, isFilled, 3 * thePatience);
        if (const SourceViewController* const inspector = theInspector()) {
            QWidget* const lower = inspector->lowerTextView();
            step(
                "inspector end", [lower] { press(lower, Qt::Key_End, Qt::ControlModifier); },
                [] { return false; }, 500);
            objectTable();
            DocumentWindow* const window = DocumentWindow::of(lower);
            step(
                "close inspector", [window] { window->close(); }, [] { return false; }, 500);
        }
    }
    void objectTable()
    {
        SourceViewController* const inspector = theInspector();
        auto* const table = inspector->findChild<QTableView*>(u"objectTable"_s);
        auto* const field = inspector->findChild<QLineEdit*>(u"objectFilter"_s);
        auto* const tabs = inspector->findChild<QTabWidget*>(u"objectTabs"_s);
        const auto order = [table](int column, Qt::SortOrder direction) {
            table->horizontalHeader()->setSortIndicator(column, direction);
        };
        const auto soon = [] { return false; };
        step(
            "object table", [inspector] { inspector->toggleObjectTable(); }, soon, 3000);
        step(
            "objects by size", [order] { order(5, Qt::DescendingOrder); }, soon, 2000);
        step(
            "objects by kind", [order] { order(3, Qt::AscendingOrder); }, soon, thePatience);
        step(
            "last object", [table] { press(table, Qt::Key_End, Qt::ControlModifier); }, soon, 500);
        step(
            "filter objects", [field] { field->setText(u"size>100 v:1"_s); }, soon, 2000);
        step(
            "object tree", [tabs] { tabs->setCurrentIndex(1); }, soon, 2000);
    }
    static SourceViewController* theInspector()
    {
        for (const QWidget* window : QApplication::topLevelWidgets()) {
            if (auto* const inspector = window->findChild<SourceViewController*>())
                return inspector;
        }
        return nullptr;
    }

    Document* theDocument;
    ViewController* theViewer;
    int thePatience; ///< milliseconds
};

Document* documentOf(const DocumentController& controller, const QString& path)
{
    for (FrameDocument* const document : controller.documents()) {
        if (document->fileURL().toLocalFile() == path)
            return qobject_cast<Document*>(document);
    }
    return nullptr;
}

void print(const QString& path, bool all)
{
    std::printf("%-34s %5lld MB", qPrintable(path.section(u'/', -1)),
        static_cast<long long>(megabytes("VmHWM")));
    for (const auto measure : {&Event::processor, &Event::wall}) {
        const std::vector<Event> events = application()->longest(measure, all ? 8 : 1);
        std::printf(
            "%s%s", all ? "\n  " : "  ", measure == &Event::wall ? "by the clock:" : "processor:");
        for (const Event& event : events)
            std::printf("%s %.0f ms (%s, %s, event %d)", all ? "\n   " : "", event.*measure,
                event.phase, event.receiver, event.type);
    }
    std::printf("\n");
    std::fflush(stdout);
}

void visit(DocumentController& controller, const QString& path, int patience, bool all)
{
    application()->start();
    application()->setPhase("open");
    QMetaObject::invokeMethod(
        &controller, [&controller, path] { controller.openFiles({path}); }, Qt::QueuedConnection);
    rest(50);
    const auto question = [] {
        QWidget* const dialog = QApplication::activeModalWidget();
        return qobject_cast<QProgressDialog*>(dialog) ? nullptr : dialog;
    };
    wait([&] { return !controller.isOpening() || question(); }, 10 * patience);
    if (QWidget* const dialog = question())
        dialog->close();
    if (Document* const document = documentOf(controller, path)) {
        Visit(document, patience).run();
        application()->setPhase("close");
        QWidget* const window = document->windowForSheet();
        QMetaObject::invokeMethod(
            window, [window] { window->close(); }, Qt::QueuedConnection);
    }
    rest(500);
    print(path, all);
}

} // namespace

int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryDir settings;
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(settings.path()));
    std::signal(SIGXFSZ, SIG_IGN);
    useLargePages();
    MeasuringApplication program(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QStringList files = QCoreApplication::arguments().mid(1);
    const bool all = files.removeAll(u"--all"_s) > 0;
    const auto option = [&files](const QString& name) {
        const qsizetype place = files.indexOf(name);
        if (place < 0 || place + 1 >= files.size())
            return QString();
        files.removeAt(place);
        return files.takeAt(place);
    };
    const QString engine = option(u"--engine"_s);
    const QString seconds = option(u"--wait"_s);
    if (files.isEmpty())
        return 1;
    const int patience = seconds.isEmpty() ? 10'000 : seconds.toInt() * 1000;
    AppDelegate delegate;
    registerWindows(delegate);
    delegate.controller()->openFiles({files.takeFirst()});
    wait([&delegate] { return !delegate.controller()->isOpening(); }, 10'000);
    setPDFEnginePathForTests(engine);
    for (const QString& file : files)
        visit(*delegate.controller(), file, patience, all);
    delegate.controller()->closeAll();
    return 0;
}
