#pragma once

#include "Arguments.h"
#include "pdf/PDFDocument.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

class OutputFile;

/// The file in shared memory, where the engine reads it; this run then never writes it.
/// @param[out] reason why nothing was read; untouched on success.
std::optional<FileBytes> readShared(const std::string& path, std::string& reason);

/// A command that needs the PDF engine, from the engine's start to the program's exit status:
/// opens the document, asking for its password, and hands it to the command.
class EngineSession : public QObject
{
public:
    /// @param arguments borrowed for this object's life.
    EngineSession(const Arguments& arguments, const FileBytes& bytes);

protected:
    /// The document is open. Ends with end(), later or at once.
    virtual void take() = 0;
    /// There is no document: "refused", or "locked" without its password. Ends likewise; a command
    /// that is nothing without a document fails.
    virtual void doWithout(std::string_view state, const QString& reason);

    const Arguments& arguments() const { return theArguments; }
    PDFDocument& document() { return theDocument; }

    void end(ExitStatus status);
    void fail(const std::string& what, const QString& reason);
    /// What -o names, "-" being standard output.
    std::unique_ptr<OutputFile> output() const;
    std::string shownOutput() const;

private:
    void unlock(bool wasWrong);

    const Arguments& theArguments;
    PDFDocument theDocument;
    int theAttempts = 0;
};

/// Runs a session, mostly an EngineSession, on the file that the arguments name, until it ends.
/// Needs no display. Called at most once.
/// @param makeSession from the file's bytes.
ExitStatus runSession(const Arguments& arguments,
    const std::function<std::unique_ptr<QObject>(const FileBytes& bytes)>& makeSession);

} // namespace tarnwick
