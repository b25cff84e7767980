#include "Windows.h"

#include "AppDelegate.h"
#include "Comparisons.h"
#include "bytes/BytesViewController.h"
#include "frame/DocumentWindow.h"
#include "help/HelpViewController.h"
#include "inspector/SourceViewController.h"
#include "pages/PDFView.h"
#include "pdf/PDFSavedVersions.h"
#include "plain/PlainPDFViewController.h"
#include "saves/VersionsFact.h"
#include "saves/VersionsViewController.h"
#include "viewer/ViewController.h"

#include <functional>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

/// Only a file that looks updated is looked through for its versions.
/// @param tell called with what is to be said, while content lives.
void tellOfVersions(
    Document* document, QWidget* content, const std::function<void(const QString& fact)>& tell)
{
    if (!document->isIncr())
        return;
    const PDFSavedVersions* const versions = document->savedVersions();
    if (versions->isFinished())
        tell(versionsFact(*versions));
    else
        QObject::connect(versions, &PDFSavedVersions::finished, content,
            [versions, tell] { tell(versionsFact(*versions)); });
}

/// Two files are compared; others are opened, as in every window.
void takeDroppedFiles(AppDelegate& delegate, Document* document, DocumentWindow* window)
{
    QObject::disconnect(window, &DocumentWindow::filesDropped, delegate.controller(), nullptr);
    QObject::connect(window, &DocumentWindow::filesDropped, document,
        [&delegate, document, window](const QStringList& paths) {
            if (paths.size() == 2)
                compareFiles(delegate, document, paths);
            else
                delegate.controller()->openFiles(paths, window);
        });
}

} // namespace

void registerWindows(AppDelegate& delegate)
{
    WindowRegistry<Document>& windows = delegate.windowRegistry();
    windows.add(WindowIdentifiers::document, [&delegate](Document* document) {
        auto* content
            = new ViewController(document->thePDFDocument(), document->documentText(), delegate);
        content->setWindowTitle(document->displayName());
        content->setFindings(document->findings());
        QObject::connect(
            content, &ViewController::findingsWanted, document, &Document::showAllFindings);
        QObject::connect(
            content, &ViewController::sourceOfPageWanted, document, &Document::showSourceOfPage);
        QObject::connect(document, &Document::pageWanted, content,
            [content](int page) { content->thePDFView()->goToPage(page); });
        DocumentWindow* const window
            = delegate.makeWindow(WindowIdentifiers::document, document, content);
        tellOfVersions(document, content,
            [content](const QString& fact) { content->setFact(u"openVersions"_s, fact); });
        return window;
    });
    windows.add(WindowIdentifiers::source, [&delegate](Document* document) {
        auto* content = new SourceViewController(document, &delegate);
        QObject::connect(content, &SourceViewController::pageWanted, document, &Document::showPage);
        tellOfVersions(
            document, content, [content](const QString& fact) { content->setVersionsFact(fact); });
        return delegate.makeWindow(WindowIdentifiers::source, document, content);
    });
    windows.add(WindowIdentifiers::bytes, [&delegate](Document* document) {
        return delegate.makeWindow(
            WindowIdentifiers::bytes, document, new BytesViewController(document));
    });
    windows.add(WindowIdentifiers::versions, [&delegate](Document* document) {
        auto* content = new VersionsViewController(document);
        QObject::connect(content, &VersionsViewController::comparisonWanted, document,
            [&delegate, document](const FileVersion& before, const FileVersion& after) {
                compareVersions(delegate, document, before, after);
            });
        DocumentWindow* const window
            = delegate.makeWindow(WindowIdentifiers::versions, document, content);
        takeDroppedFiles(delegate, document, window);
        return window;
    });
    delegate.plainWindowRegistry().add(WindowIdentifiers::help, [&delegate](void*) {
        return delegate.makeWindow(WindowIdentifiers::help, nullptr, new HelpViewController);
    });
    windows.add(WindowIdentifiers::plainPDF, [&delegate](Document* document) {
        return delegate.makeWindow(
            WindowIdentifiers::plainPDF, document, new PlainPDFViewController(document));
    });
}

} // namespace tarnwick
