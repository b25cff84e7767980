#include "RepairRemarks.h"

#include "protocol/EngineLimits.h"

#include <new>
#include <string_view>

namespace tarnwick {

RepairRemarks::RepairRemarks(fz_context* ctx, std::string& cause)
    : theCause(cause)
    , theListener(ctx, takeWarning, takeError, this)
{
}

/// Called from within the library, which an exception must not cross, as the other one is.
void RepairRemarks::takeError(void* self, const char* message)
{
    std::string& error = static_cast<RepairRemarks*>(self)->theLastError;
    try {
        error = std::string_view(message).substr(0, longestReason);
    } catch (const std::bad_alloc&) {
        return;
    }
    makePrintable(error);
}

void RepairRemarks::takeWarning(void* self, const char* message)
{
    auto& remarks = *static_cast<RepairRemarks*>(self);
    const std::string_view text = message;
    if (remarks.theCause.empty()
        && (text == "trying to repair broken xref" || text == "repairing PDF document"))
        remarks.theCause.swap(remarks.theLastError);
}

} // namespace tarnwick
