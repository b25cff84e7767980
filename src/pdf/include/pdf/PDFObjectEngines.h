#pragma once

#include "files/FileBytes.h"
#include "pdf/PDFObject.h"
#include "pdf/PDFObjectSigns.h"
#include "pdf/PDFTable.h"

#include <QList>
#include <QObject>

#include <optional>
#include <string>

namespace tarnwick {

class PDFEngineClient;

/// The engines that look into single objects of a document: one for what objects say, and a fresh
/// one for each stream, so that pages never wait for what a stream unpacks to, and nothing of it is
/// left. Reading pages leaves traces in the library's objects: theirs have read none. They may read
/// other bytes than those of a document: one of its earlier versions, the flattened document.
/// Destroying this cancels what was asked for.
class PDFObjectEngines : public QObject
{
    Q_OBJECT

public:
    /// @param password the document's, if it has one.
    PDFObjectEngines(const FileBytes& bytes, std::optional<std::string> password, QObject* parent);

    /// What an object says, and where it stands in the file. Fails after 20 seconds.
    /// @param number any: that there is no such object is an answer.
    PDFObjectRequest* requestObject(int number, QObject* parent);
    /// PDFDocument::requestSigns().
    PDFSignRequest* requestSigns(const std::vector<std::uint32_t>& numbers, QObject* parent);
    /// What the stream of an object holds, from an engine of its own. Fails after
    /// streamTimeLimit(), or when its engine ends, if there is nothing to be had of it.
    PDFStreamRequest* requestStream(int number, PDFStreamForm form, quint64 limit, QObject* parent);
    /// What an object of a known kind is like. Fails after 20 seconds.
    PDFFactsRequest* requestFacts(int number, QObject* parent);
    /// An image by itself, from an engine of its own. Fails after 20 seconds.
    PDFPictureRequest* requestPicture(int number, QObject* parent);
    /// The file's table of all objects (PDFDocument::requestTable()).
    PDFTableRequest* requestTable(QObject* parent);

    /// Of the engines that run.
    QList<qint64> processIds() const;

private:
    PDFEngineClient* newEngine(std::uint64_t writtenSize);
    PDFEngineClient* objectEngine();
    /// The engines that may write so much.
    PDFEngineClient* streamEngine(std::uint64_t limit);

    FileBytes theBytes;
    std::optional<std::string> thePassword;
    PDFEngineClient* theObjects = nullptr; ///< started when needed
    PDFEngineClient* theStreams = nullptr; ///< of the usual limit; likewise
    PDFEngineClient* theLargeStreams = nullptr; ///< likewise
    PDFEngineClient* thePictures = nullptr; ///< likewise
};

} // namespace tarnwick
