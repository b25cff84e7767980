#include "frame/FrameDocument.h"

#include "frame/DocumentWindow.h"
#include "frame/WindowRegistry.h"

#include <algorithm>

namespace tarnwick {

FrameDocument::FrameDocument(QObject* parent)
    : QObject(parent)
{
}

FrameDocument::~FrameDocument()
{
    closeWindows();
}

void FrameDocument::closeWindows()
{
    // Windows take themselves off the list while they go.
    while (!theWindowsAlive.isEmpty())
        delete theWindowsAlive.constLast();
}

QString FrameDocument::displayName() const
{
    const QString name = theFileURL.isEmpty() ? tr("Untitled") : theFileURL.fileName();
    return theVersion ? tr("%1 (version %2)").arg(name).arg(theVersion->number) : name;
}

void FrameDocument::showWindows()
{
    const auto isMain = [](const DocumentWindow* window) {
        return window->identifier() == WindowIdentifiers::document;
    };
    if (std::none_of(theWindows.cbegin(), theWindows.cend(), isMain))
        makeWindowControllers();
    const QList<DocumentWindow*> windows = theWindows;
    for (DocumentWindow* window : windows) {
        if (isMain(window))
            window->bringUp();
    }
}

void FrameDocument::addWindow(DocumentWindow* window)
{
    theWindows << window;
    theWindowsAlive << window;
    connect(
        window, &DocumentWindow::closed, this, [this, window] { theWindows.removeAll(window); });
    connect(window, &QObject::destroyed, this, [this, window] { forget(window); });
}

void FrameDocument::forget(DocumentWindow* window)
{
    theWindows.removeAll(window);
    theWindowsAlive.removeAll(window);
    if (theWindowsAlive.isEmpty())
        deleteLater();
}

DocumentWindow* FrameDocument::windowForSheet() const
{
    for (DocumentWindow* window : theWindows) {
        if (window->isActiveWindow())
            return window;
    }
    return theWindows.isEmpty() ? nullptr : theWindows.constFirst();
}

} // namespace tarnwick
