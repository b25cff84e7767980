#pragma once

#include "TabledObjects.h"
#include "analysis/SourceText.h"
#include "pdf/PDFDocument.h"
#include "work/Work.h"

#include <QObject>
#include <QPointer>

#include <memory>

namespace tarnwick {

/// Has the engine tell the file's table of all objects, and holds it against the listing. Asks when
/// somebody wants it, and once for each source.
class TableLoader : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
    ~TableLoader() override;

    /// Gives up what is under way and forgets what is known.
    /// @param document borrowed while it lives. @param source of its file, scanned; null for none.
    void setSource(PDFDocument* document, std::shared_ptr<const SourceText> source);
    /// Asks for the table, unless that has been done or the document is still being opened;
    /// finished() follows, not from within.
    void start();

    /// Whether it has been asked for and is still to come.
    bool isRunning() const { return theRequest || theWork.isRunning(); }
    /// Null before finished(), and when there is none to be had.
    const std::shared_ptr<const TabledObjects>& tabled() const { return theTabled; }
    /// Why there is none, as a sentence; empty otherwise.
    const QString& failure() const { return theFailure; }

signals:
    void finished();

private:
    void take(PDFTableRequest* request);
    void finish(std::shared_ptr<const TabledObjects> tabled, const QString& failure);
    void release();

    QPointer<PDFDocument> theDocument;
    std::shared_ptr<const SourceText> theSource;
    QPointer<PDFTableRequest> theRequest;
    Work theWork;
    std::shared_ptr<const TabledObjects> theTabled;
    QString theFailure;
    bool theIsAsked = false;
};

} // namespace tarnwick
