#pragma once

#include "ByteFinder.h"

#include <QObject>

#include <optional>

namespace tarnwick {

class FindBar;
class HexView;

/// Finds bytes in a view of them: what is typed into a find bar, as the bytes of a text in UTF-8
/// or, with the bar's box checked, as a pattern in hexadecimal digits.
///
/// What is found is selected in the view; from the last match on, the first one follows.
class BytesSearch : public QObject
{
    Q_OBJECT

public:
    /// @param bar, view borrowed for as long as there is something to find.
    BytesSearch(FindBar* bar, HexView* view, QObject* parent);

    /// Shows the bar, with the selected bytes where these are few.
    void open();
    void findNext();
    void findPrevious();
    /// Finds the selected bytes' next occurrence.
    void findSelection();
    /// Whether these are few enough.
    bool canFindSelection() const;

    const ByteFinder& finder() const { return theFinder; }

private:
    enum class Seek
    {
        isNothing,
        isNext,
        isPrevious,
    };
    void takeSelection();
    void start();
    void seek(Seek direction, std::size_t from);
    bool prepareToStep();
    void resolveSeek();
    void stopOrClose();
    void showPrompt();
    void showStatus();
    QString foundStatus() const;

    FindBar* theBar;
    HexView* theView;
    ByteFinder theFinder;
    QString theProblem; ///< of what is typed
    Seek theSeek = Seek::isNothing; ///< waiting for the finder
    std::size_t theSeekFrom = 0;
    std::optional<std::size_t> theMatch; ///< found last
    bool isMatchWrapped = false;
};

} // namespace tarnwick
