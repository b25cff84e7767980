#include "frame/OutputRefusal.h"

#include "files/OpenedFiles.h"
#include "frame/Notice.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

namespace tarnwick {

QString outputRefusal(const QString& path)
{
    const auto say = [&path](const char* text) {
        return QCoreApplication::translate("OutputRefusal", text).arg(shownName(path));
    };
    if (OpenedFiles::contains(QFile::encodeName(path).toStdString()))
        return say("%1 is open, and an opened file is never written. Enter another name.");
    const QFileInfo info(path);
    if (info.exists() && !info.isFile() && !info.isDir())
        return say("%1 is a device or a pipe. Enter another name.");
    return {};
}

} // namespace tarnwick
