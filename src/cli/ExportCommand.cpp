#include "ExportCommand.h"

#include "FileInput.h"
#include "MissingReport.h"
#include "Password.h"
#include "export/ExportTarget.h"
#include "files/ErrorText.h"
#include "files/OpenedFiles.h"
#include "files/StraightFile.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>
#include <memory>

#include <unistd.h>

namespace tarnwick {

namespace {

ExportKind kindOf(const std::string& command)
{
    if (command == "flat")
        return ExportKind::isFlatPDF;
    return command == "text" ? ExportKind::isPlainText : ExportKind::isRichText;
}

ExitStatus fail(const std::string& what, const std::string& reason)
{
    std::fprintf(stderr, "tarnwick-inspect: %s: %s\n", what.c_str(), reason.c_str());
    return ExitStatus::isFailed;
}

/// The file in shared memory, where the engine reads it.
std::optional<FileBytes> readShared(const std::string& path, std::string& reason)
{
    const QByteArray name = QByteArray::fromStdString(path);
    // A name that is no text in the locale's encoding does not come back from Qt as it was.
    if (path != "-" && QFile::encodeName(QFile::decodeName(name)) == name) {
        int error = 0;
        const std::optional<FileBytes> bytes = FileBytes::read(QFile::decodeName(name), &error);
        if (!bytes)
            reason = errorText(error);
        if (bytes || error != OutputFile::isNoRegularFile)
            return bytes;
    }
    const std::optional<SharedBytes> bytes = readInput(path, reason);
    if (!bytes)
        return std::nullopt;
    reason = "Not enough memory";
    return FileBytes::copy(bytes->view);
}

std::unique_ptr<OutputFile> outputOf(const std::string& output)
{
    if (output == "-")
        return std::make_unique<StraightFile>(STDOUT_FILENO);
    return outputFileFor(output);
}

std::string shownOutput(const std::string& output)
{
    return output == "-" ? "standard output" : output;
}

bool leadsToInput(const std::string& output)
{
    return output == "-" ? OpenedFiles::contains(STDOUT_FILENO) : OpenedFiles::contains(output);
}

/// One export, from the engine's start to the file.
class EngineExport : public QObject
{
public:
    EngineExport(const Arguments& arguments, const FileBytes& bytes)
        : theArguments(arguments)
        , theDocument(bytes)
    {
        connect(&theDocument, &PDFDocument::opened, this, &EngineExport::take);
        connect(&theDocument, &PDFDocument::locked, this, &EngineExport::unlock);
        connect(&theDocument, &PDFDocument::refused, this,
            [this](const QString& reason) { end(theArguments.file, reason); });
    }

private:
    void end(ExitStatus status) { QCoreApplication::exit(static_cast<int>(status)); }
    void end(const std::string& what, const QString& reason)
    {
        end(fail(what, reason.toStdString()));
    }

    void unlock(bool wasWrong)
    {
        constexpr int maximumAttempts = 3;
        if (wasWrong && (theArguments.passwordFile || theAttempts == maximumAttempts))
            return end(theArguments.file, QStringLiteral("This is not its password"));
        const auto password = theArguments.passwordFile
            ? passwordFromFile(*theArguments.passwordFile)
            : passwordFromTerminal("Password for " + theArguments.file + ": ");
        if (!password && theArguments.passwordFile)
            return end(*theArguments.passwordFile, QStringLiteral("Cannot be read"));
        if (!password)
            return end(theArguments.file, QStringLiteral("A password is needed"));
        ++theAttempts;
        theDocument.unlock(QString::fromStdString(*password));
    }

    void take()
    {
        theText = std::make_unique<PDFDocumentText>(&theDocument);
        ExportSource source;
        source.document = &theDocument;
        source.text = theText.get();
        theContent = ExportContent::make(kindOf(theArguments.command), source);
        if (!theContent)
            return end(theArguments.file, QStringLiteral("The document is not open"));
        connect(theContent.get(), &ExportContent::taken, this, &EngineExport::write);
        connect(theContent.get(), &ExportContent::failed, this,
            [this](const QString& reason) { end(theArguments.file, reason); });
        theContent->take();
    }

    void write()
    {
        const std::unique_ptr<OutputFile> file = outputOf(*theArguments.output);
        const ExportOutcome outcome = writeExport(*theContent, *file);
        if (outcome.isWritten)
            return end(reportMissing(*theContent, theArguments));
        end(shownOutput(*theArguments.output), outcome.reason);
    }

    const Arguments& theArguments;
    PDFDocument theDocument;
    std::unique_ptr<PDFDocumentText> theText; // destroyed before the document that it reads
    std::unique_ptr<ExportContent> theContent;
    int theAttempts = 0;
};

} // namespace

ExitStatus exportCommand(const Arguments& arguments)
{
    int count = 1;
    char name[] = "tarnwick-inspect";
    char* words[] = {name, nullptr};
    const QCoreApplication application(count, words);
    std::string reason;
    const std::optional<FileBytes> bytes = readShared(arguments.file, reason);
    if (!bytes)
        return fail(arguments.file, reason);
    if (arguments.passwordFile)
        neverWrite(*arguments.passwordFile);
    // Said before the work; the file itself is asked again when it is written.
    if (leadsToInput(*arguments.output))
        return fail(shownOutput(*arguments.output), "This is the file that is being exported");
    const EngineExport run(arguments, *bytes);
    return static_cast<ExitStatus>(QCoreApplication::exec());
}

} // namespace tarnwick
