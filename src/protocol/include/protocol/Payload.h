#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace tarnwick {

/// Puts a payload together, values one after another in the machine's own byte order.
class PayloadWriter
{
public:
    template<typename Number> void put(Number number)
    {
        static_assert(std::is_arithmetic_v<Number>);
        putBytes(&number, sizeof number);
    }
    void putBytes(const void* bytes, std::size_t size)
    {
        theBytes.append(static_cast<const char*>(bytes), size);
    }
    const std::string& bytes() const { return theBytes; }
    std::string takeBytes() { return std::move(theBytes); }

private:
    std::string theBytes;
};

/// Takes a payload apart. Reading past the end gives zeros and makes isGood() false for good.
class PayloadReader
{
public:
    explicit PayloadReader(std::string_view bytes)
        : theRest(bytes)
    {
    }
    template<typename Number> Number take()
    {
        static_assert(std::is_arithmetic_v<Number>);
        Number number = 0;
        const std::string_view bytes = takeBytes(sizeof number);
        if (!bytes.empty())
            std::memcpy(&number, bytes.data(), sizeof number);
        return number;
    }
    std::string_view takeBytes(std::size_t size)
    {
        if (size > theRest.size()) {
            refuse();
            return {};
        }
        const std::string_view bytes = theRest.substr(0, size);
        theRest.remove_prefix(size);
        return bytes;
    }
    /// Whether count items of size bytes each can still follow: to be asked before room is made for
    /// them.
    bool holds(std::size_t count, std::size_t size) const { return count <= theRest.size() / size; }
    /// What was read makes no sense: nothing more is.
    void refuse()
    {
        theIsGood = false;
        theRest = {};
    }
    bool isGood() const { return theIsGood; }
    /// Everything was read, and nothing beyond.
    bool isDone() const { return theIsGood && theRest.empty(); }

private:
    std::string_view theRest;
    bool theIsGood = true;
};

/// Many plain items of a message, as they lie in its payload: where the message is made it owns
/// them, where it is taken it shows those in the payload, which has to outlive it. Nobody copies
/// megabytes.
template<typename Item> class PackedItems
{
    static_assert(std::is_trivially_copyable_v<Item>);

public:
    constexpr PackedItems() = default;
    PackedItems(std::vector<Item> items)
        : theItems(std::move(items))
    {
    }
    /// @param bytes borrowed; whole items.
    explicit PackedItems(std::string_view bytes)
        : theBytes(bytes)
    {
    }
    std::size_t size() const { return bytes().size() / sizeof(Item); }
    bool isEmpty() const { return bytes().empty(); }
    /// Precondition: index < size().
    Item operator[](std::size_t index) const
    {
        Item item;
        std::memcpy(&item, bytes().data() + index * sizeof item, sizeof item);
        return item;
    }
    std::string_view bytes() const
    {
        if (theItems.empty())
            return theBytes;
        return {reinterpret_cast<const char*>(theItems.data()), theItems.size() * sizeof(Item)};
    }

private:
    std::vector<Item> theItems;
    std::string_view theBytes; ///< of a payload, where there are no items
};

} // namespace tarnwick
