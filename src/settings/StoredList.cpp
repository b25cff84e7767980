#include "settings/StoredList.h"

#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <QSettings>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

constexpr int longestWait = 5000; // milliseconds: a change takes a few

} // namespace

StoredList::StoredList(const QString& key)
    : theKey(key)
{
}

QStringList StoredList::texts() const
{
    return QSettings().value(theKey).toStringList(); // a new object reads the file again
}

QStringList StoredList::change(const std::function<void(QStringList&)>& change) const
{
    const QString file = QSettings().fileName();
    QDir().mkpath(QFileInfo(file).path());
    // Not the name that QSettings itself locks while it writes.
    QLockFile lock(file + u".lists.lock"_s);
    lock.tryLock(longestWait);
    QSettings settings; // behind the lock, as it reads the file
    const QStringList before = settings.value(theKey).toStringList();
    QStringList texts = before;
    change(texts);
    if (texts != before)
        settings.setValue(theKey, texts);
    settings.sync(); // in front of the lock's end
    return texts;
}

} // namespace tarnwick
