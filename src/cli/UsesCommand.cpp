#include "UsesCommand.h"

#include "CommandOutput.h"
#include "analysis/ObjectKind.h"
#include "analysis/ObjectUsers.h"
#include "analysis/SourceText.h"

#include <map>
#include <string>

namespace tarnwick {

namespace {

/// What is told of a user: its kind and the ways to all its references. Uses come object by object,
/// and one object may have millions of them, so each is read once.
class Users
{
public:
    /// @param uses that are told of.
    Users(const pdfObjectCatalog& catalog, const ObjectUses& uses)
        : theCatalog(catalog)
        , theLastOffset(uses.uses.empty() ? 0 : uses.uses.back().offset)
    {
    }

    /// Goes on to the user of a use.
    void moveTo(const ObjectUse& use)
    {
        if (use.user && theUser != use.user)
            read(*use.user);
    }
    /// Precondition: the use moved to has a user.
    pdfObject object() const { return theCatalog.object(*theUser); }
    const std::string& kind() const { return theKind; }
    std::string wayTo(const ObjectUse& use) const
    {
        if (!use.user)
            return {};
        const auto way = theWays.find(use.offset);
        return way == theWays.end() ? std::string() : way->second;
    }

private:
    void read(std::size_t user)
    {
        theUser = user;
        theWays.clear();
        theKind = objectKind(theCatalog, theCatalog.object(user));
        const ByteRange range = theCatalog.object(user).range();
        const ObjectSource source(theCatalog.bytes(), range, range.size());
        forEachReference(theCatalog.bytes(), source, [this](const PlacedReference& reference) {
            theWays.emplace(reference.token.begin, reference.path);
            return reference.token.begin < theLastOffset;
        });
    }

    const pdfObjectCatalog& theCatalog;
    std::size_t theLastOffset;
    std::optional<std::size_t> theUser;
    std::string theKind;
    std::map<std::size_t, std::string> theWays;
};

std::string linesOf(const pdfObjectCatalog& catalog, const ObjectUses& uses)
{
    std::string text;
    Users users(catalog, uses);
    for (const ObjectUse& use : uses.uses) {
        users.moveTo(use);
        text += std::to_string(use.offset) + '\t';
        if (use.user) {
            text += shownNumbers(users.object()) + '\t' + users.kind();
        } else {
            text += "-\t-";
        }
        text += '\t' + shownPath(users.wayTo(use)) + '\n';
    }
    return text;
}

void appendUses(const pdfObjectCatalog& catalog, const ObjectUses& uses, JsonText& json)
{
    Users users(catalog, uses);
    json.key("count").number(uses.count).key("uses").open('[');
    for (const ObjectUse& use : uses.uses) {
        users.moveTo(use);
        json.open('{').key("offset").number(use.offset);
        json.key("generation").number(use.objGen).key("path").string(users.wayTo(use)).key("user");
        if (use.user) {
            json.open('{');
            appendObject(users.object(), users.kind(), json);
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
