#pragma once

#include "text/PlainTextView.h"

#include <QObject>
#include <QPointer>

#include <optional>
#include <vector>

namespace tarnwick {

/// A place in a pane, and what was selected there.
struct PanePlace
{
    QPointer<PlainTextView> view; ///< null when its window has closed
    TextPosition anchor;
    TextPosition caret;

    static PanePlace of(PlainTextView* view);
    bool isSameAs(const PanePlace& other) const
    {
        return view == other.view && caret == other.caret;
    }
};

/// The places of a document that the user was led away from, over all of its inspectors, so that
/// one can go back and forward through them. Keeps the latest 200; those of closed windows go.
class PlaceHistory : public QObject
{
    Q_OBJECT

public:
    /// The history of a document: one for each, made when first asked for, owned by it.
    static PlaceHistory& of(QObject& document);

    /// The user is led away from a place. Forgets what was ahead.
    void leave(const PanePlace& from);

    bool canGoBack() const;
    bool canGoForward() const;
    /// The place to go to. @param from where the user is; can be gone forward, or back, to again.
    /// @{
    std::optional<PanePlace> back(const PanePlace& from);
    std::optional<PanePlace> forward(const PanePlace& from);
    /// @}

private:
    using Places = std::vector<PanePlace>;
    explicit PlaceHistory(QObject* document);

    static void keep(Places& places, const PanePlace& place);
    static std::optional<PanePlace> step(const PanePlace& from, Places& source, Places& target);

    Places theBack;
    Places theForward;
};

} // namespace tarnwick
