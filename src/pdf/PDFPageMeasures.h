#pragma once

#include "PDFEngineAnswers.h"

#include <QList>
#include <QObject>
#include <QSizeF>
#include <QString>

namespace tarnwick {

class PDFEngineClient;

/// The sizes and labels of a document's pages, which arrive in portions from its engine.
class PDFPageMeasures : public QObject
{
    Q_OBJECT

public:
    /// @param client borrowed.
    PDFPageMeasures(PDFEngineClient* client, QObject* parent);

    /// Begins, once the document is open. @param firstSize of the first page.
    void start(int pageCount, const QSizeF& firstSize);

    /// In points; the first page's while the page has not been measured.
    QSizeF size(int page) const;
    /// Null for a page that has none, or whose label has not arrived.
    QStringView label(int page) const;

signals:
    void measured(int first, int count);

private:
    void measureFrom(int first);
    void take(int first, int count, const QList<PDFPageMeasure>& measures);
    void keepLabel(int page, const QString& label);

    PDFEngineClient* theClient;
    int thePageCount = 0;
    QSizeF theFirstSize;
    QList<QSizeF> theSizes; ///< of the pages that have been measured
    QList<QString> theLabels; ///< null for pages without; ends behind the last page with one
    qsizetype theLabelUnits = 0; ///< of all labels
    int theLostBatches = 0;
};

} // namespace tarnwick
