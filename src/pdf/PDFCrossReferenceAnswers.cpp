#include "PDFCrossReferenceAnswers.h"

#include "protocol/EngineMessages.h"

namespace tarnwick {

namespace {

template<typename Number> std::optional<Number> known(std::int64_t number)
{
    return number < 0 ? std::nullopt : std::optional<Number>(static_cast<Number>(number));
}

CrossReferenceSection::Form formOf(EngineSectionForm form)
{
    switch (form) {
    case EngineSectionForm::isNone:
        break;
    case EngineSectionForm::isTable:
        return CrossReferenceSection::Form::isTable;
    case EngineSectionForm::isStream:
        return CrossReferenceSection::Form::isStream;
    }
    return CrossReferenceSection::Form::isNone;
}

std::optional<CrossReferenceRow> rowOf(const EngineRow& row)
{
    constexpr std::uint32_t most = maximumObjectNumber;
    const bool isPacked = row.use == static_cast<std::uint8_t>(EngineRowUse::isPacked);
    const bool isKnown = isPacked || row.use < static_cast<std::uint8_t>(EngineRowUse::isPacked);
    if (!isKnown || row.number > most || (isPacked && row.place > most))
        return std::nullopt;
    return CrossReferenceRow{row.place, row.number, row.detail, static_cast<RowUse>(row.use)};
}
static_assert(static_cast<int>(EngineRowUse::isPlain) == static_cast<int>(RowUse::isPlain)
    && static_cast<int>(EngineRowUse::isPacked) == static_cast<int>(RowUse::isPacked));

/// @param row of the section's first in the message, moved on behind its last.
std::optional<CrossReferenceSection> sectionOf(const EngineSection& told, std::uint64_t offset,
    const CrossReferenceResult& message, std::size_t& row)
{
    if (told.rows > message.rows.size() - row
        || (told.form == EngineSectionForm::isNone && told.rows > 0))
        return std::nullopt;
    CrossReferenceSection section;
    section.offset = offset;
    section.form = formOf(told.form);
    section.prev = known<std::uint64_t>(told.prev);
    section.stream = known<std::uint64_t>(told.stream);
    section.root = known<std::uint32_t>(told.root);
    section.info = known<std::uint32_t>(told.info);
    section.isEncrypted = told.isEncrypted;
    section.rows.reserve(told.rows);
    for (const std::size_t end = row + told.rows; row < end; ++row) {
        const std::optional<CrossReferenceRow> one = rowOf(message.rows[row]);
        if (!one)
            return std::nullopt;
        section.rows.push_back(*one);
    }
    return section;
}

} // namespace

std::optional<PDFCrossReferences> readCrossReferenceAnswer(
    std::string_view payload, const std::vector<std::uint64_t>& offsets)
{
    const auto message = unpacked<CrossReferenceResult>(payload);
    if (!message || message->sections.empty() || message->sections.size() > offsets.size())
        return std::nullopt;
    PDFCrossReferences answer;
    std::size_t row = 0;
    for (const EngineSection& told : message->sections) {
        // One that lacks rows is the last, and has some: there is nothing to go on from else.
        if (!answer.isWhole || (!told.isWhole && told.rows == 0 && row == 0))
            return std::nullopt;
        auto section = sectionOf(told, offsets[answer.sections.size()], *message, row);
        if (!section)
            return std::nullopt;
        answer.isWhole = told.isWhole;
        answer.sections.push_back(std::move(*section));
    }
    return row == message->rows.size() ? std::optional(std::move(answer)) : std::nullopt;
}

} // namespace tarnwick
