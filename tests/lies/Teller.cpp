#include "Teller.h"

#include "Lies.h"

#include <type_traits>
#include <utility>

#include <unistd.h>

namespace tarnwick {

namespace {

constexpr int pageCount = 3;

constexpr std::string_view writtenFile = "%PDF-1.4\n1 0 obj\n<< /Type /Catalog >>\nendobj\n%%EOF\n";

NoResult truth(const OpenRequest&)
{
    return {};
}

NoResult truth(const UnlockRequest&)
{
    return {};
}

MeasureResult truth(const MeasureRequest& request)
{
    return {
        std::vector<PageMeasure>(static_cast<std::size_t>(request.count), {612, 792, false, {}})};
}

DigestResult truth(const DigestRequest& request)
{
    return {std::vector<EnginePageDigest>(
        static_cast<std::size_t>(request.count), {1, true, {1, 2, 3, 4}})};
}

TileResult truth(const TileRequest& request)
{
    return {std::vector<std::uint32_t>(
        static_cast<std::size_t>(request.width * request.height), 0xffffffffu)};
}

TextResult truth(const TextRequest& request)
{
    return textOf(request.detail, "A line of text\n");
}

LinksResult truth(const LinksRequest&)
{
    return {{{10, 10, 100, 30, {1, 10, 10, {}}}}};
}

OutlineResult truth(const OutlineRequest&)
{
    return {EngineLoss::isNone, {{0, "Chapter", {2, 10, 10, {}}}}};
}

WrittenResult truth(const FlatRequest&)
{
    return {writtenFile.size(), 0, {}, std::vector<std::uint32_t>{1}};
}

WrittenResult truth(const PrintRequest&)
{
    return {writtenFile.size(), 0, {}, {}};
}

ObjectResult truth(const ObjectRequest&)
{
    ObjectResult result;
    result.state = EngineObjectState::isPresent;
    result.offset = 9;
    result.text = "<<\n  /Kids [ 3 0 R ]\n>>";
    result.isStream = true;
    result.filters = {{"/FlateDecode", "<< /Predictor 1 >>"}};
    result.filterCount = 1;
    return result;
}

TableResult truth(const TableRequest&)
{
    TableResult result;
    result.length = result.next = 3;
    EngineTableRow row;
    row.number = 1;
    row.offset = 9;
    row.state = static_cast<std::uint8_t>(EngineObjectState::isPresent);
    result.rows = std::vector{row};
    result.roots = std::vector<std::uint32_t>{1};
    return result;
}

StreamResult truth(const StreamRequest&)
{
    return {writtenFile.size(), EngineStreamEnd::isWhole, {}};
}

SignResult truth(const SignRequest&)
{
    EngineObjectSign sign;
    sign.number = 3;
    sign.form = static_cast<std::uint8_t>(EngineSignForm::isPlain);
    sign.links = 1;
    return {0, 1, 0, std::vector{sign}, std::vector<EngineObjectLink>{{9, 1, 0}}};
}

CrossReferenceResult truth(const CrossReferenceRequest&)
{
    return {{{EngineSectionForm::isTable, -1, -1, 1, -1, false, true, 1}},
        std::vector<EngineRow>{{9, 1, 0, 1, {}}}};
}

CheckResult truth(const CheckRequest&)
{
    CheckResult result;
    result.findings = {{EngineFindingCode::isFontNotEmbedded, 0, 5, 0, 0, "Arial"}};
    std::vector<std::uint32_t> counts(engineFindingCodes);
    counts.at(static_cast<std::size_t>(EngineFindingCode::isFontNotEmbedded)) = 1;
    result.counts = std::move(counts);
    result.pagesLookedAt = pageCount;
    return result;
}

FactsResult truth(const FactsRequest&)
{
    return {EngineObjectKind::isImage, {{EngineFactKind::isPixels, "3 x 4"}}};
}

PictureResult truth(const PictureRequest&)
{
    return {3, 4, EnginePictureEnd::isDrawn, {}};
}

} // namespace

Teller::Teller(std::string lie, int output)
    : theLie(std::move(lie))
    , theOutput(output)
{
}

OpenedAnswer Teller::facts(int pages)
{
    return {pages, 1, 7, 1, 2, 612, 792};
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
    EngineRequests::visit(question.kind, [&](const auto& kind) {
        using Request = std::decay_t<decltype(kind)>;
        if constexpr (std::is_same_v<typename Request::Result, NoResult>)
            return answer(question, facts(pageCount));
        if constexpr (writesFile<Request>)
            static_cast<void>(::write(theOutput, writtenFile.data(), writtenFile.size()) > 0);
        done(question, truth(*unpacked<Request>(question.payload)));
    });
}

void Teller::answer(const Question& question, EngineAnswer kind, std::string_view payload)
{
    EngineFrame head;
    head.size = static_cast<std::uint32_t>(payload.size());
    head.request = question.number;
    head.kind = static_cast<std::uint8_t>(kind);
    send(head, payload);
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
