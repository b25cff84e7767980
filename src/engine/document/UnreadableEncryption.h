#pragma once

#include <mupdf/pdf.h>

#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

/// Why a file that MuPDF refuses is sound but for an encryption that it cannot undo: one for the
/// owners of certificates, one by another program's security handler, one of an unknown version, or
/// an encryption dictionary with parts missing (ISO 32000-2, 7.6).
/// @param file the whole file, of which a copy is made.
/// @returns a sentence for the user; nothing when the file is not encrypted or cannot be read for
///   other reasons.
/// @throws std::bad_alloc when there is no room for the copy.
std::optional<std::string> unreadableEncryption(fz_context* ctx, std::string_view file);

} // namespace tarnwick
