#pragma once

#include "PageGeometry.h"

#include <QList>

#include <optional>

namespace tarnwick {

/// The places that a reader has jumped away from, as web browsers keep them.
class ViewHistory
{
public:
    /// A jump starts from this place; what lay ahead is forgotten. Only the latest 200 are kept.
    void recordJumpFrom(const PagePlace& place);

    bool canGoBack() const { return !theBack.isEmpty(); }
    bool canGoForward() const { return !theForward.isEmpty(); }

    /// The place to show instead of the present one; nothing when there is none.
    std::optional<PagePlace> goBack(const PagePlace& present);
    std::optional<PagePlace> goForward(const PagePlace& present);

    void clear();

private:
    QList<PagePlace> theBack;
    QList<PagePlace> theForward;
};

} // namespace tarnwick
