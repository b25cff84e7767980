#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

namespace tarnwick {

inline QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

/// Ends the program where the file cannot be written: no test could go on.
inline void writeFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("a file of the test cannot be written");
}

} // namespace tarnwick
