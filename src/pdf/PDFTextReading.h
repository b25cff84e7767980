#pragma once

#include "pdf/PDFDocument.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>

#include <memory>

namespace tarnwick {

class PDFEngineClient;
class PDFPageWork;

/// Asks for the texts of pages, one after the other, and delivers them by a request: a page that
/// has no text to give, whatever the reason, does not keep the others from theirs.
class PDFTextReading : public QObject
{
    Q_OBJECT

public:
    struct Pages
    {
        int first = 0;
        int last = 0; ///< included
    };

    /// @param request delivers the texts, and owns this. @param client for the texts.
    /// @param work of the document. @param mostCharacters of all pages.
    PDFTextReading(PDFTextRequest* request, PDFEngineClient* client,
        std::shared_ptr<PDFPageWork> work, const Pages& pages, PDFTextDetail detail,
        std::uint64_t mostCharacters);

    /// Asks for the first page.
    void start();

private:
    void ask(int page);
    void deliver(int page, const PDFPageText& text, PDFFailure failure);
    bool isGivenUp(PDFFailure failure);

    PDFTextRequest* theRequest;
    QPointer<PDFEngineClient> theClient;
    std::shared_ptr<PDFPageWork> theWork;
    Pages thePages;
    PDFTextDetail theDetail;
    std::uint64_t theMostCharacters;
    std::uint64_t theCharacters = 0;
    int theLostPages = 0;
    qint64 theLostTime = 0; ///< milliseconds that the lost pages have taken
    QElapsedTimer theAge; ///< of the present page's request
};

} // namespace tarnwick
