#pragma once

#include "analysis/ChunkedVector.h"
#include "analysis/pdfObject.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tarnwick {

/// Reads the dictionary entries that define a document's structure from an object's lines.
///
/// A text scan, not a parser of PDF objects: the lines, joined by single spaces, are cut at every
/// "/" into pieces; a piece that holds a key anywhere is an entry of that key, and its value is
/// read from the piece's tokens, which single spaces separate. Of several pieces with one key the
/// last wins.
///
/// Lines are given one after the other, and an object's record can be made after any of them: a
/// file can repeat "endobj" a million times behind one header, so nothing is read twice.
class DictionaryParser
{
public:
    /// @param kids where the references of Kids arrays are put; borrowed.
    explicit DictionaryParser(ChunkedVector<Kid>* kids)
        : theKids(kids)
    {
    }

    /// Whether objects of this kind have entries; those of other kinds need not be read.
    static constexpr bool hasEntries(ObjectType type)
    {
        return type == ObjectType::isCatalog || type == ObjectType::isPages
            || type == ObjectType::isPage || type == ObjectType::isTrailer;
    }

    /// Forgets all lines.
    void restart();
    /// Takes the object's next line, trimmed; the header line is the first.
    void addLine(std::string_view line);

    /// The entries that an object of this kind has with the lines given so far.
    ObjectEntries entries(ObjectType type) const;

private:
    /// Every value that some kind of object could have; which of them count is known at the end.
    struct Values
    {
        std::optional<RawRef> catalogPages, catalogMetadata, catalogNames;
        std::optional<RawRef> nodeParent;
        std::int64_t nodeCount = 0;
        std::optional<RawRef> pageParent, pageContent;
        std::optional<RawRef> trailerInfo, trailerRoot;
        std::int64_t trailerSize = 0;
    };
    /// What is known of the piece that the next line may still continue.
    struct Piece
    {
        unsigned keys = 0; ///< the keys that it holds
        std::size_t tokens = 0; ///< number of its tokens
        std::int64_t first = 0; ///< value of token 1, 0 when that is not a number
        std::int64_t second = 0; ///< value of token 2 likewise
        std::size_t kidsStart = 0; ///< where its references begin in theKids
    };
    /// The reading of a Kids array, token by token.
    struct KidsState
    {
        std::int64_t first = 0;
        std::int64_t second = 0;
        bool hasFirst = false;
    };

    void beginPiece();
    void endPiece();
    void addToken(std::string_view token, unsigned tokenMeanings);
    void addKidsToken(std::string_view token, unsigned tokenMeanings);
    void addKid(std::int64_t objNo, std::int64_t objGen);
    void dropOpenKids();
    std::size_t kidCount() const { return theKids->size(); }
    bool openPieceHasKids() const;

    static RawRef reference(const Piece& piece);
    static std::int64_t count(const Piece& piece);
    static void apply(const Piece& piece, Values& values);

    ChunkedVector<Kid>* theKids;
    std::size_t theFirstKid = 0;
    bool hasLines = false;
    Values theValues; ///< of the pieces that are complete
    Piece thePiece;
    KidsState theKidsState;
};

} // namespace tarnwick
