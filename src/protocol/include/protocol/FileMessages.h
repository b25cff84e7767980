#pragma once

#include "protocol/EngineLimits.h"
#include "protocol/EngineLoss.h"
#include "protocol/EngineProtocol.h"
#include "protocol/MessageFields.h"

namespace tarnwick {

/// Messages on files that the engine writes. Their bytes go to the shared memory that it was given
/// for them; it reports how far it is.

struct EnginePageLoss
{
    int page = 0; ///< from 0
    EngineLoss loss = EngineLoss::isDamaged;

    static constexpr void describe(auto& fields, auto& lost)
    {
        fields.number(lost.page);
        fields.choice(lost.loss, EngineLoss::isCut);
    }
};

/// A file has been written.
struct WrittenResult
{
    std::uint64_t size = 0; ///< bytes of the file
    std::uint32_t lostObjects = 0; ///< that could not be read, those of pages included
    std::vector<EnginePageLoss> losses; ///< of pages that lack something, in their order
    /// Of a flattened document: the number that each object, from 1 on, has in the document's own
    /// file; 0 for one that stood within another there. Empty otherwise.
    PackedItems<std::uint32_t> origins;

    static constexpr void describe(auto& fields, auto& message)
    {
        fields.number(message.size);
        fields.number(message.lostObjects);
        fields.list(message.losses, maximumPageCount);
        fields.items(message.origins, maximumOrigins);
    }
};

/// The document flattened.
struct FlatRequest
{
    static constexpr EngineRequest kind = EngineRequest::isFlat;
    static constexpr bool writesFile = true;
    using Result = WrittenResult;

    static constexpr void describe(auto&, auto&) { }
};

/// What a sheet of paper shows of a page.
struct EngineSheet
{
    int page = 0; ///< from 0; one that does not exist leaves the sheet empty
    double x = 0, y = 0, width = 0, height = 0; ///< in points of the page as it is scaled
    double scale = 1; ///< points of paper for a point of the page

    static constexpr void describe(auto& fields, auto& sheet)
    {
        constexpr double most = std::numeric_limits<double>::max();
        fields.number(sheet.page);
        for (auto* const number : {&sheet.x, &sheet.y, &sheet.width, &sheet.height, &sheet.scale})
            fields.number(*number, -most, most);
    }
};

/// Pages on sheets of paper.
struct PrintRequest
{
    static constexpr EngineRequest kind = EngineRequest::isPrint;
    static constexpr bool writesFile = true;
    using Result = WrittenResult;

    double width = 0, height = 0; ///< of the paper, in points
    double left = 0, top = 0; ///< where the parts of pages begin
    std::vector<EngineSheet> sheets;

    static constexpr void describe(auto& fields, auto& message)
    {
        constexpr double most = std::numeric_limits<double>::max();
        for (auto* const number : {&message.width, &message.height, &message.left, &message.top})
            fields.number(*number, -most, most);
        fields.list(message.sheets, maximumSheets);
    }
};

} // namespace tarnwick
