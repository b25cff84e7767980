#pragma once

#include "LibraryListener.h"

#include <string>

namespace tarnwick {

/// Listens, for its life, to what the library has to say while it reads: it takes much damage for
/// the end of the data, and tells of it in passing alone.
class LibraryRemarks
{
public:
    explicit LibraryRemarks(fz_context* ctx);

    /// The first remark, which the others follow from; printable ASCII, empty without any.
    const std::string& first() const { return theFirst; }
    /// Whether one of them was that the data ends before it should, or makes no sense.
    bool tellDamage() const { return hasDamage; }

private:
    static void take(void* self, const char* message);
    void add(const char* message);

    std::string theFirst;
    bool hasDamage = false;
    LibraryListener theListener; ///< the last: it tells as soon as it is there
};

} // namespace tarnwick
