#include "pdf/PDFDocument.h"

#include "PDFEngineAnswers.h"
#include "PDFEngineClient.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>

#include <algorithm>
#include <cassert>
#include <map>
#include <utility>

namespace tarnwick {

namespace {

constexpr int flatLimit = 30'000; ///< milliseconds
constexpr int sheetLimit = 20; ///< milliseconds more for each sheet that is printed
/// The first batch is what shows at once; 1000 pages take the engine some 10 ms.
constexpr int firstBatch = 100;
constexpr int laterBatch = maximumMeasuredPages;
/// UTF-16 units of all labels; pages behind have their number. Four million usual labels have half.
constexpr qsizetype mostLabelUnits = 64'000'000;
/// Pages that keep ending the engine when they are measured keep the size that stood in for theirs.
constexpr int maximumLostBatches = 3;
/// A document whose pages keep ending the engine is given up, rather than waited for page by page:
/// when so many are lost, or when they have taken as long as so many that reach their time limit.
constexpr int maximumLostPages = 100;
constexpr int maximumSlowPages = 8;

} // namespace

class PDFDocument::Private
{
public:
    /// What a request was at when it ended an engine.
    using Culprit = std::pair<EngineRequest, int>;

    Private(PDFDocument* document, const FileBytes& bytes)
        : q(document)
        , theBytes(bytes)
        , thePages(new PDFEngineClient(bytes, false, document))
    {
    }
    PDFEngineClient* textEngine();
    PDFEngineClient* flatEngine();
    /// Has a file written into shared memory.
    PDFFlatRequest* askForFile(PDFEngineJob job, QObject* parent);
    void takeFacts(const QByteArray& payload);
    void refuse(const QString& reason);
    void measureFrom(int first);
    void keepLabel(int page, const QString& label);
    void takeMeasures(int first, int count, const QList<PDFPageMeasure>& measures);

    /// Hands a job to an engine on behalf of a request, which hears of its end.
    void submit(PDFEngineClient* client, PDFRequest* request, PDFEngineJob job);
    /// Likewise for work on one page, unless that has ended an engine before.
    void submitForPage(PDFEngineClient* client, PDFRequest* request, PDFEngineJob job, int page);
    void finishLater(PDFRequest* request, PDFFailure failure);
    void remember(EngineRequest kind, int page, PDFFailure failure);

    struct TextRun
    {
        QPointer<PDFTextRequest> request;
        PDFTextDetail detail;
        int first;
        int last;
        int lostPages = 0;
        qint64 lostTime = 0; ///< milliseconds that the lost pages have taken
        QElapsedTimer age = {}; ///< of the present page's request
        std::uint64_t characters = 0;
    };
    void askText(const std::shared_ptr<TextRun>& run, int page);
    void deliverText(
        const std::shared_ptr<TextRun>& run, int page, const PDFPageText& text, PDFFailure failure);

