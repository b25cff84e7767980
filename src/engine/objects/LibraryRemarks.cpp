#include "LibraryRemarks.h"

#include "protocol/EngineLimits.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace tarnwick {

namespace {

/// How the library's remarks begin when a filter has not come to its end.
constexpr std::array<std::string_view, 6> damages
    = {"read error; treating as end of file", "premature end", "ignoring zlib error",
        "unexpected end", "insufficient data", "padding truncated image"};

} // namespace

LibraryRemarks::LibraryRemarks(fz_context* ctx)
    : theListener(ctx, take, take, this)
{
}

void LibraryRemarks::take(void* self, const char* message)
{
    static_cast<LibraryRemarks*>(self)->add(message);
}

/// Called from within the library, which an exception must not cross: it takes no memory that the
/// string does not have yet but for the first.
void LibraryRemarks::add(const char* message)
{
    const std::string_view text = message;
    hasDamage = hasDamage || std::any_of(damages.begin(), damages.end(), [text](auto damage) {
        return text.starts_with(damage);
    });
    if (!theFirst.empty())
        return;
    try {
        theFirst = text.substr(0, longestReason);
    } catch (const std::bad_alloc&) {
        return;
    }
    makePrintable(theFirst);
}

} // namespace tarnwick
