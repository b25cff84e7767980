#pragma once

#include "protocol/EngineLimits.h"
#include "protocol/EngineLoss.h"
#include "protocol/EngineProtocol.h"
#include "protocol/EngineTextDetail.h"
#include "protocol/MessageFields.h"

#include <array>

namespace tarnwick {

/// Messages on the pages of an open document: their sizes and labels, tiles, texts, links, and the
/// outline that leads to them. Pages are indices from 0; page space has its origin in the upper
/// left corner of a page as shown, y downwards, in points.

struct PageMeasure
{
    float width = 0; ///< in points
    float height = 0;
    bool hasLabel = false;
    std::string label;

    static constexpr void describe(auto& fields, auto& measure)
    {
        fields.number(measure.width);
        fields.number(measure.height);
        fields.flag(measure.hasLabel);
        fields.text(measure.label, longestLabel);
    }
};

struct MeasureResult
{
    std::vector<PageMeasure> pages; ///< as many as were asked for and exist

    static constexpr void describe(auto& fields, auto& message)
    {
        fields.list(message.pages, maximumMeasuredPages);
    }
};

/// Sizes and labels of pages.
struct MeasureRequest
{
    static constexpr EngineRequest kind = EngineRequest::isMeasure;
    using Result = MeasureResult;

    int first = 0;
    int count = 0;

    static constexpr void describe(auto& fields, auto& message)
    {
        fields.number(message.first, 0, maximumPageCount);
        fields.number(message.count, 0, maximumMeasuredPages);
    }
};

struct TileResult
{
    /// For each pixel four bytes blue, green, red and 255, row by row from the top.
    PackedItems<std::uint32_t> pixels;

    static constexpr void describe(auto& fields, auto& message)
    {
        fields.items(message.pixels, std::size_t{maximumTileSide} * maximumTileSide);
    }
};

/// A part of a page as an image.
struct TileRequest
{
    static constexpr EngineRequest kind = EngineRequest::isTile;
    using Result = TileResult;

    int page = 0;
    double scale = 1; ///< pixels per point
    int rotation = 0; ///< clockwise quarter turns of the view
    int x = 0, y = 0; ///< in pixels of the page scaled and rotated so
    int width = 1, height = 1;

    static constexpr void describe(auto& fields, auto& message)
    {
        fields.number(message.page);
        fields.number(message.scale, std::numeric_limits<double>::denorm_min(),
            std::numeric_limits<double>::max());
        fields.number(message.rotation);
        for (auto* const place : {&message.x, &message.y})
            fields.number(*place, -maximumTilePlace, maximumTilePlace);
        for (auto* const side : {&message.width, &message.height})
            fields.number(*side, 1, maximumTileSide);
    }
    /// Bytes of this tile's result.
    std::size_t largestResult() const
    {
        return sizeof(PayloadCount) + std::size_t(width) * std::size_t(height) * 4;
    }
};

/// Where a character stands.
struct EngineQuad
{
    struct Point
    {
        float x = 0;
        float y = 0;
    };
    /// Upper left, upper right, lower right, lower left, in page space.
    std::array<Point, 4> corners;
};
static_assert(sizeof(EngineQuad) == 8 * sizeof(float));

/// Characters of one look.
struct EngineTextRun
{
    std::uint32_t length = 0; ///< in characters, behind those of the run before
    float size = 0; ///< in points
    bool isBold = false;
    bool isItalic = false;
    std::uint32_t colour = 0; ///< 24 bits
    std::string fontName;

    static constexpr void describe(auto& fields, auto& run)
    {
        fields.number(run.length);
        fields.number(run.size);
        fields.flag(run.isBold);
        fields.flag(run.isItalic);
        fields.number(run.colour);
        fields.text(run.fontName, longestFontName);
    }
};

struct TextResult
{
    EngineLoss loss = EngineLoss::isNone; ///< of the page
    /// Each line ends with a line feed; an empty line parts two blocks.
    PackedItems<char32_t> characters;
    PackedItems<EngineQuad> quads; ///< with quads: of each character, all zero for line ends
    std::vector<EngineTextRun> runs; ///< with attributes: of all characters

    static constexpr void describe(auto& fields, auto& message)
    {
        fields.choice(message.loss, EngineLoss::isCut);
        fields.items(message.characters, maximumPageCharacters);
        fields.items(message.quads, maximumPageCharacters);
        fields.list(message.runs, maximumTextRuns);
    }
};

/// The text of a page.
struct TextRequest
{
    static constexpr EngineRequest kind = EngineRequest::isText;
    using Result = TextResult;

    int page = 0;
    EngineTextDetail detail = EngineTextDetail::isPlain;

    static constexpr void describe(auto& fields, auto& message)
    {
        fields.number(message.page);
        fields.choice(message.detail, EngineTextDetail::isWithAttributes);
    }
};

/// Where a link or an entry of the outline leads.
struct EngineTarget
{
    int page = -1; ///< -1 for none of the document's
    float x = 0; ///< on the page, in page space
    float y = 0;
    std::string address; ///< outside the document

    static constexpr void describe(auto& fields, auto& target)
    {
        fields.number(target.page);
        fields.number(target.x);
        fields.number(target.y);
        fields.text(target.address, longestTargetText);
    }
};

struct EngineLink
{
    float left = 0, top = 0, right = 0, bottom = 0; ///< in page space, in any order
    EngineTarget target;

    static constexpr void describe(auto& fields, auto& link)
    {
        for (auto* const edge : {&link.left, &link.top, &link.right, &link.bottom})
            fields.number(*edge);
        fields.part(link.target);
    }
};

struct LinksResult
{
    std::vector<EngineLink> links;

    static constexpr void describe(auto& fields, auto& message)
    {
        fields.textsWithin(maximumTargetTexts);
        fields.list(message.links, maximumLinks);
    }
};

/// The links of a page.
struct LinksRequest
{
    static constexpr EngineRequest kind = EngineRequest::isLinks;
    using Result = LinksResult;

    int page = 0;

    static constexpr void describe(auto& fields, auto& message) { fields.number(message.page); }
};

struct EngineOutlineEntry
{
    int depth = 0; ///< 0 for the top level
    std::string title;
    EngineTarget target;

    static constexpr void describe(auto& fields, auto& entry)
    {
        fields.number(entry.depth);
        fields.text(entry.title, longestTargetText);
        fields.part(entry.target);
    }
};

struct OutlineResult
{
    EngineLoss loss = EngineLoss::isNone;
    std::vector<EngineOutlineEntry> entries; ///< in depth-first order

    static constexpr void describe(auto& fields, auto& message)
    {
        fields.choice(message.loss, EngineLoss::isCut);
        fields.textsWithin(maximumTargetTexts);
        fields.list(message.entries, maximumOutlineEntries);
    }
};

struct OutlineRequest
{
    static constexpr EngineRequest kind = EngineRequest::isOutline;
    using Result = OutlineResult;

    static constexpr void describe(auto&, auto&) { }
};

} // namespace tarnwick
