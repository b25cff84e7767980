#pragma once

#include "files/FileBytes.h"
#include "pdf/PDFRequest.h"
#include "protocol/EngineLimits.h"
#include "protocol/ObjectMessages.h"

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QString>

#include <optional>

namespace tarnwick {

/// What a number of an object stands for (ISO 32000-2, 7.3.10 and 7.5.4).
enum class PDFObjectState
{
    isMissing, ///< the file's table has no entry for it
    isFree, ///< its entry is for an object that was deleted, or never was
    isUnreadable, ///< its entry leads to what is no object
    isPresent,
};

/// A filter of a stream.
struct PDFStreamFilter
{
    QString name; ///< with its slash
    QString parameters; ///< on one line; empty without any
};

/// Where an object stands in the file.
struct PDFObjectPlace
{
    quint64 offset = 0; ///< in the file; 0 for one in an object stream
    int container = 0; ///< number of that object stream; 0 outside of any
    int index = 0; ///< the place in it, from 0
};

/// An object as the file's cross-reference leads to it: of one that was replaced, the latest.
struct PDFObject
{
    int number = 0;
    int generation = 0;
    PDFObjectState state = PDFObjectState::isMissing;
    PDFObjectPlace place;
    QString text; ///< an entry a line, ASCII; empty unless isPresent
    bool isCut = false; ///< text is only the beginning
    bool isStream = false;
    QList<PDFStreamFilter> filters; ///< in the order in which they are undone; 64 at most
    quint32 filterCount = 0; ///< of all
    std::optional<qint64> statedLength; ///< what Length says of the stored stream
};

/// An object that was asked for (requestObject()).
class PDFObjectRequest : public PDFRequest
{
    Q_OBJECT
public:
    const PDFObject& object() const { return theObject; }

private:
    friend class PDFDocument;
    friend class PDFObjectEngines;
    using PDFRequest::PDFRequest;
    PDFObject theObject;
};

enum class PDFStreamForm
{
    isRaw, ///< as stored, but without the file's encryption
    isDecoded, ///< with all filters undone
};

/// How far the reading of a stream came.
enum class PDFStreamEnd
{
    isWhole,
    isStopped, ///< at the limit: there is more
    isDamaged, ///< what follows makes no sense
    isLost, ///< the engine ended over it: PDFStream::failure says why
    isUnknown, ///< a filter is none that can be undone
    isNone, ///< the object has no stream
};

/// What a stream holds, as far as it could be read.
struct PDFStream
{
    FileBytes bytes;
    PDFStreamEnd end = PDFStreamEnd::isNone;
    QString remark; ///< what the engine adds, in the library's words; mostly empty
    PDFFailure failure = PDFFailure::isNone; ///< of a stream that isLost
    int timeLimit = pdfPageTimeLimit; ///< milliseconds that the engine had for it
};

/// A stream that was asked for (requestStream()). Reports of progress count mebibytes.
class PDFStreamRequest : public PDFRequest
{
    Q_OBJECT
public:
    const PDFStream& stream() const { return theStream; }

private:
    friend class PDFDocument;
    friend class PDFObjectEngines;
    using PDFRequest::PDFRequest;
    PDFStream theStream;
};

/// What an object is, where there is more to say of it than its entries.
enum class PDFObjectKind
{
    isOther,
    isImage,
    isForm,
    isFont,
    isFontProgram,
    isColourProfile,
    isEmbeddedFile,
    isFileSpec,
    isMetadata,
    isObjectStream,
    isCrossReference,
};

/// What the engine tells of an object: what it is about, and a line of text, in which references
/// are spelled as in an object.
struct PDFFact
{
    EngineFactKind kind = EngineFactKind::isName;
    QString text; ///< of printable characters
};

struct PDFFacts
{
    PDFObjectKind kind = PDFObjectKind::isOther;
    QList<PDFFact> facts; ///< in the order in which they are to be read
};

/// The facts of an object (requestFacts()).
class PDFFactsRequest : public PDFRequest
{
    Q_OBJECT
public:
    const PDFFacts& facts() const { return theFacts; }

private:
    friend class PDFObjectEngines;
    using PDFRequest::PDFRequest;
    PDFFacts theFacts;
};

enum class PDFPictureEnd
{
    isDrawn,
    isDamaged, ///< drawn as far as its data goes
    isUnreadable, ///< nothing is drawn
};

/// An image of the document by itself.
struct PDFPicture
{
    QImage image; ///< null when it is unreadable; sides of at most maximumPictureSide
    PDFPictureEnd end = PDFPictureEnd::isUnreadable;
    QString remark; ///< why it is not whole; mostly empty
};

/// An image that was asked for (requestPicture()).
class PDFPictureRequest : public PDFRequest
{
    Q_OBJECT
public:
    const PDFPicture& picture() const { return thePicture; }

private:
    friend class PDFObjectEngines;
    using PDFRequest::PDFRequest;
    PDFPicture thePicture;
};

/// How long the engine may take for a stream of at most so many bytes, in milliseconds: 20 s, and
/// as much for each gibibyte beyond the first.
constexpr int streamTimeLimit(quint64 limit)
{
    constexpr quint64 gibibyte = quint64{1} << 30;
    return 20'000 * static_cast<int>(limit > gibibyte ? (limit + gibibyte - 1) / gibibyte : 1);
}

} // namespace tarnwick
