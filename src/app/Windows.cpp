#include "Windows.h"

#include "AppDelegate.h"
#include "bytes/BytesViewController.h"
#include "frame/DocumentWindow.h"
#include "help/HelpViewController.h"
#include "inspector/SourceViewController.h"
#include "pages/PDFView.h"
#include "plain/PlainPDFViewController.h"
#include "viewer/ViewController.h"

namespace tarnwick {

void registerWindows(AppDelegate& delegate)
{
    WindowRegistry<Document>& windows = delegate.windowRegistry();
    windows.add(WindowIdentifiers::document, [&delegate](Document* document) {
        auto* content
            = new ViewController(document->thePDFDocument(), document->documentText(), delegate);
        content->setWindowTitle(document->displayName());
        QObject::connect(
            content, &ViewController::sourceOfPageWanted, document, &Document::showSourceOfPage);
        QObject::connect(document, &Document::pageWanted, content,
            [content](int page) { content->thePDFView()->goToPage(page); });
        return delegate.makeWindow(WindowIdentifiers::document, document, content);
    });
    windows.add(WindowIdentifiers::source, [&delegate](Document* document) {
        auto* content = new SourceViewController(document, &delegate);
        QObject::connect(content, &SourceViewController::pageWanted, document, &Document::showPage);
        return delegate.makeWindow(WindowIdentifiers::source, document, content);
    });
    windows.add(WindowIdentifiers::bytes, [&delegate](Document* document) {
        return delegate.makeWindow(
            WindowIdentifiers::bytes, document, new BytesViewController(document));
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
