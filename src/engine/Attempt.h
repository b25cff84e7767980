#pragma once

#include <mupdf/fitz.h>

namespace tarnwick {

/// Runs a step that MuPDF may throw out of.
///
/// MuPDF's exceptions are longjmp: the step must hold nothing that has a destructor, and must not
/// return from the middle with something left to drop. Its results go out by reference.
/// @returns FZ_ERROR_NONE, or the error's code.
template<typename Step> [[nodiscard]] int attempt(fz_context* ctx, Step&& step) noexcept
{
    int code = FZ_ERROR_NONE;
    fz_var(code);
    fz_try(ctx)
    {
        step();
    }
    fz_catch(ctx)
    {
        code = fz_caught(ctx);
        if (code == FZ_ERROR_NONE)
            code = FZ_ERROR_GENERIC;
    }
    return code;
}

} // namespace tarnwick
