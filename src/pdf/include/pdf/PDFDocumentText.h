#pragma once

#include "pdf/PDFPagesText.h"
#include "pdf/PDFRequest.h"
#include "pdf/PDFSelection.h"

#include <QList>
#include <QObject>
#include <QString>

namespace tarnwick {

class PDFDocument;
class PDFTextRequest;

/// The text of a whole document, fetched once and shared by its windows: the text pane, the search,
/// the selection and the plain-text export all read it here.
///
/// fetch() asks the engine; pages arrive in page order through the event loop while the windows
/// stay usable. A page that cannot be read arrives without text and with its loss. Main thread
/// only.
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
    /// Pages 0 to arrivedCount() - 1 have been read, as far as that is possible.
    int arrivedCount() const { return static_cast<int>(theText.pages.size()); }
    /// Every page has arrived, be it without its text.
    bool isWhole() const { return arrivedCount() == pageCount(); }
    bool isFetching() const { return theRequest != nullptr; }

    /// What there is of the text, and what is missing from it at present.
    PDFPagesText text() const;

    /// Units of the text of a page that has arrived. Precondition: 0 <= page < arrivedCount().
    qsizetype pageLength(int page) const { return theText.pages.at(page).size(); }

    /// The selected text, as far as there is any; a line end between pages.
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
    bool hasToldEnd = false;
    PDFPagesText theText; ///< losses of the arrived pages alone
};

} // namespace tarnwick
