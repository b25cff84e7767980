#pragma once

#include "pdf/PDFLosses.h"
#include "work/Work.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>

namespace tarnwick {

class PDFDocumentText;
class PlainTextView;
class ProgressLine;

/// Brings a document's text into a text pane as its pages arrive, and counts it when it is whole or
/// when no more of it comes. The pane shows where text is missing, without holding it as text.
///
/// What is selected in the pane, and what shows, stays where it is while the text grows.
class TextFeed : public QObject
{
    Q_OBJECT

public:
    /// All borrowed; they outlive this object. @param line tells how far the text is.
    TextFeed(
        PDFDocumentText* text, PlainTextView* view, ProgressLine* line, QObject* parent = nullptr);

    /// Brings the text into another pane from the next filling on, borrowed likewise.
    void setView(PlainTextView* view) { theView = view; }

    /// Fills the pane anew and fetches what is missing. counted() and lossesKnown() follow when the
    /// text is whole or fetching stops, for short texts that are there already from within this
    /// call.
    void fill();

signals:
    void counted(qint64 words, qint64 characters);
    /// What is missing from the text that the pane shows; nothing while it is being fetched.
    void lossesKnown(const PDFLosses& losses);

private:
    void fetch();
    void takePage(int page);
    void finish();
    void stop(bool isCancelled);
    void finishCount();
    QString show();
    void showProgress();
    void count(const QString& text);

    PDFDocumentText* theText;
    PlainTextView* theView;
    ProgressLine* theLine;
    int theTakenPages = 0;
    qsizetype theTakenLength = 0; // of the pages that have arrived
    qsizetype theShownLength = 0;
    bool isCountWanted = false;
    QTimer theProgressTimer;
    Work theCounting;
};

} // namespace tarnwick
