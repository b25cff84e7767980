#include "NoticeAccessible.h"

#include "NoticeLine.h"

namespace tarnwick {

namespace {

QAccessibleInterface* makeAccessible(const QString& className, QObject* object)
{
    auto* const line = className == QLatin1String(NoticeLine::staticMetaObject.className())
        ? qobject_cast<NoticeLine*>(object)
        : nullptr;
    return line ? new NoticeAccessible(line) : nullptr;
}

} // namespace

NoticeAccessible::NoticeAccessible(NoticeLine* line)
    : QAccessibleWidget(line, QAccessible::AlertMessage)
{
}

void NoticeAccessible::install()
{
    static const bool isInstalled = (QAccessible::installFactory(makeAccessible), true);
    static_cast<void>(isInstalled);
}

void NoticeAccessible::tell(NoticeLine* line)
{
    // Readers of the desktop listen for what begins to show, others for the alert.
    for (const QAccessible::Event kind :
        {QAccessible::NameChanged, QAccessible::ObjectShow, QAccessible::Alert}) {
        QAccessibleEvent event(line, kind);
        QAccessible::updateAccessibility(&event);
    }
}

} // namespace tarnwick
