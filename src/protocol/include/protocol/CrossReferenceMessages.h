#pragma once

#include "protocol/EngineLimits.h"
#include "protocol/EngineProtocol.h"
#include "protocol/MessageFields.h"

namespace tarnwick {

/// Messages on cross-references as they stand in the file. The engine reads them from the bytes,
/// whether it can open the document or not: they are never encrypted (ISO 32000-2, 7.5.8.2).

enum class EngineRowUse : std::uint8_t
{
    isFree,
    isPlain,
    isPacked,
};

/// A row of a table, 24 bytes.
struct EngineRow
{
    std::uint64_t place = 0; ///< offset, or number of an object stream
    std::uint32_t number = 0;
    std::uint32_t detail = 0; ///< generation, or place in an object stream
    std::uint8_t use = 0; ///< EngineRowUse
    std::uint8_t reserved[7] = {};
};
static_assert(sizeof(EngineRow) == 24);

enum class EngineSectionForm : std::uint8_t
{
    isNone, ///< there is no cross-reference
    isTable,
    isStream,
};

struct EngineSection
{
    EngineSectionForm form = EngineSectionForm::isNone;
    std::int64_t prev = -1; ///< -1 without one
    std::int64_t stream = -1; ///< XRefStm; likewise
    int root = -1; ///< number of the object; likewise
    int info = -1; ///< likewise
    bool isEncrypted = false;
    bool isWhole = true; ///< none of its rows are left out of this answer
    std::uint32_t rows = 0; ///< of this section in this answer

    static constexpr void describe(auto& fields, auto& section)
    {
        fields.choice(section.form, EngineSectionForm::isStream);
        for (auto* const place : {&section.prev, &section.stream})
            fields.number(*place, std::int64_t{-1}, std::numeric_limits<std::int64_t>::max());
        for (auto* const number : {&section.root, &section.info})
            fields.number(*number, -1, maximumObjectNumber);
        fields.flag(section.isEncrypted);
        fields.flag(section.isWhole);
        fields.number(section.rows, std::uint32_t{0}, maximumRows);
    }
};

struct CrossReferenceResult
{
    /// At the first of the offsets that were asked for, one at least; of those that are left out
    /// the program asks again. Only the last may lack rows.
    std::vector<EngineSection> sections;
    PackedItems<EngineRow> rows; ///< of all of them, one section's behind another's

    static constexpr void describe(auto& fields, auto& message)
    {
        fields.list(message.sections, maximumSections);
        fields.items(message.rows, maximumRows);
    }
};

struct EngineOffset
{
    std::uint64_t offset = 0; ///< any

    static constexpr void describe(auto& fields, auto& place) { fields.number(place.offset); }
};

/// What cross-references stand at places of the file.
struct CrossReferenceRequest
{
    static constexpr EngineRequest kind = EngineRequest::isCrossReference;
    static constexpr bool needsDocument = false;
    using Result = CrossReferenceResult;

    std::vector<EngineOffset> offsets; ///< one at least
    std::uint32_t firstRow = 0; ///< of the first section: those before it are known

    static constexpr void describe(auto& fields, auto& message)
    {
        fields.list(message.offsets, maximumSections);
        fields.number(message.firstRow);
    }
};

} // namespace tarnwick
