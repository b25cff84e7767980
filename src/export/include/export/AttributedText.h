#pragma once

#include "pdf/PDFText.h"

#include <QColor>
#include <QHash>
#include <QList>
#include <QString>

namespace tarnwick {

/// A text whose stretches carry font, size, bold, italic and colour.
///
/// Made for whole documents: families and colours stand in tables once, and neighbouring stretches
/// that look the same are one run, so that it needs little more than its characters.
class AttributedText
{
public:
    /// A stretch that looks the same throughout.
    struct Run
    {
        qsizetype start = 0; ///< index of its first UTF-16 unit
        qsizetype length = 0; ///< in UTF-16 units, at least 1
        int family = 0; ///< index into families()
        int colour = 0; ///< index into colours()
        double sizeInPoints = 0;
        bool isBold = false;
        bool isItalic = false;

        bool looksLike(const Run& other) const;
    };

    /// Appends a page's text with its attributes; characters that no run covers are plain black
    /// Helvetica of 12 points. Nothing is put before it.
    void append(const PDFPageText& page);

    bool isEmpty() const { return theString.isEmpty(); }
    qsizetype length() const { return theString.size(); }
    const QString& string() const { return theString; }

    /// Covers string() without gaps, in order.
    const QList<Run>& runs() const { return theRuns; }
    const QStringList& families() const { return theFamilies; }
    const QList<QRgb>& colours() const { return theColours; }

private:
    void appendRun(Run run, const QString& family, QRgb colour);
    void appendPlain(qsizetype start, qsizetype end);

    QString theString;
    QList<Run> theRuns;
    QStringList theFamilies;
    QList<QRgb> theColours;
    QHash<QString, int> theFamilyIndexes;
    QHash<QRgb, int> theColourIndexes;
};

} // namespace tarnwick
