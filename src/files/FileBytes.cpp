#include "files/FileBytes.h"

#include "WriteAll.h"
#include "files/OpenedFiles.h"
#include "files/OutputFile.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarnwick {

namespace {

constexpr int allSeals = F_SEAL_SEAL | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE;
constexpr std::size_t chunk = 16u << 20;

/// Closes a descriptor at the end of its scope unless it was released.
class Descriptor
{
public:
    explicit Descriptor(int number)
        : theNumber(number)
    {
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor()
    {
        if (theNumber >= 0)
            ::close(theNumber);
    }
    bool isValid() const { return theNumber >= 0; }
    int number() const { return theNumber; }
    int release() { return std::exchange(theNumber, -1); }

private:
    int theNumber;
};

int writeInto(int target, std::string_view bytes)
{
    return writeAll(bytes, [target](std::string_view rest, std::size_t) {
        return ::write(target, rest.data(), rest.size());
    });
}

/// Copies what can be read: a file of /proc says no size beforehand. @returns 0 or an errno.
int copyAll(int source, int target, const std::stop_token& stop)
{
    const std::unique_ptr<char[]> buffer(new char[chunk]);
    while (!stop.stop_requested()) {
        const ssize_t got = ::read(source, buffer.get(), chunk);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return got == 0 ? 0 : errno;
        const std::string_view part(buffer.get(), static_cast<std::size_t>(got));
        if (const int error = writeInto(target, part))
            return error;
    }
    return ECANCELED;
}

/// Bytes of a file; 0 when nobody knows.
std::size_t sizeOf(int descriptor)
{
    struct stat status = {};
    return ::fstat(descriptor, &status) == 0 ? static_cast<std::size_t>(status.st_size) : 0;
}

Descriptor newSharedMemory()
{
    return Descriptor(::memfd_create("tarnwick", MFD_CLOEXEC | MFD_ALLOW_SEALING));
}

} // namespace

class FileBytes::Mapping
{
public:
    Mapping(int descriptor, void* address, std::size_t size, OpenedFiles::Entry entry)
        : theDescriptor(descriptor)
        , theAddress(address)
        , theSize(size)
        , theEntry(std::move(entry))
    {
    }
    Mapping(const Mapping&) = delete;
    Mapping& operator=(const Mapping&) = delete;
    ~Mapping()
    {
        if (theAddress)
            ::munmap(theAddress, theSize);
        ::close(theDescriptor);
    }
    int descriptor() const { return theDescriptor; }
    std::string_view view() const { return {static_cast<const char*>(theAddress), theSize}; }

private:
    int theDescriptor;
    void* theAddress; ///< null for no bytes: an empty mapping does not exist
    std::size_t theSize;
    OpenedFiles::Entry theEntry; ///< of the file that was read
};

std::optional<FileBytes> FileBytes::read(
    const QString& path, int* failure, const std::stop_token& stop)
{
    const auto fail = [failure](int error) -> std::optional<FileBytes> {
        if (failure)
            *failure = error;
        return std::nullopt;
    };
    // Without O_NONBLOCK, opening a FIFO waits for somebody to write into it.
    const Descriptor file(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file.isValid())
        return fail(errno);
    struct stat status = {};
    if (::fstat(file.number(), &status) != 0)
        return fail(errno);
    if (S_ISDIR(status.st_mode))
        return fail(EISDIR);
    if (!S_ISREG(status.st_mode) && !S_ISBLK(status.st_mode))
        return fail(OutputFile::isNoRegularFile);
    // Before the reading, so that nobody here writes the file meanwhile.
    OpenedFiles::Entry entry
        = OpenedFiles::add(file.number(), QFile::encodeName(path).toStdString());
    Descriptor memory = newSharedMemory();
    if (!memory.isValid())
        return fail(errno);
    if (const int error = copyAll(file.number(), memory.number(), stop))
        return fail(error);
    const std::size_t size = sizeOf(memory.number());
    std::optional<FileBytes> bytes = adopt(memory.release(), size, std::move(entry));
    return bytes ? bytes : fail(ENOMEM);
}

std::optional<FileBytes> FileBytes::copy(std::string_view bytes)
{
    Descriptor memory = newSharedMemory();
    if (!memory.isValid() || writeInto(memory.number(), bytes) != 0)
        return std::nullopt;
    return adopt(memory.release(), bytes.size());
}

std::optional<FileBytes> FileBytes::adopt(int descriptor, std::size_t size)
{
    return adopt(descriptor, size, nullptr);
}

std::optional<FileBytes> FileBytes::adopt(
    int descriptor, std::size_t size, std::shared_ptr<const void> entry)
{
    Descriptor memory(descriptor);
    // What the other process does meanwhile comes out once the size cannot change any more.
    if (sizeOf(descriptor) < size || ::ftruncate(descriptor, static_cast<off_t>(size)) != 0
        || ::fcntl(descriptor, F_ADD_SEALS, allSeals) != 0 || sizeOf(descriptor) != size)
        return std::nullopt;
    void* address = nullptr;
    if (size > 0) {
        address = ::mmap(nullptr, size, PROT_READ, MAP_SHARED, descriptor, 0);
        if (address == MAP_FAILED)
            return std::nullopt;
    }
    FileBytes bytes;
    bytes.theSize = size;
    bytes.theMapping
        = std::make_shared<const Mapping>(memory.release(), address, size, std::move(entry));
    return bytes;
}

FileBytes FileBytes::prefix(std::size_t size) const
{
    FileBytes first = *this;
    first.theSize = std::min(size, theSize);
    return first;
}

std::string_view FileBytes::view() const
{
    return theMapping ? theMapping->view().substr(0, theSize) : std::string_view();
}

std::shared_ptr<const void> FileBytes::owner() const
{
    return theMapping;
}

int FileBytes::descriptor() const
{
    return theMapping ? theMapping->descriptor() : -1;
}

} // namespace tarnwick
