#include "VersionContents.h"

#include "InfoText.h"
#include "pdf/PDFDocument.h"

#include <utility>

namespace tarnwick {

namespace {

VersionContent problem(const QString& sentence)
{
    return {0, {}, {}, {}, sentence};
}

} // namespace

VersionContents::VersionContents(const FileBytes& bytes, const QString& password, QObject* parent)
    : QObject(parent)
    , theBytes(bytes)
    , thePassword(password)
{
}

VersionContents::~VersionContents() = default;

void VersionContents::start(std::vector<Order> orders)
{
    theOrders = std::move(orders);
    theDone = 0;
    theIsRunning = true;
    openNext();
}

void VersionContents::stop()
{
    if (!std::exchange(theIsRunning, false))
        return;
    delete std::exchange(theDocument, nullptr);
    emit finished();
}

void VersionContents::openNext()
{
    if (!theIsRunning)
        return;
    if (theDone == theOrders.size()) {
        theIsRunning = false;
        emit finished();
        return;
    }
    isPasswordTried = false;
    theDocument = new PDFDocument(theBytes.prefix(theOrders[theDone].end), this);
    connect(theDocument, &PDFDocument::opened, this, &VersionContents::takeFacts);
    connect(theDocument, &PDFDocument::locked, this, &VersionContents::takeLock);
    connect(theDocument, &PDFDocument::refused, this,
        [this](const QString& reason) { tell(problem(reason)); });
}

void VersionContents::takeLock(bool)
{
    if (!thePassword.isNull() && !std::exchange(isPasswordTried, true))
        theDocument->unlock(thePassword);
    else
        tell(problem(tr("It wants another password than the file.")));
}

void VersionContents::takeFacts()
{
    const std::optional<std::uint32_t> info = theOrders[theDone].info;
    if (!info)
        return tell({theDocument->pageCount(), {}, {}, {}, {}});
    PDFObjectRequest* const request
        = theDocument->requestObject(static_cast<int>(*info), theDocument);
    connect(request, &PDFRequest::finished, this, [this, request] { takeInfo(*request); });
}

void VersionContents::takeInfo(const PDFObjectRequest& request)
{
    const InfoText info = InfoText::read(request.object().text.toLatin1());
    tell({theDocument->pageCount(), info.producer, info.created, info.modified, {}});
}

void VersionContents::tell(const VersionContent& content)
{
    // It is its own signal that is being handled.
    theDocument->disconnect(this);
    std::exchange(theDocument, nullptr)->deleteLater();
    const int row = theOrders[theDone++].row;
    emit read(row, content);
    QMetaObject::invokeMethod(this, &VersionContents::openNext, Qt::QueuedConnection);
}

} // namespace tarnwick