    PDFDocument* q;
    FileBytes theBytes;
    PDFEngineClient* thePages;
    PDFEngineClient* theTextEngine = nullptr; ///< started when needed
    PDFEngineClient* theFlatEngine = nullptr; ///< likewise
    State theState = State::isOpening;
    PDFFacts theFacts;
    QString theRefusal;
    QSizeF theFirstSize;
    QList<QSizeF> theSizes; ///< of the pages that have been measured
    QList<QString> theLabels; ///< null for pages without; ends behind the last page with one
    qsizetype theLabelUnits = 0; ///< of all labels
    int theLostBatches = 0;
    int thePageTimeLimit = pdfPageTimeLimit;
    std::map<Culprit, PDFFailure> theCulprits;
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
    d->thePages->open();
}

PDFDocument::~PDFDocument() = default;

PDFDocument::State PDFDocument::state() const
{
    return d->theState;
}

void PDFDocument::unlock(const QString& password)
{
    if (d->theState != State::isLocked)
        return;
    d->theState = State::isOpening;
    d->thePages->unlock(password);
}

const PDFFacts& PDFDocument::facts() const
{
    return d->theFacts;
}

QSizeF PDFDocument::pageSize(int page) const
{
    assert(page >= 0 && page < pageCount());
    return page < d->theSizes.size() ? d->theSizes.at(page) : d->theFirstSize;
}

QString PDFDocument::pageLabel(int page) const
{
    assert(page >= 0 && page < pageCount());
    const QStringView label = ownPageLabel(page);
    return label.isNull() ? QString::number(page + 1) : label.toString();
}

QStringView PDFDocument::ownPageLabel(int page) const
{
    return page < d->theLabels.size() ? QStringView(d->theLabels.at(page)) : QStringView();
}

QString PDFDocument::refusalReason() const
{
    return d->theRefusal;
}

void PDFDocument::setPageTimeLimit(int milliseconds)
{
    d->thePageTimeLimit = milliseconds;
}

QList<qint64> PDFDocument::engineProcessIds() const
{
    QList<qint64> ids;
    for (const PDFEngineClient* client : {d->thePages, d->theTextEngine, d->theFlatEngine}) {
        if (client && client->engineProcessId() != 0)
            ids.append(client->engineProcessId());
    }
    return ids;
}

PDFEngineClient* PDFDocument::Private::textEngine()
{
    if (!theTextEngine) {
        theTextEngine = new PDFEngineClient(theBytes, false, q);
        theTextEngine->setPassword(thePages->password());
    }
    return theTextEngine;
}

/// Reading pages leaves traces in the library's objects, such as appearances made for annotations:
/// the flattened document comes from an engine that has done nothing else.
PDFEngineClient* PDFDocument::Private::flatEngine()
{
    if (!theFlatEngine) {
        theFlatEngine = new PDFEngineClient(theBytes, true, q);
        theFlatEngine->setPassword(thePages->password());
    }
    return theFlatEngine;
}

void PDFDocument::Private::takeFacts(const QByteArray& payload)
{
    const std::optional<PDFOpenedAnswer> answer = readOpenedAnswer(viewOf(payload));
    if (!answer)
        return refuse(tr("The PDF engine stopped while it was reading the file."));
    theFacts = answer->facts;
    theFirstSize = answer->firstPageSize;
    theState = State::isOpen;
    measureFrom(0);
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

void PDFDocument::Private::measureFrom(int first)
{
    const int count = std::min(first == 0 ? firstBatch : laterBatch, theFacts.pageCount - first);
    if (count <= 0)
        return;
    const auto measures = std::make_shared<QList<PDFPageMeasure>>();
    PDFEngineJob job = jobFor(MeasureRequest{first, count});
    job.priority = PDFEngineJob::Priority::isBackground;
    job.onResult([count](std::string_view payload) { return readMeasureAnswer(payload, count); },
        [measures](QList<PDFPageMeasure> answer) { *measures = std::move(answer); });
    job.finish
        = [this, measures, first, count](PDFFailure) { takeMeasures(first, count, *measures); };
    thePages->submit(std::move(job));
}

void PDFDocument::Private::takeMeasures(int first, int count, const QList<PDFPageMeasure>& measures)
{
    if (measures.isEmpty() && ++theLostBatches <= maximumLostBatches)
        return measureFrom(first);
    for (int index = 0; index < measures.size(); ++index) {
        theSizes.append(measures.at(index).size);
        if (measures.at(index).label)
            keepLabel(first + index, *measures.at(index).label);
    }
    if (measures.isEmpty())
        return;
    measureFrom(first + count);
    emit q->pagesMeasured(first, count);
}

void PDFDocument::Private::keepLabel(int page, const QString& label)
{
    theLabelUnits += label.size();
    if (theLabelUnits > mostLabelUnits)
        return;
    theLabels.resize(page + 1);
    theLabels.last() = label.isNull() ? QStringLiteral("") : label;
}

void PDFDocument::Private::finishLater(PDFRequest* request, PDFFailure failure)
{
    QTimer::singleShot(0, request, [request, failure] { request->finish(failure); });
}

void PDFDocument::Private::submit(PDFEngineClient* client, PDFRequest* request, PDFEngineJob job)
{
    const QPointer<PDFRequest> waiting(request);
    if (!job.finish) {
        job.finish = [waiting](PDFFailure failure) {
            if (waiting)
                waiting->finish(failure);
        };
    }
    const PDFEngineClient::Number number = client->submit(std::move(job));
    request->theGiveUp = [client = QPointer<PDFEngineClient>(client), number] {
        if (client)
            client->giveUp(number);
    };
}

void PDFDocument::Private::remember(EngineRequest kind, int page, PDFFailure failure)
{
    if (failure == PDFFailure::isEngineDead || failure == PDFFailure::isTimedOut)
        theCulprits.emplace(Culprit(kind, page), failure);
}

void PDFDocument::Private::submitForPage(
    PDFEngineClient* client, PDFRequest* request, PDFEngineJob job, int page)
{
    const EngineRequest kind = job.kind;
    if (page < 0 || page >= theFacts.pageCount)
        return finishLater(request, PDFFailure::isDamaged);
    if (const auto culprit = theCulprits.find({kind, page}); culprit != theCulprits.end())
        return finishLater(request, culprit->second);
    job.timeLimit = thePageTimeLimit;
    job.finish = [this, waiting = QPointer<PDFRequest>(request), kind, page](PDFFailure failure) {
        remember(kind, page, failure);
        if (waiting)
            waiting->finish(failure);
    };
    submit(client, request, std::move(job));
}

PDFFlatRequest* PDFDocument::Private::askForFile(PDFEngineJob job, QObject* parent)
{
    auto* const request = new PDFFlatRequest(parent);
    PDFEngineClient* const client = flatEngine();
    job.accept = [request, client, count = theFacts.pageCount](const QByteArray& payload) {
        const std::optional<PDFWrittenAnswer> answer = readWrittenAnswer(viewOf(payload), count);
        const std::optional<FileBytes> bytes
            = answer ? client->takeFlat(answer->size) : std::nullopt;
        if (bytes)
            request->theFile = {*bytes, answer->losses, answer->lostObjects};
        return bytes.has_value();
    };
    job.progress = [request](int done, int total) { emit request->progressed(done, total); };
    submit(client, request, std::move(job));
    return request;
}

PDFFlatRequest* PDFDocument::requestFlat(QObject* parent)
{
    PDFEngineJob job = jobFor(FlatRequest());
    job.timeLimit = flatLimit;
    return d->askForFile(std::move(job), parent);
}

PDFFlatRequest* PDFDocument::requestPrint(
    const PrintPaper& paper, const QList<PrintSheet>& sheets, QObject* parent)
{
    if (static_cast<std::size_t>(sheets.size()) > maximumSheets) {
        auto* const request = new PDFFlatRequest(parent);
        d->finishLater(request, PDFFailure::isOutOfMemory);
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
    job.timeLimit = flatLimit + sheetLimit * static_cast<int>(sheets.size());
    return d->askForFile(std::move(job), parent);
}

PDFTextRequest* PDFDocument::requestText(int first, int last, PDFTextDetail detail, QObject* parent)
{
    auto* const request = new PDFTextRequest(parent);
    const int end = std::min(last, pageCount() - 1);
    if (first < 0 || first > end)
        d->finishLater(request, PDFFailure::isNone);
    else
        d->askText(
            std::make_shared<Private::TextRun>(Private::TextRun{request, detail, first, end}),
            first);
    return request;
}

void PDFDocument::Private::askText(const std::shared_ptr<TextRun>& run, int page)
{
    const auto culprit = theCulprits.find({EngineRequest::isText, page});
    if (culprit != theCulprits.end()) {
        const PDFPageText lost = PDFPageText::lost(culprit->second);
        QTimer::singleShot(0, run->request,
            [this, run, page, lost] { deliverText(run, page, lost, PDFFailure::isNone); });
        return;
    }
    run->age.start();
    const auto text = std::make_shared<PDFPageText>();
    PDFEngineJob job = jobFor(TextRequest{page, run->detail});
    job.timeLimit = thePageTimeLimit;
    job.onResult([detail = run->detail](
                     std::string_view payload) { return readTextAnswer(payload, detail); },
        [text](PDFPageText answer) { *text = std::move(answer); });
    job.finish = [this, run, page, text](PDFFailure failure) {
        remember(EngineRequest::isText, page, failure);
        if (failure != PDFFailure::isNone)
            *text = PDFPageText::lost(failure);
        deliverText(run, page, *text, failure);
    };
    submit(textEngine(), run->request, std::move(job));
}

/// A page that has no text to give, whatever the reason, does not keep the others from theirs.
void PDFDocument::Private::deliverText(
    const std::shared_ptr<TextRun>& run, int page, const PDFPageText& text, PDFFailure failure)
{
    const QPointer<PDFTextRequest>& request = run->request;
    if (!request || request->isFinished())
        return;
    if (failure != PDFFailure::isNone && failure != PDFFailure::isDamaged) {
        run->lostPages += 1;
        run->lostTime += run->age.elapsed();
        if (textEngine()->isBroken() || run->lostPages > maximumLostPages
            || run->lostTime > qint64{maximumSlowPages} * pdfPageTimeLimit)
            return request->finish(failure);
    }
    run->characters += static_cast<std::uint64_t>(text.string.size());
    if (run->characters > maximumDocumentCharacters(theBytes.size()))
        return request->finish(PDFFailure::isOutOfMemory);
    // The next page is read while this one is being looked at.
    if (page < run->last)
        askText(run, page + 1);
    emit request->pageReady(page, text);
    if (request && !request->isFinished())
        emit request->progressed(page - run->first + 1, run->last - run->first + 1);
    if (request && page == run->last)
        request->finish(PDFFailure::isNone);
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
    d->submitForPage(d->thePages, request, std::move(job), page);
    return request;
}

PDFLinksRequest* PDFDocument::requestLinks(int page, QObject* parent)
{
    auto* const request = new PDFLinksRequest(parent);
    PDFEngineJob job = jobFor(LinksRequest{page});
    job.onResult(
        [count = pageCount()](std::string_view payload) { return readLinksAnswer(payload, count); },
        [request](QList<PDFLink> links) { request->theLinks = std::move(links); });
    d->submitForPage(d->thePages, request, std::move(job), page);
    return request;
}

PDFOutlineRequest* PDFDocument::requestOutline(QObject* parent)
{
    auto* const request = new PDFOutlineRequest(parent);
    PDFEngineJob job = jobFor(OutlineRequest());
    job.onResult([count = pageCount()](
                     std::string_view payload) { return readOutlineAnswer(payload, count); },
        [request](PDFOutline outline) { request->theOutline = std::move(outline); });
    d->submit(d->thePages, request, std::move(job));
    return request;
}

} // namespace tarnwick
