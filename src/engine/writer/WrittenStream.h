#pragma once

#include "EngineDocument.h"

#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

/// A stream as the written file holds it: decrypted, otherwise as it is stored.
struct WrittenStream
{
    /// One filter, in the order in which a reader applies them; parameters is null without any.
    struct Filter
    {
        std::string name;
        pdf_obj* parameters = nullptr; ///< borrowed
    };

    std::string data;
    std::vector<Filter> filters;
    int error = 0; ///< FZ_ERROR_MEMORY when there was no memory for it
    bool isLost = false; ///< it could not be read, whatever the reason

    bool hasFilter(const char* name) const;
};

/// The filters that the dictionary of a stream names, the first maximumFilters of them. Filter and
/// DecodeParms are each one value or an array, and any of them may be a reference.
std::vector<WrittenStream::Filter> readFilters(fz_context* ctx, pdf_obj* dictionary);
/// All of them, counted.
std::uint32_t countFilters(fz_context* ctx, pdf_obj* dictionary);

/// The stream of an object of the file. Crypt filters go, since the data is decrypted; data that
/// holds the word "stream", which would end it in the eyes of a reader by keywords, is packed once
/// more. A stream that cannot be read is empty and has no filters.
/// @returns nothing when the object has no stream.
std::optional<WrittenStream> loadStream(
    const EngineDocument& document, pdf_obj* dictionary, int number);

/// Bytes of our own making, packed when that makes them smaller.
WrittenStream makeStream(std::string data);

/// Appends a stream as its filters give it, as far as it can be read. @param limit of bytes, about.
/// @returns FZ_ERROR_NONE when all of it was appended, FZ_ERROR_MEMORY without memory for it.
int appendDecoded(const EngineDocument& document, int number, std::size_t limit, std::string& data);

} // namespace tarnwick
