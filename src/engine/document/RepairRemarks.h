#pragma once

#include "LibraryListener.h"

#include <string>

namespace tarnwick {

/// Listens, for its life, to what the library says before it looks for all objects of a file anew:
/// the error that it could not go on with is told in passing alone.
class RepairRemarks
{
public:
    /// @param[in,out] cause receives the first such error, in printable ASCII, unless there is one;
    ///   borrowed for this object's life.
    RepairRemarks(fz_context* ctx, std::string& cause);

private:
    static void takeError(void* self, const char* message);
    static void takeWarning(void* self, const char* message);

    std::string& theCause;
    std::string theLastError;
    LibraryListener theListener; ///< the last: it tells as soon as it is there
};

} // namespace tarnwick
