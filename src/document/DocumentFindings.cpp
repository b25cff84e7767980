#include "document/DocumentFindings.h"

#include "pdf/FailureText.h"
#include "pdf/LossText.h"
#include "pdf/PDFDocument.h"
#include "pdf/PDFDocumentText.h"

#include <new>
#include <utility>

namespace tarnwick {

namespace {

/// What was not read, since the user did not want it, is not lost.
std::vector<LostText> lostTexts(const PDFLosses& losses)
{
    std::vector<LostText> lost;
    for (const PDFLosses::Range& range : losses.ranges()) {
        if (range.loss != PDFLoss::isNotRead)
            lost.push_back({range.first, lossSentence(range, LossSubject::isText).toStdString()});
    }
    return lost;
}

} // namespace

DocumentFindings::DocumentFindings(const FileBytes& bytes, PDFDocument* document, QObject* parent)
    : QObject(parent)
    , theBytes(bytes)
    , theDocument(document)
{
}

DocumentFindings::~DocumentFindings()
{
    delete theRequest.data();
}

void DocumentFindings::want(QObject* who, std::shared_ptr<const SourceText> source)
{
    if (!theWanting.contains(who)) {
        theWanting.insert(who);
        connect(who, &QObject::destroyed, this, &DocumentFindings::forget);
    }
    if (!theJoined && !theChecked && !theWork.isRunning())
        begin(std::move(source));
}

void DocumentFindings::forget(QObject* who)
{
    theWanting.remove(who);
    if (theWanting.isEmpty() && !theJoined)
        giveUp();
}

void DocumentFindings::giveUp()
{
    theWork.abandon();
    theChecked.reset();
    delete theRequest.data();
}

void DocumentFindings::setText(PDFDocumentText* text)
{
    theText = text;
    connect(theText, &PDFDocumentText::completed, this, &DocumentFindings::publish);
    connect(theText, &PDFDocumentText::stopped, this, &DocumentFindings::publish);
    giveUp();
    theJoined.reset();
    if (!theWanting.isEmpty())
        begin({});
}

DocumentFindings::Checked DocumentFindings::checked(
    const SharedBytes& bytes, std::shared_ptr<const SourceText> source, const std::stop_token& stop)
{
    try {
        if (!source) {
            auto scanned = std::make_shared<SourceText>(bytes);
            scanned->scan({}, stop);
            source = std::move(scanned);
        }
        Findings facts = findFacts(source->theCatalog(), stop);
        return {std::move(source), std::move(facts)};
    } catch (const std::bad_alloc&) {
        return {};
    }
}

void DocumentFindings::begin(std::shared_ptr<const SourceText> source)
{
    if (theDocument && theDocument->state() == PDFDocument::State::isOpen) {
        theRequest = theDocument->requestCheck(this);
        connect(theRequest, &PDFRequest::finished, this, &DocumentFindings::join);
    }
    const SharedBytes bytes(theBytes.view(), std::make_shared<const FileBytes>(theBytes));
    theWork.start(
        [bytes, source = std::move(source)](const std::stop_token& stop) mutable {
            return checked(bytes, std::move(source), stop);
        },
        [this](Checked found) {
            theChecked = std::move(found);
            join();
        });
}

/// Naming the objects of thousands of findings reads each of them.
void DocumentFindings::join()
{
    if (!theChecked || (theRequest && !theRequest->isFinished()))
        return;
    std::optional<DocumentCheck> check;
    std::string gap = "What the PDF engine knows of it is missing: ";
    if (theRequest && theRequest->succeeded()) {
        check = theRequest->check();
        gap.clear();
    } else {
        gap += theRequest ? failureReason(*theRequest).toStdString() + '.'
                          : "it does not open the file.";
    }
    if (theRequest)
        theRequest->deleteLater();
    theRequest.clear();
    theWork.start(
        [found = std::move(*theChecked), check, gap]() mutable {
            FileFindings findings = found.source
                ? joinFindings(found.source->theCatalog(), found.facts, check ? &*check : nullptr)
                : FileFindings{{}, {}, {"There is not enough memory to look through the source."}};
            if (!gap.empty())
                findings.gaps.push_back(gap);
            found = {}; // the scan goes here, in the thread
            return findings;
        },
        [this](FileFindings findings) {
            theChecked.reset();
            theJoined = std::move(findings);
            publish();
        });
}

void DocumentFindings::publish()
{
    if (!theJoined)
        return;
    theFindings = theJoined;
    if (theText)
        addLostTexts(*theFindings, lostTexts(theText->text().losses));
    emit changed();
}

} // namespace tarnwick
