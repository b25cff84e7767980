#include "ComparedFile.h"

#include "Password.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace tarnwick {

ComparedFile::ComparedFile(const Arguments& arguments, std::string name, const FileBytes& bytes)
    : theArguments(arguments)
    , theName(std::move(name))
    , theDocument(bytes)
{
    connect(&theDocument, &PDFDocument::opened, this, &ComparedFile::opened);
    connect(&theDocument, &PDFDocument::refused, this, &ComparedFile::failed);
    connect(&theDocument, &PDFDocument::locked, this, &ComparedFile::unlock);
}

void ComparedFile::unlock(bool wasWrong)
{
    constexpr int maximumAttempts = 3;
    if (theFirstTry) {
        thePassword = std::exchange(theFirstTry, std::nullopt);
    } else {
        if (wasWrong && (theArguments.passwordFile || theAttempts == maximumAttempts)) {
            emit failed(u"This is not its password"_s);
            return;
        }
        thePassword = theArguments.passwordFile
            ? passwordFromFile(*theArguments.passwordFile)
            : passwordFromTerminal("Password for " + theName + ": ");
        ++theAttempts;
    }
    if (thePassword)
        theDocument.unlock(QString::fromStdString(*thePassword));
    else
        emit failed(theArguments.passwordFile ? u"Its password file cannot be read"_s
                                              : u"A password is needed"_s);
}

} // namespace tarnwick
