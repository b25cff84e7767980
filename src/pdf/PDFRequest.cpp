#include "pdf/PDFRequest.h"

#include <utility>

namespace tarnwick {

PDFRequest::PDFRequest(QObject* parent)
    : QObject(parent)
{
}

PDFRequest::~PDFRequest()
{
    giveUp();
}

void PDFRequest::cancel()
{
    if (isFinished())
        return;
    theState = State::isFinished;
    theFailure = PDFFailure::isCancelled;
    giveUp();
}

void PDFRequest::finish(PDFFailure failure)
{
    if (isFinished())
        return;
    theState = State::isFinished;
    theFailure = failure;
    theGiveUp = nullptr;
    emit finished();
}

void PDFRequest::giveUp()
{
    if (const auto tell = std::exchange(theGiveUp, nullptr))
        tell();
}

} // namespace tarnwick
