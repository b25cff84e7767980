#include "DocumentSearch.h"

#include "TextSearch.h"
#include "Utf16.h"
#include "pdf/PDFDocumentText.h"

namespace tarnwick {

namespace {

// Searched within a few hundredths of a second, sooner than a thread's answer would be seen.
constexpr qsizetype longestTextSearchedAtOnce = 300'000;

constexpr qsizetype matchesBetweenStops = 10'000; // made in a few milliseconds

QList<PDFSelection> matchesIn(const QList<QString>& pages, TextSearch& search,
    const std::stop_token& stop = {}, const Work::Report* report = nullptr)
{
    QList<PDFSelection> matches;
    for (int page = 0; page < pages.size() && !stop.stop_requested(); ++page) {
        for (const TextMatch& match : search.matches(unitsOf(pages.at(page)), stop)) {
            matches.append(PDFSelection(
                {page, static_cast<qsizetype>(match.start), static_cast<qsizetype>(match.length)}));
            if (matches.size() % matchesBetweenStops == 0 && stop.stop_requested())
                break;
        }
        if (report)
            (*report)(static_cast<quint64>(page) + 1, static_cast<quint64>(pages.size()));
    }
    return matches;
}

} // namespace

DocumentSearch::DocumentSearch(PDFDocumentText* text, QObject* parent)
    : QObject(parent)
    , theText(text)
{
    connect(text, &PDFDocumentText::completed, this, &DocumentSearch::textArrives);
    connect(text, &PDFDocumentText::stopped, this, &DocumentSearch::textArrives);
}

void DocumentSearch::start(const QString& pattern, SearchOptions options)
{
    cancel();
    thePattern = pattern;
    theOptions = options;
    isWaiting = true;
    if (!theText->isWhole())
        theText->fetch();
    if (theText->isWhole())
        textArrives();
}

void DocumentSearch::cancel()
{
    isWaiting = false;
    theWork.abandon();
}

void DocumentSearch::textArrives()
{
    if (!isWaiting)
        return;
    isWaiting = false;
    search();
}

void DocumentSearch::search()
{
    const PDFPagesText text = theText->text();
    qsizetype length = thePattern.size();
    for (const QString& page : text.pages)
        length += page.size();
    if (length <= longestTextSearchedAtOnce) {
        TextSearch search(unitsOf(thePattern), theOptions);
        emit found(matchesIn(text.pages, search), text.losses);
        return;
    }
    const auto task = [text, pattern = thePattern, options = theOptions](
                          const std::stop_token& stop, const Work::Report& report) {
        TextSearch search(unitsOf(pattern), options);
        return matchesIn(text.pages, search, stop, &report);
    };
    theWork.start(
        task,
        [this, losses = text.losses](
            const QList<PDFSelection>& matches) { emit found(matches, losses); },
        [this](quint64 done, quint64 total) {
            emit progressed(static_cast<int>(done), static_cast<int>(total));
        });
}

} // namespace tarnwick
