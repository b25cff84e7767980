#include "VersionsJson.h"

#include "JsonText.h"
#include "versions/IncrementalUpdate.h"
#include "versions/VersionCuts.h"
#include "versions/VersionHashes.h"

namespace tarnwick {

namespace {

void appendNumber(JsonText& json, std::string_view key, const std::optional<std::uint64_t>& number)
{
    json.key(key);
    if (number)
        json.number(static_cast<std::size_t>(*number));
    else
        json.null();
}

void appendList(
    JsonText& json, std::string_view key, const SavedVersion& version, auto ObjectChanges::*list)
{
    json.key(key);
    if (!version.changes) {
        json.null();
        return;
    }
    json.open('[');
    for (const std::uint32_t number : (*version.changes).*list)
        json.number(std::size_t{number});
    json.close(']');
}

void appendSave(JsonText& json, const SavedVersion& version, const Sha256::Digest& digest)
{
    json.open('{').key("save").number(version.save).key("marker").number(version.marker);
    json.key("end").number(version.end).key("sha256").string(hexadecimal(digest));
    appendNumber(json, "startxref", version.startxref);
    appendNumber(json, "prev", version.prev);
    appendList(json, "added", version, &ObjectChanges::added);
    appendList(json, "replaced", version, &ObjectChanges::replaced);
    appendList(json, "freed", version, &ObjectChanges::freed);
    json.key("flags").open('[');
    for (const VersionFlag flag : version.flags)
        json.string(nameOf(flag));
    json.close(']').close('}');
}

} // namespace

std::vector<Sha256::Digest> digestsOf(std::string_view bytes, const std::vector<std::size_t>& ends)
{
    std::vector<Sha256::Digest> digests(ends.size());
    hashVersions(bytes, ends,
        [&](std::size_t index, const Sha256::Digest& digest) { digests[index] = digest; });
    return digests;
}

std::string versionsJson(std::string_view bytes, const VersionChain& chain)
{
    JsonText json = JsonText::ofCommand("versions");
    json.key("incremental").boolean(isIncrementallyUpdated(bytes)).key("cuts").open('[');
    for (const std::size_t cut : versionCuts(bytes))
        json.number(cut);
    json.close(']').key("saves").open('[');
    std::vector<std::size_t> ends;
    for (const SavedVersion& version : chain.versions())
        ends.push_back(version.end);
    const std::vector<Sha256::Digest> digests = digestsOf(bytes, ends);
    for (std::size_t index = 0; index < ends.size(); ++index)
        appendSave(json, chain.versions()[index], digests[index]);
    json.close(']').key("notListed").number(chain.markerCount() - ends.size());
    return json.close('}').text() + '\n';
}

} // namespace tarnwick
