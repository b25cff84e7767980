#include "DocumentCheckCommand.h"

#include "CheckReport.h"
#include "EngineSession.h"
#include "analysis/SourceText.h"
#include "pdf/FailureText.h"
#include "pdf/LossText.h"
#include "pdf/PDFDocumentText.h"
#include "work/Work.h"

#include <limits>
#include <memory>

namespace tarnwick {

namespace {

std::vector<LostText> lostTexts(const PDFLosses& losses)
{
    std::vector<LostText> lost;
    for (const PDFLosses::Range& range : losses.ranges())
        lost.push_back({range.first, lossSentence(range, LossSubject::isText).toStdString()});
    return lost;
}

/// The source is looked through in a thread while the engine opens the document and reads it.
class DocumentChecking : public EngineSession
{
public:
    DocumentChecking(const Arguments& arguments, const FileBytes& bytes)
        : EngineSession(arguments, bytes)
        , theSource(std::make_shared<SourceText>(
              SharedBytes(bytes.view(), std::make_shared<const FileBytes>(bytes))))
    {
        theWork.start(
            [source = theSource](const std::stop_token& stop) {
                source->scan({}, stop);
                return findFacts(source->theCatalog(), stop);
            },
            [this](Findings findings) {
                theFacts = std::move(findings);
                reportWhenDone();
            });
    }

private:
    void take() override
    {
        theEngine = "open";
        theRequest = document().requestCheck(this);
        connect(theRequest, &PDFRequest::finished, this, &DocumentChecking::reportWhenDone);
        theText = std::make_unique<PDFDocumentText>(&document());
        connect(theText.get(), &PDFDocumentText::completed, this, &DocumentChecking::endText);
        connect(theText.get(), &PDFDocumentText::stopped, this, &DocumentChecking::endText);
        theText->fetch();
    }

    void doWithout(std::string_view state, const QString& reason) override
    {
        theEngine = state;
        theReason = reason.toStdString();
        isTextRead = true;
        reportWhenDone();
    }

    void endText()
    {
        isTextRead = true;
        reportWhenDone();
    }

    void reportWhenDone()
    {
        if (!theFacts || !isTextRead || (theRequest && !theRequest->isFinished()))
            return;
        const bool isChecked = theRequest && theRequest->succeeded();
        FileFindings findings = joinFindings(
            theSource->theCatalog(), *theFacts, isChecked ? &theRequest->check() : nullptr);
        if (theText)
            addLostTexts(findings, lostTexts(theText->text().losses));
        if (!isChecked)
            findings.gaps.push_back("what the PDF engine knows of it is missing: " + reason());
        end(reportFindings(findings, theSource->theCatalog(), theEngine, arguments()));
    }

    std::string reason()
    {
        if (!theRequest)
            return theReason;
        theEngine = "failed";
        return failureReason(*theRequest).toStdString();
    }

    std::shared_ptr<SourceText> theSource;
    std::optional<Findings> theFacts;
    PDFCheckRequest* theRequest = nullptr;
    std::unique_ptr<PDFDocumentText> theText;
    bool isTextRead = false;
    std::string_view theEngine;
    std::string theReason;
    Work theWork;
};

} // namespace

ExitStatus documentCheckCommand(const Arguments& arguments)
{
    return runSession(arguments, [&arguments](const FileBytes& bytes) {
        return std::make_unique<DocumentChecking>(arguments, bytes);
    });
}

} // namespace tarnwick
