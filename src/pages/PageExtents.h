#pragma once

#include <QSizeF>

#include <functional>
#include <vector>

namespace tarnwick {

/// Running heights and the usual width of a column of pages, for millions of pages of which a
/// thousand change at a time: what changes is worked out anew for the blocks that hold it alone.
///
/// Sizes are in points, positive and at most 14400. They stay with the owner, who hands over a way
/// to read them each time.
class PageExtents
{
public:
    using SizeOf = std::function<QSizeF(int page)>;

    /// Starts again with these pages.
    void setPages(int count, const SizeOf& sizeOf);
    /// To be called before and after pages of a stretch change. Precondition: they exist.
    void forget(int first, int count, const SizeOf& sizeOf);
    void learn(int first, int count, const SizeOf& sizeOf);

    /// Height of the pages before a page; of all pages for their number. Reads the sizes of at most
    /// a block. Precondition: 0 <= page <= number of pages.
    double heightBefore(int page, const SizeOf& sizeOf) const;

    /// Width of the widest page that is at most twice as wide as most; 1 without pages.
    double fittingWidth() const { return theFittingWidth; }

private:
    struct Block
    {
        double height = 0;
        double heightBefore = 0;
        double narrowest = 0;
        double widest = 0;
    };
    static constexpr int blockSize = 1024;

    int endOf(std::size_t block) const;
    void measure(std::size_t block, const SizeOf& sizeOf);
    void count(std::size_t block, int step, const SizeOf& sizeOf);
    void finish(const SizeOf& sizeOf);
    double medianWidth(const SizeOf& sizeOf) const;
    double widestUpTo(double limit, double least, const SizeOf& sizeOf) const;

    int theCount = 0;
    std::vector<Block> theBlocks;
    std::vector<int> theWidths; ///< pages whose width lies in each whole point
    double theFittingWidth = 1;
};

} // namespace tarnwick
