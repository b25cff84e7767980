#pragma once

#include "platform/PDFRequest.h"
#include "platform/PDFSelection.h"

#include <QList>
#include <QObject>
#include <QString>

class PDFDocument;
class PDFTextRequest;

/// The text of a whole document, fetched once and shared by its windows: the text pane, the search,
/// the selection and the plain-text export all read it here.
///
/// fetch() asks the engine; pages arrive in page order through the event loop while the windows
/// stay usable. Main thread only.
class PDFDocumentText : public QObject
{
    Q_OBJECT

public:
    /// @param document borrowed; must be open and outlive this object.
    explicit PDFDocumentText(PDFDocument* document);

    /// Starts fetching unless that has been done; a cancelled or failed fetch goes on from the
    /// first page that is missing.
    void fetch();
    /// Stops fetching; the pages that have arrived stay.
    void cancel();

    int pageCount() const;
    /// Pages 0 to arrivedCount() - 1 have their text.
    int arrivedCount() const { return static_cast<int>(thePages.size()); }
    bool isWhole() const { return arrivedCount() == pageCount(); }
    bool isFetching() const { return theRequest != nullptr; }

    /// Text of a page that has arrived. Precondition: 0 <= page < arrivedCount().
    const QString& pageString(int page) const { return thePages.at(page); }

    /// The pages' texts in page order, nothing between them but a line end where a page's text does
    /// not end with one. Precondition: isWhole().
    QString string() const;

    /// The selected text, pages that have not arrived left out; a line end between pages.
    QString string(const PDFSelection& selection) const;

signals:
    void pageArrived(int page);
    /// Every page is there. Emitted once.
    void completed();
    /// Fetching has stopped before the end. @param failure isCancelled after cancel().
    void stopped(PDFFailure failure);

private:
    void endFetch();

    PDFDocument* theDocument;
    PDFTextRequest* theRequest = nullptr;
    bool theEndWasTold = false;
    QList<QString> thePages;
};
