#pragma once

#include "files/FileBytes.h"
#include "pdf/PDFObject.h"

#include <QList>
#include <QObject>

#include <optional>
#include <string>

namespace tarnwick {

class PDFEngineClient;

/// The engines that look into single objects of a document: one for what objects say, and a fresh
/// one for each stream, so that pages never wait for what a stream unpacks to, and nothing of it is
/// left. Reading pages leaves traces in the library's objects: theirs have read none.
class PDFObjectEngines : public QObject
{
    Q_OBJECT

public:
    /// @param password the document's, if it has one.
    PDFObjectEngines(const FileBytes& bytes, std::optional<std::string> password, QObject* parent);

    PDFObjectRequest* requestObject(int number, QObject* parent);
    PDFStreamRequest* requestStream(int number, PDFStreamForm form, quint64 limit, QObject* parent);

    /// Of the engines that run.
    QList<qint64> processIds() const;

private:
    PDFEngineClient* newEngine(std::uint64_t writtenSize);
    /// The engines that may write so much.
    PDFEngineClient* streamEngine(std::uint64_t limit);

    FileBytes theBytes;
    std::optional<std::string> thePassword;
    PDFEngineClient* theObjects = nullptr; ///< started when needed
    PDFEngineClient* theStreams = nullptr; ///< of the usual limit; likewise
    PDFEngineClient* theLargeStreams = nullptr; ///< likewise
};

} // namespace tarnwick
