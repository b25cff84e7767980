#include "FindingList.h"
#include "analysis/NameSearch.h"
#include "analysis/ObjectSource.h"
#include "analysis/StructureWords.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

namespace tarnwick {

namespace {

constexpr std::array<std::string_view, 7> names{
    "Linearized", "Encrypt", "JavaScript", "Launch", "SubmitForm", "EmbeddedFile", "EF"};

/// File specifications, which count only where no embedded file is found.
class Specifications
{
public:
    void take(const FoundName& name, std::string sentence)
    {
        if (theLast == name.range.begin)
            return;
        theLast = name.range.begin;
        if (theCount++ < Findings::mostKept)
            theKept.emplace_back(name, std::move(sentence));
    }

    void addTo(FindingList& list) const
    {
        for (const auto& [name, sentence] : theKept)
            list.add(FindingCode::isEmbeddedFile, name.offset, name.object, sentence);
        list.count(FindingCode::isEmbeddedFile, theCount - theKept.size());
    }

private:
    std::optional<std::size_t> theLast; ///< start of an object
    std::vector<std::pair<FoundName, std::string>> theKept;
    std::size_t theCount = 0;
};

/// What a name in an object's source tells.
class NameFindings
{
public:
    NameFindings(const pdfObjectCatalog& catalog, FindingList& list)
        : theCatalog(catalog)
        , theList(list)
    {
    }

    void take(const FoundName& name)
    {
        const std::string whose = name.object ? objectName(theCatalog.object(*name.object))
                                              : "an object that is not listed";
        switch (name.which) {
        case 0:
            return takeLinearized(name);
        case 1:
            if (!theList.has(FindingCode::isEncrypted) && isNew(name) && isTrailer(name))
                addOnce(FindingCode::isEncrypted, name, "The document is encrypted.");
            return;
        case 2:
            return addOnce(FindingCode::isJavaScript, name, "JavaScript stands in " + whose + '.');
        case 3:
            return addOnce(FindingCode::isLaunch, name,
                "An action in " + whose + " starts a program or opens a file.");
        case 4:
            return addOnce(FindingCode::isSubmitForm, name,
                "An action in " + whose + " sends form data away.");
        case 5:
            if (isNew(name) && sourceOf(name).name("Type") == "EmbeddedFile")
                addOnce(FindingCode::isEmbeddedFile, name, "A file is embedded as " + whose + '.');
            return;
        default:
            theSpecifications.take(name, "A file is embedded by way of " + whose + '.');
            return;
        }
    }

    /// To be called behind the last name: an embedded file that does not say what it is is known by
    /// the dictionary that names it.
    void finish()
    {
        if (!theList.has(FindingCode::isEmbeddedFile))
            theSpecifications.addTo(theList);
    }

private:
    ObjectSource sourceOf(const FoundName& name) const
    {
        return ObjectSource(theCatalog.bytes(), name.range);
    }

    /// Whether an object is asked about for the first time for a name: it may hold millions.
    bool isNew(const FoundName& name)
    {
        std::optional<std::size_t>& last = theLastAsked.at(name.which);
        const bool isNew = last != name.range.begin;
        last = name.range.begin;
        return isNew;
    }

    bool isTrailer(const FoundName& name) const
    {
        const ObjectSource source = sourceOf(name);
        if (source.name("Type") == "XRef" && source.entry("Encrypt"))
            return true;
        // A trailer may have no record: another cross-reference follows it.
        const std::string_view before = theCatalog.bytes().substr(0, name.offset);
        constexpr std::size_t longest = 1024;
        const std::size_t floor = before.size() - std::min(before.size(), longest);
        const std::size_t trailer = before.substr(floor).rfind(LineWord::trailer);
        return trailer != std::string_view::npos
            && ObjectSource(theCatalog.bytes(), {floor + trailer, theCatalog.bytes().size()})
                   .entry("Encrypt");
    }

    /// The first object says it (ISO 32000-2, F.3.2), within the first kilobyte.
    void takeLinearized(const FoundName& name)
    {
        constexpr std::size_t furthest = 1024;
        const ObjectSource source = sourceOf(name);
        if (name.offset > furthest || !source.entry("Linearized"))
            return;
        const std::optional<std::int64_t> length = source.integer("L");
        const auto size = static_cast<std::int64_t>(theCatalog.bytes().size());
        std::string sentence = "The file is linearized";
        if (length && *length != size)
            sentence += " for a length of " + std::to_string(*length)
                + " bytes, which is not its own: something was added or lost";
        addOnce(FindingCode::isLinearized, name, sentence + '.');
    }

    /// Once for each object, however often it says so.
    void addOnce(FindingCode code, const FoundName& name, std::string sentence)
    {
        std::optional<std::size_t>& last = theLast.at(static_cast<std::size_t>(code));
        if (last == name.range.begin)
            return;
        last = name.range.begin;
        theList.add(code, name.offset, name.object, std::move(sentence));
    }

    const pdfObjectCatalog& theCatalog;
    FindingList& theList;
    Specifications theSpecifications;
    /// Start of the object last asked about for each name.
    std::array<std::optional<std::size_t>, names.size()> theLastAsked;
    std::array<std::optional<std::size_t>, findingCodeCount>
        theLast; ///< start of an object, by code
};

} // namespace

void checkNames(const pdfObjectCatalog& catalog, FindingList& list, const std::stop_token& stop)
{
    NameFindings findings(catalog, list);
    findNames(
        catalog, names, [&](const FoundName& name) { findings.take(name); }, stop);
    findings.finish();
}

} // namespace tarnwick
