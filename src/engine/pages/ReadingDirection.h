#pragma once

#include "TextLine.h"

#include <cstddef>

namespace tarnwick {

/// Which way the words of a text run, by their first letters. Letters would not do: an address of
/// the web has as many as a sentence.
struct WordCount
{
    std::size_t rightToLeft = 0;
    std::size_t leftToRight = 0;

    void add(const TextLine& line);
    void add(const WordCount& other);
};

/// Whether a block of lines reads from the right, so that a Latin word stands left of the Hebrew
/// one that it follows.
///
/// On a page of right-to-left words all blocks do but those of mostly left-to-right words that end
/// on the right with one: an Arabic paragraph begins there, mostly with an Arabic word. On other
/// pages only blocks of more right-to-left words do.
/// @param firstLine of the block, as drawn. @param direction of that line.
bool readsFromRight(const WordCount& page, const WordCount& block, const TextLine& firstLine,
    const fz_point& direction);

} // namespace tarnwick
