#include "files/OutputNaming.h"

#include "files/OpenedFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace tarnwick {

QString withAllowedType(const QString& path, const QStringList& types)
{
    const QFileInfo info(path);
    const bool isAllowed = !info.completeBaseName().isEmpty()
        && std::any_of(types.begin(), types.end(), [&](const QString& type) {
               return info.suffix().compare(type, Qt::CaseInsensitive) == 0;
           });
    return isAllowed ? path : path + u'.' + types.first();
}

QString nameOfNoOpenedFile(const QString& folder, const QString& name)
{
    const QDir directory(folder);
    const QFileInfo parts(name);
    const QString ending = parts.suffix().isEmpty() ? QString() : u'.' + parts.suffix();
    QString proposed = name;
    // As many numbers as files can be open, and one more: one of them is free.
    for (int number = 2; number < 100'000; ++number) {
        const QString path = directory.filePath(proposed);
        if (!OpenedFiles::contains(QFile::encodeName(path).toStdString()))
            break;
        proposed = name.chopped(ending.size()) + u'-' + QString::number(number) + ending;
    }
    return proposed;
}

} // namespace tarnwick
