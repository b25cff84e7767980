#pragma once

#include <mupdf/fitz.h>

#include <string>

namespace tarnwick {

/// Has the library tell its warnings and errors to others for its life, and gives back to those who
/// listened before what they listened with. Callbacks run within the library, which an exception
/// must not cross.
class LibraryListener
{
public:
    /// @param user given to both callbacks; outlives this object.
    LibraryListener(fz_context* ctx, fz_warning_cb* warning, fz_error_cb* error, void* user);
    LibraryListener(const LibraryListener&) = delete;
    LibraryListener& operator=(const LibraryListener&) = delete;
    ~LibraryListener();

private:
    fz_context* theContext;
    // What was there before, filled while the callbacks are asked for: so they stand before these.
    void* theWarningsUser = nullptr;
    void* theErrorsUser = nullptr;
    fz_warning_cb* theWarnings = nullptr;
    fz_error_cb* theErrors = nullptr;
};

/// Puts a question mark in place of each byte that is not printable ASCII.
void makePrintable(std::string& text) noexcept;

} // namespace tarnwick
