#include "printing/PrintedFile.h"

#include "files/WholeFile.h"

#include <QFile>
#include <QThread>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <optional>
#include <string_view>

#include <sys/stat.h>
#include <unistd.h>

namespace tarnwick {

namespace {

/// Bytes that are written before the next look whether they are still wanted.
constexpr std::size_t piece = 8u << 20;

QString phrase(int error)
{
    return error == 0 ? QString() : QString::fromStdString(outputErrorText(error));
}

std::string_view readAt(int file, off_t offset, char* buffer, std::size_t size)
{
    const ssize_t got = offset < 0 ? -1 : ::pread(file, buffer, size, offset);
    return {buffer, static_cast<std::size_t>(std::max<ssize_t>(0, got))};
}

/// Whether a painted PDF file ends as it should and its cross-reference table stands where the end
/// says: a stretch that was not written would have moved it.
bool isWholePdf(int file)
{
    struct stat status = {};
    std::array<char, 64> buffer = {};
    if (::fstat(file, &status) != 0)
        return false;
    const off_t start = std::max<off_t>(0, status.st_size - static_cast<off_t>(buffer.size()));
    const std::string_view end = readAt(file, start, buffer.data(), buffer.size());
    constexpr std::string_view keyword = "startxref\n";
    const std::size_t place = end.rfind(keyword);
    if (place == std::string_view::npos || end.find("%%EOF", place) == std::string_view::npos)
        return false;
    long long offset = -1;
    std::from_chars(end.data() + place + keyword.size(), end.data() + end.size(), offset);
    std::array<char, 4> table = {};
    return readAt(file, offset, table.data(), table.size()) == "xref";
}

} // namespace

struct PrintedFile::Work
{
    /// Gives a file that is filled its name, unless it is no longer wanted.
    int commit(WholeFile& filled)
    {
        // The flush is what takes long: after it, giving the name is a matter of a moment.
        if (!isGivenUp && ::fsync(filled.descriptor()) != 0)
            return errno;
        return isGivenUp ? ECANCELED : filled.commit();
    }
    int write(std::string_view bytes)
    {
        int error = 0;
        while (error == 0 && !bytes.empty() && !isGivenUp) {
            error = file->append(bytes.substr(0, piece));
            bytes.remove_prefix(std::min(piece, bytes.size()));
        }
        return error == 0 ? commit(*file) : error;
    }

    std::optional<WholeFile> file;
    std::atomic<bool> isGivenUp = false;
};

PrintedFile::PrintedFile(const QString& path, QObject* parent)
    : QObject(parent)
    , theWork(std::make_shared<Work>())
    , thePath(path)
{
}

PrintedFile::~PrintedFile()
{
    theWork->isGivenUp = true;
}

QString PrintedFile::open()
{
    theWork->file.emplace(QFile::encodeName(thePath).toStdString());
    return phrase(theWork->file->open());
}

QString PrintedFile::unfinishedPath() const
{
    return QStringLiteral("/proc/self/fd/%1").arg(theWork->file->descriptor());
}

void PrintedFile::complete(const FileBytes& bytes)
{
    finishOnThread([bytes](Work& work) { return work.write(bytes.view()); });
}

void PrintedFile::completePainted()
{
    finishOnThread([](Work& work) {
        // What keeps the painter's bytes from the file is a full disk, if anything.
        return isWholePdf(work.file->descriptor()) ? work.commit(*work.file) : ENOSPC;
    });
}

void PrintedFile::finishOnThread(const std::function<int(Work&)>& part)
{
    const auto error = std::make_shared<int>(0);
    auto* const thread = QThread::create([work = theWork, part, error] { *error = part(*work); });
    connect(thread, &QThread::finished, this, [this, error] { emit finished(phrase(*error)); });
    connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    thread->start();
}

} // namespace tarnwick
