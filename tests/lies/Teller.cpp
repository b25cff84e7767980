#include "Teller.h"

#include "Lies.h"

#include <utility>

#include <unistd.h>

namespace tarnwick {

namespace {

constexpr int pageCount = 3;

PayloadWriter measures(PayloadReader arguments)
{
    PayloadWriter result;
    const int first = arguments.take<int>();
    const int count = arguments.take<int>();
    for (int page = first; page < first + count; ++page) {
        result.put(612.0f);
        result.put(792.0f);
        result.put(std::uint8_t{0});
        result.putText("");
    }
    return result;
}

PayloadWriter tile(PayloadReader arguments)
{
    arguments.takeBytes(2 * sizeof(int) + sizeof(double)); // page, scale, rotation
    arguments.takeBytes(2 * sizeof(int)); // corner
    const int width = arguments.take<int>();
    const int height = arguments.take<int>();
    PayloadWriter result;
    const std::string pixels(static_cast<std::size_t>(width * height) * 4, '\xff');
    result.putBytes(pixels.data(), pixels.size());
    return result;
}

PayloadWriter text(PayloadReader arguments)
{
    arguments.take<int>();
    return textAnswer(arguments.take<std::uint8_t>(), "A line of text\n");
}

PayloadWriter links()
{
    PayloadWriter result;
    result.put(std::uint32_t{1});
    putLink(result, {10, 10, 100, 30}, 1, "");
    return result;
}

PayloadWriter outline()
{
    PayloadWriter result;
    result.put(std::uint8_t{0}); // it is whole
    result.put(std::uint32_t{1});
    putEntry(result, 0, "Chapter", 2);
    return result;
}

PayloadWriter file(int descriptor)
{
    constexpr std::string_view bytes = "%PDF-1.4\n1 0 obj\n<< /Type /Catalog >>\nendobj\n%%EOF\n";
    const auto size = static_cast<std::uint64_t>(::write(descriptor, bytes.data(), bytes.size()));
    return writtenAnswer(size);
}

} // namespace

Teller::Teller(std::string lie, int flat)
    : theLie(std::move(lie))
    , theFlat(flat)
{
}

PayloadWriter Teller::facts(int pages)
{
    PayloadWriter facts;
    for (const int fact : {pages, 1, 7, 1, 2})
        facts.put(fact);
    facts.put(612.0f);
    facts.put(792.0f);
    return facts;
}

void Teller::take(const Question& question)
{
    const Lie* const lie = lieNamed(theLie);
    const bool isOpening = question.kind == EngineRequest::isUnlock;
    if (lie && lie->at == (isOpening ? EngineRequest::isOpen : question.kind))
        lie->tell(*this, question);
    else
        tellTruth(question);
}

void Teller::tellTruth(const Question& question)
{
    const PayloadReader arguments(question.payload);
    switch (question.kind) {
    case EngineRequest::isOpen:
    case EngineRequest::isUnlock:
        return answer(question, EngineAnswer::isOpened, facts(pageCount));
    case EngineRequest::isMeasure:
        return answer(question, EngineAnswer::isDone, measures(arguments));
    case EngineRequest::isTile:
        return answer(question, EngineAnswer::isDone, tile(arguments));
    case EngineRequest::isText:
        return answer(question, EngineAnswer::isDone, text(arguments));
    case EngineRequest::isLinks:
        return answer(question, EngineAnswer::isDone, links());
    case EngineRequest::isOutline:
        return answer(question, EngineAnswer::isDone, outline());
    case EngineRequest::isFlat:
    case EngineRequest::isPrint:
        return answer(question, EngineAnswer::isDone, file(theFlat));
    }
}

void Teller::answer(const Question& question, EngineAnswer kind, const PayloadWriter& payload)
{
    EngineFrame head;
    head.size = static_cast<std::uint32_t>(payload.bytes().size());
    head.request = question.number;
    head.kind = static_cast<std::uint8_t>(kind);
    send(head, payload.bytes());
}

void Teller::send(const EngineFrame& head, std::string_view payload)
{
    write({reinterpret_cast<const char*>(&head), sizeof head});
    write(payload);
}

void Teller::write(std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = ::write(STDOUT_FILENO, bytes.data(), bytes.size());
        if (written <= 0)
            ::_exit(0);
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

} // namespace tarnwick
