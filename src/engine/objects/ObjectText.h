#pragma once

#include "EngineDocument.h"
#include "LongNames.h"

#include <string>
#include <string_view>

namespace tarnwick {

/// Sets objects out to be read: an entry of a dictionary a line, two spaces in for each level,
/// arrays of plain values filled into lines of some 80 characters. A reference is never parted.
/// Names have #xx for what is no regular character, strings that are not all of printable ASCII
/// are hexadecimal (ISO 32000-2, 7.3.4.3 and 7.3.5), so the text is ASCII.
class ObjectText
{
public:
    explicit ObjectText(const EngineDocument& document);

    /// At most longestObjectText bytes. @param object not resolved any further, borrowed.
    std::string spelled(pdf_obj* object);
    /// On one line.
    std::string spelledShort(pdf_obj* object);
    /// Whether the last object was longer, or nested deeper than maximumObjectDepth: the text is
    /// its beginning, with "..." where something is left out.
    bool isCut() const { return theIsCut; }

    /// The name with its slash.
    static std::string name(std::string_view name);

private:
    void begin(bool isShort);
    void put(pdf_obj* object, int depth);
    void putDictionary(pdf_obj* dictionary, int depth);
    void putArray(pdf_obj* array, int depth);
    void putReference(pdf_obj* reference, int depth);
    void putString(pdf_obj* string);
    void breakLine(int depth);
    bool isFull();
    bool hasContainers(pdf_obj* array) const;

    const EngineDocument& theDocument;
    fz_context* theContext;
    LongNames theLongNames;
    std::string theText;
    std::size_t theLineStart = 0;
    bool isShortened = false;
    bool theIsCut = false;
};

} // namespace tarnwick
