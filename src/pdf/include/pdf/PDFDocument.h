#pragma once

#include "files/FileBytes.h"
#include "pdf/FlattenedNumbers.h"
#include "pdf/PDFObject.h"
#include "pdf/PDFObjectSigns.h"
#include "pdf/PDFRequest.h"
#include "pdf/PDFTable.h"
#include "pdf/PDFText.h"
#include "pdf/PrintSheet.h"
#include "protocol/DocumentCheck.h"
#include "protocol/DocumentFacts.h"

#include <QImage>
#include <QList>
#include <QObject>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QUrl>

#include <cstdint>
#include <memory>
#include <vector>

namespace tarnwick {

class PDFObjectEngines;

/// An entry of the document's outline (ISO 32000-2, 12.3.3), in depth-first order.
struct PDFOutlineEntry
{
    int depth = 0; ///< 0 for the top level, at most 63
    QString title;
    int page = -1; ///< page index, or -1 when it leads nowhere in this document
    QPointF point; ///< where on that page, in page space
};

/// The outline as far as it could be read.
struct PDFOutline
{
    QList<PDFOutlineEntry> entries;
    /// isCut where there are more entries than the engine gives, isDamaged where none can be read.
    PDFLoss loss = PDFLoss::isNone;
};

/// A link on a page (ISO 32000-2, 12.5.6.5).
struct PDFLink
{
    QRectF area; ///< in page space
    int page = -1; ///< target page index, or -1
    QPointF point; ///< where on the target page, in page space
    QUrl url; ///< target outside the document; empty for links within it
};

/// A PDF file that the engine has written, and what of the document is not in it.
struct PDFWrittenFile
{
    FileBytes bytes;
    PDFLosses losses; ///< pages that are empty or lack something
    qsizetype lostObjects = 0; ///< that could not be read and are null, those of pages included
    /// Of a flattened document what its objects were; null otherwise.
    std::shared_ptr<const FlattenedNumbers> numbers;

    bool isWhole() const { return losses.isEmpty() && lostObjects == 0; }
};

/// The writing of such a file (requestFlat(), requestPrint()).
class PDFFileRequest : public PDFRequest
{
    Q_OBJECT
public:
    const PDFWrittenFile& file() const { return theFile; }

private:
    friend class PDFDocument;
    using PDFRequest::PDFRequest;
    PDFWrittenFile theFile;
};

/// The text of pages, delivered page by page in the order asked for (requestText()).
class PDFTextRequest : public PDFRequest
{
    Q_OBJECT
signals:
    /// A page that cannot be read delivers an empty text, whose loss says why.
    void pageReady(int page, const PDFPageText& text);

private:
    friend class PDFDocument;
    using PDFRequest::PDFRequest;
};

/// A part of a page as an image (requestTile()).
class PDFTileRequest : public PDFRequest
{
    Q_OBJECT
public:
    const QImage& image() const { return theImage; }

private:
    friend class PDFDocument;
    using PDFRequest::PDFRequest;
    QImage theImage;
};

/// The links of a page (requestLinks()).
class PDFLinksRequest : public PDFRequest
{
    Q_OBJECT
public:
    const QList<PDFLink>& links() const { return theLinks; }

private:
    friend class PDFDocument;
    using PDFRequest::PDFRequest;
    QList<PDFLink> theLinks;
};

/// The outline (requestOutline()).
class PDFOutlineRequest : public PDFRequest
{
    Q_OBJECT
public:
    const PDFOutline& outline() const { return theOutline; }

private:
    friend class PDFDocument;
    using PDFRequest::PDFRequest;
    PDFOutline theOutline;
};

/// What the engine tells of the document as a whole (requestCheck()).
class PDFCheckRequest : public PDFRequest
{
    Q_OBJECT
public:
    const DocumentCheck& check() const { return theCheck; }

private:
    friend class PDFDocument;
    using PDFRequest::PDFRequest;
    DocumentCheck theCheck;
};

/// A rendered document: the main process's side of the PDF engine.
///
/// The PDF library itself runs in processes of its own, one for pages and, once needed, one for
/// text, one that writes files (flattening, printing), one for objects and one for each stream that
/// is looked into, all over the same shared bytes.
/// Everything that crosses is a value. A process that dies, stalls or outgrows its memory is
/// replaced; only the request that did it fails. Nothing here blocks: every answer comes through
/// the event loop.
///
/// Main thread only.
class PDFDocument : public QObject
{
    Q_OBJECT

public:
    enum class State
    {
        isOpening, ///< the engine is reading the file
        isLocked, ///< waiting for unlock()
        isOpen, ///< facts() is valid, requests are answered
        isRefused, ///< not a PDF that the engine can open; final
    };

    /// Starts an engine on the bytes. One of opened(), locked() and refused() follows from the
    /// event loop; a file that takes longer than 20 seconds and another for every 2 MB is refused.
    explicit PDFDocument(const FileBytes& bytes, QObject* parent = nullptr);
    ~PDFDocument() override;

    State state() const;
    /// The bytes that it was made from.
    const FileBytes& bytes() const;
    /// Tries a password on a locked document; opened() or locked(true) follows.
    void unlock(const QString& password);
    /// The password that opened the document; null where none was asked for.
    QString password() const;

