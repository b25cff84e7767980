#pragma once

#include <cstddef>
#include <optional>
#include <vector>

namespace tarnwick {

/// The marked pages of a window: latest mark first, each page once, 40 at most.
class PageMarks
{
public:
    static constexpr std::size_t limit = 40;

    /// Marks a page: it goes in front and may push the oldest mark out.
    /// @param page index from 0; negative (no page) changes nothing.
    /// @returns whether the list changed; marking a page again does not.
    bool mark(int page);

    /// Page indices, latest mark first.
    const std::vector<int>& pages() const { return thePages; }

    /// The page of an entry. @returns nothing for an index that is none, as -1 (nothing selected).
    std::optional<int> page(int index) const;

    /// The entry beside another one; nothing at either end of the list.
    /// @param selected index of the selected entry, or -1.
    std::optional<int> before(int selected) const { return entry(selected - 1); }
    std::optional<int> after(int selected) const { return entry(selected + 1); }

private:
    std::optional<int> entry(int index) const;

    std::vector<int> thePages;
};

} // namespace tarnwick
