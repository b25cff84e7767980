#include "app/Windows.h"

#include "app/AppDelegate.h"
#include "app/DocumentOverview.h"
#include "inspector/SourceViewController.h"
#include "platform/frame/DocumentWindow.h"
#include "views/HelpViewController.h"

void registerWindows(AppDelegate& delegate)
{
    WindowRegistry<Document>& windows = delegate.windowRegistry();
    windows.add(WindowIdentifiers::document, [&delegate](Document* document) {
        return delegate.makeWindow(
            WindowIdentifiers::document, document, new DocumentOverview(document));
    });
    windows.add(WindowIdentifiers::source, [&delegate](Document* document) {
        return delegate.makeWindow(
            WindowIdentifiers::source, document, new SourceViewController(document, &delegate));
    });
    delegate.plainWindowRegistry().add(WindowIdentifiers::help, [&delegate](void*) {
        return delegate.makeWindow(WindowIdentifiers::help, nullptr, new HelpViewController);
    });
}
