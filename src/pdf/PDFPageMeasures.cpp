#include "PDFPageMeasures.h"

#include "PDFEngineClient.h"

#include <algorithm>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

/// The first batch is what shows at once; 1000 pages take the engine some 10 ms.
constexpr int firstBatch = 100;
constexpr int laterBatch = maximumMeasuredPages;
/// Pages that keep ending the engine when they are measured keep the size that stood in for theirs.
constexpr int maximumLostBatches = 3;

} // namespace

PDFPageMeasures::PDFPageMeasures(PDFEngineClient* client, QObject* parent)
    : QObject(parent)
    , theClient(client)
{
}

void PDFPageMeasures::start(int pageCount, const QSizeF& firstSize)
{
    thePageCount = pageCount;
    theFirstSize = firstSize;
    measureFrom(0);
}

QSizeF PDFPageMeasures::size(int page) const
{
    return page < theSizes.size() ? theSizes.at(page) : theFirstSize;
}

QStringView PDFPageMeasures::label(int page) const
{
    return page < theLabels.size() ? QStringView(theLabels.at(page)) : QStringView();
}

void PDFPageMeasures::measureFrom(int first)
{
    const int count = std::min(first == 0 ? firstBatch : laterBatch, thePageCount - first);
    if (count <= 0)
        return;
    const auto measures = std::make_shared<QList<PDFPageMeasure>>();
    PDFEngineJob job = jobFor(MeasureRequest{first, count});
    job.priority = PDFEngineJob::Priority::isBackground;
    job.onResult([count](std::string_view payload) { return readMeasureAnswer(payload, count); },
        [measures](QList<PDFPageMeasure> answer) { *measures = std::move(answer); });
    job.finish = [this, measures, first, count](PDFFailure) { take(first, count, *measures); };
    theClient->submit(std::move(job));
}

void PDFPageMeasures::take(int first, int count, const QList<PDFPageMeasure>& measures)
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
    emit measured(first, count);
}

void PDFPageMeasures::keepLabel(int page, const QString& label)
{
    theLabelUnits += label.size();
    if (theLabelUnits > maximumLabelUnits)
        return;
    theLabels.resize(page + 1);
    theLabels.last() = label.isNull() ? u""_s : label;
}

} // namespace tarnwick
