#pragma once

#include "LineSearch.h"
#include "work/Work.h"

#include <QObject>

#include <memory>
#include <stop_token>
#include <vector>

namespace tarnwick {

/// Counts the matches of a search in a thread, and finds the one next to a place.
///
/// Matches are counted for blocks of text, not listed: a letter is found a hundred million times in
/// a gigabyte. A single match is found again by searching its block.
class TextFinder : public QObject
{
    Q_OBJECT

public:
    explicit TextFinder(QObject* parent = nullptr);
    ~TextFinder() override;

    /// Searches from now on for this, ending an earlier search. The thread begins at a place that
    /// the user looks at and comes to what is before it last.
    void start(std::shared_ptr<const TextStorage> storage, const QString& wanted,
        Qt::CaseSensitivity sensitivity, TextPosition from);
    void stop();

    bool isActive() const { return theSearch != nullptr; }
    QString wanted() const { return theWanted; }
    Qt::CaseSensitivity sensitivity() const { return theSensitivity; }

    struct Answer
    {
        enum class Kind
        {
            isFound,
            isNone, ///< the text has no match
            isUnknown, ///< the thread has not come there yet; ask again after advanced()
        };
        Kind kind = Kind::isUnknown;
        TextRange match;
        bool isWrapped = false; ///< found by going on from the text's other end
    };
    /// The first match that begins at a place or behind it, else the text's first.
    Answer next(TextPosition from) const;
    /// The last match that begins before a place, else the text's last.
    Answer previous(TextPosition before) const;

    bool isComplete() const { return theIsComplete; }
    /// Matches counted so far.
    qint64 count() const;
    /// Number of a match in the text, from 1. Precondition: isComplete().
    qint64 number(TextRange match) const;
    /// How much is searched, 0 to 1, by lines.
    double progress() const;

    /// The matches that begin in a range, at most so many; for what a view shows.
    QList<TextRange> matches(TextRange range, qsizetype most) const;

signals:
    /// More is counted, or everything.
    void advanced();

private:
    struct Block
    {
        TextRange range;
        qint64 count = 0;
    };
    using Blocks = std::vector<Block>;

    static void run(const std::stop_token& stop, const LineSearch& search, TextPosition from,
        const std::function<void(Blocks)>& report);
    void take(const Blocks& blocks);
    Answer firstIn(TextRange range) const;
    Answer lastIn(TextRange range) const;

    QString theWanted;
    Qt::CaseSensitivity theSensitivity = Qt::CaseInsensitive;
    std::shared_ptr<const LineSearch> theSearch;
    TextPosition theStart;
    Blocks theBlocks; ///< in the text's order
    std::size_t theBefore = 0; ///< number of blocks before theStart
    bool theIsComplete = false;
    Work theWork;
};

} // namespace tarnwick
