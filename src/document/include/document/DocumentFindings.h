#pragma once

#include "analysis/SourceText.h"
#include "files/FileBytes.h"
#include "findings/FileFindings.h"
#include "work/Work.h"

#include <QObject>
#include <QPointer>
#include <QSet>

#include <memory>
#include <optional>

namespace tarnwick {

class PDFCheckRequest;
class PDFDocument;
class PDFDocumentText;

/// What is to be said of a document's file, found out once and shared by its windows.
///
/// The source is looked through in a thread while the engine looks through the document; nothing
/// begins before somebody asks, and what is under way is given up when nobody who has asked is
/// left. Pages whose text could not be read come in once the text has been.
class DocumentFindings : public QObject
{
    Q_OBJECT

public:
    /// @param document borrowed; null, or not open, where the engine opens no document.
    DocumentFindings(const FileBytes& bytes, PDFDocument* document, QObject* parent = nullptr);
    ~DocumentFindings() override;

    /// Begins, unless that has been done. @param who wants to know as long as it lives.
    /// @param source the file's, scanned, which saves a scan; null for none.
    void want(QObject* who, std::shared_ptr<const SourceText> source = {});

    /// The document is open, perhaps after windows have asked: what is known so far is found out
    /// anew, with the engine. @param text the document's, borrowed.
    void setText(PDFDocumentText* text);

    /// Null until it is known.
    const FileFindings* findings() const { return theFindings ? &*theFindings : nullptr; }

signals:
    /// There are findings, or other ones.
    void changed();

private:
    struct Checked
    {
        std::shared_ptr<const SourceText> source; ///< null without memory for it
        Findings facts;
    };
    static Checked checked(const SharedBytes& bytes, std::shared_ptr<const SourceText> source,
        const std::stop_token& stop);

    void begin(std::shared_ptr<const SourceText> source);
    void forget(QObject* who);
    void giveUp();
    void join();
    void publish();

    FileBytes theBytes;
    QPointer<PDFDocument> theDocument;
    PDFDocumentText* theText = nullptr;
    QSet<QObject*> theWanting;
    QPointer<PDFCheckRequest> theRequest;
    std::optional<Checked> theChecked; ///< until it is joined
    std::optional<FileFindings> theJoined; ///< without what the text lacks
    std::optional<FileFindings> theFindings;
    Work theWork;
};

} // namespace tarnwick
