#include "Windows.h"

#include "AppDelegate.h"
#include "bytes/BytesViewController.h"
#include "frame/DocumentWindow.h"
#include "help/HelpViewController.h"
#include "inspector/SourceViewController.h"
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
        return delegate.makeWindow(WindowIdentifiers::document, document, content);
    });
    windows.add(WindowIdentifiers::source, [&delegate](Document* document) {
        return delegate.makeWindow(
            WindowIdentifiers::source, document, new SourceViewController(document, &delegate));
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
