#pragma once

#include <cerrno>
#include <cstddef>
#include <string_view>

#include <sys/types.h>

namespace tarnwick {

/// Writes all bytes by a system call that may write a part of what it is given, or be interrupted.
/// @param write called with the bytes that are left and the count of those before them; returns
///   how many it has written, or -1 with errno.
/// @returns 0 or an errno; ENOSPC where a call writes nothing.
template<class Write> int writeAll(std::string_view bytes, Write write)
{
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t written = write(bytes.substr(done), done);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return written < 0 ? errno : ENOSPC;
        done += static_cast<std::size_t>(written);
    }
    return 0;
}

} // namespace tarnwick
