#include "platform/frame/WindowPlace.h"

#include "platform/frame/DocumentWindow.h"

#include <QApplication>
#include <QScreen>
#include <QSettings>

namespace {

constexpr int cascadeStep = 28; // about the height of a title bar
/// Room for the frame that the window manager adds, which is not known before the window shows.
constexpr QSize frameAllowance(16, 48);

QString settingsKey(const DocumentWindow& window)
{
    return QStringLiteral("windows/") + window.identifier();
}

const DocumentWindow* latestOfKind(const DocumentWindow& window)
{
    const DocumentWindow* latest = nullptr;
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (const QWidget* widget : widgets) {
        const auto* other = qobject_cast<const DocumentWindow*>(widget);
        if (other && other != &window && other->isVisible()
            && other->identifier() == window.identifier()
            && (!latest || other->serial() > latest->serial()))
            latest = other;
    }
    return latest;
}

void placeBeside(DocumentWindow& window, const DocumentWindow& other)
{
    const QRect screen = other.screen()->availableGeometry();
    if (!other.isMaximized() && !other.isFullScreen())
        window.resize(other.size());
    QPoint place = other.pos() + QPoint(cascadeStep, cascadeStep);
    if (!screen.contains(QRect(place, window.size())))
        place = screen.topLeft();
    window.move(place);
}

} // namespace

void WindowPlace::restore(DocumentWindow& window)
{
    if (const DocumentWindow* other = latestOfKind(window)) {
        placeBeside(window, *other);
        return;
    }
    if (window.restoreGeometry(QSettings().value(settingsKey(window)).toByteArray()))
        return;
    window.resize(window.size().boundedTo(window.screen()->availableSize() - frameAllowance));
}

void WindowPlace::save(const DocumentWindow& window)
{
    QSettings().setValue(settingsKey(window), window.saveGeometry());
}
