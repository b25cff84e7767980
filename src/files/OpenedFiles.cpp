#include "files/OpenedFiles.h"

#include "PathParts.h"
#include "files/FileIdentity.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <list>
#include <mutex>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>

namespace tarnwick {

namespace {

struct OpenedFile
{
    FileIdentity identity;
    std::array<std::string, 2> paths; ///< as it was opened, and without links; absolute or empty
};

struct Registry
{
    std::mutex mutex;
    std::list<OpenedFile> files;
};

/// Never destroyed: what is read for good is counted out by nobody.
Registry& registry()
{
    static Registry& only = *new Registry;
    return only;
}

/// The place that a path names, whether a file is there or not.
struct Place
{
    std::optional<FileIdentity> file;
    std::optional<FileIdentity> folder;
    std::string name;
};

Place placeOf(int folder, const std::string& path)
{
    const PathParts parts = splitPath(path);
    return {fileIdentity(folder, path), fileIdentity(folder, parts.folder), parts.name};
}

bool isAt(const std::string& path, const Place& place)
{
    if (path.empty())
        return false;
    const Place opened = placeOf(AT_FDCWD, path);
    return (place.file && place.file == opened.file)
        || (place.folder && place.folder == opened.folder && place.name == opened.name);
}

bool isKept(const Place& place)
{
    Registry& opened = registry();
    const std::lock_guard lock(opened.mutex);
    return std::any_of(opened.files.begin(), opened.files.end(), [&](const OpenedFile& file) {
        return place.file == file.identity
            || std::any_of(file.paths.begin(), file.paths.end(),
                [&](const std::string& path) { return isAt(path, place); });
    });
}

} // namespace

OpenedFiles::Entry OpenedFiles::add(int descriptor, const std::string& path)
{
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0 || !(S_ISREG(status.st_mode) || S_ISBLK(status.st_mode)))
        return nullptr;
    const std::optional<FileIdentity> identity = fileIdentity(descriptor);
    if (!identity)
        return nullptr;
    std::error_code error;
    const std::string self = "/proc/self/fd/" + std::to_string(descriptor);
    OpenedFile opened{*identity,
        {path.empty() ? path : std::filesystem::absolute(path, error).string(),
            std::filesystem::read_symlink(self, error).string()}};
    Registry& all = registry();
    const std::lock_guard lock(all.mutex);
    all.files.push_front(std::move(opened));
    return {&all.files.front(), [&all, place = all.files.begin()](const OpenedFile*) {
                const std::lock_guard unlisting(all.mutex);
                all.files.erase(place);
            }};
}

bool OpenedFiles::contains(int folder, const std::string& path)
{
    return isKept(placeOf(folder, path));
}

bool OpenedFiles::contains(const std::string& path)
{
    return contains(AT_FDCWD, path);
}

bool OpenedFiles::contains(int descriptor)
{
    return isKept({fileIdentity(descriptor), {}, {}});
}

} // namespace tarnwick
