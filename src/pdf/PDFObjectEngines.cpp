#include "pdf/PDFObjectEngines.h"

#include "PDFEngineClient.h"
#include "PDFObjectAnswers.h"
#include "PDFPageWork.h"
#include "PDFSignReading.h"
#include "PDFTableReading.h"

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

PDFEngineClient* PDFObjectEngines::objectEngine()
{
    if (!theObjects)
        theObjects = newEngine(0);
    return theObjects;
}

PDFObjectRequest* PDFObjectEngines::requestObject(int number, QObject* parent)
{
    auto* const request = new PDFObjectRequest(parent);
    PDFEngineJob job = jobFor(ObjectRequest{number});
    job.onResult([number](std::string_view payload) { return readObjectAnswer(payload, number); },
        [request](PDFObject object) { request->theObject = std::move(object); });
    PDFPageWork::submit(objectEngine(), request, std::move(job));
    return request;
}

PDFFactsRequest* PDFObjectEngines::requestFacts(int number, QObject* parent)
{
    auto* const request = new PDFFactsRequest(parent);
    PDFEngineJob job = jobFor(FactsRequest{number});
    job.onResult([](std::string_view payload) { return readFactsAnswer(payload); },
        [request](PDFFacts facts) { request->theFacts = std::move(facts); });
    PDFPageWork::submit(objectEngine(), request, std::move(job));
    return request;
}

namespace {

/// @param pixels of the size that the answer says; they are kept.
QImage imageOf(const FileBytes& pixels, const QSize& size)
{
    if (size.isEmpty())
        return {};
    auto* const owner = new FileBytes(pixels);
    return QImage(
        reinterpret_cast<const uchar*>(pixels.view().data()), size.width(), size.height(),
        qsizetype{size.width()} * 4, QImage::Format_ARGB32_Premultiplied,
        [](void* bytes) { delete static_cast<FileBytes*>(bytes); }, owner);
}

} // namespace

PDFPictureRequest* PDFObjectEngines::requestPicture(int number, QObject* parent)
{
    auto* const request = new PDFPictureRequest(parent);
    if (!thePictures)
        thePictures = newEngine(std::uint64_t{4} * maximumPictureSide * maximumPictureSide);
    PDFEngineJob job = jobFor(PictureRequest{number});
    job.accept = [request, engine = thePictures](const QByteArray& payload) {
        std::optional<PDFPictureAnswer> answer = readPictureAnswer(viewOf(payload));
        const auto pixels = answer ? engine->takeFile(answer->bytes()) : std::nullopt;
        if (pixels)
            request->thePicture
                = {imageOf(*pixels, answer->size), answer->end, std::move(answer->remark)};
        return pixels.has_value();
    };
    PDFPageWork::submit(thePictures, request, std::move(job));
    return request;
}

PDFSignRequest* PDFObjectEngines::requestSigns(
    const std::vector<std::uint32_t>& numbers, QObject* parent)
{
    auto* const request = new PDFSignRequest(parent);
    if (!theObjects)
        theObjects = newEngine(0);
    (new PDFSignReading(request, theObjects, numbers))->ask(0);
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
    job.salvage = [request, engine, most](PDFFailure failure) {
        const auto bytes = engine->takeBeginning(most);
        if (!bytes || bytes->size() == 0)
            return false;
        request->theStream = {*bytes, PDFStreamEnd::isLost, {}, failure, streamTimeLimit(most)};
        return true;
    };
    job.progress = [request](int done, int total) { emit request->progressed(done, total); };
    PDFPageWork::submit(engine, request, std::move(job));
    return request;
}

PDFTableRequest* PDFObjectEngines::requestTable(QObject* parent)
{
    auto* const request = new PDFTableRequest(parent);
    (new PDFTableReading(request, objectEngine(), theBytes.size()))->start();
    return request;
}

QList<qint64> PDFObjectEngines::processIds() const
{
    QList<qint64> ids;
    for (const PDFEngineClient* engine : {theObjects, theStreams, theLargeStreams, thePictures}) {
        if (engine && engine->engineProcessId() != 0)
            ids.append(engine->engineProcessId());
    }
    return ids;
}

} // namespace tarnwick
