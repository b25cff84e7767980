#include "EngineSession.h"

#include "Complaint.h"
#include "FileInput.h"
#include "Password.h"
#include "files/ErrorText.h"
#include "files/OpenedFiles.h"
#include "files/StraightFile.h"

#include <QCoreApplication>
#include <QFile>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

bool leadsToInput(const std::string& output)
{
    return output == "-" ? OpenedFiles::contains(STDOUT_FILENO) : OpenedFiles::contains(output);
}

std::string shown(const std::string& output)
{
    return output == "-" ? "standard output" : output;
}

} // namespace

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

EngineSession::EngineSession(const Arguments& arguments, const FileBytes& bytes)
    : theArguments(arguments)
    , theDocument(bytes)
{
    connect(&theDocument, &PDFDocument::opened, this, [this] { take(); });
    connect(&theDocument, &PDFDocument::locked, this, &EngineSession::unlock);
    connect(&theDocument, &PDFDocument::refused, this,
        [this](const QString& reason) { doWithout("refused", reason); });
}

void EngineSession::doWithout(std::string_view, const QString& reason)
{
    fail(theArguments.file, reason);
}

void EngineSession::end(ExitStatus status)
{
    QCoreApplication::exit(static_cast<int>(status));
}

void EngineSession::fail(const std::string& what, const QString& reason)
{
    end(complain(ExitStatus::isFailed, what, reason.toStdString()));
}

std::unique_ptr<OutputFile> EngineSession::output() const
{
    const std::string name = theArguments.output.value_or("-");
    if (name == "-")
        return std::make_unique<StraightFile>(STDOUT_FILENO);
    return outputFileFor(name);
}

std::string EngineSession::shownOutput() const
{
    return shown(theArguments.output.value_or("-"));
}

void EngineSession::unlock(bool wasWrong)
{
    constexpr int maximumAttempts = 3;
    if (wasWrong && (theArguments.passwordFile || theAttempts == maximumAttempts))
        return doWithout("locked", u"This is not its password"_s);
    const auto password = theArguments.passwordFile
        ? passwordFromFile(*theArguments.passwordFile)
        : passwordFromTerminal("Password for " + theArguments.file + ": ");
    if (!password && theArguments.passwordFile)
        return fail(*theArguments.passwordFile, u"Cannot be read"_s);
    if (!password)
        return doWithout("locked", u"A password is needed"_s);
    ++theAttempts;
    theDocument.unlock(QString::fromStdString(*password));
}

ExitStatus runSession(const Arguments& arguments,
    const std::function<std::unique_ptr<QObject>(const FileBytes& bytes)>& makeSession)
{
    int count = 1;
    char name[] = "tarnwick-inspect";
    char* words[] = {name, nullptr};
    const QCoreApplication application(count, words);
    std::string reason;
    const std::optional<FileBytes> bytes = readShared(arguments.file, reason);
    if (!bytes)
        return complain(ExitStatus::isFailed, arguments.file, reason);
    if (arguments.passwordFile)
        neverWrite(*arguments.passwordFile);
    // Said before the work; the file itself is asked again when it is written.
    const std::string output = arguments.output.value_or("-");
    if (leadsToInput(output))
        return complain(ExitStatus::isFailed, shown(output), errorText(OutputFile::isOpenedFile));
    const std::unique_ptr<QObject> session = makeSession(*bytes);
    return static_cast<ExitStatus>(QCoreApplication::exec());
}

} // namespace tarnwick
