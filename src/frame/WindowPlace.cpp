#include "WindowPlace.h"

#include "frame/DocumentWindow.h"

#include <QApplication>
#include <QMargins>
#include <QScreen>
#include <QSettings>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

constexpr int cascadeStep = 28; // about the height of a title bar
/// Room for the frame that the window manager adds, which is not known before the window shows.
constexpr QMargins frameAllowance(8, 40, 8, 8);

QString settingsKey(const DocumentWindow& window)
{
    return u"windows/"_s + window.identifier();
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

QScreen* screenOf(const DocumentWindow& window)
{
    QScreen* const screen = QGuiApplication::screenAt(window.geometry().center());
    return screen ? screen : window.screen();
}

/// What was remembered may come from a larger screen.
void fitIntoScreen(DocumentWindow& window)
{
    const QRect place = window.geometry();
    const QRect screen = screenOf(window)->availableGeometry();
    if (window.isMaximized() || window.isFullScreen() || screen.contains(place))
        return;
    const QRect room = screen.marginsRemoved(frameAllowance);
    const QSize size = place.size().boundedTo(room.size());
    const QSize rest = room.size() - size;
    const QPoint offset = place.topLeft() - room.topLeft();
    const QPoint fitting(
        std::clamp(offset.x(), 0, rest.width()), std::clamp(offset.y(), 0, rest.height()));
    window.setGeometry(QRect(room.topLeft() + fitting, size));
}

void placeBeside(DocumentWindow& window, const DocumentWindow& other)
{
    const QRect screen = other.screen()->availableGeometry();
    if (!other.isMaximized() && !other.isFullScreen())
        window.resize(other.size());
    QPoint place = other.pos() + QPoint(cascadeStep, cascadeStep);
    if (!screen.contains(QRect(place, window.size().grownBy(frameAllowance))))
        place = screen.topLeft();
    window.move(place);
}

} // namespace

void WindowPlace::restore(DocumentWindow& window)
{
    if (const DocumentWindow* other = latestOfKind(window))
        placeBeside(window, *other);
    else if (window.restoreGeometry(QSettings().value(settingsKey(window)).toByteArray()))
        fitIntoScreen(window);
    else
        window.resize(
            window.size().boundedTo(window.screen()->availableSize().shrunkBy(frameAllowance)));
}

void WindowPlace::save(const DocumentWindow& window)
{
    QSettings().setValue(settingsKey(window), window.saveGeometry());
}

} // namespace tarnwick
