#include "FindingList.h"
#include "analysis/SourceLexer.h"
#include "analysis/StrayBytes.h"

#include <algorithm>

namespace tarnwick {

/// Blank lines behind the last marker are nobody's business.
void checkFrame(const pdfObjectCatalog& catalog, FindingList& list)
{
    const std::string_view bytes = catalog.bytes();
    const StrayBytes stray = findStrayBytes(bytes);
    if (!stray.header)
        list.add(FindingCode::isNoHeader, 0, std::nullopt, "The file has no header %PDF-.");
    else if (*stray.header > 0)
        list.add(FindingCode::isBytesBeforeHeader, 0, std::nullopt,
            std::to_string(*stray.header) + " bytes stand before the header %PDF-.");
    if (!stray.end) {
        list.add(FindingCode::isNoMarker, bytes.size(), std::nullopt,
            "The file has no marker %%EOF, with which each save ends.");
        return;
    }
    const std::string_view rest = bytes.substr(*stray.end);
    const auto isBlank = [](char character) { return isSourceSpace(character) && character != 0; };
    if (std::all_of(rest.begin(), rest.end(), isBlank))
        return;
    const bool isEmpty = std::all_of(rest.begin(), rest.end(), isSourceSpace);
    list.add(FindingCode::isBytesBehindMarker, *stray.end, std::nullopt,
        std::to_string(rest.size()) + " bytes stand behind the last marker %%EOF"
            + (isEmpty ? ", all of them zeros or blanks." : "."));
}

} // namespace tarnwick
