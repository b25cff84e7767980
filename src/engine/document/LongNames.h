#pragma once

#include "EngineDocument.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

/// The names of a document that are longer than a name may be: 127 bytes (ISO 32000-1, Annex C;
/// ISO 32000-2 has no such limit). MuPDF cuts them there, while the content streams that use a
/// name of a resource keep it whole, so a file with cut names has lost its fonts for every reader
/// that does not cut them.
class LongNames
{
public:
    explicit LongNames(const EngineDocument& document)
        : theDocument(document)
    {
    }

    /// The whole name for one of MuPDF's: most often itself. The file is read for them when the
    /// first name comes that may have been cut. Valid as long as this object and the argument.
    std::string_view whole(std::string_view name);

private:
    static constexpr std::size_t limit = 127;

    void collect();
    void collectFrom(std::string_view bytes);

    const EngineDocument& theDocument;
    /// By what MuPDF leaves of them; nothing before they are collected.
    std::optional<std::map<std::string, std::string, std::less<>>> theNames;
};

} // namespace tarnwick
