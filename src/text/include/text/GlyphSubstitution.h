#pragma once

#include <QChar>
#include <QFont>
#include <QString>

namespace tarnwick {

/// Stands in for characters that draw nothing or would upset a line: control characters, bytes
/// that no character set gives a glyph, lone surrogates.
///
/// Each UTF-16 unit is replaced by one unit, so that places in the shown text are places in the
/// text. A control character becomes its control picture ("␀") where the font itself has that
/// glyph, else a replacement character or a full stop: a glyph borrowed from another font is as
/// wide as that font likes and slow to find, and binary data is full of them.
class GlyphSubstitution
{
public:
    GlyphSubstitution() = default;
    explicit GlyphSubstitution(const QFont& font);

    /// The text as it is drawn; it begins and ends where characters do.
    QString shown(QString text) const;

private:
    char16_t substitute(char16_t unit) const;

    bool hasFontPictures = false;
    char16_t theReplacement = u'.';
};

} // namespace tarnwick
