#pragma once

#include "analysis/StyledText.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QString>

/// Texts of the source analysis in a form that reads well when they differ.
namespace Listings {

/// The pieces in UTF-8: a letter for the colour (d, r, g, b), then the text with "|" for each line
/// feed.
inline QByteArrayList pieces(const StyledText& text)
{
    QByteArrayList list;
    text.forEachPiece([&list](ColourRole role, std::u16string_view characters) {
        const QByteArray line = QString::fromStdU16String(std::u16string(characters)).toUtf8();
        list.append(QByteArray(1, "drgb"[static_cast<std::size_t>(role)]) + ' '
            + QByteArray(line).replace('\n', '|'));
    });
    return list;
}

} // namespace Listings
