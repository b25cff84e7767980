#include "platform/frame/RecentFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>

namespace {

const QString settingsKey = QStringLiteral("recentFiles");

QString shortFolder(const QString& path)
{
    const QString folder = QFileInfo(path).path();
    const QString home = QDir::homePath();
    if (folder == home)
        return QStringLiteral("~");
    if (folder.startsWith(home + QLatin1Char('/')))
        return QLatin1Char('~') + folder.mid(home.size());
    return folder;
}

} // namespace

RecentFiles::RecentFiles(QObject* parent)
    : QObject(parent)
    , thePaths(QSettings().value(settingsKey).toStringList())
{
    // The settings are the user's to edit.
    thePaths.removeAll(QString());
    thePaths.removeDuplicates();
    thePaths = thePaths.mid(0, limit);
}

void RecentFiles::add(const QString& path)
{
    QStringList paths = thePaths;
    paths.removeAll(path);
    paths.prepend(path);
    store(paths.mid(0, limit));
}

void RecentFiles::remove(const QString& path)
{
    QStringList paths = thePaths;
    if (paths.removeAll(path) > 0)
        store(paths);
}

void RecentFiles::clear()
{
    store({});
}

QString RecentFiles::title(const QString& path)
{
    return QFileInfo(path).fileName() + QStringLiteral(" \u2014 ") + shortFolder(path);
}

void RecentFiles::store(const QStringList& paths)
{
    thePaths = paths;
    QSettings().setValue(settingsKey, paths);
    emit changed();
}
