#include "FindingList.h"
#include "analysis/NameSearch.h"
#include "analysis/ObjectSource.h"

#include <array>
#include <utility>

namespace tarnwick {

namespace {

constexpr std::array<std::string_view, 7> names{
    "Linearized", "Encrypt", "JavaScript", "Launch", "SubmitForm", "EmbeddedFile", "EF"};

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
        if (!name.object)
            return;
        const pdfObject object = theCatalog.object(*name.object);
        const std::string whose = objectName(object);
        switch (name.which) {
        case 0:
            takeLinearized(name, object);
            return;
        case 1:
            if (!theList.has(FindingCode::isEncrypted) && isTrailer(object))
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
            if (ObjectSource(theCatalog.bytes(), object.range()).name("Type") == "EmbeddedFile")
                addOnce(FindingCode::isEmbeddedFile, name, "A file is embedded as " + whose + '.');
            return;
        default:
            if (!theList.has(FindingCode::isEmbeddedFile))
                addOnce(FindingCode::isEmbeddedFile, name,
                    "A file is embedded by way of " + whose + '.');
            return;
        }
    }

private:
    bool isTrailer(const pdfObject& object) const
    {
        const ObjectSource source(theCatalog.bytes(), object.range());
        return (object.objType() == ObjectType::isTrailer || source.name("Type") == "XRef")
            && source.entry("Encrypt");
    }

    void takeLinearized(const FoundName& name, const pdfObject& object)
    {
        const ObjectSource source(theCatalog.bytes(), object.range());
        if (object.index() != 0 || !source.entry("Linearized"))
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
        const std::pair key(code, *name.object);
        if (theLast == key)
            return;
        theLast = key;
        theList.add(code, name.offset, name.object, std::move(sentence));
    }

    const pdfObjectCatalog& theCatalog;
    FindingList& theList;
    std::optional<std::pair<FindingCode, std::size_t>> theLast;
};

} // namespace

void checkNames(const pdfObjectCatalog& catalog, FindingList& list, const std::stop_token& stop)
{
    NameFindings findings(catalog, list);
    findNames(
        catalog, names, [&](const FoundName& name) { findings.take(name); }, stop);
}

} // namespace tarnwick
