#pragma once

#include "viewer/BackgroundJob.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>

class PDFDocumentText;
class PlainTextView;
class ProgressLine;

/// Brings a document's text into a text pane as its pages arrive, and counts it when it is whole.
///
/// What is selected in the pane, and what shows, stays where it is while the text grows.
class TextFeed : public QObject
{
    Q_OBJECT

public:
    /// All borrowed; they outlive this object. @param line tells how far the text is.
    TextFeed(
        PDFDocumentText* text, PlainTextView* view, ProgressLine* line, QObject* parent = nullptr);

    /// Fills the pane anew and fetches what is missing. counted() follows when the text is whole,
    /// for short texts that are there already from within this call.
    void fill();

signals:
    void counted(qint64 words, qint64 characters);

private:
    void fetch();
    void takePage(int page);
    void finish();
    void stop(bool isCancelled);
    void show(const QString& text);
    void showProgress();
    void count(const QString& text);

    PDFDocumentText* theText;
    PlainTextView* theView;
    ProgressLine* theLine;
    QString theBeginning; // the pages that have arrived
    int theTakenPages = 0;
    qsizetype theShownLength = 0;
    bool isCountWanted = false;
    QTimer theProgressTimer;
    BackgroundJob theCounting;
};
