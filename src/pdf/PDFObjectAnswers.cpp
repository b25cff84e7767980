#include "PDFObjectAnswers.h"

#include "protocol/EngineMessages.h"

#include <algorithm>

namespace tarnwick {

namespace {

PDFObjectState stateOf(EngineObjectState state)
{
    switch (state) {
    case EngineObjectState::isMissing:
        break;
    case EngineObjectState::isFree:
        return PDFObjectState::isFree;
    case EngineObjectState::isUnreadable:
        return PDFObjectState::isUnreadable;
    case EngineObjectState::isPresent:
        return PDFObjectState::isPresent;
    }
    return PDFObjectState::isMissing;
}

PDFStreamEnd endOf(EngineStreamEnd end)
{
    switch (end) {
    case EngineStreamEnd::isWhole:
        return PDFStreamEnd::isWhole;
    case EngineStreamEnd::isStopped:
        return PDFStreamEnd::isStopped;
    case EngineStreamEnd::isDamaged:
        return PDFStreamEnd::isDamaged;
    case EngineStreamEnd::isUnknown:
        return PDFStreamEnd::isUnknown;
    case EngineStreamEnd::isNone:
        break;
    }
    return PDFStreamEnd::isNone;
}

PDFPictureEnd endOf(EnginePictureEnd end)
{
    switch (end) {
    case EnginePictureEnd::isDrawn:
        return PDFPictureEnd::isDrawn;
    case EnginePictureEnd::isDamaged:
        return PDFPictureEnd::isDamaged;
    case EnginePictureEnd::isUnreadable:
        break;
    }
    return PDFPictureEnd::isUnreadable;
}

PDFObjectKind kindOf(EngineObjectKind kind)
{
    switch (kind) {
    case EngineObjectKind::isOther:
        break;
    case EngineObjectKind::isImage:
        return PDFObjectKind::isImage;
    case EngineObjectKind::isForm:
        return PDFObjectKind::isForm;
    case EngineObjectKind::isFont:
        return PDFObjectKind::isFont;
    case EngineObjectKind::isFontProgram:
        return PDFObjectKind::isFontProgram;
    case EngineObjectKind::isColourProfile:
        return PDFObjectKind::isColourProfile;
    case EngineObjectKind::isEmbeddedFile:
        return PDFObjectKind::isEmbeddedFile;
    case EngineObjectKind::isFileSpec:
        return PDFObjectKind::isFileSpec;
    case EngineObjectKind::isMetadata:
        return PDFObjectKind::isMetadata;
    case EngineObjectKind::isObjectStream:
        return PDFObjectKind::isObjectStream;
    case EngineObjectKind::isCrossReference:
        return PDFObjectKind::isCrossReference;
    }
    return PDFObjectKind::isOther;
}

/// All of it is printable ASCII but for the line feeds of a set out object.
bool isPlain(const std::string& text, bool hasLines)
{
    return std::all_of(text.begin(), text.end(),
        [hasLines](char one) { return (one >= ' ' && one <= '~') || (hasLines && one == '\n'); });
}

bool isConsistent(const ObjectResult& message)
{
    const bool isPresent = message.state == EngineObjectState::isPresent;
    const bool hasStreamFacts = !message.filters.empty() || message.filterCount > 0;
    return isPresent != message.text.empty() && isPlain(message.text, true)
        && (isPresent || !message.isStream) && (message.isStream || !hasStreamFacts)
        && message.filterCount >= message.filters.size();
}

} // namespace

std::optional<PDFObject> readObjectAnswer(std::string_view payload, int number)
{
    const auto message = unpacked<ObjectResult>(payload);
    if (!message || !isConsistent(*message))
        return std::nullopt;
    PDFObject object;
    object.number = number;
    object.generation = message->generation;
    object.state = stateOf(message->state);
    object.place = {message->offset, message->container, message->index};
    object.text = QString::fromStdString(message->text);
    object.isCut = message->isCut;
    object.isStream = message->isStream;
    for (const EngineFilter& filter : message->filters) {
        if (!isPlain(filter.name, false) || !isPlain(filter.parameters, false))
            return std::nullopt;
        object.filters.append(
            {QString::fromStdString(filter.name), QString::fromStdString(filter.parameters)});
    }
    object.filterCount = message->filterCount;
    if (message->statedLength >= 0)
        object.statedLength = message->statedLength;
    return object;
}

std::optional<PDFStreamAnswer> readStreamAnswer(std::string_view payload, std::uint64_t limit)
{
    const auto message = unpacked<StreamResult>(payload);
    if (!message || message->size > limit || !isPlain(message->remark, false))
        return std::nullopt;
    const bool isEmpty
        = message->end == EngineStreamEnd::isNone || message->end == EngineStreamEnd::isUnknown;
    if (isEmpty && message->size > 0)
        return std::nullopt;
    return PDFStreamAnswer{
        message->size, endOf(message->end), QString::fromStdString(message->remark)};
}

std::optional<PDFFacts> readFactsAnswer(std::string_view payload)
{
    const auto message = unpacked<FactsResult>(payload);
    if (!message)
        return std::nullopt;
    PDFFacts facts;
    facts.kind = kindOf(message->kind);
    for (const EngineFact& fact : message->facts) {
        QString text = QString::fromStdString(fact.text);
        std::replace_if(
            text.begin(), text.end(), [](QChar one) { return !one.isPrint(); },
            QChar(QChar::ReplacementCharacter));
        facts.facts.append({fact.kind, text});
    }
    return facts;
}

std::optional<PDFPictureAnswer> readPictureAnswer(std::string_view payload)
{
    const auto message = unpacked<PictureResult>(payload);
    if (!message || !isPlain(message->remark, false))
        return std::nullopt;
    const bool isEmpty = message->width == 0 && message->height == 0;
    const bool hasPixels = message->width > 0 && message->height > 0;
    if (message->end == EnginePictureEnd::isUnreadable ? !isEmpty : !hasPixels)
        return std::nullopt;
    return PDFPictureAnswer{{message->width, message->height}, endOf(message->end),
        QString::fromStdString(message->remark)};
}

} // namespace tarnwick
