#include "analysis/SourceText.h"

#include "analysis/LineScan.h"
#include "analysis/PieceList.h"

#include <utility>

namespace tarnwick {

namespace {

/// Some milliseconds of work between two looks at the stop token.
constexpr std::size_t slice = std::size_t{4} << 20;

} // namespace

SourceText::SourceText(SharedBytes bytes)
    : theData(std::move(bytes))
    , theObjects(std::make_shared<const pdfObjectCatalog>(theData))
{
}

bool SourceText::scan(const PieceReceiver& pieces, std::stop_token stop)
{
    auto catalog = std::make_shared<pdfObjectCatalog>(theData);
    ObjectCollector collector(theData.view, *catalog, pieces);
    LineScan scan(theData.view, collector);
    while (scan.advance(slice)) {
        if (stop.stop_requested())
            return false;
    }
    collector.finish();
    theObjects = std::move(catalog);
    return true;
}

StyledText SourceText::makeListing(bool withSource, std::stop_token stop)
{
    std::shared_ptr<PieceList> listing;
    PieceReceiver receiver;
    if (withSource) {
        listing = std::make_shared<PieceList>(theData.view);
        receiver = [&listing](std::span<const Piece> pieces) { listing->append(pieces); };
    }
    return scan(receiver, std::move(stop)) ? StyledText(listing, theObjects) : StyledText();
}

StyledText SourceText::makeObjectList() const
{
    return {nullptr, theObjects};
}

} // namespace tarnwick
