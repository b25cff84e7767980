#include "platform/PrintedFile.h"

#include "platform/WholeFile.h"

#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <optional>

#include <fcntl.h>
#include <unistd.h>

namespace {

/// Bytes that are written before the next look whether they are still wanted.
constexpr std::size_t piece = 8u << 20;

QString phrase(int error)
{
    return error == 0 ? QString() : QString::fromLocal8Bit(std::strerror(error));
}

} // namespace

struct PrintedFile::Work
{
    Work() = default;
    Work(const Work&) = delete;
    Work& operator=(const Work&) = delete;
    ~Work()
    {
        file.reset();
        if (folder >= 0)
            ::close(folder);
    }
    int complete(std::string_view bytes)
    {
        int error = 0;
        while (error == 0 && !bytes.empty() && !isGivenUp) {
            error = file->append(bytes.substr(0, piece));
            bytes.remove_prefix(std::min(piece, bytes.size()));
        }
        // The flush is what takes long: after it, giving the name is a matter of a moment.
        if (error == 0 && !isGivenUp && ::fsync(file->descriptor()) != 0)
            error = errno;
        if (error == 0)
            error = isGivenUp ? ECANCELED : file->commit();
        return error;
    }

    int folder = -1;
    std::optional<WholeFile> file;
    std::atomic<bool> isGivenUp = false;
};

PrintedFile::PrintedFile(const QString& path, const QString& opened, QObject* parent)
    : QObject(parent)
    , theWork(std::make_shared<Work>())
    , thePath(path)
    , theOpened(opened)
{
}

PrintedFile::~PrintedFile()
{
    theWork->isGivenUp = true;
}

QString PrintedFile::open()
{
    const QFileInfo info(thePath);
    // A device that is named is not to be replaced by a file.
    if (info.exists() && !info.isFile())
        return info.isDir() ? phrase(EISDIR) : tr("Not a regular file");
    theWork->folder
        = ::open(QFile::encodeName(info.path()).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (theWork->folder < 0)
        return phrase(errno);
    theWork->file.emplace(theWork->folder, QFile::encodeName(info.fileName()).toStdString());
    return phrase(theWork->file->open(theOpened.isEmpty()
            ? std::nullopt
            : fileIdentity(QFile::encodeName(theOpened).toStdString())));
}

QString PrintedFile::unfinishedPath() const
{
    return QStringLiteral("/proc/self/fd/%1").arg(theWork->file->descriptor());
}

void PrintedFile::complete(const FileBytes& bytes)
{
    const auto error = std::make_shared<int>(0);
    auto* const thread = QThread::create(
        [work = theWork, bytes, error] { *error = work->complete(bytes.view()); });
    connect(thread, &QThread::finished, this, [this, error] { emit finished(phrase(*error)); });
    connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    thread->start();
}
