#pragma once

#include "compared/ComparedPage.h"
#include "files/FileBytes.h"
#include "work/Work.h"

#include <QObject>

#include <memory>
#include <vector>

namespace tarnwick {

class PDFDocument;
class PDFPageDigests;
class PageComparing;

/// Compares the pages and texts of two documents, in the background.
///
/// First each page's digest is asked for, and pages are paired; pages of the same digest are the
/// same. Then the others are drawn, read and compared, one pair at a time: what it takes does not
/// grow with the documents. A page that cannot be drawn or read does not end the comparison: its
/// pair says so. Main thread only.
class DocumentComparison : public QObject
{
    Q_OBJECT

public:
    /// A document and the bytes that it was made of.
    struct Subject
    {
        PDFDocument* document = nullptr; ///< open, borrowed
        FileBytes bytes;
    };
    DocumentComparison(const Subject& before, const Subject& after, QObject* parent = nullptr);
    ~DocumentComparison() override;

    void start();
    /// Gives up what has not been compared so far.
    void cancel();

    PDFDocument* document(ComparedSide side) const;
    /// Empty until paired(); in the order of the later document.
    const std::vector<ComparedPage>& pages() const { return thePages; }
    /// The index in pages() of a page of one of the documents; -1 until paired().
    int pairOf(ComparedSide side, int page) const;
    /// A pair that is to be compared before the others; one that shows.
    void prefer(int pair);

    bool isRunning() const { return theIsRunning; }
    bool wasCancelled() const { return theWasCancelled; }
    /// Pairs that still wait to be compared.
    int waitingCount() const { return theWaiting; }
    bool areVersionsOfOneFile() const { return theKinship == PageKinship::isOfOneFile; }
    /// Whether nothing has been found that differs, and nothing has been left out.
    bool isEqual() const;
    bool hasLosses() const;

signals:
    void paired();
    /// A pair has been compared.
    void pairCompared(int pair);
    /// @param done, total pages whose digests are known, or pairs that are compared.
    void progressed(int done, int total);
    /// All is compared, or given up.
    void finished();

private:
    struct Side
    {
        Subject subject;
        std::unique_ptr<PDFPageDigests> digests; ///< while they are asked for
        std::vector<int> pairs; ///< by page
    };
    Side& side(ComparedSide which) { return theSides[static_cast<std::size_t>(which)]; }
    void askForDigests(ComparedSide which);
    void oneIsDigested();
    void pairAll();
    void takePairs(const std::vector<PagePair>& pairs);
    void compareNext();
    void compareAgain(ComparedSide which, int first, int count);
    int nextPair();
    void take(int index, const ComparedPage& page);
    void finish();

    std::array<Side, 2> theSides;
    PageKinship theKinship = PageKinship::isOfTwoFiles;
    std::vector<ComparedPage> thePages;
    Work theWork;
    PageComparing* theComparing; ///< compares one pair
    int thePreferred = -1;
    std::size_t theNext = 0; ///< pairs before it are compared, or were preferred
    int theWaiting = 0;
    int theToCompare = 0;
    std::size_t theTold = 0; ///< changes of words that are kept
    bool theIsRunning = false;
    bool theWasCancelled = false;
    int theDigested = 0; ///< documents
};

} // namespace tarnwick
