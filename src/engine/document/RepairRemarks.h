#pragma once

#include <mupdf/fitz.h>

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
    RepairRemarks(const RepairRemarks&) = delete;
    RepairRemarks& operator=(const RepairRemarks&) = delete;
    ~RepairRemarks();

private:
    static void takeError(void* self, const char* message);
    static void takeWarning(void* self, const char* message);

    fz_context* theContext;
    // What was there before, filled while the callbacks are asked for: so they stand before these.
    void* theWarningsUser = nullptr;
    void* theErrorsUser = nullptr;
    fz_warning_cb* theWarnings = nullptr;
    fz_error_cb* theErrors = nullptr;
    std::string& theCause;
    std::string theLastError;
};

} // namespace tarnwick
