#include "analysis/DictionaryParser.h"

#include "analysis/DecimalInteger.h"

#include <algorithm>
#include <array>

namespace {

enum Key : unsigned
{
    pagesKey = 1u << 0,
    metadataKey = 1u << 1,
    namesKey = 1u << 2,
    kidsKey = 1u << 3,
    parentKey = 1u << 4,
    countKey = 1u << 5,
    contentKey = 1u << 6,
    infoKey = 1u << 7,
    rootKey = 1u << 8,
    sizeKey = 1u << 9,
};

struct KeyText
{
    Key key;
    std::string_view text;
};

constexpr std::array keyTexts{
    KeyText{pagesKey, "Pages"},
    KeyText{metadataKey, "Metadata"},
    KeyText{namesKey, "Names"},
    KeyText{kidsKey, "Kids"},
    KeyText{parentKey, "Parent"},
    KeyText{countKey, "Count"},
    KeyText{contentKey, "Content"},
    KeyText{infoKey, "Info"},
    KeyText{rootKey, "Root"},
    KeyText{sizeKey, "Size"},
};

bool holds(std::string_view text, char character)
{
    return text.find(character) != std::string_view::npos;
}

/// Calls take with every stretch of text between separators, empty ones included.
template<class Take> void split(std::string_view text, char separator, Take take)
{
    for (;;) {
        const std::size_t end = text.find(separator);
        take(text.substr(0, end));
        if (end == std::string_view::npos)
            return;
        text.remove_prefix(end + 1);
    }
}

} // namespace

void DictionaryParser::restart()
{
    if (!openPieceHasKids())
        theKids.truncate(thePiece.kidsStart);
    theFirstKid = theKids.size();
    theHasLines = false;
    theValues = Values();
    beginPiece();
}

void DictionaryParser::beginPiece()
{
    thePiece = Piece();
    thePiece.kidsStart = theKids.size();
    theKidsState = KidsState();
}

void DictionaryParser::addLine(std::string_view line)
{
    theHasLines = true;
    bool isFirst = true;
    split(line, '/', [&](std::string_view segment) {
        if (!isFirst) {
            endPiece();
            beginPiece();
        }
        isFirst = false;
        addSegment(segment);
    });
}

/// A line's share of a piece. Lines are joined by a space, which ends a token, so no token and no
/// key runs over the end of a segment.
void DictionaryParser::addSegment(std::string_view segment)
{
    for (const KeyText& key : keyTexts) {
        if (segment.find(key.text) != std::string_view::npos)
            thePiece.keys |= key.key;
    }
    split(segment, ' ', [this](std::string_view token) { addToken(token); });
}

void DictionaryParser::addToken(std::string_view token)
{
    if (thePiece.tokens == 1)
        thePiece.first = decimalInteger(token).value_or(0);
    else if (thePiece.tokens == 2)
        thePiece.second = decimalInteger(token).value_or(0);
    ++thePiece.tokens;
    addKidsToken(token);
}

void DictionaryParser::addKidsToken(std::string_view token)
{
    KidsState& state = theKidsState;
    if (holds(token, '[')) {
        const auto number = decimalInteger(token.substr(1));
        if (number) {
            state.first = *number;
            state.hasFirst = true;
        }
    } else if (holds(token, 'R')) {
        addKid(state.first, state.second);
        state = KidsState();
    } else if (!holds(token, ']')) {
        const auto number = decimalInteger(token);
        if (number && state.hasFirst) {
            state.second = *number;
        } else if (number) {
            state.first = *number;
            state.hasFirst = true;
        }
    }
}

void DictionaryParser::addKid(std::int64_t objNo, std::int64_t objGen)
{
    std::size_t digits = 0;
    if (!theKids.empty()) {
        const Kid& last = theKids[theKids.size() - 1];
        digits = last.digitsBefore + decimalLength(last.objNo) + decimalLength(last.objGen);
    }
    theKids.push_back({objNo, objGen, digits});
}

bool DictionaryParser::openPieceHasKids() const
{
    return (thePiece.keys & kidsKey) != 0 && thePiece.tokens >= 3;
}

void DictionaryParser::endPiece()
{
    apply(thePiece, theValues);
    if (!openPieceHasKids())
        theKids.truncate(thePiece.kidsStart);
}

RawRef DictionaryParser::reference(const Piece& piece)
{
    return piece.tokens < 4 ? RawRef() : RawRef{piece.first, piece.second, true};
}

std::int64_t DictionaryParser::count(const Piece& piece)
{
    return piece.tokens < 2 ? 0 : piece.first;
}

/// For each kind of object, the first of its keys that the piece holds says what the piece is.
void DictionaryParser::apply(const Piece& piece, Values& values)
{
    const auto holdsKey = [&piece](Key key) { return (piece.keys & key) != 0; };
    if (piece.keys == 0)
        return;
    if (holdsKey(pagesKey))
        values.catalogPages = reference(piece);
    else if (holdsKey(metadataKey))
        values.catalogMetadata = reference(piece);
    else if (holdsKey(namesKey))
        values.catalogNames = reference(piece);

    if (holdsKey(kidsKey))
        ; // the references are in theKids
    else if (holdsKey(parentKey))
        values.nodeParent = reference(piece);
    else if (holdsKey(countKey))
        values.nodeCount = count(piece);

    if (holdsKey(parentKey))
        values.pageParent = reference(piece);
    else if (holdsKey(contentKey))
        values.pageContent = reference(piece);

    if (holdsKey(infoKey))
        values.trailerInfo = reference(piece);
    else if (holdsKey(rootKey))
        values.trailerRoot = reference(piece);
    else if (holdsKey(sizeKey))
        values.trailerSize = count(piece);
}

ObjectEntries DictionaryParser::entries(ObjectType type) const
{
    ObjectEntries entries;
    if (!theHasLines)
        return entries;
    Values values = theValues;
    apply(thePiece, values);
    switch (type) {
    case ObjectType::isCatalog:
        entries.setLink(ObjectLink::isPages, values.catalogPages);
        entries.setLink(ObjectLink::isMetadata, values.catalogMetadata);
        entries.setLink(ObjectLink::isNames, values.catalogNames);
        break;
    case ObjectType::isPages:
        entries.setLink(ObjectLink::isParent, values.nodeParent);
        entries.count = values.nodeCount;
        entries.firstKid = theFirstKid;
        entries.kidCount = (openPieceHasKids() ? theKids.size() : thePiece.kidsStart) - theFirstKid;
        break;
    case ObjectType::isPage:
        entries.setLink(ObjectLink::isParent, values.pageParent);
        entries.setLink(ObjectLink::isContent, values.pageContent);
        break;
    case ObjectType::isTrailer:
        entries.setLink(ObjectLink::isInfo, values.trailerInfo);
        entries.setLink(ObjectLink::isRoot, values.trailerRoot);
        entries.count = values.trailerSize;
        break;
    case ObjectType::isInfo:
    case ObjectType::isNames:
    case ObjectType::isPlain:
        break;
    }
    return entries;
}
