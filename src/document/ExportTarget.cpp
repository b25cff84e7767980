#include "document/ExportTarget.h"

#include "platform/FileSizeSignalBlock.h"
#include "platform/WholeFile.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace {

/// Asks progress, and remembers that it said no: that is no failure to be explained.
class Asker
{
public:
    explicit Asker(const ExportContent::Progress& progress)
        : theProgress(progress)
    {
    }
    ExportContent::Progress function()
    {
        return [this](quint64 done, quint64 total) {
            isCancelled = !theProgress(done, total);
            return !isCancelled;
        };
    }
    ExportOutcome outcome(bool isWritten, const QString& reason) const
    {
        return {isWritten, isWritten || isCancelled ? QString() : reason};
    }

private:
    const ExportContent::Progress& theProgress;
    bool isCancelled = false;
};

QString reasonOf(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

ExportOutcome writeWhole(
    const ExportContent& content, const QString& path, const ExportContent::Progress& progress)
{
    const QFileInfo info(path);
    const int folder
        = ::open(QFile::encodeName(info.path()).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        return {false, reasonOf(errno)};
    Asker asker(progress);
    int error = 0;
    {
        // Not QSaveFile: its temporary name is longer than the file's own, which may be as long as
        // names can be, and stays behind when the program is killed.
        WholeFile file(folder, QFile::encodeName(info.fileName()).toStdString());
        error = file.open(std::nullopt);
        const auto sink = [&](std::string_view bytes) {
            error = file.append(bytes);
            return error == 0;
        };
        if (error == 0 && content.write(sink, asker.function()))
            error = file.commit();
        else if (error == 0)
            error = ECANCELED;
    }
    ::close(folder);
    return asker.outcome(error == 0, reasonOf(error));
}

ExportOutcome writeInPlace(
    const ExportContent& content, const QString& path, const ExportContent::Progress& progress)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered))
        return {false, file.errorString()};
    Asker asker(progress);
    const auto sink = [&file](std::string_view bytes) {
        while (!bytes.empty()) {
            // A disk that fills up takes a part first, and only then says why it takes no more.
            const qint64 written = file.write(bytes.data(), static_cast<qint64>(bytes.size()));
            if (written <= 0)
                return false;
            bytes.remove_prefix(static_cast<std::size_t>(written));
        }
        return true;
    };
    const bool isComplete = content.write(sink, asker.function());
    const QString reason = file.errorString(); // remove() forgets it
    // A device or a pipe may have been named.
    if (!isComplete && QFileInfo(path).isFile())
        file.remove();
    return asker.outcome(isComplete, reason);
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
