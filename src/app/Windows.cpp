#include "Windows.h"

#include "AppDelegate.h"
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
        return delegate.makeWindow(
            WindowIdentifiers::versions, document, new VersionsViewController(document));
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
