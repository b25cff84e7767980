#include "DocumentCheck.h"

#include "Attempt.h"
#include "CheckNotes.h"
#include "PageCheck.h"
#include "RepairRemarks.h"
#include "ResourceCheck.h"
#include "TableCheck.h"

#include <algorithm>

namespace tarnwick {

namespace {

void noteRepair(EngineFindingCode code, const std::string& cause, CheckNotes& notes)
{
    EngineFinding finding;
    finding.code = code;
    finding.text = cause;
    notes.add(std::move(finding));
}

void noteFaults(EngineFindingCode code, const PageTreeFaults& faults, CheckNotes& notes)
{
    for (const int object : faults.objects) {
        EngineFinding finding;
        finding.code = code;
        finding.object = std::clamp(object, 0, maximumObjectNumber);
        notes.add(std::move(finding));
    }
    notes.count(code, faults.count - faults.objects.size());
}

void checkPageTree(const EngineDocument& document, CheckNotes& notes)
{
    const PageTree& tree = document.pageTree();
    noteFaults(EngineFindingCode::isPageInside, tree.inside, notes);
    noteFaults(EngineFindingCode::isPageUnreadable, tree.unreadable, notes);
    noteFaults(EngineFindingCode::isPageTreeLoop, tree.loops, notes);
    if (tree.statedCount == document.pageCount())
        return;
    EngineFinding finding;
    finding.code = EngineFindingCode::isPageCountDifferent;
    finding.said = tree.statedCount;
    finding.found = document.pageCount();
    notes.add(std::move(finding));
}

EngineEncryption encryptionOf(const EngineDocument& document)
{
    fz_context* const ctx = document.context();
    pdf_crypt* const crypt = document.document()->crypt;
    EngineEncryption encryption;
    if (!crypt)
        return encryption;
    const char* method = "";
    const int error = attempt(ctx, [&] {
        encryption.version = std::clamp(pdf_crypt_version(ctx, crypt), 0, 99);
        encryption.revision = std::clamp(pdf_crypt_revision(ctx, crypt), 0, 99);
        encryption.keyBits = std::clamp(pdf_crypt_length(ctx, crypt), 0, 9999);
        encryption.permissions = pdf_crypt_permissions(ctx, crypt);
        encryption.hidesMetadata = pdf_crypt_encrypt_metadata(ctx, crypt) != 0;
        method = pdf_crypt_method(ctx, crypt);
    });
    encryption.isThere = !error;
    encryption.method = method;
    return encryption;
}

} // namespace

/// The resources come last: reading them may have the library look for all objects anew.
void checkDocument(const EngineDocument& document, CheckResult& result)
{
    CheckNotes notes;
    if (document.repair() == EngineDocument::Repair::isAtOpening)
        noteRepair(EngineFindingCode::isRebuilt, document.repairCause(), notes);
    if (document.repair() == EngineDocument::Repair::isLater)
        noteRepair(EngineFindingCode::isRebuiltLater, document.repairCause(), notes);
    checkPageTree(document, notes);
    checkTable(document, notes, result);
    checkLabels(document, notes);
    result.encryption = encryptionOf(document);
    std::string cause;
    {
        const RepairRemarks remarks(document.context(), cause);
        result.pagesLookedAt = checkResources(document, notes);
    }
    if (document.repair() == EngineDocument::Repair::isNone
        && pdf_was_repaired(document.context(), document.document()) != 0)
        noteRepair(EngineFindingCode::isRebuiltLater, cause, notes);
    notes.giveTo(result);
}

} // namespace tarnwick
