#include "frame/Notice.h"

#include "frame/DocumentWindow.h"
#include "frame/FrameDocument.h"

#include <QApplication>
#include <QFileInfo>

#include <cstdio>

namespace tarnwick {

namespace {

DocumentWindow* anyWindow()
{
    if (DocumentWindow* const active = DocumentWindow::of(QApplication::activeWindow());
        active && active->isVisible())
        return active;
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget* widget : widgets) {
        if (auto* const window = qobject_cast<DocumentWindow*>(widget);
            window && window->isVisible())
            return window;
    }
    return nullptr;
}

DocumentWindow* windowFor(const QWidget* near, const FrameDocument* document)
{
    // A window that is closed lives on for a moment, unseen.
    DocumentWindow* const own = DocumentWindow::of(near);
    if (own && own->isVisible())
        return own;
    if (!document && own)
        document = own->document();
    DocumentWindow* const sibling = document ? document->windowForSheet() : nullptr;
    return sibling && sibling->isVisible() ? sibling : anyWindow();
}

} // namespace

QString shownName(const QString& path)
{
    constexpr qsizetype shownEnd = 40;
    QString name = QFileInfo(path).fileName();
    if (name.size() > 2 * shownEnd)
        name = name.left(shownEnd) + u'\u2026' + name.right(shownEnd);
    return u'\u201C' + name + u'\u201D';
}

QString asSentence(const QString& phrase)
{
    return phrase.endsWith(u'.') ? phrase : phrase + u'.';
}

void tellUser(const Notice& notice, const QWidget* near, const FrameDocument* document)
{
    if (DocumentWindow* const window = windowFor(near, document))
        window->notify(notice);
    else
        std::fprintf(stderr, "tarnwick: %s\n", notice.text.toLocal8Bit().constData());
}

} // namespace tarnwick
