#include "printing/PrintedFile.h"

#include "files/ErrorText.h"
#include "files/WholeFile.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <string_view>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

/// Bytes that are written before the next look whether they are still wanted.
constexpr std::size_t piece = 8u << 20;

QString phrase(int error)
{
    return error == 0 ? QString() : QString::fromStdString(errorText(error));
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

int append(WholeFile& file, std::string_view bytes, const std::stop_token& stop)
{
    int error = 0;
    while (error == 0 && !bytes.empty() && !stop.stop_requested()) {
        error = file.append(bytes.substr(0, piece));
        bytes.remove_prefix(std::min(piece, bytes.size()));
    }
    return error;
}

/// Gives a file that is filled its name, unless it is no longer wanted.
int commit(WholeFile& filled, const std::stop_token& stop)
{
    // The flush is what takes long: after it, giving the name is a matter of a moment.
    if (!stop.stop_requested() && ::fsync(filled.descriptor()) != 0)
        return errno;
    return stop.stop_requested() ? ECANCELED : filled.commit();
}

} // namespace

PrintedFile::PrintedFile(const QString& path, QObject* parent)
    : QObject(parent)
    , theFile(std::make_shared<WholeFile>(QFile::encodeName(path).toStdString()))
{
}

PrintedFile::~PrintedFile() = default;

QString PrintedFile::open()
{
    return phrase(theFile->open());
}

QString PrintedFile::unfinishedPath() const
{
    return u"/proc/self/fd/%1"_s.arg(theFile->descriptor());
}

void PrintedFile::complete(const FileBytes& bytes)
{
    finish([file = theFile, bytes](const std::stop_token& stop) {
        const int error = append(*file, bytes.view(), stop);
        return error == 0 ? commit(*file, stop) : error;
    });
}

void PrintedFile::completePainted()
{
    finish([file = theFile](const std::stop_token& stop) {
        // What keeps the painter's bytes from the file is a full disk, if anything.
        return isWholePdf(file->descriptor()) ? commit(*file, stop) : ENOSPC;
    });
}

void PrintedFile::finish(const std::function<int(const std::stop_token&)>& part)
{
    theWork.start(part, [this](int error) { emit finished(phrase(error)); });
}

} // namespace tarnwick
