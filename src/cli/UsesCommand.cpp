#include "UsesCommand.h"

#include "CommandOutput.h"
#include "analysis/ObjectKind.h"
#include "analysis/ObjectUsers.h"
#include "analysis/SourceText.h"

#include <map>
#include <string>

namespace tarnwick {

namespace {

/// The ways to all references of one object; uses come object by object.
class Ways
{
public:
    explicit Ways(const pdfObjectCatalog& catalog)
        : theCatalog(catalog)
    {
    }

    std::string wayTo(const ObjectUse& use)
    {
        if (!use.user)
            return {};
        if (theUser != use.user)
            read(*use.user);
        const auto way = theWays.find(use.offset);
        return way == theWays.end() ? std::string() : way->second;
    }

private:
    void read(std::size_t user)
    {
        theUser = user;
        theWays.clear();
        const ByteRange range = theCatalog.object(user).range();
        const ObjectSource source(theCatalog.bytes(), range, range.size());
        forEachReference(theCatalog.bytes(), source, [this](const PlacedReference& reference) {
            theWays.emplace(reference.token.begin, reference.path);
            return true;
        });
    }

    const pdfObjectCatalog& theCatalog;
    std::optional<std::size_t> theUser;
    std::map<std::size_t, std::string> theWays;
};

std::string linesOf(const pdfObjectCatalog& catalog, const ObjectUses& uses)
{
    std::string text;
    Ways ways(catalog);
    for (const ObjectUse& use : uses.uses) {
        text += std::to_string(use.offset) + '\t';
        if (use.user) {
            const pdfObject user = catalog.object(*use.user);
            text += shownNumbers(user) + '\t' + objectKind(catalog, user);
        } else {
            text += "-\t-";
        }
        text += '\t' + shownPath(ways.wayTo(use)) + '\n';
    }
    return text;
}

void appendUses(const pdfObjectCatalog& catalog, const ObjectUses& uses, JsonText& json)
{
    Ways ways(catalog);
    json.key("count").number(uses.count).key("uses").open('[');
    for (const ObjectUse& use : uses.uses) {
        json.open('{').key("offset").number(use.offset);
        json.key("generation").number(use.objGen).key("path").string(ways.wayTo(use)).key("user");
        if (use.user) {
            json.open('{');
            appendObject(catalog, catalog.object(*use.user), json);
            json.close('}');
        } else {
            json.null();
        }
        json.close('}');
    }
    json.close(']');
}

} // namespace

ExitStatus usesCommand(const Arguments& arguments, const SharedBytes& bytes)
{
    SourceText source(bytes);
    source.scan({});
    const pdfObjectCatalog& catalog = source.theCatalog();
    const ObjectUses uses = ObjectUsers(catalog).find(*arguments.objNo);
    JsonText json = JsonText::ofCommand("uses");
    if (arguments.json) {
        json.key("number").number(*arguments.objNo);
        appendUses(catalog, uses, json);
    }
    ExitStatus status = reportHidden(catalog, arguments, arguments.json ? &json : nullptr);
    if (uses.count > uses.uses.size())
        status = complain(ExitStatus::isIncomplete, arguments.file,
            std::to_string(uses.count) + " references lead there; the first "
                + std::to_string(uses.uses.size()) + " are listed");
    return printBytes(
        arguments.json ? json.close('}').text() + '\n' : linesOf(catalog, uses), status);
}

} // namespace tarnwick
