#pragma once

#include "support/PdfBuilder.h"

namespace tarnwick {

/// Pages of which no engine gets everything, whatever the machine.
namespace LostPages {

/// Adds a page whose content cannot be read.
inline PdfBuilder& addUnreadable(PdfBuilder& builder)
{
    const int content = builder.addObject("<< /Length 5 /X ( >>");
    return builder.addPage({}, "/Contents [ " + std::to_string(content) + " 0 R ]");
}

/// Adds a page whose content makes sense only up to a place.
inline PdfBuilder& addDamaged(PdfBuilder& builder, const std::string& beginning)
{
    return builder.addDrawing("BT /F1 12 Tf 72 700 Td (" + beginning + ") Tj ET ) >> ] 3 0 (");
}

/// Adds a page with an image of 16 GB, which is more than an engine gets; with the sanitizers,
/// whose engine has no limit, this is nothing to try.
inline PdfBuilder& addHuge(PdfBuilder& builder)
{
    return builder.addDrawing("q BI /W 65000 /H 65000 /BPC 8 /CS /CMYK ID abc EI Q");
}

/// Adds a page with one character more than the text of a page may have.
inline PdfBuilder& addTooLong(PdfBuilder& builder)
{
    const std::string lines = std::to_string(
        builder.addStream("BT /F1 1 Tf 9 9 Td (" + std::string(3000, 'x') + ") Tj ET",
            "/Type /XObject /Subtype /Form /BBox [ 0 0 9999 9 ] /Resources << /Font << /F1 3 0 R "
            ">> >>"));
    std::string content;
    for (int time = 0; time < 1001; ++time)
        content += "1 0 0 1 0 2 cm /L Do ";
    return builder.addDrawing(content, "/Resources << /XObject << /L " + lines + " 0 R >> >>");
}

/// Three pages, of the second of which there is nothing to read.
inline PdfBuilder secondOfThree()
{
    PdfBuilder builder;
    builder.addPage("first page");
    addUnreadable(builder);
    return builder.addPage("last page");
}

} // namespace LostPages

} // namespace tarnwick
