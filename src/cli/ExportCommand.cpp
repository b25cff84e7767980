#include "ExportCommand.h"

#include "EngineSession.h"
#include "MissingReport.h"
#include "export/ExportTarget.h"

#include <memory>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

ExportKind kindOf(const std::string& command)
{
    if (command == "flat")
        return ExportKind::isFlatPDF;
    return command == "text" ? ExportKind::isPlainText : ExportKind::isRichText;
}

/// One export, from the open document to the file.
class EngineExport : public EngineSession
{
public:
    using EngineSession::EngineSession;

private:
    void take() override
    {
        theText = std::make_unique<PDFDocumentText>(&document());
        ExportSource source;
        source.document = &document();
        source.text = theText.get();
        theContent = ExportContent::make(kindOf(arguments().command), source);
        if (!theContent)
            return fail(arguments().file, u"The document is not open"_s);
        connect(theContent.get(), &ExportContent::taken, this, &EngineExport::write);
        connect(theContent.get(), &ExportContent::failed, this,
            [this](const QString& reason) { fail(arguments().file, reason); });
        theContent->take();
    }

    void write()
    {
        const std::unique_ptr<OutputFile> file = output();
        const ExportOutcome outcome = writeExport(*theContent, *file);
        if (outcome.isWritten)
            return end(reportMissing(*theContent, arguments()));
        fail(shownOutput(), outcome.reason);
    }

    std::unique_ptr<PDFDocumentText> theText; // destroyed before the document that it reads
    std::unique_ptr<ExportContent> theContent;
};

} // namespace

ExitStatus exportCommand(const Arguments& arguments)
{
    return runSession(arguments, [&arguments](const FileBytes& bytes) {
        return std::make_unique<EngineExport>(arguments, bytes);
    });
}

} // namespace tarnwick
