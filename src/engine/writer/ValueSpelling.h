#pragma once

#include "analysis/pdfObject.h"

#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

/// Spells names and strings so that a reader by keywords finds in an object's line what is there
/// and nothing else. To a PDF reader every spelling means the same: any character of a name may be
/// written as #xx, any string in hexadecimal (ISO 32000-2, 7.3.4.3 and 7.3.5).
///
/// Kept out of sight always: words that end or begin an object or a stream wherever they stand in a
/// line. Kept out on demand: what would make the line look like another kind of object (its kind is
/// told by "/Type" anywhere in the line and one of a few names anywhere in it), and further words.
class ValueSpelling
{
public:
    /// @param kind the kind that the line is to show; its own type name is never passed through
    ///   name(). @param isStrict also keep out the names that stand for another kind; needed for
    ///   all kinds but isPlain, and for a plain object whose line shows another kind without it.
    ValueSpelling(ObjectType kind, bool isStrict);

    /// Spells names that hold this word otherwise.
    /// @param word borrowed for this object's life.
    void avoid(std::string_view word) { theWords.push_back(word); }
    /// Leaves names that begin with "XML" as they are: they mark a stream that is shown line by
    /// line.
    void allowXml() { allowsXml = true; }

    /// The name with its slash.
    std::string name(std::string_view name) const;
    /// A literal string where it reads well and misleads nobody, else a hexadecimal one.
    std::string string(std::string_view bytes) const;

    /// The kind that a line of an object shows, isPlain for those that are none of the others.
    static ObjectType kindOf(std::string_view line);
    /// Whether lines of a stream's data would end it early, or look like objects when they are
    /// shown line by line.
    static bool endsStream(std::string_view data);
    static bool looksLikeObjects(std::string_view data);

private:
    bool isLiteral(std::string_view bytes) const;

    ObjectType theKind;
    bool theIsStrict;
    bool allowsXml = false;
    std::vector<std::string_view> theWords; ///< few objects have any
};

/// A number as PDF writes it: no exponent; no number and infinity as 0.
std::string realText(float number);

} // namespace tarnwick
