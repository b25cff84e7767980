#pragma once

#include "Arguments.h"
#include "pdf/PDFDocument.h"

#include <QObject>

#include <optional>
#include <string>

namespace tarnwick {

/// One of two documents that are compared: opened with the password that the arguments name, or
/// that the user is asked for once for both versions of a file.
class ComparedFile : public QObject
{
    Q_OBJECT

public:
    /// @param arguments borrowed for this object's life. @param name for sentences.
    ComparedFile(const Arguments& arguments, std::string name, const FileBytes& bytes);

    PDFDocument& document() { return theDocument; }
    bool isOpen() const { return theDocument.state() == PDFDocument::State::isOpen; }
    const std::string& name() const { return theName; }
    /// The password that has opened it, if it has one.
    const std::optional<std::string>& password() const { return thePassword; }
    /// One to try before anybody is asked.
    void tryFirst(std::optional<std::string> password) { theFirstTry = std::move(password); }

signals:
    void opened();
    void failed(const QString& reason);

private:
    void unlock(bool wasWrong);

    const Arguments& theArguments;
    std::string theName;
    PDFDocument theDocument;
    std::optional<std::string> thePassword;
    std::optional<std::string> theFirstTry;
    int theAttempts = 0;
};

} // namespace tarnwick
