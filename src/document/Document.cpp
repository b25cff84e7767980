#include "document/Document.h"

#include "document/BytesDisplay.h"
#include "document/DocumentFindings.h"
#include "export/DocumentExport.h"
#include "export/VersionExport.h"
#include "frame/DocumentWindow.h"
#include "pdf/PDFSavedVersions.h"
#include "versions/IncrementalUpdate.h"
#include "versions/VersionNaming.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QWidget>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarnwick {

Document::Document(const WindowRegistry<Document>* registry, QObject* parent)
    : FrameDocument(parent)
    , theRegistry(registry)
{
}

Document::~Document()
{
    closeWindows(); // they borrow what is about to go
}

void Document::readFromData(const FileBytes& bytes)
{
    theFindings.reset();
    theText.reset();
    theRenderedDocument = std::make_unique<PDFDocument>(bytes);
    theBytes = bytes;
    theUpdates.reset();
    theSavedVersions.reset();
    theUpdateSearch.start([bytes] { return isIncrementallyUpdated(bytes.view()); },
        [this](bool isUpdated) {
            theUpdates = isUpdated;
            finishOpening();
        });
    connect(theRenderedDocument.get(), &PDFDocument::opened, this, &Document::finishOpening);
    connect(theRenderedDocument.get(), &PDFDocument::locked, this, &FrameDocument::locked);
    connect(theRenderedDocument.get(), &PDFDocument::refused, this, &FrameDocument::refused);
}

bool Document::isIncr() const
{
    return theUpdates ? *theUpdates : isIncrementallyUpdated(theBytes.view());
}

void Document::finishOpening()
{
    // Windows show whether there are versions to export, so they wait for both.
    if (!theUpdates || !theRenderedDocument
        || theRenderedDocument->state() != PDFDocument::State::isOpen)
        return;
    theText = std::make_unique<PDFDocumentText>(theRenderedDocument.get());
    if (theFindings)
        theFindings->setText(theText.get());
    emit opened();
}

void Document::unlock(const QString& password)
{
    if (theRenderedDocument)
        theRenderedDocument->unlock(password);
}

FrameDocument::State Document::state() const
{
    if (!theRenderedDocument)
        return State::isGivenUp;
    switch (theRenderedDocument->state()) {
    case PDFDocument::State::isLocked:
        return State::isLocked;
    case PDFDocument::State::isRefused:
        return State::isRefused;
    case PDFDocument::State::isOpen:
        return theText ? State::isOpened : State::isOpening;
    case PDFDocument::State::isOpening:
        break;
    }
    return State::isOpening;
}

QString Document::password() const
{
    return theRenderedDocument ? theRenderedDocument->password() : QString();
}

void Document::giveUp()
{
    if (state() != State::isOpening)
        return;
    theRenderedDocument.reset();
    emit givenUp();
}

QString Document::whyNotOpened() const
{
    switch (state()) {
    case State::isLocked:
        return tr("It is protected by a password. Open the file again to be asked for it.");
    case State::isRefused:
        return theRenderedDocument->refusalReason();
    case State::isGivenUp:
        return tr("Its opening was cancelled.");
    case State::isOpening:
    case State::isOpened:
        break;
    }
    return {};
}

void Document::makeWindowControllers()
{
    theRegistry->make(WindowIdentifiers::document, this);
}

bool Document::validateCommand(const QString& command) const
{
    if (command == "exportPDFversions"_L1)
        return isEarly ? theUpdates.value_or(false) : isIncr();
    if (command == "openSource"_L1)
        return theRegistry->knows(WindowIdentifiers::source);
    if (command == "openBytes"_L1)
        return theRegistry->knows(WindowIdentifiers::bytes);
    if (command == "openVersions"_L1)
        return theRegistry->knows(WindowIdentifiers::versions);
    const bool takesEngine = command == "openPlainPDF"_L1 || command == "exportFlatPDF"_L1
        || command == "exportPlainText"_L1 || command == "exportRichText"_L1;
    if (takesEngine && isEarly && !isOpened())
        return false;
    if (command == "openPlainPDF"_L1)
        return theRegistry->knows(WindowIdentifiers::plainPDF);
    return true;
}

