#pragma once

#include <QString>

namespace tarnwick {

/// What a PDF's font name says (ISO 32000-2, 9.6.2.2 and 9.9.2).
struct PDFFontName
{
    QString family; ///< never empty; "Times New Roman"
    bool isBold = false;
    bool isItalic = false;

    bool operator==(const PDFFontName&) const = default;
};

/// Takes a name such as "ABCDEF+TimesNewRomanPS-BoldMT" apart: subset prefix and style go, and the
/// words that PostScript runs together are parted again, so that text carried into other programs
/// finds the font there. A name without letters gives the family "Times".
PDFFontName parseFontName(const QString& name);

} // namespace tarnwick
