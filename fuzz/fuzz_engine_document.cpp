// Any document in the engine, asked for everything that the program asks for: facts, sizes, labels,
// outline, links, text, tiles, the flattened and the printed file.

#include "AnswerChecks.h"
#include "EngineRun.h"
#include "FuzzTarget.h"
#include "RequestFrames.h"

using namespace tarnwick;

namespace {

constexpr int pagesTried = 3;

/// Opens the document, with an empty password where it wants one, and asks.
class Session
{
public:
    explicit Session(std::string_view file)
        : theFile(file)
    {
        ask(OpenRequest());
        ask(UnlockRequest());
    }

    template<typename Request> void ask(const Request& request)
    {
        appendRequest(theRequests, request);
        AskedFor asked;
        asked.kind = Request::kind;
        asked.writesFile = writesFile<Request>;
        if constexpr (std::is_same_v<Request, TextRequest>)
            asked.detail = request.detail;
        if constexpr (std::is_same_v<Request, TileRequest>)
            asked.size = {request.width, request.height};
        theAsked.push_back(asked);
    }

    /// Holds each answer against its request. @returns the written file, if it was written.
    std::string run()
    {
        const EngineRun engine(theFile, theRequests);
        auto asked = theAsked.begin();
        std::string written;
        for (const EngineRun::Answer& answer : engine.answers()) {
            const auto kind = static_cast<EngineAnswer>(answer.frame.kind);
            if (kind == EngineAnswer::isProgress)
                continue;
            require(asked != theAsked.end(), "more answers than requests");
            check(*asked, kind, answer.payload);
            if (kind == EngineAnswer::isDone && asked->writesFile)
                written = engine.written();
            ++asked;
        }
        require(asked == theAsked.end(), "fewer answers than requests");
        return written;
    }

    int pageCount() const { return thePageCount; }

private:
    void check(AskedFor asked, EngineAnswer kind, const std::string& payload)
    {
        if (kind != EngineAnswer::isDone && kind != EngineAnswer::isOpened)
            return;
        if (kind == EngineAnswer::isOpened)
            thePageCount = unpacked<OpenedAnswer>(payload)->pageCount;
        if (asked.kind == EngineRequest::isMeasure || asked.kind == EngineRequest::isDigest)
            asked.pageCount = std::min(pagesTried, thePageCount);
        else
            asked.pageCount = thePageCount;
        require(takesAnswer(asked, payload), "the program refuses the engine's answer");
    }

    std::string_view theFile;
    std::string theRequests;
    std::vector<AskedFor> theAsked;
    int thePageCount = -1;
};

Session readingSession(std::string_view file)
{
    Session session(file);
    session.ask(MeasureRequest{0, pagesTried});
    for (const auto form : {EngineDigestForm::isOfContent, EngineDigestForm::isOfPlace})
        session.ask(DigestRequest{0, pagesTried, form});
    session.ask(OutlineRequest());
    for (int page = 0; page < pagesTried; ++page) {
        session.ask(LinksRequest{page});
        for (const auto detail :
            {PDFTextDetail::isPlain, PDFTextDetail::isWithQuads, PDFTextDetail::isWithAttributes})
            session.ask(TextRequest{page, detail});
        session.ask(TileRequest{page, 0.25, page, 10, 20, 64, 48});
    }
    return session;
}

std::string flattened(std::string_view file)
{
    Session session(file);
    session.ask(FlatRequest());
    return session.run();
}

/// What the first objects say, and what their streams hold as far as a small limit.
void lookInto(std::string_view file)
{
    constexpr int objectsTried = 12;
    Session session(file);
    session.ask(SignRequest());
    for (int number = 0; number < objectsTried; ++number) {
        session.ask(ObjectRequest{number});
        session.ask(TableRequest{number});
        for (const auto form : {EngineStreamForm::isRaw, EngineStreamForm::isDecoded})
            session.ask(StreamRequest{number, form, 100'000});
    }
    session.run();
}

/// Two pages on one sheet each, and the first again.
std::string printed(std::string_view file)
{
    PrintRequest order = {595, 842, 18, 18, {}};
    for (const int page : {0, 1, 0})
        order.sheets.push_back({page, 0, 0, 559, 806, 0.9});
    Session session(file);
    session.ask(order);
    return session.run();
}

/// Whether the engine finds so many pages in a file that it has written itself.
void checkPages(const std::string& written, int expected)
{
    if (written.empty())
        return;
    Session session(written);
    session.run();
    const std::string counts = std::to_string(session.pageCount()) + " pages written of "
        + std::to_string(expected) + "\n";
    require(session.pageCount() == expected, counts + written);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view file = textOf(data, size);
    Session session = readingSession(file);
    session.run();
    if (session.pageCount() < 0)
        return 0;
    lookInto(file);
    const std::string flat = flattened(file);
    require(flat == flattened(file), "another flattened file the second time");
    checkPages(flat, session.pageCount());
    checkPages(printed(file), 3);
    return 0;
}
