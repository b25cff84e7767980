#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

/// A list that only grows at its end and never moves its elements.
///
/// Elements lie in chunks of equal size, so growing copies nothing: a std::vector of half a
/// gigabyte needs three times its size for the moment in which it grows.
template <class T> class ChunkedVector
{
public:
    static constexpr std::size_t chunkSize = std::size_t{ 1 } << 14;

    std::size_t size() const { return theSize; }
    bool empty() const { return theSize == 0; }

    const T& operator[](std::size_t index) const
    {
        return theChunks[index / chunkSize][index % chunkSize];
    }

    void push_back(const T& value)
    {
        if (theSize == theChunks.size() * chunkSize)
            theChunks.push_back(std::make_unique_for_overwrite<T[]>(chunkSize));
        theChunks[theSize / chunkSize][theSize % chunkSize] = value;
        ++theSize;
    }

    /// Drops the elements from newSize on. Precondition: newSize <= size().
    void truncate(std::size_t newSize) { theSize = newSize; }

private:
    std::vector<std::unique_ptr<T[]>> theChunks;
    std::size_t theSize = 0;
};
