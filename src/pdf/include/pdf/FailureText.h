#pragma once

#include "pdf/PDFRequest.h"

namespace tarnwick {

/// What the PDF engine was to do, where what became of it is told in words of its own.
enum class FailedTask
{
    isOpening, ///< the file
    isDrawing, ///< a page
    isFlattening, ///< the document, for a pane that is to show it
    isExporting, ///< the document, or its text
};

/// Why the engine did not do a task: a sentence; for a page one more before it, on a line of its
/// own; for a pane a note without a full stop. Precondition: not isNone. Of isCancelled only a pane
/// says more than that nothing came.
/// @param timeLimit milliseconds that it had; only isOpening tells them.
QString failureText(PDFFailure failure, FailedTask task, int timeLimit = pdfPageTimeLimit);

/// Why reading a part of the file brought nothing, as a phrase: "it took longer than 20 seconds".
/// Empty for isNone. @param timeLimit milliseconds that it had; a request knows its own.
/// @{
QString failureReason(PDFFailure failure, int timeLimit);
QString failureReason(const PDFRequest& request);
/// @}

/// The same of pages. @param isOne a single one; else "each took longer …", "they are …".
QString pageFailureReason(PDFFailure failure, bool isOne);

/// A sentence that ends in the reason, if there is one: "The object could not be read: it took
/// longer than 20 seconds."
/// @param complaint a clause without a full stop.
QString failureSentence(const QString& complaint, const PDFRequest& request);

} // namespace tarnwick
