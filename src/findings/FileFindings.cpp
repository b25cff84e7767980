#include "findings/FileFindings.h"

#include "EngineSentences.h"
#include "analysis/ObjectKind.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace tarnwick {

namespace {

FindingCode codeOf(EngineFindingCode code)
{
    switch (code) {
    case EngineFindingCode::isRebuilt:
    case EngineFindingCode::isRebuiltLater:
        break;
    case EngineFindingCode::isPageCountDifferent:
        return FindingCode::isPageCountDifferent;
    case EngineFindingCode::isPageInside:
        return FindingCode::isPageInside;
    case EngineFindingCode::isPageUnreadable:
        return FindingCode::isPageUnreadable;
    case EngineFindingCode::isPageTreeLoop:
        return FindingCode::isPageTreeLoop;
    case EngineFindingCode::isEntryElsewhere:
        return FindingCode::isStreamEntryElsewhere;
    case EngineFindingCode::isFontNotEmbedded:
        return FindingCode::isFontNotEmbedded;
    case EngineFindingCode::isImageLost:
        return FindingCode::isImageLost;
    case EngineFindingCode::isLinksLost:
        return FindingCode::isLinksLost;
    case EngineFindingCode::isPageSizeUnknown:
        return FindingCode::isPageSizeUnknown;
    case EngineFindingCode::isLabelsLost:
        return FindingCode::isLabelsLost;
    }
    return FindingCode::isRebuilt;
}

void sortByCode(std::vector<FileFinding>& list)
{
    std::stable_sort(list.begin(), list.end(),
        [](const FileFinding& one, const FileFinding& other) { return one.code < other.code; });
}

/// Adds to what the source tells.
class Joining
{
public:
    Joining(const pdfObjectCatalog& catalog, const Findings& source)
        : theCatalog(catalog)
    {
        theAll.counts = source.counts;
        for (const Finding& finding : source.list) {
            FileFinding joined{finding.code, finding.offset, {}, {}, finding.sentence};
            if (finding.object)
                joined.object = namedObject(catalog, catalog.object(*finding.object));
            theAll.list.push_back(std::move(joined));
        }
        if (!source.isComplete)
            theAll.gaps.emplace_back("The source was not looked through to its end.");
    }

    void add(const DocumentCheck& check)
    {
        for (const EngineFinding& finding : check.findings)
            theAll.list.push_back(joined(finding));
        for (std::size_t code = 0; code < check.counts.size(); ++code)
            countOf(codeOf(static_cast<EngineFindingCode>(code))) += check.counts.at(code);
        tellMembers(check);
        if (check.pagesLookedAt < check.pageCount)
            theAll.gaps.push_back("Fonts and images were looked for on the first "
                + std::to_string(check.pagesLookedAt) + " of " + std::to_string(check.pageCount)
                + " pages.");
        if (check.encryption.isThere)
            tellEncryption(check.encryption);
    }

    FileFindings take()
    {
        sortByCode(theAll.list);
        return std::move(theAll);
    }

private:
    std::size_t& countOf(FindingCode code)
    {
        return theAll.counts.at(static_cast<std::size_t>(code));
    }

    FileFinding* first(FindingCode code)
    {
        const auto found = std::find_if(theAll.list.begin(), theAll.list.end(),
            [code](const FileFinding& finding) { return finding.code == code; });
        return found == theAll.list.end() ? nullptr : &*found;
    }

    /// The place of an object is where its latest version stands.
    FileFinding joined(const EngineFinding& finding) const
    {
        FileFinding joined{codeOf(finding.code), {}, {}, {}, engineSentence(finding)};
        if (finding.page >= 0)
            joined.page = finding.page;
        if (finding.object == 0)
            return joined;
        const std::optional<pdfObject> object
            = theCatalog.find(finding.object, std::numeric_limits<std::int64_t>::max());
        joined.object = object ? namedObject(theCatalog, *object) : NamedObject{finding.object, {}};
        if (finding.code == EngineFindingCode::isEntryElsewhere)
            joined.offset = static_cast<std::size_t>(finding.said);
        else if (object)
            joined.offset = object->range().begin;
        return joined;
    }

    /// The source says what object streams claim to hold, the engine what of it counts.
    void tellMembers(const DocumentCheck& check)
    {
        FileFinding* const hidden = first(FindingCode::isObjectsHidden);
        const std::string members = std::to_string(check.members);
        if (hidden && check.members > 0 && !hidden->sentence.starts_with(members + ' '))
            hidden->sentence += " Readers use " + members + " of them, from "
                + std::to_string(check.objectStreams) + " object streams.";
    }

    void tellEncryption(const EngineEncryption& encryption)
    {
        FileFinding* const known = first(FindingCode::isEncrypted);
        if (known) {
            known->sentence = encryptionSentence(encryption);
            return;
        }
        ++countOf(FindingCode::isEncrypted);
        theAll.list.push_back(
            {FindingCode::isEncrypted, {}, {}, {}, encryptionSentence(encryption)});
    }

    const pdfObjectCatalog& theCatalog;
    FileFindings theAll;
};

} // namespace

NamedObject namedObject(const pdfObjectCatalog& catalog, const pdfObject& object)
{
    return {object.objNo(),
        NamedObject::Listed{object.objGen(), object.objVer(), objectKind(catalog, object)}};
}

std::size_t FileFindings::count() const
{
    return std::accumulate(counts.begin(), counts.end(), std::size_t{0});
}

const FileFinding* FileFindings::gravest() const
{
    const auto found = std::max_element(
        list.begin(), list.end(), [](const FileFinding& one, const FileFinding& other) {
            return ruleOf(one.code).weight < ruleOf(other.code).weight;
        });
    return found == list.end() ? nullptr : &*found;
}

bool FileFindings::areGrave() const
{
    const FileFinding* const one = gravest();
    return one && ruleOf(one->code).weight > FindingWeight::isFact;
}

FileFindings joinFindings(
    const pdfObjectCatalog& catalog, const Findings& source, const DocumentCheck* check)
{
    Joining joining(catalog, source);
    if (check)
        joining.add(*check);
    return joining.take();
}

void addLostTexts(FileFindings& findings, const std::vector<LostText>& lostTexts)
{
    std::size_t& count = findings.counts.at(static_cast<std::size_t>(FindingCode::isTextLost));
    for (const LostText& lost : lostTexts) {
        if (count++ < Findings::mostKept)
            findings.list.push_back(
                {FindingCode::isTextLost, {}, {}, lost.firstPage, lost.sentence});
    }
    sortByCode(findings.list);
}

} // namespace tarnwick
