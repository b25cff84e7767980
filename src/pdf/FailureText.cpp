#include "pdf/FailureText.h"

#include <QCoreApplication>
#include <QLocale>

namespace tarnwick {

namespace {

class FailureText
{
    Q_DECLARE_TR_FUNCTIONS(FailureText)

public:
    static QString opening(PDFFailure failure, int timeLimit);
    static QString drawing(PDFFailure failure);
    static QString flattening(PDFFailure failure);
    static QString exporting(PDFFailure failure);
    static QString reading(PDFFailure failure, bool isOne, int timeLimit);
};

QString inSeconds(int milliseconds)
{
    return QLocale().toString(milliseconds / 1000);
}

/// An engine that could not even refuse the file has ended, whatever it ended of.
QString FailureText::opening(PDFFailure failure, int timeLimit)
{
    if (failure == PDFFailure::isTimedOut)
        return tr("Reading the file takes longer than %1 seconds.").arg(inSeconds(timeLimit));
    return tr("The PDF engine stopped while it was reading the file.");
}

QString FailureText::drawing(PDFFailure failure)
{
    const QString head = tr("This page could not be drawn.") + u'\n';
    switch (failure) {
    case PDFFailure::isEngineDead:
        return head + tr("The PDF engine stopped while it was drawing it.");
    case PDFFailure::isOutOfMemory:
        return head + tr("Drawing it takes more memory than there is for a page.");
    case PDFFailure::isTimedOut:
        return head + tr("Drawing it takes too long.");
    case PDFFailure::isDamaged:
        return head + tr("The file is damaged here.");
    case PDFFailure::isNone:
    case PDFFailure::isCancelled:
        break;
    }
    return head;
}

QString FailureText::flattening(PDFFailure failure)
{
    switch (failure) {
    case PDFFailure::isNone:
        break;
    case PDFFailure::isCancelled:
        return tr("Cancelled");
    case PDFFailure::isEngineDead:
        return tr("The PDF engine broke down while writing this document");
    case PDFFailure::isOutOfMemory:
        return tr("The PDF engine ran out of memory");
    case PDFFailure::isTimedOut:
        return tr("Given up: it takes the PDF engine too long");
    case PDFFailure::isDamaged:
        return tr("The PDF engine could not write this document");
    }
    return {};
}

QString FailureText::exporting(PDFFailure failure)
{
    switch (failure) {
    case PDFFailure::isEngineDead:
        return tr("The PDF engine ended while it was reading the document.");
    case PDFFailure::isOutOfMemory:
        return tr("The PDF engine needed more memory than it may use.");
    case PDFFailure::isTimedOut:
        return tr("The PDF engine took longer than it may.");
    case PDFFailure::isDamaged:
        return tr("The document is too damaged for this.");
    case PDFFailure::isNone:
    case PDFFailure::isCancelled:
        break;
    }
    return {};
}

QString FailureText::reading(PDFFailure failure, bool isOne, int timeLimit)
{
    switch (failure) {
    case PDFFailure::isNone:
        break;
    case PDFFailure::isCancelled:
        return isOne ? tr("reading stopped before it") : tr("reading stopped before them");
    case PDFFailure::isEngineDead:
        return isOne ? tr("the PDF engine ended while it was reading it")
                     : tr("the PDF engine ended while it was reading them");
    case PDFFailure::isOutOfMemory:
        return isOne ? tr("it needs more memory than the PDF engine may use")
                     : tr("they need more memory than the PDF engine may use");
    case PDFFailure::isTimedOut:
        return (
            isOne ? tr("it took longer than %1 seconds") : tr("each took longer than %1 seconds"))
            .arg(inSeconds(timeLimit));
    case PDFFailure::isDamaged:
        return isOne ? tr("it is too damaged to be read") : tr("they are too damaged to be read");
    }
    return {};
}

} // namespace

QString failureText(PDFFailure failure, FailedTask task, int timeLimit)
{
    switch (task) {
    case FailedTask::isOpening:
        return FailureText::opening(failure, timeLimit);
    case FailedTask::isDrawing:
        return FailureText::drawing(failure);
    case FailedTask::isFlattening:
        return FailureText::flattening(failure);
    case FailedTask::isExporting:
        break;
    }
    return FailureText::exporting(failure);
}

QString failureReason(PDFFailure failure, int timeLimit)
{
    return FailureText::reading(failure, true, timeLimit);
}

QString failureReason(const PDFRequest& request)
{
    return failureReason(request.failure(), request.timeLimit());
}

QString pageFailureReason(PDFFailure failure, bool isOne)
{
    return FailureText::reading(failure, isOne, pdfPageTimeLimit);
}

QString failureSentence(const QString& complaint, const PDFRequest& request)
{
    const QString reason = failureReason(request);
    return reason.isEmpty() ? FailureText::tr("%1.").arg(complaint)
                            : FailureText::tr("%1: %2.").arg(complaint, reason);
}

} // namespace tarnwick
