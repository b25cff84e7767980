#include "HexDigits.h"

#include <algorithm>

namespace tarnwick {

qsizetype HexDigits::lineLength(qsizetype) const
{
    return std::max<qsizetype>(0, 3 * static_cast<qsizetype>(theBytes.view.size()) - 1);
}

TextLine HexDigits::line(qsizetype index, qsizetype position, qsizetype count) const
{
    QString text(std::min(count, lineLength(index) - position), u' ');
    for (qsizetype at = 0; at < text.size(); ++at) {
        const qsizetype unit = position + at;
        const auto byte
            = static_cast<unsigned char>(theBytes.view[static_cast<std::size_t>(unit / 3)]);
        if (unit % 3 < 2)
            text[at] = QLatin1Char("0123456789ABCDEF"[unit % 3 == 0 ? byte >> 4 : byte & 0xF]);
    }
    return {text};
}

} // namespace tarnwick
