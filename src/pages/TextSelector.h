#pragma once

#include "pdf/PDFSelection.h"
#include "pdf/PageTextGeometry.h"

#include <QObject>
#include <QTimer>

#include <optional>

namespace tarnwick {

class SelectableText;

/// What is selected of a document's text, and its way to the clipboards.
///
/// A selection may be made before its text is known: its ends are kept, and what lies between them
/// is selected as the text arrives. A copy waits for all of it.
class TextSelector : public QObject
{
    Q_OBJECT

public:
    /// @param text borrowed.
    TextSelector(SelectableText& text, QObject* parent);

    /// Whether there is a text to select from.
    bool isPossible() const;
    const PDFSelection& selection() const { return theSelection; }
    /// Where the selection began; it is extended from here.
    const PDFTextPosition& anchor() const { return theAnchor; }

    /// Selects these stretches, however much is known of their text.
    void select(const PDFSelection& selection);
    /// Selects what lies between two places, and fetches what is not known of it.
    void selectBetween(const PDFTextPosition& anchor, const PDFTextPosition& focus);
    /// Forgets everything: another text is to come, or none.
    void clear();

    /// Copies the selected text, now or once it is there.
    void copy();
    /// Gives the selected text to those who paste by the middle button, where all of it is there.
    void offerPrimarySelection();

    /// To be told what becomes of the text: a page has arrived; all have; no more are to come.
    void pageArrived(int page);
    void textCompleted();
    void textStopped();

signals:
    void changed();

private:
    struct Ends
    {
        PDFTextPosition anchor;
        PDFTextPosition focus;

        int firstPage() const { return std::min(anchor, focus).page; }
        int lastPage() const { return std::max(anchor, focus).page; }
    };

    bool isWhole() const;
    void selectBetweenEnds();
    void take(const PDFSelection& selection);
    void finishCopy();

    SelectableText& theText;
    PDFSelection theSelection;
    PDFTextPosition theAnchor;
    std::optional<Ends> theEnds; ///< of a selection whose text may still be on its way
    bool isCopyWaiting = false;
    QTimer theTimer; ///< gathers pages that arrive while they are selected
};

} // namespace tarnwick
