#pragma once

#include "pdf/PDFLosses.h"

#include "pdf/PDFQuad.h"
#include "protocol/EngineTextDetail.h"

#include <QColor>
#include <QList>
#include <QString>

namespace tarnwick {

/// A stretch of a page's text in one font, size and colour.
struct PDFTextRun
{
    qsizetype start = 0; ///< index of its first UTF-16 unit in the page's string
    qsizetype length = 0; ///< in UTF-16 units, at least 1
    QString family; ///< font family without subset prefix and style suffix ("Times New Roman")
    double sizeInPoints = 0; ///< positive
    bool isBold = false;
    bool isItalic = false;
    QColor colour; ///< opaque
};

/// The text of one page, in reading order as the engine finds it, as far as it could be read;
/// within a line in logical order, so that right-to-left letters stand left of those that they
/// follow. Lines end with "\n", blocks are parted by an empty line; ligatures are spelled out in
/// letters; lone surrogates and NUL do not occur.
///
/// Page space is where everything on a page has its place, here and throughout the program: points
/// of 1/72 inch from the upper left corner of the page as it is shown unless the user turns it
/// (crop box and the page's own rotation applied), y downwards.
struct PDFPageText
{
    QString string;
    /// Where each UTF-16 unit of string stands: four corners (upper left, upper right, lower right,
    /// lower left) in page space. Both units of a surrogate pair share one; line ends have none.
    /// Empty unless quads were asked for.
    QList<PDFQuad> quads;
    /// What each quadBlock quads of quads reach over, one after the other; with them the characters
    /// of one place are found among millions. Empty where that has not been worked out.
    QList<QRectF> blocks;
    static constexpr qsizetype quadBlock = 256;
    /// Covers string without gaps, in order. Empty unless attributes were asked for.
    QList<PDFTextRun> runs;
    PDFLoss loss = PDFLoss::isNone; ///< what is missing of the text, and why

    /// What there is of a page that could not be read.
    static PDFPageText lost(PDFFailure failure)
    {
        PDFPageText text;
        text.loss = lossOf(failure);
        return text;
    }
};

/// What a text request is to deliver besides the strings.
using PDFTextDetail = EngineTextDetail;

} // namespace tarnwick
