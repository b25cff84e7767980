#include "analysis/NameSearch.h"

#include "RecordCursor.h"
#include "analysis/ObjectSource.h"
#include "analysis/SourceLexer.h"
#include "analysis/StructureWords.h"

#include <algorithm>
#include <array>
#include <string>

namespace tarnwick {

namespace {

/// One search: looks at every slash, and closer at those whose name can be one of the wanted.
class Search
{
public:
    Search(const pdfObjectCatalog& catalog, std::span<const std::string_view> names)
        : theCatalog(catalog)
        , theText(catalog.bytes())
        , theNames(names)
        , theCursor(catalog)
    {
        theLetters[static_cast<unsigned char>('#')] = true;
        for (const std::string_view name : names)
            theLetters[static_cast<unsigned char>(name.front())] = true;
    }

    /// Looks at the slashes from begin to before end.
    void run(std::size_t begin, std::size_t end, const std::function<void(const FoundName&)>& take)
    {
        const std::string_view stretch = theText.substr(0, end);
        for (std::size_t slash = stretch.find('/', begin); slash != std::string_view::npos;
             slash = stretch.find('/', slash + 1)) {
            if (slash + 1 == theText.size() || !mayBegin(slash + 1))
                continue;
            const std::optional<std::size_t> which = nameAt(slash);
            if (which && theCursor.isCode(slash))
                take(found(*which, slash));
        }
    }

private:
    FoundName found(std::size_t which, std::size_t slash)
    {
        const std::optional<std::size_t> object = theCursor.owner(slash);
        if (object)
            return {which, slash, object, theCatalog.object(*object).range()};
        // What stands before the last name that was asked about has been looked at.
        constexpr std::size_t longest = 4096;
        const std::size_t floor = slash - std::min(slash, longest);
        const std::size_t from = std::max(floor, theLastSlash);
        const std::size_t word = theText.substr(from, slash - from).rfind(LineWord::obj);
        if (word != std::string_view::npos)
            theLastObject = from + word;
        else if (floor > theLastSlash)
            theLastObject = floor;
        theLastSlash = slash;
        return {which, slash, std::nullopt, {theLastObject, theText.size()}};
    }

    bool mayBegin(std::size_t offset) const
    {
        return theLetters[static_cast<unsigned char>(theText[offset])];
    }

    /// The wanted name that stands at a slash; its "#xx" are resolved only where it has any.
    std::optional<std::size_t> nameAt(std::size_t slash) const
    {
        constexpr std::size_t longest = 128;
        std::size_t end = slash + 1;
        bool hasCodes = false;
        for (; end < theText.size() && end - slash < longest && isSourceRegular(theText[end]);
             ++end)
            hasCodes = hasCodes || theText[end] == '#';
        const std::string_view name = theText.substr(slash, end - slash);
        const std::string resolved = hasCodes ? nameText(name) : std::string();
        const auto found
            = std::find(theNames.begin(), theNames.end(), hasCodes ? resolved : name.substr(1));
        if (found == theNames.end())
            return std::nullopt;
        return static_cast<std::size_t>(found - theNames.begin());
    }

    const pdfObjectCatalog& theCatalog;
    std::string_view theText;
    std::span<const std::string_view> theNames;
    std::array<bool, 256> theLetters{};
    std::size_t theLastSlash = 0; ///< of the last name in no record
    std::size_t theLastObject = 0; ///< where its object begins
    RecordCursor theCursor;
};

} // namespace

bool findNames(const pdfObjectCatalog& catalog, std::span<const std::string_view> names,
    const std::function<void(const FoundName&)>& take, std::stop_token stop)
{
    constexpr std::size_t slice = std::size_t{4} << 20;
    Search search(catalog, names);
    const std::size_t size = catalog.bytes().size();
    for (std::size_t begin = 0; begin < size; begin += std::min(slice, size - begin)) {
        if (stop.stop_requested())
            return false;
        search.run(begin, begin + std::min(slice, size - begin), take);
    }
    return true;
}

HiddenObjects hiddenObjects(const pdfObjectCatalog& catalog)
{
    constexpr std::array<std::string_view, 1> names{"ObjStm"};
    constexpr std::int64_t most = 8'388'607; // object numbers, in all readers that we know
    HiddenObjects hidden;
    std::optional<std::size_t> last;
    findNames(catalog, names, [&](const FoundName& name) {
        if (last == name.range.begin)
            return;
        last = name.range.begin;
        const ObjectSource source(catalog.bytes(), name.range);
        if (source.name("Type") != "ObjStm")
            return;
        ++hidden.streams;
        hidden.objects += static_cast<std::size_t>(
            std::clamp<std::int64_t>(source.integer("N").value_or(0), 0, most));
    });
    return hidden;
}

} // namespace tarnwick
