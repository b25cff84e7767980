#include "pdf/PDFPageDigests.h"

#include "PDFDigestAnswers.h"
#include "PDFEngineClient.h"
#include "PDFEngineJob.h"

#include <algorithm>
#include <utility>

namespace tarnwick {

namespace {

constexpr int digestedAtOnce = 50; ///< pages: those of large pictures may take as long as a page may
/// Pages that keep ending the engine have those behind them drawn as well.
constexpr int mostLostBatches = 5;

} // namespace

PDFPageDigests::PDFPageDigests(
    const FileBytes& bytes, const QString& password, int pageCount, Form form, QObject* parent)
    : QObject(parent)
    , theEngine(new PDFEngineClient(bytes, 0, this))
    , thePageCount(pageCount)
    , theForm(form)
{
    if (!password.isNull())
        theEngine->setPassword(password.toStdString());
    QMetaObject::invokeMethod(this, &PDFPageDigests::readNext, Qt::QueuedConnection);
}

void PDFPageDigests::readNext()
{
    const int first = static_cast<int>(theDigests.size());
    const int count = std::min(digestedAtOnce, thePageCount - first);
    if (count == 0) {
        emit finished();
        return;
    }
    const bool isOfPlace = theForm == Form::isOfPlace;
    PDFEngineJob job = jobFor(DigestRequest{
        first, count, isOfPlace ? EngineDigestForm::isOfPlace : EngineDigestForm::isOfContent});
    job.onResult([count](std::string_view payload) { return readDigestAnswer(payload, count); },
        [this](const QList<PDFPageDigest>& digests) { theDigests += digests; });
    job.finish = [this, count](PDFFailure failure) { take(count, failure); };
    theEngine->submit(std::move(job));
}

void PDFPageDigests::take(int count, PDFFailure failure)
{
    if (failure != PDFFailure::isNone) {
        const bool isHopeless = ++theLostBatches > mostLostBatches;
        theDigests.resize(isHopeless ? thePageCount : theDigests.size() + count);
    }
    emit progressed(static_cast<int>(theDigests.size()), thePageCount);
    readNext();
}

} // namespace tarnwick
