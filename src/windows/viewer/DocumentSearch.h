#pragma once

#include "SearchChoices.h"
#include "pdf/PDFLosses.h"
#include "pdf/PDFSelection.h"
#include "work/Work.h"

#include <QList>
#include <QObject>
#include <QString>

namespace tarnwick {

class PDFDocumentText;

/// Searches a document's text for all matches of a text, without holding up the window.
///
/// A search waits until the document's text is whole; where fetching it has stopped for good, it
/// takes the pages that are there. Little text is searched at once, so that found() comes from
/// within start(); more of it is searched in a thread. Main thread only.
class DocumentSearch : public QObject
{
    Q_OBJECT

public:
    /// @param text borrowed; outlives this object.
    explicit DocumentSearch(PDFDocumentText* text, QObject* parent = nullptr);

    /// Gives up a search that is under way, then searches.
    void start(const QString& pattern, SearchOptions options);
    /// Gives the search up; its found() does not come.
    void cancel();
    /// Waiting or searching.
    bool isRunning() const { return isWaiting || theWork.isRunning(); }
    bool isWaitingForText() const { return isWaiting; }

signals:
    /// Of the pages to search; not for short searches.
    void progressed(int done, int total);
    /// All matches in document order. @param losses pages that have not been searched, or not
    /// all of them.
    void found(const QList<PDFSelection>& matches, const PDFLosses& losses);

private:
    void textArrives();
    void search();

    PDFDocumentText* theText;
    QString thePattern;
    SearchOptions theOptions = SearchOptions::isIgnoringCase;
    bool isWaiting = false;
    Work theWork;
};

} // namespace tarnwick
