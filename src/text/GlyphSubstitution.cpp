#include "text/GlyphSubstitution.h"

#include <QFontMetrics>

namespace tarnwick {

namespace {

bool isDrawn(char16_t unit)
{
    if (unit < 0x20)
        return unit == '\t';
    if (unit < 0x7F)
        return true;
    if (unit < 0xA0 || unit == 0xAD)
        return false;
    if (unit < 0x2028)
        return true;
    // Line and paragraph separators would break the line once more, and an object's place has no
    // object here. Surrogates are looked at in pairs.
    return unit != 0x2028 && unit != 0x2029 && unit < 0xFFFC && !QChar::isSurrogate(unit);
}

} // namespace

GlyphSubstitution::GlyphSubstitution(const QFont& font)
{
    const QFontMetrics metrics(font);
    hasFontPictures = true;
    for (char16_t picture = 0x2400; picture <= 0x2421 && hasFontPictures; ++picture)
        hasFontPictures = metrics.inFont(QChar(picture));
    if (metrics.inFont(QChar(QChar::ReplacementCharacter)))
        theReplacement = QChar::ReplacementCharacter;
}

QString GlyphSubstitution::shown(QString text) const
{
    for (qsizetype at = 0; at < text.size(); ++at) {
        const char16_t unit = text.at(at).unicode();
        if (isDrawn(unit))
            continue;
        const bool isPair = QChar::isHighSurrogate(unit) && at + 1 < text.size()
            && text.at(at + 1).isLowSurrogate();
        if (isPair)
            ++at;
        else
            text[at] = QChar(substitute(unit));
    }
    return text;
}

char16_t GlyphSubstitution::substitute(char16_t unit) const
{
    if (unit == 0xAD)
        return u'-'; // a soft hyphen is drawn only where a line breaks
    if (hasFontPictures && unit < 0x20)
        return static_cast<char16_t>(0x2400 + unit);
    if (hasFontPictures && unit == 0x7F)
        return 0x2421;
    return theReplacement;
}

} // namespace tarnwick
