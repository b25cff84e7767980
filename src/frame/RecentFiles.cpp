#include "frame/RecentFiles.h"

#include "settings/StoredList.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

const StoredList& storedPaths()
{
    static const StoredList list(u"recentFiles"_s);
    return list;
}

/// The settings are the user's to edit.
void makeSound(QStringList& paths)
{
    paths.removeAll(QString());
    paths.removeDuplicates();
    paths = paths.mid(0, RecentFiles::limit);
}

QString shortFolder(const QString& path)
{
    const QString folder = QFileInfo(path).path();
    const QString home = QDir::homePath();
    if (folder == home)
        return u"~"_s;
    if (folder.startsWith(home + u'/'))
        return u'~' + folder.mid(home.size());
    return folder;
}

} // namespace

RecentFiles::RecentFiles(QObject* parent)
    : QObject(parent)
{
    refresh();
}

void RecentFiles::refresh()
{
    QStringList paths = storedPaths().texts();
    makeSound(paths);
    take(paths);
}

void RecentFiles::add(const QString& path)
{
    change([&path](QStringList& paths) {
        paths.removeAll(path);
        paths.prepend(path);
    });
}

void RecentFiles::remove(const QString& path)
{
    change([&path](QStringList& paths) { paths.removeAll(path); });
}

void RecentFiles::clear()
{
    change([](QStringList& paths) { paths.clear(); });
}

QString RecentFiles::title(const QString& path)
{
    return QFileInfo(path).fileName() + u" \u2014 "_s + shortFolder(path);
}

void RecentFiles::change(const std::function<void(QStringList&)>& change)
{
    take(storedPaths().change([&change](QStringList& paths) {
        makeSound(paths);
        change(paths);
        makeSound(paths);
    }));
}

void RecentFiles::take(const QStringList& paths)
{
    if (std::exchange(thePaths, paths) != paths)
        emit changed();
}

} // namespace tarnwick
