#include "export/ExportContent.h"

#include "RtfWriter.h"
#include "pdf/FailureText.h"

#include <QCoreApplication>
#include <QStringEncoder>

namespace tarnwick {

namespace {

constexpr std::size_t sliceSize = std::size_t{1} << 20U;

std::string_view viewOf(const QByteArray& bytes)
{
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

/// Tells how far a writing is. @returns whether more of it is wanted.
bool goesOn(const std::stop_token& stop, const ExportContent::Progress& progress, quint64 done,
    quint64 total)
{
    if (progress)
        progress(done, total);
    return !stop.stop_requested();
}

/// The document written out again by the engine.
class FlatContent : public ExportContent
{
public:
    explicit FlatContent(PDFDocument* document)
        : ExportContent(LossSubject::isFile)
        , theDocument(document)
    {
    }

    void take() override
    {
        PDFFileRequest* const request = theDocument->requestFlat(this);
        connect(request, &PDFRequest::progressed, this, &ExportContent::progressed);
        connect(request, &PDFRequest::finished, this, [this, request] {
            if (!request->succeeded()) {
                emit failed(failureText(request->failure(), FailedTask::isExporting));
                return;
            }
            const PDFWrittenFile& file = request->file();
            theBytes = file.bytes;
            setTaken(file.losses, file.lostObjects);
        });
    }

    bool write(
        const Sink& sink, const std::stop_token& stop, const Progress& progress) const override
    {
        const std::string_view bytes = theBytes.view();
        for (std::size_t done = 0; done < bytes.size();) {
            const std::string_view slice = bytes.substr(done, sliceSize);
            if (!sink(slice))
                return false;
            done += slice.size();
            if (!goesOn(stop, progress, done, bytes.size()))
                return false;
        }
        return true;
    }

private:
    PDFDocument* theDocument; // used by take() alone
    FileBytes theBytes;
};

/// The text of all pages, shared with the document's windows.
class TextContent : public ExportContent
{
public:
    explicit TextContent(PDFDocumentText* text)
        : ExportContent(LossSubject::isText)
        , theText(text)
    {
    }

    void take() override
    {
        if (theText->isWhole()) {
            keep();
            return;
        }
        connect(theText, &PDFDocumentText::completed, this, &TextContent::keep);
        connect(theText, &PDFDocumentText::pageArrived, this,
            [this] { emit progressed(theText->arrivedCount(), theText->pageCount()); });
        connect(theText, &PDFDocumentText::stopped, this, &TextContent::stop);
        theText->fetch();
    }

    bool write(
        const Sink& sink, const std::stop_token& stop, const Progress& progress) const override
    {
        return writeUtf8(theString, sink, stop, progress);
    }

private:
    void keep()
    {
        const PDFPagesText text = theText->text();
        theString = text.string();
        setTaken(text.losses);
    }

    void stop(PDFFailure failure)
    {
        // A window that no longer wants the text does not decide for this export.
        if (failure == PDFFailure::isCancelled)
            QMetaObject::invokeMethod(theText, &PDFDocumentText::fetch, Qt::QueuedConnection);
        else if (theText->arrivedCount() == 0)
            emit failed(failureText(failure, FailedTask::isExporting));
        else
            keep(); // a beginning, and word of what is missing, beat nothing
    }

    PDFDocumentText* theText; // not used once taken
    QString theString;
};

/// The text of all pages with its attributes, as RTF.
class RichContent : public ExportContent
{
public:
    explicit RichContent(PDFDocument* document)
        : ExportContent(LossSubject::isText)
        , theDocument(document)
    {
    }

    void take() override
    {
        const int count = theDocument->pageCount();
        if (count < 1) {
            emit failed(QCoreApplication::translate("ExportContent", "The document has no pages."));
            return;
        }
        PDFTextRequest* const request
            = theDocument->requestText(0, count - 1, PDFTextDetail::isWithAttributes, this);
        connect(request, &PDFTextRequest::pageReady, this,
            [this, count](int page, const PDFPageText& text) {
                theText.append(text);
                theTextLosses.add(page, text.loss);
                theNextPage = page + 1;
                emit progressed(page + 1, count);
            });
        connect(request, &PDFRequest::finished, this, [this, request, count] {
            if (theNextPage == 0) {
                emit failed(failureText(request->failure(), FailedTask::isExporting));
                return;
            }
            theTextLosses.add({theNextPage, count - 1, PDFLoss::isNotRead});
            setTaken(theTextLosses);
        });
    }

    bool write(
        const Sink& sink, const std::stop_token& stop, const Progress& progress) const override
    {
        RtfWriter writer(theText);
        for (QByteArray part = writer.next(); !part.isEmpty(); part = writer.next()) {
            if (!sink(viewOf(part)))
                return false;
            if (!goesOn(stop, progress, static_cast<quint64>(writer.writtenLength()),
                    static_cast<quint64>(theText.length())))
                return false;
        }
        return true;
    }

private:
    PDFDocument* theDocument; // used by take() alone
    AttributedText theText;
    PDFLosses theTextLosses;
    int theNextPage = 0;
};

} // namespace

std::unique_ptr<ExportContent> ExportContent::make(ExportKind kind, const ExportSource& source)
{
    PDFDocument* const document = source.document;
    if (!document || document->state() != PDFDocument::State::isOpen)
        return nullptr;
    if (kind == ExportKind::isFlatPDF)
        return std::make_unique<FlatContent>(document);
    if (kind == ExportKind::isPlainText)
        return source.text ? std::make_unique<TextContent>(source.text) : nullptr;
    return std::make_unique<RichContent>(document);
}

bool writeUtf8(const QString& string, const ExportContent::Sink& sink, const std::stop_token& stop,
    const ExportContent::Progress& progress)
{
    // One encoder for all slices: a surrogate pair may be cut by one.
    QStringEncoder encoder(QStringEncoder::Utf8);
    for (qsizetype done = 0; done < string.size();) {
        const QStringView slice = QStringView(string).mid(done, static_cast<qsizetype>(sliceSize));
        const QByteArray encoded = encoder.encode(slice);
        if (!sink(viewOf(encoded)))
            return false;
        done += slice.size();
        if (!goesOn(
                stop, progress, static_cast<quint64>(done), static_cast<quint64>(string.size())))
            return false;
    }
    return true;
}

QStringList ExportContent::missing(int most) const
{
    return missingSentences(theLosses, theLostObjects, theSubject, most);
}

void ExportContent::setTaken(const PDFLosses& losses, qsizetype lostObjects)
{
    theLosses = losses;
    theLostObjects = lostObjects;
    theIsTaken = true;
    emit taken();
}

} // namespace tarnwick
