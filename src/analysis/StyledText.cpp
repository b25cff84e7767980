#include "analysis/StyledText.h"

#include "DecimalInteger.h"
#include "DescriptionLine.h"
#include "analysis/pdfObjectCatalog.h"

#include <algorithm>
#include <utility>

namespace tarnwick {

namespace {

/// "[…stream length 9…]"
void appendStreamText(Piece piece, std::u16string& text)
{
    std::string number;
    appendDecimal(static_cast<std::int64_t>(piece.length()), number);
    text += u"[\u2026stream length ";
    appendCharacters(number, text);
    text += u"\u2026]";
}

std::size_t streamTextLength(Piece piece)
{
    return 18 + decimalLength(static_cast<std::int64_t>(piece.length()));
}

} // namespace

void appendPiece(std::string_view bytes, Piece piece, std::u16string& text)
{
    text.append(piece.leadingBreaks(), u'\n');
    if (piece.kind() == PieceKind::isStream)
        appendStreamText(piece, text);
    else
        appendCharacters(pieceText(bytes, piece), text);
    text.append(piece.trailingBreaks(), u'\n');
}

StyledText::StyledText() = default;

StyledText::StyledText(
    std::shared_ptr<const PieceList> pieces, std::shared_ptr<const pdfObjectCatalog> catalog)
    : thePieces(std::move(pieces))
    , theCatalog(std::move(catalog))
{
}

std::size_t StyledText::listingPieces() const
{
    return thePieces ? thePieces->size() : 0;
}

std::size_t StyledText::listingLines() const
{
    return thePieces ? thePieces->lineCount() : 0;
}

std::size_t StyledText::pieceCount() const
{
    return listingPieces() + (theCatalog ? theCatalog->size() : 0);
}

void StyledText::forEachPiece(const PieceSink& sink) const
{
    std::u16string text;
    if (thePieces) {
        thePieces->forEach([&](Piece piece) {
            text.clear();
            appendPiece(thePieces->bytes(), piece, text);
            sink(piece.role(), text);
        });
    }
    for (std::size_t index = 0; theCatalog && index < theCatalog->size(); ++index) {
        const pdfObject object = theCatalog->listedObject(index);
        sink(object.descriptionRole(), object.descriptionLine());
    }
}

std::size_t StyledText::lineCount() const
{
    return listingLines() + (theCatalog ? theCatalog->size() : 0) + 1;
}

std::size_t StyledText::lineLength(std::size_t index) const
{
    if (index + 1 == lineCount())
        return 0;
    if (index >= listingLines())
        return theCatalog->listedObject(index - listingLines()).descriptionLength();
    const PieceList::Place place = thePieces->placeOfLine(index);
    const Piece piece = place.piece;
    if (place.line != piece.leadingBreaks())
        return 0;
    return piece.kind() == PieceKind::isStream ? streamTextLength(piece) : piece.length();
}

std::optional<std::size_t> StyledText::lineOfOffset(std::size_t offset) const
{
    if (listingLines() == 0)
        return std::nullopt;
    return thePieces->lineOf(offset);
}

std::optional<std::size_t> StyledText::offsetOfLine(std::size_t index) const
{
    if (index < listingLines())
        return thePieces->offsetOf(index);
    const std::optional<pdfObject> object = objectOfLine(index);
    return object ? std::optional(object->range().begin) : std::nullopt;
}

std::optional<std::size_t> StyledText::lineOfObject(const pdfObject& object) const
{
    if (!theCatalog)
        return std::nullopt;
    return listingLines() + theCatalog->listIndex(object);
}

std::optional<pdfObject> StyledText::objectOfLine(std::size_t index) const
{
    if (!theCatalog || index < listingLines() || index - listingLines() >= theCatalog->size())
        return std::nullopt;
    return theCatalog->listedObject(index - listingLines());
}

ColourRole StyledText::appendLine(
    std::size_t index, std::size_t position, std::size_t count, std::u16string& text) const
{
    if (index + 1 == lineCount())
        return ColourRole::isDefault;
    if (index >= listingLines()) {
        const pdfObject object = theCatalog->listedObject(index - listingLines());
        object.appendDescription(position, count, text);
        return object.descriptionRole();
    }
    const PieceList::Place place = thePieces->placeOfLine(index);
    const Piece piece = place.piece;
    if (place.line != piece.leadingBreaks())
        return piece.role();
    if (piece.kind() == PieceKind::isStream) {
        std::u16string whole;
        appendStreamText(piece, whole);
        text.append(whole, position, count);
    } else {
        appendCharacters(pieceText(thePieces->bytes(), piece).substr(position, count), text);
    }
    return piece.role();
}

} // namespace tarnwick
