#include "pdf/FailureText.h"

#include <QCoreApplication>
#include <QLocale>

namespace tarnwick {

namespace {

/// What a failure is called of each task.
struct Words
{
    PDFFailure failure;
    const char* drawing;
    const char* flattening;
    const char* exporting;
    const char* readingOne;
    const char* readingSome;
};

#define WORDS(text) QT_TRANSLATE_NOOP("FailureText", text)
constexpr Words table[] = {
    {PDFFailure::isCancelled, "", WORDS("Cancelled"), "", WORDS("reading stopped before it"),
        WORDS("reading stopped before them")},
    {PDFFailure::isEngineDead, WORDS("The PDF engine stopped while it was drawing it."),
        WORDS("The PDF engine broke down while writing this document"),
        WORDS("The PDF engine ended while it was reading the document."),
        WORDS("the PDF engine ended while it was reading it"),
        WORDS("the PDF engine ended while it was reading them")},
    {PDFFailure::isOutOfMemory, WORDS("Drawing it takes more memory than there is for a page."),
        WORDS("The PDF engine ran out of memory"),
        WORDS("The PDF engine needed more memory than it may use."),
        WORDS("it needs more memory than the PDF engine may use"),
        WORDS("they need more memory than the PDF engine may use")},
    {PDFFailure::isTimedOut, WORDS("Drawing it takes too long."),
        WORDS("Given up: it takes the PDF engine too long"),
        WORDS("The PDF engine took longer than it may."), WORDS("it took longer than %1 seconds"),
        WORDS("each took longer than %1 seconds")},
    {PDFFailure::isDamaged, WORDS("The file is damaged here."),
        WORDS("The PDF engine could not write this document"),
        WORDS("The document is too damaged for this."), WORDS("it is too damaged to be read"),
        WORDS("they are too damaged to be read")},
};
#undef WORDS

QString translated(const char* text)
{
    return QCoreApplication::translate("FailureText", text);
}

/// @returns an empty text for isNone.
QString wordsFor(PDFFailure failure, const char* const Words::*task)
{
    for (const Words& words : table) {
        if (words.failure == failure)
            return translated(words.*task);
    }
    return {};
}

QString inSeconds(int milliseconds)
{
    return QLocale().toString(milliseconds / 1000);
}

QString readingReason(PDFFailure failure, const char* const Words::*count, int timeLimit)
{
    const QString reason = wordsFor(failure, count);
    return failure == PDFFailure::isTimedOut ? reason.arg(inSeconds(timeLimit)) : reason;
}

/// An engine that could not even refuse the file has ended, whatever it ended of.
QString openingText(PDFFailure failure, int timeLimit)
{
    if (failure == PDFFailure::isTimedOut)
        return translated("Reading the file takes longer than %1 seconds.")
            .arg(inSeconds(timeLimit));
    return translated("The PDF engine stopped while it was reading the file.");
}

} // namespace

QString failureText(PDFFailure failure, FailedTask task, int timeLimit)
{
    switch (task) {
    case FailedTask::isOpening:
        return openingText(failure, timeLimit);
    case FailedTask::isDrawing:
        return translated("This page could not be drawn.") % u'\n'
            % wordsFor(failure, &Words::drawing);
    case FailedTask::isFlattening:
        return wordsFor(failure, &Words::flattening);
    case FailedTask::isExporting:
        break;
    }
    return wordsFor(failure, &Words::exporting);
}

QString failureReason(PDFFailure failure, int timeLimit)
{
    return readingReason(failure, &Words::readingOne, timeLimit);
}

QString failureReason(const PDFRequest& request)
{
    return failureReason(request.failure(), request.timeLimit());
}

QString pageFailureReason(PDFFailure failure, bool isOne)
{
    return readingReason(
        failure, isOne ? &Words::readingOne : &Words::readingSome, pdfPageTimeLimit);
}

QString failureSentence(const QString& complaint, const PDFRequest& request)
{
    const QString reason = failureReason(request);
    return reason.isEmpty() ? translated("%1.").arg(complaint)
                            : translated("%1: %2.").arg(complaint, reason);
}

} // namespace tarnwick
