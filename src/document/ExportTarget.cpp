#include "document/ExportTarget.h"

#include "document/FileSizeSignalBlock.h"
#include "document/WholeFile.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace {

ExportOutcome writeWhole(
    const ExportContent& content, const QString& path, const ExportContent::Progress& progress)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return {false, file.errorString()};
    bool isCancelled = false;
    const bool isComplete = content.write(file, [&](quint64 done, quint64 total) {
        isCancelled = !progress(done, total);
        return !isCancelled;
    });
    if (isComplete && file.commit())
        return {true, {}};
    return {false, isCancelled ? QString() : file.errorString()};
}

ExportOutcome writeInPlace(
    const ExportContent& content, const QString& path, const ExportContent::Progress& progress)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered))
        return {false, file.errorString()};
    bool isCancelled = false;
    const bool isComplete = content.write(file, [&](quint64 done, quint64 total) {
        isCancelled = !progress(done, total);
        return !isCancelled;
    });
    if (isComplete)
        return {true, {}};
    const QString reason = file.errorString();
    // A device or a pipe may have been named.
    if (QFileInfo(path).isFile())
        file.remove();
    return {false, isCancelled ? QString() : reason};
}

} // namespace

bool isSameFile(const QString& path, const QString& other)
{
    const auto identity = fileIdentity(QFile::encodeName(path).toStdString());
    return identity && identity == fileIdentity(QFile::encodeName(other).toStdString());
}

ExportOutcome writeExport(ExportKind kind, const ExportContent& content, const QString& path,
    const ExportContent::Progress& progress)
{
    const FileSizeSignalBlock block;
    return kind == ExportKind::isFlatPDF ? writeWhole(content, path, progress)
                                         : writeInPlace(content, path, progress);
}
