#pragma once

#include "files/FileBytes.h"
#include "pdf/PDFRequest.h"

#include <QList>
#include <QObject>
#include <QString>

#include <array>
#include <cstdint>

namespace tarnwick {

class PDFEngineClient;

/// What a page's look is made of, as far as that can be told without drawing it.
struct PDFPageDigest
{
    int object = 0; ///< number of the page's object; 0 where it is not known
    bool isKnown = false; ///< else something of the page could not be read
    std::array<std::uint8_t, 32> digest = {}; ///< equal for pages that are made of the same
};

/// The digests of a document's pages, asked of an engine of its own: it has drawn nothing, since
/// drawing leaves traces in the library's objects.
///
/// Main thread only. Destroying it gives up what is left to do.
class PDFPageDigests : public QObject
{
    Q_OBJECT

public:
    enum class Form
    {
        isOfContent, ///< for two files
        isOfPlace, ///< for versions of one file: streams are known by their place and are not read
    };

    /// Starts at once; finished() follows from the event loop.
    /// @param password that opens the document; null without one. @param pageCount of the document.
    PDFPageDigests(const FileBytes& bytes, const QString& password, int pageCount, Form form,
        QObject* parent = nullptr);

    /// Of the first pages; once finished, of all, those that could not be had being unknown.
    const QList<PDFPageDigest>& digests() const { return theDigests; }

signals:
    void progressed(int done, int total); ///< pages
    void finished();

private:
    void readNext();
    void take(int count, PDFFailure failure);

    PDFEngineClient* theEngine;
    int thePageCount;
    Form theForm;
    int theLostBatches = 0;
    QList<PDFPageDigest> theDigests;
};

} // namespace tarnwick
