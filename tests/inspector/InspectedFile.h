#pragma once

#include "document/Document.h"
#include "inspector/SourceViewController.h"
#include "text/PlainTextView.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>
#include <string>

namespace tarnwick {

/// A document opened from bytes, and inspectors of it whose panes are filled.
class InspectedFile
{
public:
    struct Flags : ViewFlags
    {
        bool showThumbnail() const override { return false; }
        bool showRawSource() const override { return raw; }
        bool showSummarySource() const override { return summary; }

        bool raw = false;
        bool summary = true; ///< listings
    };

    explicit InspectedFile(const std::string& bytes)
        : theDocument(&theRegistry)
    {
        QSignalSpy opened(&theDocument, &Document::opened);
        theDocument.readFromData(FileBytes::copy(bytes).value());
        opened.wait(30'000);
    }

    /// What inspectors show from their next filling on.
    Flags flags;

    /// Shown and filled, the pane of the stored file with the keyboard.
    std::unique_ptr<SourceViewController> inspector()
    {
        auto made = newInspector();
        QSignalSpy filled(made.get(), &SourceViewController::filled);
        made->resize(1000, 900);
        made->show();
        made->activateWindow();
        filled.wait(30'000);
        made->lowerTextView()->setFocus();
        return made;
    }
    /// Not shown yet.
    std::unique_ptr<SourceViewController> newInspector()
    {
        return std::make_unique<SourceViewController>(&theDocument, &flags);
    }

private:
    WindowRegistry<Document> theRegistry;
    Document theDocument;
};

} // namespace tarnwick
