#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <limits>
#include <memory>
#include <memory_resource>
#include <type_traits>

namespace tarnwick {

/// A list that only grows at its end and never moves its elements.
///
/// Elements lie in chunks, each as large as all before it, so growing copies nothing: a std::vector
/// of half a gigabyte needs three times its size for the moment in which it grows. What a chunk has
/// and no element uses is never touched, and so takes no memory. Chunks come from the default
/// memory resource of the time at which the list was made.
template<class T> class ChunkedVector
{
    static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);

public:
    ChunkedVector() = default;
    ChunkedVector(const ChunkedVector&) = delete;
    ChunkedVector& operator=(const ChunkedVector&) = delete;
    ~ChunkedVector()
    {
        for (std::size_t chunk = 0; chunk < theChunkCount; ++chunk)
            theAllocator.deallocate(theChunks[chunk], chunkSize(chunk));
    }

    std::size_t size() const { return theSize; }
    bool empty() const { return theSize == 0; }

    const T& operator[](std::size_t index) const { return *place(index); }

    void push_back(const T& value)
    {
        if (theSize == theCapacity)
            addChunk();
        std::construct_at(place(theSize), value);
        ++theSize;
    }

    /// Drops the elements from newSize on. Precondition: newSize <= size().
    void truncate(std::size_t newSize) { theSize = newSize; }

private:
    static constexpr std::size_t firstChunk = 64;
    static constexpr unsigned firstWidth = std::bit_width(firstChunk);

    static std::size_t chunkSize(std::size_t chunk) { return firstChunk << chunk; }

    /// Counted from one first chunk on, the elements of a chunk are the numbers of one width.
    T* place(std::size_t index) const
    {
        const std::size_t number = index + firstChunk;
        const auto chunk = static_cast<std::size_t>(std::bit_width(number)) - firstWidth;
        return theChunks[chunk] + (number - chunkSize(chunk));
    }

    /// Memory that nothing has touched yet: clearing it first would cost as much as filling it.
    void addChunk()
    {
        theChunks[theChunkCount] = theAllocator.allocate(chunkSize(theChunkCount));
        theCapacity += chunkSize(theChunkCount);
        ++theChunkCount;
    }

    std::pmr::polymorphic_allocator<T> theAllocator;
    std::array<T*, std::numeric_limits<std::size_t>::digits - firstWidth> theChunks{};
    std::size_t theChunkCount = 0;
    std::size_t theCapacity = 0;
    std::size_t theSize = 0;
};

} // namespace tarnwick
