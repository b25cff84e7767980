#include "LibraryListener.h"

#include <algorithm>

namespace tarnwick {

LibraryListener::LibraryListener(
    fz_context* ctx, fz_warning_cb* warning, fz_error_cb* error, void* user)
    : theContext(ctx)
    , theWarnings(fz_warning_callback(ctx, &theWarningsUser))
    , theErrors(fz_error_callback(ctx, &theErrorsUser))
{
    fz_flush_warnings(ctx); // or one like the last would be counted, not told
    fz_set_warning_callback(ctx, warning, user);
    fz_set_error_callback(ctx, error, user);
}

LibraryListener::~LibraryListener()
{
    fz_flush_warnings(theContext);
    fz_set_warning_callback(theContext, theWarnings, theWarningsUser);
    fz_set_error_callback(theContext, theErrors, theErrorsUser);
}

void makePrintable(std::string& text) noexcept
{
    std::replace_if(
        text.begin(), text.end(), [](char one) { return one < ' ' || one > '~'; }, '?');
}

} // namespace tarnwick
