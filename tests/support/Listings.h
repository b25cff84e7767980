#pragma once

#include "analysis/SourceText.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QString>

#include <initializer_list>
#include <string>

/// Texts for tests of the source analysis, and listings in a form that reads well when they differ.
namespace Listings {

/// The lines, each closed by a line feed.
inline std::string file(std::initializer_list<const char*> lines)
{
    std::string text;
    for (const char* line : lines)
        text.append(line).append("\n");
    return text;
}

/// One piece in UTF-8: a letter for its colour (d, r, g, b), then its text with "|" for each line
/// feed.
inline QByteArray piece(ColourRole role, std::u16string_view text)
{
    const QByteArray characters
        = QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size())).toUtf8();
    return QByteArray(1, "drgb"[static_cast<std::size_t>(role)]) + ' '
        + QByteArray(characters).replace('\n', '|');
}

inline QByteArrayList pieces(const StyledText& text)
{
    QByteArrayList list;
    text.forEachPiece([&list](ColourRole role, std::u16string_view characters) {
        list.append(piece(role, characters));
    });
    return list;
}

/// The listing alone, without the object list behind it.
inline QByteArrayList listing(const std::string& bytes)
{
    SourceText source(SharedBytes::ofString(bytes));
    const StyledText text = source.makeListing(true);
    return pieces(text).mid(
        0, static_cast<qsizetype>(text.pieceCount() - source.theCatalog().size()));
}

/// The description lines, their colours left out.
inline QByteArrayList objects(const std::string& bytes)
{
    SourceText source(SharedBytes::ofString(bytes));
    QByteArrayList list;
    for (const QByteArray& line : pieces(source.makeListing(false)))
        list.append(line.mid(2).chopped(1));
    return list;
}

} // namespace Listings
