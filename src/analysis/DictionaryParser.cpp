#include "analysis/DictionaryParser.h"

#include "DecimalInteger.h"
#include "analysis/StructureWords.h"

#include <array>

namespace tarnwick {

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
    Key key = pagesKey;
    std::string_view text;
};

/// The keys that begin with one letter: two at most.
using LetterKeys = std::array<KeyText, 2>;

constexpr LetterKeys keysBeginningWith(char letter)
{
    switch (letter) {
    case 'P':
        return {KeyText{pagesKey, StructureKey::pages}, KeyText{parentKey, StructureKey::parent}};
    case 'M':
        return {KeyText{metadataKey, StructureKey::metadata}};
    case 'N':
        return {KeyText{namesKey, StructureKey::names}};
    case 'K':
        return {KeyText{kidsKey, StructureKey::kids}};
    case 'C':
        return {KeyText{countKey, StructureKey::count}, KeyText{contentKey, StructureKey::content}};
    case 'I':
        return {KeyText{infoKey, StructureKey::info}};
    case 'R':
        return {KeyText{rootKey, StructureKey::root}};
    case 'S':
        return {KeyText{sizeKey, StructureKey::size}};
    default:
        return {};
    }
}

/// What a byte can mean for the parser.
enum Meaning : unsigned char
{
    separates = 1u << 0, ///< ends a token: a space, or a slash that ends the piece too
    beginsKey = 1u << 1, ///< may be the first letter of a key
    opensArray = 1u << 2,
    endsReference = 1u << 3,
    closesArray = 1u << 4,
};

constexpr std::array<unsigned char, 256> meanings = [] {
    std::array<unsigned char, 256> table{};
    for (unsigned byte = 0; byte < table.size(); ++byte) {
        if (!keysBeginningWith(static_cast<char>(byte))[0].text.empty())
            table[byte] |= beginsKey;
    }
    table[' '] |= separates;
    table['/'] |= separates;
    table['['] |= opensArray;
    table['R'] |= endsReference;
    table[']'] |= closesArray;
    return table;
}();

/// The keys that stand at the start of a text.
unsigned keysAt(std::string_view text)
{
    unsigned keys = 0;
    for (const KeyText& key : keysBeginningWith(text.front())) {
        if (!key.text.empty() && text.starts_with(key.text))
            keys |= key.key;
    }
    return keys;
}

} // namespace

void DictionaryParser::restart()
{
    dropOpenKids();
    theFirstKid = kidCount();
    hasLines = false;
    theValues = Values();
    beginPiece();
}

void DictionaryParser::beginPiece()
{
    thePiece = Piece();
    thePiece.kidsStart = kidCount();
    theKidsState = KidsState();
}

/// One pass over the bytes, most of which mean nothing. Lines are joined by a space, which ends a
/// token, so no token and no key runs over the end of a line.
void DictionaryParser::addLine(std::string_view line)
{
    hasLines = true;
    std::size_t tokenStart = 0;
    unsigned tokenMeanings = 0;
    for (std::size_t index = 0; index < line.size(); ++index) {
        const unsigned meaning = meanings[static_cast<unsigned char>(line[index])];
        if (meaning == 0)
            continue;
        if ((meaning & separates) != 0) {
            addToken(line.substr(tokenStart, index - tokenStart), tokenMeanings);
            tokenStart = index + 1;
            tokenMeanings = 0;
            if (line[index] == '/') {
                endPiece();
                beginPiece();
            }
            continue;
        }
        tokenMeanings |= meaning;
        if ((meaning & beginsKey) != 0)
            thePiece.keys |= keysAt(line.substr(index));
    }
    addToken(line.substr(tokenStart), tokenMeanings);
}

/// @param tokenMeanings those of all its bytes.
void DictionaryParser::addToken(std::string_view token, unsigned tokenMeanings)
{
    if (thePiece.tokens == 1)
        thePiece.first = decimalInteger(token).value_or(0);
    else if (thePiece.tokens == 2)
        thePiece.second = decimalInteger(token).value_or(0);
    ++thePiece.tokens;
    addKidsToken(token, tokenMeanings);
}

void DictionaryParser::addKidsToken(std::string_view token, unsigned tokenMeanings)
{
    KidsState& state = theKidsState;
    if ((tokenMeanings & opensArray) != 0) {
        const auto number = decimalInteger(token.substr(1));
        if (number) {
            state.first = *number;
            state.hasFirst = true;
        }
    } else if ((tokenMeanings & endsReference) != 0) {
        addKid(state.first, state.second);
        state = KidsState();
    } else if ((tokenMeanings & closesArray) == 0) {
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
    if (!theKids->empty()) {
        const Kid& last = (*theKids)[theKids->size() - 1];
        digits = last.digitsBefore + decimalLength(last.objNo) + decimalLength(last.objGen);
    }
    theKids->push_back({objNo, objGen, digits});
}

bool DictionaryParser::openPieceHasKids() const
{
    return (thePiece.keys & kidsKey) != 0 && thePiece.tokens >= 3;
}

void DictionaryParser::endPiece()
{
    apply(thePiece, theValues);
    dropOpenKids();
}

/// References of a piece that has turned out to be no Kids array.
void DictionaryParser::dropOpenKids()
{
    if (!openPieceHasKids())
        theKids->truncate(thePiece.kidsStart);
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
    if (!hasLines)
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
        entries.kidCount = (openPieceHasKids() ? kidCount() : thePiece.kidsStart) - theFirstKid;
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

} // namespace tarnwick
