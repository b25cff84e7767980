#include "pdf/PDFSavedVersions.h"

#include "PDFCrossReferenceAnswers.h"
#include "PDFEngineClient.h"
#include "PDFEngineJob.h"

#include <algorithm>
#include <utility>

namespace tarnwick {

PDFSavedVersions::PDFSavedVersions(const FileBytes& bytes, QObject* parent)
    : QObject(parent)
    , theBytes(bytes)
    , theEngine(new PDFEngineClient(bytes, 0, this))
{
    theEngine->opensNoDocument();
    const auto locate = [bytes](const std::stop_token& stop) {
        return std::make_shared<VersionChain>(bytes.view(), stop);
    };
    theWork.start(locate, [this](std::shared_ptr<VersionChain> chain) {
        theChain = std::move(chain);
        theVersions = theChain->versions();
        theMarkerCount = theChain->markerCount();
        emit located();
        readNext();
    });
}

PDFSavedVersions::~PDFSavedVersions() = default;

/// As many sections as an answer has; of one that is longer than an answer, the rows that follow.
void PDFSavedVersions::readNext()
{
    std::vector<std::uint64_t> offsets = theChain->wanted();
    if (offsets.empty())
        return resolve();
    const int known = theSectionsRead + static_cast<int>(offsets.size());
    if (!thePart.rows.empty()) // the answer is on with the section that it ended in
        std::rotate(offsets.begin(), std::find(offsets.begin(), offsets.end(), thePart.offset),
            offsets.end());
    offsets.resize(std::min<std::size_t>(offsets.size(), maximumSections));
    CrossReferenceRequest request;
    for (const std::uint64_t offset : offsets)
        request.offsets.push_back({offset});
    request.firstRow = static_cast<std::uint32_t>(thePart.rows.size());
    PDFEngineJob job = jobFor(request);
    job.onResult(
        [offsets](std::string_view payload) { return readCrossReferenceAnswer(payload, offsets); },
        [this](PDFCrossReferences answer) { take(std::move(answer)); });
    job.finish = [this, known](PDFFailure failure) {
        if (failure != PDFFailure::isNone)
            return finish(failure);
        emit progressed(theSectionsRead, known);
        readNext();
    };
    theEngine->submit(std::move(job));
}

void PDFSavedVersions::take(PDFCrossReferences answer)
{
    CrossReferenceSection& first = answer.sections.front();
    if (!thePart.rows.empty()) {
        thePart.rows.insert(thePart.rows.end(), first.rows.begin(), first.rows.end());
        first.rows = std::exchange(thePart.rows, {});
        thePart = {};
    }
    if (!answer.isWhole && answer.sections.back().rows.size() < maximumSectionRows) {
        thePart = std::move(answer.sections.back());
        answer.sections.pop_back();
    }
    for (CrossReferenceSection& section : answer.sections) {
        theChain->take(std::move(section));
        ++theSectionsRead;
    }
}

void PDFSavedVersions::resolve()
{
    const auto work = [chain = theChain](const std::stop_token& stop) { chain->resolve(stop); };
    theWork.start(work, [this] { finish(PDFFailure::isNone); });
}

void PDFSavedVersions::finish(PDFFailure failure)
{
    theFailure = failure;
    theVersions = theChain->versions();
    theOwnCount = theChain->ownCount();
    theIsFinished = true;
    emit finished();
}

} // namespace tarnwick
