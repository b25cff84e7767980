#include "PDFTableAnswers.h"

#include "protocol/EngineMessages.h"

#include <algorithm>
#include <vector>

namespace tarnwick {

namespace {

constexpr auto freeState = static_cast<std::uint8_t>(EngineObjectState::isFree);
constexpr auto presentState = static_cast<std::uint8_t>(EngineObjectState::isPresent);

bool areNumbers(const PackedItems<std::uint32_t>& items)
{
    for (std::size_t item = 0; item < items.size(); ++item) {
        if (items[item] == 0 || items[item] > maximumObjectNumber)
            return false;
    }
    return true;
}

bool isPlain(const EngineKind& kind)
{
    return std::all_of(kind.name.begin(), kind.name.end(),
        [](char character) { return character >= ' ' && character <= '~'; });
}

/// What stands in a row beside its number.
bool isSound(const EngineTableRow& row, std::uint64_t fileSize, std::size_t kinds)
{
    const bool isMember = row.container > 0;
    const bool isPresent = row.state == presentState;
    if (row.state < freeState || row.state > presentState || row.offset > fileSize
        || row.container > maximumObjectNumber || row.index > maximumObjectNumber)
        return false;
    if (!isMember)
        return row.references == 0 && row.kind == 0 && row.index == 0
            && (!isPresent || row.offset < fileSize);
    return row.state != freeState && row.offset == 0
        && (isPresent ? row.kind < kinds : row.references == 0 && row.kind == 0);
}

} // namespace

bool PDFTableAnswers::isConsistent(const TableResult& message) const
{
    const bool isAtEnd = message.next == message.length;
    if (message.next > message.length || (message.next <= theNext && !isAtEnd))
        return false;
    std::uint64_t references = 0;
    std::uint32_t least = static_cast<std::uint32_t>(std::max(theNext, 1));
    for (std::size_t index = 0; index < message.rows.size(); ++index) {
        const EngineTableRow row = message.rows[index];
        if (row.number < least || row.number >= static_cast<std::uint32_t>(message.next)
            || !isSound(row, theFileSize, message.kinds.size()))
            return false;
        least = row.number + 1;
        references += row.references;
    }
    return references == message.references.size() && areNumbers(message.references)
        && areNumbers(message.roots) && (theNext == 0 || message.roots.isEmpty())
        && std::all_of(message.kinds.begin(), message.kinds.end(), isPlain);
}

bool PDFTableAnswers::take(std::string_view payload)
{
    const auto message = unpacked<TableResult>(payload);
    if (!message || !isConsistent(*message))
        return false;
    if (theHasBegun && theTable.wasRepaired != message->wasRepaired) {
        const bool isRepairedNow = message->wasRepaired; // nothing leads back from a repair
        *this = PDFTableAnswers(theFileSize);
        return isRepairedNow;
    }
    theHasBegun = true;
    theTable.wasRepaired = message->wasRepaired;
    theTable.isCut = theTable.isCut || message->isCut;
    theLength = message->length;
    takeRows(*message);
    theNext = message->next;
    return theTable.references.size() <= maximumReferences;
}

void PDFTableAnswers::takeRows(const TableResult& message)
{
    std::vector<std::uint32_t> kinds;
    for (const EngineKind& kind : message.kinds)
        kinds.push_back(kindOf(kind.name));
    auto firstReference = static_cast<std::uint32_t>(theTable.references.size());
    for (std::size_t index = 0; index < message.rows.size(); ++index) {
        const EngineTableRow row = message.rows[index];
        const bool isPresent = row.state == presentState;
        if (row.state == freeState)
            theTable.freed.push_back({row.offset, row.number});
        else if (row.container == 0)
            theTable.placed.push_back({row.offset, row.number, row.generation, isPresent});
        else
            theTable.members.push_back({row.number, row.container, row.index,
                isPresent ? kinds[row.kind] : kindOf({}), firstReference, isPresent});
        firstReference += row.references;
    }
    for (std::size_t item = 0; item < message.references.size(); ++item)
        theTable.references.push_back(message.references[item]);
    for (std::size_t item = 0; item < message.roots.size(); ++item)
        theTable.roots.push_back(message.roots[item]);
}

std::uint32_t PDFTableAnswers::kindOf(const std::string& name)
{
    const auto [place, isNew]
        = theKinds.emplace(name, static_cast<std::uint32_t>(theTable.kinds.size()));
    if (isNew)
        theTable.kinds.push_back(name);
    return place->second;
}

} // namespace tarnwick
