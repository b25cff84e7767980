#include "TableLoader.h"

#include "pdf/FailureText.h"
#include "work/WorkThreads.h"

#include <new>
#include <utility>

namespace tarnwick {

TableLoader::~TableLoader()
{
    release();
}

/// Freeing what is known of millions of objects holds up whoever does it.
void TableLoader::release()
{
    if (theTabled)
        WorkThreads::run([held = std::exchange(theTabled, nullptr)] {});
}

void TableLoader::setSource(PDFDocument* document, std::shared_ptr<const SourceText> source)
{
    delete theRequest; // which cancels it
    theWork.abandon();
    release();
    theFailure.clear();
    theIsAsked = false;
    theDocument = document;
    theSource = std::move(source);
}

void TableLoader::start()
{
    if (theIsAsked || !theSource || !theDocument
        || theDocument->state() == PDFDocument::State::isOpening)
        return;
    theIsAsked = true;
    theRequest = theDocument->requestTable(this);
    connect(theRequest, &PDFRequest::finished, this,
        [this, request = theRequest.data()] { take(request); });
}

void TableLoader::take(PDFTableRequest* request)
{
    request->deleteLater();
    theRequest.clear();
    if (!request->succeeded()) {
        finish(nullptr,
            failureSentence(tr("Which objects are in object streams could not be read"), *request));
        return;
    }
    using Tabled = std::shared_ptr<const TabledObjects>;
    theWork.start(
        [source = theSource, table = request->table()](const std::stop_token& stop) -> Tabled {
            try {
                return TabledObjects::of(source->theCatalog(), *table, stop);
            } catch (const std::bad_alloc&) {
                return nullptr;
            }
        },
        [this](Tabled tabled) {
            const bool isThere = tabled != nullptr;
            finish(std::move(tabled),
                isThere ? QString() : tr("There is not enough memory for the file's table."));
        });
}

void TableLoader::finish(std::shared_ptr<const TabledObjects> tabled, const QString& failure)
{
    theTabled = std::move(tabled);
    theFailure = failure;
    emit finished();
}

} // namespace tarnwick
