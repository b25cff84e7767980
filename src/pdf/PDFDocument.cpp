#include "pdf/PDFDocument.h"

#include "PDFCheckAnswer.h"
#include "PDFEngineAnswers.h"
#include "PDFEngineClient.h"
#include "PDFPageMeasures.h"
#include "PDFPageWork.h"
#include "PDFTextReading.h"
#include "pdf/FailureText.h"
#include "pdf/PDFObjectEngines.h"

#include <QPointer>

#include <algorithm>
#include <cassert>
#include <memory>
#include <utility>

namespace tarnwick {

namespace {

constexpr int fileLimit = 30'000; ///< milliseconds
constexpr int sheetLimit = 20; ///< milliseconds more for each sheet that is printed

} // namespace

class PDFDocument::Private
{
public:
    Private(PDFDocument* document, const FileBytes& bytes)
        : q(document)
        , theBytes(bytes)
        , thePages(new PDFEngineClient(bytes, 0, document))
        , theMeasures(new PDFPageMeasures(thePages, document))
    {
    }
    PDFEngineClient* textEngine();
    PDFEngineClient* fileEngine();
    PDFObjectEngines* objectEngines();
    /// Has a file written into shared memory.
    PDFFileRequest* askForFile(PDFEngineJob job, QObject* parent);
    void takeFacts(const QByteArray& payload);
    void refuse(const QString& reason);

