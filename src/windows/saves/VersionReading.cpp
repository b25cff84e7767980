#include "VersionReading.h"

#include "SignatureMarks.h"
#include "VersionContents.h"
#include "document/Document.h"
#include "pdf/FailureText.h"
#include "pdf/PDFSavedVersions.h"
#include "versions/VersionHashes.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

/// Whether a prefix is worth opening: one that ends within an object is a fragment.
bool isFragment(const SavedVersion& version)
{
    return version.has(VersionFlag::isInStream) || version.has(VersionFlag::isInObject)
        || version.has(VersionFlag::isLinearizedFirstPart)
        || version.has(VersionFlag::isWithoutCrossReference);
}

} // namespace

VersionReading::VersionReading(Document* document, QObject* parent)
    : QObject(parent)
    , theBytes(document->theData())
    , theVersions(document->savedVersions())
    , theContents(new VersionContents(theBytes, document->password(), this))
{
    connect(
        theContents, &VersionContents::read, this, [this](int row, const VersionContent& content) {
            theRows[static_cast<std::size_t>(row)].content = content;
            emit rowChanged(row);
            emit progressed();
        });
    connect(theContents, &VersionContents::finished, this, &VersionReading::finishStep);
    connect(theVersions, &PDFSavedVersions::located, this, &VersionReading::takePlaces);
    connect(theVersions, &PDFSavedVersions::finished, this, &VersionReading::takeChain);
    connect(theVersions, &PDFSavedVersions::progressed, this, &VersionReading::progressed);
    const auto catchUp = [this] {
        if (!theVersions->versions().empty())
            takePlaces();
        if (theVersions->isFinished())
            takeChain();
    };
    QMetaObject::invokeMethod(this, catchUp, Qt::QueuedConnection);
}

void VersionReading::takePlaces()
{
    if (std::exchange(arePlacesKnown, true))
        return;
    theMarkerCount = theVersions->markerCount();
    for (const SavedVersion& version : theVersions->versions())
        theRows.push_back({version, {}, {}, {}});
    emit rowsKnown();
    hash();
}

void VersionReading::takeChain()
{
    takePlaces();
    if (std::exchange(isChainKnown, true))
        return;
    if (theVersions->failure() == PDFFailure::isNone)
        theOwnCount = theVersions->ownCount();
    else
        theFailure = failureReason(theVersions->failure(), pdfPageTimeLimit);
    for (std::size_t index = 0; index < theRows.size(); ++index)
        theRows[index].version = theVersions->versions()[index];
    emit chainKnown();
    if (!theIsStopped)
        openVersions();
}

void VersionReading::hash()
{
    if (theIsStopped)
        return;
    std::vector<std::size_t> ends;
    for (const VersionRow& row : theRows)
        ends.push_back(row.version.end);
    const auto task = [bytes = theBytes, ends, this](
                          const std::stop_token& stop, const Work::Report& report) mutable {
        const std::vector<std::size_t> signatures = countSignatures(bytes.view(), ends, stop);
        report.deliver([this, signatures] {
            for (std::size_t index = 0; index < signatures.size(); ++index)
                theRows[index].signatures = signatures[index];
            emit chainKnown();
        });
        ends.push_back(bytes.size());
        const auto take = [this, &report](std::size_t index, const Sha256::Digest& digest) {
            report.deliver([this, index, digest] { takeHash(index, digest); });
        };
        hashVersions(bytes.view(), ends, take, stop, report);
    };
    theWork.start(
        task, [this] { finishStep(); },
        [this](quint64 done, quint64 total) {
            theHashing = tr("Hashing… %1 %").arg(total > 0 ? 100 * done / total : 0);
            emit progressed();
        });
}

void VersionReading::takeHash(std::size_t index, const Sha256::Digest& digest)
{
    if (index == theRows.size()) {
        theFileHash = digest;
        return;
    }
    theRows[index].hash = digest;
    emit rowChanged(static_cast<int>(index));
}

void VersionReading::openVersions()
{
    std::vector<VersionContents::Order> orders;
    for (std::size_t index = theRows.size(); index > 0; --index) {
        const SavedVersion& version = theRows[index - 1].version;
        if (!isFragment(version))
            orders.push_back({static_cast<int>(index - 1), version.end, version.info});
    }
    theContents->start(std::move(orders));
    emit progressed();
}

void VersionReading::stop()
{
    if (!isRunning())
        return;
    theIsStopped = true;
    theWork.abandon();
    theContents->stop();
    emit progressed();
    emit finished();
}

bool VersionReading::isRunning() const
{
    return !theIsStopped && (theWork.isRunning() || theContents->isRunning() || !isChainKnown);
}

void VersionReading::finishStep()
{
    emit progressed();
    if (!isRunning() && !theIsStopped)
        emit finished();
}

QString VersionReading::progress() const
{
    if (!isRunning())
        return {};
    if (theRows.empty() && !isChainKnown)
        return tr("Looking for versions…");
    QStringList parts;
    if (!isChainKnown)
        parts << tr("Reading cross-references…");
    if (theContents->isRunning())
        parts << tr("Opening versions… %L1 of %L2")
                     .arg(theContents->done())
                     .arg(theContents->total());
    if (theWork.isRunning() && !theHashing.isEmpty())
        parts << theHashing;
    return parts.join(u"  "_s);
}

void VersionReading::noteProblem(std::size_t number, const QString& problem)
{
    if (number == 0 || number > theRows.size())
        return;
    VersionContent& content = theRows[number - 1].content.emplace();
    content.problem = problem;
    emit rowChanged(static_cast<int>(number - 1));
}

} // namespace tarnwick
