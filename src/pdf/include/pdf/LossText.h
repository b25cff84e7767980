#pragma once

#include "pdf/PDFLosses.h"

#include <QStringList>

namespace tarnwick {

/// What was made of the pages that something is missing from.
enum class LossSubject
{
    isText, ///< their text was read
    isSearch, ///< they were searched
    isPrint, ///< they were printed
    isFile, ///< they were written into a file
};

/// Page numbers for a sentence, counted from 1: "page 2", "pages 2, 5–9 and 1,203 others".
/// @param most ranges that are named. @returns an empty text without ranges.
QString pageNumbers(const QList<PDFLosses::Range>& ranges, int most);

/// What is missing and why, as sentences for the user, one for each reason: "No text from page 2:
/// it took longer than 20 seconds."
/// @param most ranges that each names. @returns an empty list without losses.
QStringList lossSentences(const PDFLosses& losses, LossSubject subject, int most = 4);

/// Whether they name every page.
bool namesAllPages(const PDFLosses& losses, int most = 4);

/// What is missing of one range of pages and why, as a sentence.
QString lossSentence(const PDFLosses::Range& range, LossSubject subject);

/// The whole list for the user: a line for each range of pages, in their order.
QString lossList(const PDFLosses& losses, LossSubject subject);

/// A sentence on the objects of a document that a file lacks. Precondition: count > 0.
QString lostObjectsSentence(qsizetype count);

/// The same of a file that was written: with a sentence on the objects of the document that it
/// lacks.
QStringList missingSentences(
    const PDFLosses& losses, qsizetype lostObjects, LossSubject subject, int most = 4);

} // namespace tarnwick
