#include "SavesCommand.h"

#include "CommandOutput.h"
#include "EngineSession.h"
#include "VersionsCommand.h"
#include "VersionsJson.h"
#include "pdf/FailureText.h"
#include "pdf/PDFSavedVersions.h"

#include <QCoreApplication>

#include <memory>

namespace tarnwick {

namespace {

/// From the file's bytes to what is printed of its saves.
class SavesSession : public QObject
{
public:
    SavesSession(const Arguments& arguments, const FileBytes& bytes)
        : theArguments(arguments)
        , theBytes(bytes)
        , theSaves(bytes)
    {
        connect(&theSaves, &PDFSavedVersions::finished, this,
            [this] { QCoreApplication::exit(static_cast<int>(print())); });
    }

private:
    ExitStatus print()
    {
        ExitStatus status = ExitStatus::isDone;
        if (theSaves.failure() != PDFFailure::isNone)
            status = complain(ExitStatus::isIncomplete, theArguments.file,
                "what each save changed is not known: "
                    + failureReason(theSaves.failure(), pdfPageTimeLimit).toStdString());
        return printSaves(theArguments, theBytes.view(), theSaves.chain(), status);
    }

    const Arguments& theArguments;
    FileBytes theBytes;
    PDFSavedVersions theSaves;
};

} // namespace

ExitStatus savesCommand(const Arguments& arguments)
{
    return runSession(arguments, [&arguments](const FileBytes& bytes) {
        return std::make_unique<SavesSession>(arguments, bytes);
    });
}

} // namespace tarnwick