void Document::openSource()
{
    showNewWindow(WindowIdentifiers::source);
}

void Document::openBytes()
{
    showNewWindow(WindowIdentifiers::bytes);
}

void Document::showBytes(std::size_t offset, std::size_t length)
{
    if (!latestWindow(WindowIdentifiers::bytes))
        openBytes();
    DocumentWindow* const latest = latestWindow(WindowIdentifiers::bytes);
    if (!latest)
        return;
    latest->bringUp();
    if (auto* const display = dynamic_cast<BytesDisplay*>(latest->content()))
        display->goTo(offset, length);
}

DocumentWindow* Document::latestWindow(const QString& identifier) const
{
    const auto latest = std::find_if(windows().crbegin(), windows().crend(),
        [&](const DocumentWindow* window) { return window->identifier() == identifier; });
    return latest == windows().crend() ? nullptr : *latest;
}

void Document::openVersions()
{
    if (DocumentWindow* const window = latestWindow(WindowIdentifiers::versions))
        window->bringUp();
    else
        showNewWindow(WindowIdentifiers::versions);
}

PDFSavedVersions* Document::savedVersions()
{
    if (!theSavedVersions)
        theSavedVersions = std::make_unique<PDFSavedVersions>(theBytes);
    return theSavedVersions.get();
}

void Document::openPlainPDF()
{
    showNewWindow(WindowIdentifiers::plainPDF);
}

void Document::showNewWindow(const QString& identifier)
{
    if (QWidget* window = theRegistry->make(identifier, this))
        window->show();
}

void Document::showSource()
{
    isEarly = isEarly || !isOpened();
    if (DocumentWindow* const latest = latestWindow(WindowIdentifiers::source))
        latest->bringUp();
    else
        openSource();
}

void Document::showPage(int page)
{
    if (!isOpened())
        return;
    showWindows();
    emit pageWanted(page);
}

void Document::showSourceOfPage(int page)
{
    showSource();
    if (const DocumentWindow* const latest = latestWindow(WindowIdentifiers::source))
        emit sourceOfPageWanted(latest, page);
}

void Document::showAllFindings()
{
    showSource();
    if (const DocumentWindow* const latest = latestWindow(WindowIdentifiers::source))
        emit findingsWanted(latest);
}

DocumentFindings* Document::findings()
{
    const bool isNew = !theFindings;
    if (isNew)
        theFindings = std::make_unique<DocumentFindings>(theBytes, theRenderedDocument.get());
    if (isNew && theText)
        theFindings->setText(theText.get());
    return theFindings.get();
}

void Document::openVersion(std::size_t number, std::size_t end)
{
    emit versionWanted({number, theBytes.prefix(end), password()});
}

QString Document::pathOfCopy() const
{
    const QString path = fileURL().toLocalFile();
    if (!version())
        return path;
    const FileNameParts parts = fileNameParts(QFile::encodeName(path).toStdString());
    const std::string name
        = versionFileName(parts.base, version()->number, versionExtension(parts));
    return QFileInfo(path).dir().filePath(QFile::decodeName(QByteArray::fromStdString(name)));
}

ExportSource Document::exportSource()
{
    const QString path = pathOfCopy();
    return {path, version() ? QFileInfo(path).fileName() : displayName(), theBytes,
        theRenderedDocument.get(), theText.get(), windowForSheet(), this};
}

void Document::exportPDFversions()
{
    VersionExport::begin(exportSource());
}

void Document::exportVersions(const std::vector<std::size_t>& numbers)
{
    VersionExport::begin(exportSource(), numbers);
}

void Document::exportFlatPDF()
{
    DocumentExport::begin(ExportKind::isFlatPDF, exportSource());
}

void Document::exportPlainText()
{
    DocumentExport::begin(ExportKind::isPlainText, exportSource());
}

void Document::exportRichText()
{
    DocumentExport::begin(ExportKind::isRichText, exportSource());
}

} // namespace tarnwick
