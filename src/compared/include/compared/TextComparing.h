#pragma once

#include "compare/MergedText.h"
#include "compared/ComparedPage.h"
#include "work/Work.h"

#include <QObject>
#include <QString>

#include <array>
#include <memory>
#include <vector>

namespace tarnwick {

class PDFDocument;
struct PDFPageText;

/// Pages from 0, from the first on.
struct PageStretch
{
    int first = 0;
    int count = 0;
};

/// Two stretches of text, compared as they are shown.
struct ComparedText
{
    MergedText merged;
    std::vector<ComparedWords> words; ///< of each of merged.changes
    std::vector<std::array<int, 2>> pages; ///< where each of the changes begins; -1 in no page
    bool isRewritten = false;
    std::array<PDFLosses, 2> losses;
};

/// Reads the text of pages of two documents and compares it: of a pair of pages, or of all.
class TextComparing : public QObject
{
    Q_OBJECT

public:
    /// Both borrowed, and open.
    TextComparing(PDFDocument* before, PDFDocument* after, QObject* parent);
    ~TextComparing() override;

    /// Compares stretches of pages; gives up what was asked for before. Empty stretches have no
    /// text.
    void start(const PageStretch& before, const PageStretch& after);
    void cancel();
    bool isRunning() const { return theOpenCount > 0 || theWork.isRunning(); }

signals:
    /// @param done, total pages.
    void progressed(int done, int total);
    void finished(const std::shared_ptr<const tarnwick::ComparedText>& text);

private:
    struct Side
    {
        QString text;
        std::vector<qsizetype> starts; ///< of the pages in text
        int firstPage = 0;
        PDFLosses losses;
    };
    void ask(std::size_t side, const PageStretch& pages);
    void take(std::size_t side, int page, const PDFPageText& text);
    void oneIsDone();

    std::array<PDFDocument*, 2> theDocuments;
    std::array<Side, 2> theSides;
    std::unique_ptr<QObject> theRequests;
    int theOpenCount = 0;
    int theDone = 0;
    int theTotal = 0;
    Work theWork;
};

} // namespace tarnwick
