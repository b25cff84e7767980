#include "RepairRemarks.h"

#include "protocol/EngineLimits.h"

#include <algorithm>
#include <new>
#include <string_view>

namespace tarnwick {

RepairRemarks::RepairRemarks(fz_context* ctx, std::string& cause)
    : theContext(ctx)
    , theWarnings(fz_warning_callback(ctx, &theWarningsUser))
    , theErrors(fz_error_callback(ctx, &theErrorsUser))
    , theCause(cause)
{
    fz_flush_warnings(ctx); // or one like the last would be counted, not told
    fz_set_warning_callback(ctx, takeWarning, this);
    fz_set_error_callback(ctx, takeError, this);
}

RepairRemarks::~RepairRemarks()
{
    fz_flush_warnings(theContext);
    fz_set_warning_callback(theContext, theWarnings, theWarningsUser);
    fz_set_error_callback(theContext, theErrors, theErrorsUser);
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
    std::replace_if(
        error.begin(), error.end(), [](char one) { return one < ' ' || one > '~'; }, '?');
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
