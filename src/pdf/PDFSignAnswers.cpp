#include "PDFSignAnswers.h"

#include "protocol/EngineMessages.h"

namespace tarnwick {

namespace {

std::optional<ObjectGroup> groupOf(std::uint8_t role)
{
    switch (static_cast<EngineObjectRole>(role)) {
    case EngineObjectRole::isOther:
        return ObjectGroup::isOther;
    case EngineObjectRole::isPageContent:
        return ObjectGroup::isPageContent;
    case EngineObjectRole::isAnnotation:
        return ObjectGroup::isAnnotation;
    case EngineObjectRole::isMetadata:
        return ObjectGroup::isMetadata;
    case EngineObjectRole::isStructure:
        return ObjectGroup::isStructure;
    case EngineObjectRole::isFontOrImage:
        return ObjectGroup::isFontOrImage;
    case EngineObjectRole::isSetting:
        return ObjectGroup::isSetting;
    }
    return std::nullopt;
}

/// @param link of the object's first in the message, moved on behind its last.
std::optional<ObjectSign> signOf(
    const EngineObjectSign& told, const SignResult& message, std::size_t& link)
{
    const std::optional<ObjectGroup> group = groupOf(told.role);
    if (!group || told.form > static_cast<std::uint8_t>(EngineSignForm::isStream)
        || told.isPacked > 1 || told.isReached > 1 || told.links > message.links.size() - link)
        return std::nullopt;
    ObjectSign sign;
    sign.number = told.number;
    sign.group = *group;
    sign.isReadable = told.form != static_cast<std::uint8_t>(EngineSignForm::isUnreadable);
    sign.isStream = told.form == static_cast<std::uint8_t>(EngineSignForm::isStream);
    sign.isPacked = told.isPacked == 1;
    sign.isReached = told.isReached == 1;
    sign.lengthObject = told.lengthObject;
    sign.entries = told.entries;
    sign.shape = told.shape;
    sign.data = told.data;
    for (const std::size_t end = link + told.links; link < end; ++link) {
        const EngineObjectLink one = message.links[link];
        sign.links.push_back({one.path, one.target, one.isUpward != 0});
    }
    return sign;
}

} // namespace

std::optional<PDFSigns> readSignAnswer(std::string_view payload, std::uint32_t first)
{
    const auto message = unpacked<SignResult>(payload);
    if (!message)
        return std::nullopt;
    PDFSigns answer;
    answer.next = message->next;
    answer.signs.root = static_cast<std::uint32_t>(message->root);
    answer.signs.info = static_cast<std::uint32_t>(message->info);
    std::uint32_t least = first;
    std::size_t link = 0;
    for (std::size_t index = 0; index < message->signs.size(); ++index) {
        const EngineObjectSign told = message->signs[index];
        const bool isInOrder = told.number >= least && told.number <= maximumObjectNumber;
        auto sign = isInOrder ? signOf(told, *message, link) : std::nullopt;
        if (!sign)
            return std::nullopt;
        least = told.number + 1;
        answer.signs.list.push_back(std::move(*sign));
    }
    // Whoever is told to go on gets on.
    const bool goesOn = answer.next == 0 || (answer.next >= least && answer.next > first);
    return goesOn && link == message->links.size() ? std::optional(std::move(answer))
                                                   : std::nullopt;
}

} // namespace tarnwick
