#include "versions/VersionWriter.h"

#include "files/ErrorText.h"
#include "files/WholeFile.h"
#include "versions/VersionNaming.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <numeric>
#include <system_error>
#include <unistd.h>

namespace tarnwick {

namespace {

/// Small enough that a cancel is heard at once on a slow disk.
constexpr std::size_t sliceSize = 4U << 20U;

VersionResult failure(std::size_t filesWritten, const std::string& path, std::string reason)
{
    return {VersionResult::Outcome::isFailed, filesWritten, path, std::move(reason)};
}

/// Creates a folder with those above it. @returns 0 or an errno; an existing folder is fine.
int makeFolders(const std::string& folder)
{
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    return error.value();
}

class Folder
{
public:
    explicit Folder(const std::string& path)
        : theDescriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
    }
    ~Folder()
    {
        if (theDescriptor < 0)
            return;
        // Has the names of the files last through a power cut.
        ::fsync(theDescriptor);
        ::close(theDescriptor);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    int descriptor() const { return theDescriptor; }

private:
    int theDescriptor;
};

/// When a file's content last changed; tells whether somebody else wrote to it in between.
struct ContentStamp
{
    std::int64_t seconds = 0;
    std::int64_t nanoseconds = 0;
    off_t size = -1;

    explicit ContentStamp(int descriptor)
    {
        struct stat status = {};
        if (::fstat(descriptor, &status) != 0)
            return;
        seconds = status.st_mtim.tv_sec;
        nanoseconds = status.st_mtim.tv_nsec;
        size = status.st_size;
    }
    bool operator==(const ContentStamp&) const = default;
};

/// The version written last, kept open because the next one begins with it.
struct WrittenVersion
{
    std::unique_ptr<WholeFile> file;
    std::size_t length = 0;
    ContentStamp stamp = ContentStamp(-1);
};

/// Counts bytes over all versions, tells how many there are, and hears whether to go on.
class Meter
{
public:
    Meter(const std::stop_token& stop, const VersionWriter::Progress& progress, std::uint64_t total)
        : theStop(stop)
        , theProgress(progress)
        , theTotal(total)
    {
    }

    bool advance(std::size_t bytes)
    {
        theDone += bytes;
        if (theProgress)
            theProgress(theDone, theTotal);
        return !theStop.stop_requested();
    }

private:
    const std::stop_token& theStop;
    const VersionWriter::Progress& theProgress;
    std::uint64_t theDone = 0;
    std::uint64_t theTotal;
};

enum class Step
{
    isWritten,
    isCancelled,
    isFailed,
};

/// Shares what the last version has in common with this one. @param[out] shared how much that is.
int shareLast(WholeFile& file, const WrittenVersion& last, std::size_t& shared)
{
    if (!last.file)
        return 0;
    shared = file.shareBeginning(last.file->descriptor(), last.length);
    // A program that watches the folder may have changed the file that was just put there.
    if (shared == 0 || ContentStamp(last.file->descriptor()) == last.stamp)
        return 0;
    shared = 0;
    return file.restart();
}

/// Fills and commits one file. @param[out] error the errno when it fails.
Step writeOne(
    WholeFile& file, std::string_view bytes, const WrittenVersion& last, Meter& meter, int& error)
{
    std::size_t shared = 0;
    error = shareLast(file, last, shared);
    if (error != 0)
        return Step::isFailed;
    if (!meter.advance(shared))
        return Step::isCancelled;
    for (std::string_view rest = bytes.substr(shared); !rest.empty();) {
        const std::string_view slice = rest.substr(0, sliceSize);
        error = file.append(slice);
        if (error != 0)
            return Step::isFailed;
        rest.remove_prefix(slice.size());
        if (!meter.advance(slice.size()))
            return Step::isCancelled;
    }
    error = file.commit();
    return error == 0 ? Step::isWritten : Step::isFailed;
}

} // namespace

VersionWriter::VersionWriter(std::string_view bytes, std::string base, std::string extension)
    : theBytes(bytes)
    , theBase(std::move(base))
    , theExtension(std::move(extension))
{
}

std::vector<VersionWriter::Version> VersionWriter::all(const std::vector<std::size_t>& cuts)
{
    std::vector<Version> versions;
    for (const std::size_t cut : cuts)
        versions.push_back({versions.size() + 1, cut});
    return versions;
}

VersionResult VersionWriter::write(const std::string& folder, const std::vector<Version>& versions,
    const std::stop_token& stop, const Progress& progress) const
{
    if (const int error = makeFolders(folder))
        return failure(0, folder, errorText(error));
    const Folder opened(folder);
    if (opened.descriptor() < 0)
        return failure(0, folder, errorText(errno));

    const std::uint64_t total = std::accumulate(versions.begin(), versions.end(), std::uint64_t{0},
        [](std::uint64_t sum, const Version& version) { return sum + version.end; });
    Meter meter(stop, progress, total);
    WrittenVersion last;
    for (std::size_t i = 0; i < versions.size(); ++i) {
        const std::string name = versionFileName(theBase, versions[i].number, theExtension);
        auto file = std::make_unique<WholeFile>(opened.descriptor(), name);
        int error = file->open();
        const std::string_view bytes = theBytes.substr(0, versions[i].end);
        const Step step = error == 0 ? writeOne(*file, bytes, last, meter, error) : Step::isFailed;
        if (step == Step::isFailed)
            return failure(i, folder + "/" + name, errorText(error));
        if (step == Step::isCancelled)
            return {VersionResult::Outcome::isCancelled, i, {}, {}};
        const int descriptor = file->descriptor();
        last = {std::move(file), bytes.size(), ContentStamp(descriptor)};
    }
    return {VersionResult::Outcome::isDone, versions.size(), {}, {}};
}

} // namespace tarnwick
