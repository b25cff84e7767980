#pragma once

#include <cstddef>
#include <memory>
#include <type_traits>
#include <vector>

/// A list that only grows at its end and never moves its elements.
///
/// Elements lie in chunks of equal size, so growing copies nothing: a std::vector of half a
/// gigabyte needs three times its size for the moment in which it grows.
template<class T> class ChunkedVector
{
    static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);

public:
    static constexpr std::size_t chunkSize = std::size_t{1} << 14;

    ChunkedVector() = default;
    ChunkedVector(const ChunkedVector&) = delete;
    ChunkedVector& operator=(const ChunkedVector&) = delete;
    ~ChunkedVector()
    {
        for (T* chunk : theChunks) {
            if (chunk)
                std::allocator<T>().deallocate(chunk, chunkSize);
        }
    }

    std::size_t size() const { return theSize; }
    bool empty() const { return theSize == 0; }

    const T& operator[](std::size_t index) const
    {
        return theChunks[index / chunkSize][index % chunkSize];
    }

    void push_back(const T& value)
    {
        if (theSize == theChunks.size() * chunkSize)
            addChunk();
        std::construct_at(theChunks[theSize / chunkSize] + theSize % chunkSize, value);
        ++theSize;
    }

    /// Drops the elements from newSize on. Precondition: newSize <= size().
    void truncate(std::size_t newSize) { theSize = newSize; }

private:
    /// Memory that nothing has touched yet: clearing it first would cost as much as filling it.
    void addChunk()
    {
        theChunks.push_back(nullptr); // first, so that a chunk is never without its owner
        theChunks.back() = std::allocator<T>().allocate(chunkSize);
    }

    std::vector<T*> theChunks;
    std::size_t theSize = 0;
};
