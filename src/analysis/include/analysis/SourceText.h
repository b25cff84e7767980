#pragma once

#include "analysis/ObjectCollector.h"
#include "analysis/SharedBytes.h"
#include "analysis/StyledText.h"
#include "analysis/pdfObjectCatalog.h"

#include <memory>
#include <stop_token>
#include <string_view>

namespace tarnwick {

/// The source of one PDF file: its bytes as text, and the objects found in them.
///
/// The file's text has one character per byte (byte value = character number). The scan is for
/// lines and keywords, not a PDF parser: it has a result for any bytes whatever.
class SourceText
{
public:
    explicit SourceText(SharedBytes bytes);

    /// The file's text; empty for a file without bytes.
    std::string_view theString() const { return theData.view; }
    const SharedBytes& bytes() const { return theData; }

    /// The records found by makeListing(); empty before. Shared with the texts made from it.
    const pdfObjectCatalog& theCatalog() const { return *theObjects; }

    /// Scans the text, once: fills the catalog and makes the coloured listing.
    ///
    /// May run on any thread, as long as nobody else uses this object meanwhile. Near-linear in
    /// time and memory whatever the bytes are.
    /// @param withSource the result holds the listing before the object list; otherwise the object
    ///   list alone.
    /// @param stop asked for every few hundred kilobytes; a stopped scan returns an empty text and
    ///   leaves the catalog empty.
    StyledText makeListing(bool withSource, std::stop_token stop = {});

    /// Scans the text, once, like makeListing(), handing the listing over as it grows instead of
    /// keeping it: a listing of a gigabyte can be printed from its first line on.
    /// @param pieces gets the listing, some thousand pieces at a time; may be empty.
    /// @returns false when the scan was stopped; the catalog is then empty.
    bool scan(const PieceReceiver& pieces, std::stop_token stop = {});

    /// The object list of a text that has been scanned; empty before.
    StyledText makeObjectList() const;

private:
    SharedBytes theData;
    std::shared_ptr<const pdfObjectCatalog> theObjects;
};

} // namespace tarnwick
