#pragma once

#include <QObject>
#include <QStringList>

#include <functional>

namespace tarnwick {

/// The files that the user opened last, kept in the settings between launches. Absolute paths,
/// latest first, each once, at most ten. Nothing here looks at the files. Other programs of this
/// user change the same list: what they added stays.
class RecentFiles : public QObject
{
    Q_OBJECT

public:
    static constexpr qsizetype limit = 10;

    explicit RecentFiles(QObject* parent = nullptr);

    /// As they stood when this program last looked.
    const QStringList& paths() const { return thePaths; }
    /// Looks again, for what other programs have changed.
    void refresh();
    /// Puts a file first.
    void add(const QString& path);
    void remove(const QString& path);
    void clear();

    /// A file as menus and lists show it: its name, and its folder with the home folder as "~".
    static QString title(const QString& path);

signals:
    void changed();

private:
    void change(const std::function<void(QStringList&)>& change);
    void take(const QStringList& paths);

    QStringList thePaths;
};

} // namespace tarnwick
