#include "PDFObjectEngines.h"

#include "PDFEngineClient.h"
#include "PDFObjectAnswers.h"
#include "PDFPageWork.h"

#include <algorithm>
#include <utility>

namespace tarnwick {

PDFObjectEngines::PDFObjectEngines(
    const FileBytes& bytes, std::optional<std::string> password, QObject* parent)
    : QObject(parent)
    , theBytes(bytes)
    , thePassword(std::move(password))
{
}

PDFEngineClient* PDFObjectEngines::newEngine(std::uint64_t writtenSize)
{
    auto* const engine = new PDFEngineClient(theBytes, writtenSize, this);
    engine->setPassword(thePassword);
    return engine;
}

PDFEngineClient* PDFObjectEngines::streamEngine(std::uint64_t limit)
{
    PDFEngineClient*& engine = limit > usualStream ? theLargeStreams : theStreams;
    if (!engine)
        engine = newEngine(limit > usualStream ? largestStream : usualStream);
    return engine;
}

PDFObjectRequest* PDFObjectEngines::requestObject(int number, QObject* parent)
{
    auto* const request = new PDFObjectRequest(parent);
    if (!theObjects)
        theObjects = newEngine(0);
    PDFEngineJob job = jobFor(ObjectRequest{number});
    job.onResult([number](std::string_view payload) { return readObjectAnswer(payload, number); },
        [request](PDFObject object) { request->theObject = std::move(object); });
    PDFPageWork::submit(theObjects, request, std::move(job));
    return request;
}

PDFStreamRequest* PDFObjectEngines::requestStream(
    int number, PDFStreamForm form, quint64 limit, QObject* parent)
{
    auto* const request = new PDFStreamRequest(parent);
    const std::uint64_t most = std::min<std::uint64_t>(limit, largestStream);
    PDFEngineClient* const engine = streamEngine(most);
    const auto wanted
        = form == PDFStreamForm::isRaw ? EngineStreamForm::isRaw : EngineStreamForm::isDecoded;
    PDFEngineJob job = jobFor(StreamRequest{number, wanted, most});
    job.timeLimit = streamTimeLimit(most);
    job.accept = [request, engine, most](const QByteArray& payload) {
        std::optional<PDFStreamAnswer> answer = readStreamAnswer(viewOf(payload), most);
        const auto bytes = answer ? engine->takeFile(answer->size) : std::nullopt;
        if (bytes)
            request->theStream = {*bytes, answer->end, std::move(answer->remark)};
        return bytes.has_value();
    };
    job.progress = [request](int done, int total) { emit request->progressed(done, total); };
    PDFPageWork::submit(engine, request, std::move(job));
    return request;
}

QList<qint64> PDFObjectEngines::processIds() const
{
    QList<qint64> ids;
    for (const PDFEngineClient* engine : {theObjects, theStreams, theLargeStreams}) {
        if (engine && engine->engineProcessId() != 0)
            ids.append(engine->engineProcessId());
    }
    return ids;
}

} // namespace tarnwick
