#pragma once

#include "export/ExportSource.h"
#include "files/FileBytes.h"
#include "frame/FrameDocument.h"
#include "frame/WindowRegistry.h"
#include "pdf/PDFDocument.h"
#include "pdf/PDFDocumentText.h"
#include "work/Work.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

namespace tarnwick {

class DocumentFindings;

class PDFSavedVersions;

/// One opened PDF file: its bytes as read, the document that the PDF engine makes of them, and the
/// commands of the document. It is only ever read; nothing is written back to its file.
///
/// Windows get it through their constructor, borrow it for their life and never change it.
class Document : public FrameDocument
{
    Q_OBJECT

public:
    /// @param registry makes the document's windows; borrowed, outlives the document.
    explicit Document(const WindowRegistry<Document>* registry, QObject* parent = nullptr);
    ~Document() override;

    /// The rendered document, owned by this one; null before readFromData() and once it is given
    /// up. Windows exist only while it is open (PDFDocument::State::isOpen), but for those that
    /// show the source (isSourceEarly()).
    PDFDocument* thePDFDocument() const { return theRenderedDocument.get(); }
    /// The file's bytes, unchanged.
    const FileBytes& theData() const { return theBytes; }
    /// The file carries incremental updates (isIncrementallyUpdated()). Found out in a thread;
    /// asked for before opened(), it is found out here.
    bool isIncr() const;
    /// The pages' text, fetched once and shared by every window; null before opened(). Whoever
    /// needs it calls fetch().
    PDFDocumentText* documentText() const { return theText.get(); }
    /// What is to be said of the file, found out once and shared by every window; for windows,
    /// which exist from opened() on.
    DocumentFindings* findings();

    /// The password that has opened it; null without one.
    QString password() const;

    /// Replaces the rendered document, the bytes and isIncr(), in this order.
    void readFromData(const FileBytes& bytes) override;
    void unlock(const QString& password) override;
    State state() const override;
    void giveUp() override;
    void makeWindowControllers() override;

    void showSource() override;
    /// Whether its source has been shown before it was opened, which it may never be.
    bool isSourceEarly() const { return isEarly; }
    /// Why it is not opened, as sentences for the user; empty while it may yet be.
    QString whyNotOpened() const;

    /// Shows bytes of the file, selected, in the latest of its windows for bytes, which comes to
    /// the front; in a new one where there is none.
    void showBytes(std::size_t offset, std::size_t length);

    /// "exportPDFversions" is possible exactly while isIncr(), a command that opens a window while
    /// the registry makes such windows, every other command always. What takes the engine is
    /// possible only once the document is opened.
    Q_INVOKABLE bool validateCommand(const QString& command) const;

    /// Opens a saved version of the file as a document of its own, over the same bytes, or brings
    /// it to the front where it is open. Only documents of a DocumentController do.
    /// @param number of the version, from 1. @param end of it: one of versionCuts().
    void openVersion(std::size_t number, std::size_t end);

    /// Exports some versions of the file, as exportPDFversions() does all of them; no file is
    /// replaced. @param numbers from 1, ascending.
    void exportVersions(const std::vector<std::size_t>& numbers);

    /// The saved versions of the file, looked for from the first call on; lives as long as the
    /// document. Precondition: readFromData().
    PDFSavedVersions* savedVersions();

    /// Path of a file beside the document's own that would hold what the document does: its file's,
    /// or the one that its version would be exported to ("report-002.pdf"). Names to propose are
    /// made from it.
    QString pathOfCopy() const;

    /// Shows a page in the main window; nothing while it is not opened. @param page from 0.
    void showPage(int page);
    /// Lists what is to be said of the file in a source inspector: in the latest one, or in a new
    /// one.
    void showAllFindings();
    /// Shows a page's object in a source inspector: in the latest one, or in a new one.
    void showSourceOfPage(int page);

signals:
    /// The findings are to be listed by a source inspector, the one in that window.
    void findingsWanted(const DocumentWindow* window);
    /// A page is to be shown by the main windows. @param page from 0.
    void pageWanted(int page);
    /// A page's object is to be shown by a source inspector, the one in that window.
    void sourceOfPageWanted(const DocumentWindow* window, int page);

public slots:
    /// Opens a further source inspector.
    void openSource();
    /// Opens a further window for the file's bytes.
    void openBytes();
    /// Shows the window for the saved versions, which is opened once.
    void openVersions();
    /// Opens a further plain PDF window.
    void openPlainPDF();
    /// Each runs its panel and writes when that is answered (VersionExport, DocumentExport).
    void exportPDFversions();
    void exportFlatPDF();
    void exportPlainText();
    void exportRichText();

private:
    bool isOpened() const { return state() == State::isOpened; }
    ExportSource exportSource();
    void showNewWindow(const QString& identifier);
    DocumentWindow* latestWindow(const QString& identifier) const;
    void finishOpening();

    const WindowRegistry<Document>* theRegistry;
    std::unique_ptr<PDFDocument> theRenderedDocument;
    std::unique_ptr<PDFDocumentText> theText; // destroyed before the document that it reads
    std::unique_ptr<DocumentFindings> theFindings; // likewise, and before the text
    FileBytes theBytes;
    std::optional<bool> theUpdates; ///< of theBytes, once they are known
    Work theUpdateSearch;
    std::unique_ptr<PDFSavedVersions> theSavedVersions; ///< null before anybody asks for them
    bool isEarly = false;
};

} // namespace tarnwick
