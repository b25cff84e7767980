#pragma once

#include "analysis/Findings.h"
#include "protocol/DocumentCheck.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tarnwick {

/// An object of a file as people know it, without the scan that found it.
struct NamedObject
{
    std::int64_t objNo = 0; ///< trailerNumber for a trailer
    /// Generation, saved version and kind; absent for an object that only the engine knows, as one
    /// within an object stream.
    struct Listed
    {
        std::int64_t objGen = 0;
        std::int64_t objVer = 0;
        std::string kind; ///< objectKind()
    };
    std::optional<Listed> listed;
};
NamedObject namedObject(const pdfObjectCatalog& catalog, const pdfObject& object);

/// A finding that stands by itself.
struct FileFinding
{
    FindingCode code = FindingCode::isNoHeader;
    std::optional<std::size_t> offset; ///< the place in the file that it speaks of, if it has one
    std::optional<NamedObject> object; ///< that it speaks of
    std::optional<int> page; ///< that it speaks of, from 0
    std::string sentence; ///< plain words, with the numbers
};

/// Pages of which the text could not be read.
struct LostText
{
    int firstPage = 0; ///< from 0
    std::string sentence; ///< which pages, and why
};

/// Facts about a file from every side, in the order of FindingCode.
struct FileFindings
{
    std::vector<FileFinding> list; ///< of each code at most Findings::mostKept
    std::array<std::size_t, findingCodeCount> counts{}; ///< by code, listed or not
    /// What was not looked at, as sentences; empty when nothing was left out.
    std::vector<std::string> gaps;

    std::size_t count() const; ///< of all, listed or not
    /// The one that matters most to a reader, the first among equals; null without any.
    const FileFinding* gravest() const;
    /// Whether one of them is more than a fact.
    bool areGrave() const;
};

/// Brings together what the source tells and what the engine does.
/// @param catalog the scan behind the findings. @param check null without an engine.
FileFindings joinFindings(
    const pdfObjectCatalog& catalog, const Findings& source, const DocumentCheck* check);
/// Adds what is not known before all pages' text has been read. To be called once.
void addLostTexts(FileFindings& findings, const std::vector<LostText>& lostTexts);

} // namespace tarnwick