    /// Valid once opened.
    const DocumentFacts& facts() const;
    int pageCount() const { return facts().pageCount; }

    /// Size of a page as the viewer shows it (crop box, page rotation applied), in points, each
    /// side within [1, 14400]: boxes without area or of no numbers count as 612 x 792, and two
    /// opposite corners in any order make a box (ISO 32000-2, 7.9.5). Sizes of large documents
    /// arrive after opening; until then the first page's size stands in. Precondition: 0 <= page <
    /// pageCount().
    QSizeF pageSize(int page) const;
    /// The page's label (ISO 32000-2, 12.4.2), or its 1-based number where the document labels no
    /// page so far; cut to 255 characters. Empty where the document gives the page neither number
    /// nor prefix: a page without a label. Labels arrive with the sizes.
    QString pageLabel(int page) const;
    /// The label that the document defines for a page; null where it defines none. Valid until the
    /// event loop runs.
    QStringView ownPageLabel(int page) const;

    /// Why the document was refused, as a sentence for the user; empty otherwise.
    QString refusalReason() const;

    /// The document written out again: without encryption, object streams unpacked, classic
    /// cross-reference table, the same bytes every time. Fails after 30 seconds.
    PDFFileRequest* requestFlat(QObject* parent);

    /// The document on sheets of paper, as a PDF file of a page for each: what was text and lines
    /// stays text and lines. Annotations and form fields are there as they look, those that are
    /// meant for paper; a page that cannot be read leaves its sheets empty, and is named among
    /// the losses.
    /// @param sheets a page out of range leaves its sheet empty; above a million of them the
    ///   request fails. It may take 30 seconds, and a fiftieth of one for each sheet.
    PDFFileRequest* requestPrint(
        const PrintPaper& paper, const QList<PrintSheet>& sheets, QObject* parent);

    /// How long the engine may take for one page's text, tile or links; pdfPageTimeLimit at first.
    void setPageTimeLimit(int milliseconds);

    /// Texts of the pages from first to last, both included, in that order. Fails when the
    /// document cannot be opened again, when pages keep ending the engine, or when there is more
    /// text than a document may have (maximumDocumentCharacters()).
    PDFTextRequest* requestText(int first, int last, PDFTextDetail detail, QObject* parent);

    /// A part of a page, painted on white with annotations and form fields.
    /// @param scale device pixels per point, positive.
    /// @param rotation clockwise quarter turns of the view, 0 to 3.
    /// @param area the wanted pixels of the page scaled and rotated so, origin in its upper left
    ///   corner; at most 4096 x 4096.
    /// @returns a request whose image has area's size and device pixel ratio 1. Requests are served
    ///   latest first among those not started; cancel what has scrolled out of view.
    PDFTileRequest* requestTile(
        int page, double scale, int rotation, const QRect& area, QObject* parent);

    PDFLinksRequest* requestLinks(int page, QObject* parent);
    PDFOutlineRequest* requestOutline(QObject* parent);

    /// What an object says, and where it stands in the file. Fails after 20 seconds, and at once
    /// while the document is not open, as requestStream() does.
    /// @param number any: that there is no such object is an answer.
    PDFObjectRequest* requestObject(int number, QObject* parent);
    /// What the stream of an object holds, from an engine of its own. Fails after
    /// streamTimeLimit(), or when its engine ends; every other trouble is an answer.
    /// @param limit bytes that are wanted at most: usualStream or, if the user says so, up to
    ///   largestStream; it may take that much memory.
    PDFStreamRequest* requestStream(int number, PDFStreamForm form, quint64 limit, QObject* parent);
    /// The file's table of all objects, what those within object streams are and what they refer
    /// to; told in portions, behind whatever else is asked of objects. Fails when a portion takes
    /// longer than 20 seconds, all of them two minutes, and at once while the document is not open.
    PDFTableRequest* requestTable(QObject* parent);

    /// What had to be mended in the file to read it, what cannot be drawn, how it is encrypted:
    /// from an engine of its own, which has done nothing else and goes with the request. Fails
    /// after 20 seconds, and at once while the document is not open.
    PDFCheckRequest* requestCheck(QObject* parent);

    /// The engines that look into the document's objects: these two requests and more. They live as
    /// long as the document. Null while it is not open.
    PDFObjectEngines* objectEngines();
    /// Such engines for other bytes of the same document, as one of its earlier versions, which
    /// take the same password.
    std::unique_ptr<PDFObjectEngines> objectEnginesFor(const FileBytes& bytes) const;

    /// What objects are known by when documents are compared. Fails as requestObject() does, and
    /// when a portion takes more than a minute.
    /// @param numbers of the objects, ascending; of all of them where it is empty. Those that do
    /// not
    ///   exist, object streams and cross-reference streams are left out.
    PDFSignRequest* requestSigns(const std::vector<std::uint32_t>& numbers, QObject* parent);

    /// Process ids of the engines that run at present: pages, text, files, objects, streams, the
    /// check. For tests and for reports of trouble.
    QList<qint64> engineProcessIds() const;

signals:
    void opened();
    /// The document wants its password. @param wasWrong a password was tried and is not it.
    void locked(bool wasWrong);
    void refused(const QString& reason);
    /// Sizes and labels of these pages are now known; sizes may differ from what stood in.
    void pagesMeasured(int first, int count);

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace tarnwick
