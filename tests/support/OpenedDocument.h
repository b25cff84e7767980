#pragma once

#include "pdf/PDFDocument.h"

#include <QTest>

#include <string>

namespace tarnwick {

/// A document on bytes in memory, whose opening has been waited for.
class OpenedDocument
{
public:
    explicit OpenedDocument(const std::string& bytes)
        : OpenedDocument(*FileBytes::copy(bytes))
    {
    }
    explicit OpenedDocument(const FileBytes& bytes)
        : theDocument(bytes)
    {
        const auto hasAnswer
            = [this] { return theDocument.state() != PDFDocument::State::isOpening; };
        if (!QTest::qWaitFor(hasAnswer, 30'000))
            qWarning("the engine does not answer");
    }
    PDFDocument* operator->() { return &theDocument; }
    PDFDocument* get() { return &theDocument; }

    /// The bytes of the flattened document; empty when it cannot be had.
    FileBytes flat()
    {
        const PDFFileRequest* const request = theDocument.requestFlat(&theDocument);
        waitFor(request);
        return request->file().bytes;
    }

    static bool waitFor(const PDFRequest* request)
    {
        return QTest::qWaitFor([request] { return request->isFinished(); }, 60'000);
    }

private:
    PDFDocument theDocument;
};

} // namespace tarnwick
