#include "LongNames.h"

#include "Attempt.h"
#include "WrittenStream.h"

#include <charconv>
#include <set>

namespace tarnwick {

namespace {

/// What an object stream may unpack to here; those of real files have some hundred kilobytes.
constexpr std::size_t maximumObjectStream = 64u << 20;

bool endsName(char one)
{
    static constexpr std::string_view ends("\0\t\n\f\r ()<>[]{}/%", 16);
    return ends.find(one) != std::string_view::npos;
}

/// The name that is spelled so, #xx being one byte.
std::string decoded(std::string_view spelling)
{
    std::string name;
    for (std::size_t index = 0; index < spelling.size(); ++index) {
        const std::string_view digits
            = spelling[index] == '#' ? spelling.substr(index + 1, 2) : std::string_view();
        unsigned char byte = 0;
        const char* const end
            = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16).ptr;
        if (digits.size() == 2 && end == digits.data() + 2) {
            name += static_cast<char>(byte);
            index += 2;
        } else {
            name += spelling[index];
        }
    }
    return name;
}

} // namespace

std::string_view LongNames::whole(std::string_view name)
{
    if (name.size() != limit)
        return name;
    if (!theNames)
        collect();
    const auto found = theNames->find(name);
    return found == theNames->end() ? name : found->second;
}

void LongNames::collect()
{
    theNames.emplace();
    collectFrom(theDocument.bytes());
    fz_context* const ctx = theDocument.context();
    std::set<int> objectStreams;
    for (int number = 1; number < pdf_xref_len(ctx, theDocument.document()); ++number) {
        const pdf_xref_entry* entry = nullptr;
        const int error = attempt(
            ctx, [&] { entry = pdf_get_xref_entry_no_null(ctx, theDocument.document(), number); });
        if (!error && entry->type == 'o')
            objectStreams.insert(static_cast<int>(entry->ofs));
    }
    for (const int number : objectStreams) {
        std::string data;
        if (appendDecoded(theDocument, number, maximumObjectStream, data) == FZ_ERROR_NONE)
            collectFrom(data);
    }
}

void LongNames::collectFrom(std::string_view bytes)
{
    std::size_t slash = bytes.find('/');
    while (slash != std::string_view::npos) {
        std::size_t end = slash + 1;
        while (end < bytes.size() && !endsName(bytes[end]))
            ++end;
        if (end - slash > limit + 1) {
            std::string name = decoded(bytes.substr(slash + 1, end - slash - 1));
            if (name.size() > limit)
                theNames->emplace(name.substr(0, limit), std::move(name));
        }
        slash = bytes.find('/', end);
    }
}

} // namespace tarnwick
