#include "ComparedDocument.h"

#include "document/Document.h"
#include "frame/FileOpening.h"

#include <QFileInfo>

namespace tarnwick {

ComparedDocument::ComparedDocument(const ComparedFile& file, QWidget* asking, QObject* parent)
    : QObject(parent)
    , theFile(file)
    , theDocument(file.document)
{
    if (theDocument) {
        theName = theDocument->displayName();
        return;
    }
    theOpening = std::make_unique<FileOpening>(
        QFileInfo(file.path).absoluteFilePath(), file.version, FileOpening::Wish::isDocument,
        [] { return std::make_unique<Document>(nullptr); }, asking, nullptr);
    theName = theOpening->displayName();
}

ComparedDocument::~ComparedDocument() = default;

void ComparedDocument::open()
{
    if (theDocument && theDocument->state() != FrameDocument::State::isOpened) {
        emit failed(tr("It is not open."));
        return;
    }
    if (theDocument) {
        emit opened();
        return;
    }
    connect(theOpening.get(), &FileOpening::opened, this, [this](FrameDocument* document) {
        theOwned.reset(document);
        theDocument = static_cast<Document*>(document);
        emit opened();
    });
    // Nobody shows the source of a document that has no window: it ends as one that was given up.
    connect(theOpening.get(), &FileOpening::sourceReady, this, [this](FrameDocument* document) {
        theOwned.reset(document);
        theOpening->cancel();
    });
    connect(theOpening.get(), &FileOpening::failed, this, &ComparedDocument::failed);
    connect(theOpening.get(), &FileOpening::cancelled, this,
        [this] { emit failed(tr("It was not opened.")); });
    theOpening->start();
}

QString ComparedDocument::name() const
{
    return theName;
}

QString ComparedDocument::path() const
{
    return theDocument ? theDocument->fileURL().toLocalFile() : theFile.path;
}

} // namespace tarnwick
