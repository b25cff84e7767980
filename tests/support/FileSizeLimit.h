#pragma once

#include <sys/resource.h>

namespace tarnwick {

/// As if the disk were full once a file has this many bytes.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        getrlimit(RLIMIT_FSIZE, &theOld);
        const rlimit limit = {bytes, theOld.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &theOld); }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit theOld = {};
};

} // namespace tarnwick