    PDFDocument* q;
    FileBytes theBytes;
    PDFEngineClient* thePages;
    PDFEngineClient* theTextEngine = nullptr; ///< started when needed
    PDFEngineClient* theFileEngine = nullptr; ///< likewise
    PDFObjectEngines* theObjectEngines = nullptr; ///< likewise
    QPointer<PDFEngineClient> theCheckEngine; ///< of the latest check, while it lasts
    State theState = State::isOpening;
    DocumentFacts theFacts;
    QString theRefusal;
    PDFPageMeasures* theMeasures;
    std::shared_ptr<PDFPageWork> theWork = std::make_shared<PDFPageWork>();
};

PDFDocument::PDFDocument(const FileBytes& bytes, QObject* parent)
    : QObject(parent)
    , d(std::make_unique<Private>(this, bytes))
{
    connect(d->thePages, &PDFEngineClient::opened, this,
        [this](const QByteArray& facts) { d->takeFacts(facts); });
    connect(d->thePages, &PDFEngineClient::locked, this, [this](bool wasWrong) {
        d->theState = State::isLocked;
        emit locked(wasWrong);
    });
    connect(d->thePages, &PDFEngineClient::refused, this,
        [this](const QString& reason) { d->refuse(reason); });
    connect(d->theMeasures, &PDFPageMeasures::measured, this, &PDFDocument::pagesMeasured);
    d->thePages->open();
}

PDFDocument::~PDFDocument() = default;

PDFDocument::State PDFDocument::state() const
{
    return d->theState;
}

const FileBytes& PDFDocument::bytes() const
{
    return d->theBytes;
}

void PDFDocument::unlock(const QString& password)
{
    if (d->theState != State::isLocked)
        return;
    d->theState = State::isOpening;
    d->thePages->unlock(password);
}

QString PDFDocument::password() const
{
    const std::optional<std::string>& password = d->thePages->password();
    return password ? QString::fromStdString(*password) : QString();
}

const DocumentFacts& PDFDocument::facts() const
{
    return d->theFacts;
}

QSizeF PDFDocument::pageSize(int page) const
{
    assert(page >= 0 && page < pageCount());
    return d->theMeasures->size(page);
}

QString PDFDocument::pageLabel(int page) const
{
    assert(page >= 0 && page < pageCount());
    const QStringView label = ownPageLabel(page);
    return label.isNull() ? QString::number(page + 1) : label.toString();
}

QStringView PDFDocument::ownPageLabel(int page) const
{
    return d->theMeasures->label(page);
}

QString PDFDocument::refusalReason() const
{
    return d->theRefusal;
}

void PDFDocument::setPageTimeLimit(int milliseconds)
{
    d->theWork->setTimeLimit(milliseconds);
}

QList<qint64> PDFDocument::engineProcessIds() const
{
    QList<qint64> ids;
    for (const PDFEngineClient* client :
        {d->thePages, d->theTextEngine, d->theFileEngine, d->theCheckEngine.data()}) {
        if (client && client->engineProcessId() != 0)
            ids.append(client->engineProcessId());
    }
    if (d->theObjectEngines)
        ids += d->theObjectEngines->processIds();
    return ids;
}

PDFEngineClient* PDFDocument::Private::textEngine()
{
    if (!theTextEngine) {
        theTextEngine = new PDFEngineClient(theBytes, 0, q);
        theTextEngine->setPassword(thePages->password());
    }
    return theTextEngine;
}

/// Reading pages leaves traces in the library's objects, such as appearances made for annotations:
/// the flattened document comes from an engine that has done nothing else.
PDFEngineClient* PDFDocument::Private::fileEngine()
{
    if (!theFileEngine) {
        theFileEngine = new PDFEngineClient(theBytes, largestWrittenFile(theBytes.size()), q);
        theFileEngine->setPassword(thePages->password());
    }
    return theFileEngine;
}

PDFObjectEngines* PDFDocument::Private::objectEngines()
{
    if (!theObjectEngines)
        theObjectEngines = new PDFObjectEngines(theBytes, thePages->password(), q);
    return theObjectEngines;
}

void PDFDocument::Private::takeFacts(const QByteArray& payload)
{
    const std::optional<PDFOpenedAnswer> answer = readOpenedAnswer(viewOf(payload));
    if (!answer)
        return refuse(failureText(PDFFailure::isEngineDead, FailedTask::isOpening));
    theFacts = answer->facts;
    theState = State::isOpen;
    theMeasures->start(answer->facts.pageCount, answer->firstPageSize);
    emit q->opened();
}

/// An engine that cannot open the document a second time does not close it.
void PDFDocument::Private::refuse(const QString& reason)
{
    if (theState == State::isOpen)
        return;
    theState = State::isRefused;
    theRefusal = reason;
    emit q->refused(reason);
}

PDFFileRequest* PDFDocument::Private::askForFile(PDFEngineJob job, QObject* parent)
{
    auto* const request = new PDFFileRequest(parent);
    PDFEngineClient* const client = fileEngine();
    const auto answer = std::make_shared<std::optional<PDFWrittenAnswer>>();
    job.decode = [answer, count = theFacts.pageCount](std::string_view payload) {
        *answer = readWrittenAnswer(payload, count);
        return answer->has_value();
    };
    job.accept = [request, client, answer](const QByteArray&) {
        PDFWrittenAnswer& written = **answer;
        const std::optional<FileBytes> bytes = client->takeFile(written.size);
        if (bytes)
            request->theFile = {*bytes, written.losses, written.lostObjects,
                std::make_shared<const FlattenedNumbers>(std::move(written.origins))};
        return bytes.has_value();
    };
    job.progress = [request](int done, int total) { emit request->progressed(done, total); };
    PDFPageWork::submit(client, request, std::move(job));
    return request;
}

PDFFileRequest* PDFDocument::requestFlat(QObject* parent)
{
    PDFEngineJob job = jobFor(FlatRequest());
    job.timeLimit = fileLimit;
    return d->askForFile(std::move(job), parent);
}

PDFFileRequest* PDFDocument::requestPrint(
    const PrintPaper& paper, const QList<PrintSheet>& sheets, QObject* parent)
{
    if (static_cast<std::size_t>(sheets.size()) > maximumSheets) {
        auto* const request = new PDFFileRequest(parent);
        PDFPageWork::finishLater(request, PDFFailure::isOutOfMemory);
        return request;
    }
    PrintRequest order;
    order.width = paper.size.width();
    order.height = paper.size.height();
    order.left = paper.corner.x();
    order.top = paper.corner.y();
    for (const PrintSheet& sheet : sheets) {
        const QRectF& area = sheet.area;
        order.sheets.push_back(
            {sheet.page, area.x(), area.y(), area.width(), area.height(), sheet.scale});
    }
    PDFEngineJob job = jobFor(order);
    job.timeLimit = fileLimit + sheetLimit * static_cast<int>(sheets.size());
    return d->askForFile(std::move(job), parent);
}

PDFTextRequest* PDFDocument::requestText(int first, int last, PDFTextDetail detail, QObject* parent)
{
    auto* const request = new PDFTextRequest(parent);
    const int end = std::min(last, pageCount() - 1);
    if (first < 0 || first > end)
        PDFPageWork::finishLater(request, PDFFailure::isNone);
    else
        (new PDFTextReading(request, d->textEngine(), d->theWork, {first, end}, detail,
             maximumDocumentCharacters(d->theBytes.size())))
            ->start();
    return request;
}

PDFTileRequest* PDFDocument::requestTile(
    int page, double scale, int rotation, const QRect& area, QObject* parent)
{
    auto* const request = new PDFTileRequest(parent);
    PDFEngineJob job = jobFor(
        TileRequest{page, scale, rotation, area.x(), area.y(), area.width(), area.height()});
    job.priority = PDFEngineJob::Priority::isTile;
    job.accept = [request, size = area.size()](const QByteArray& payload) {
        const std::optional<QImage> image = readTileAnswer(payload, size);
        request->theImage = image.value_or(QImage());
        return image.has_value();
    };
    d->theWork->submit(d->thePages, request, std::move(job), page, pageCount());
    return request;
}

PDFLinksRequest* PDFDocument::requestLinks(int page, QObject* parent)
{
    auto* const request = new PDFLinksRequest(parent);
    PDFEngineJob job = jobFor(LinksRequest{page});
    job.onResult(
        [count = pageCount()](std::string_view payload) { return readLinksAnswer(payload, count); },
        [request](QList<PDFLink> links) { request->theLinks = std::move(links); });
    d->theWork->submit(d->thePages, request, std::move(job), page, pageCount());
    return request;
}

PDFOutlineRequest* PDFDocument::requestOutline(QObject* parent)
{
    auto* const request = new PDFOutlineRequest(parent);
    PDFEngineJob job = jobFor(OutlineRequest());
    job.onResult([count = pageCount()](
                     std::string_view payload) { return readOutlineAnswer(payload, count); },
        [request](PDFOutline outline) { request->theOutline = std::move(outline); });
    PDFPageWork::submit(d->thePages, request, std::move(job));
    return request;
}

PDFCheckRequest* PDFDocument::requestCheck(QObject* parent)
{
    auto* const request = new PDFCheckRequest(parent);
    if (state() != State::isOpen) {
        PDFPageWork::finishLater(request, PDFFailure::isDamaged);
        return request;
    }
    auto* const engine = new PDFEngineClient(d->theBytes, 0, request);
    engine->setPassword(d->thePages->password());
    d->theCheckEngine = engine;
    PDFEngineJob job = jobFor(CheckRequest());
    job.onResult([pages = pageCount(), size = d->theBytes.size()](
                     std::string_view payload) { return readCheckAnswer(payload, pages, size); },
        [request](DocumentCheck check) { request->theCheck = std::move(check); });
    connect(request, &PDFRequest::finished, engine, &QObject::deleteLater);
    PDFPageWork::submit(engine, request, std::move(job));
    return request;
}

PDFObjectEngines* PDFDocument::objectEngines()
{
    return state() == State::isOpen ? d->objectEngines() : nullptr;
}

std::unique_ptr<PDFObjectEngines> PDFDocument::objectEnginesFor(const FileBytes& bytes) const
{
    return std::make_unique<PDFObjectEngines>(bytes, d->thePages->password(), nullptr);
}

PDFObjectRequest* PDFDocument::requestObject(int number, QObject* parent)
{
    if (state() == State::isOpen)
        return d->objectEngines()->requestObject(number, parent);
    auto* const request = new PDFObjectRequest(parent);
    PDFPageWork::finishLater(request, PDFFailure::isDamaged);
    return request;
}

PDFSignRequest* PDFDocument::requestSigns(
    const std::vector<std::uint32_t>& numbers, QObject* parent)
{
    if (state() == State::isOpen)
        return d->objectEngines()->requestSigns(numbers, parent);
    auto* const request = new PDFSignRequest(parent);
    PDFPageWork::finishLater(request, PDFFailure::isDamaged);
    return request;
}

PDFStreamRequest* PDFDocument::requestStream(
    int number, PDFStreamForm form, quint64 limit, QObject* parent)
{
    if (state() == State::isOpen)
        return d->objectEngines()->requestStream(number, form, limit, parent);
    auto* const request = new PDFStreamRequest(parent);
    PDFPageWork::finishLater(request, PDFFailure::isDamaged);
    return request;
}

PDFTableRequest* PDFDocument::requestTable(QObject* parent)
{
    if (state() == State::isOpen)
        return d->objectEngines()->requestTable(parent);
    auto* const request = new PDFTableRequest(parent);
    PDFPageWork::finishLater(request, PDFFailure::isDamaged);
    return request;
}

} // namespace tarnwick
