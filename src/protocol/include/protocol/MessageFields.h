#pragma once

#include "protocol/Payload.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

/// How a message goes into a payload and comes out of it.
///
/// A message is a struct with a function that names its fields one after the other, each with the
/// limit that it has:
///
///     static constexpr void describe(auto& fields, auto& message)
///     {
///         fields.number(message.page, 0, maximumPageCount);
///         fields.text(message.title, longestTitle);
///     }
///
/// Everything else follows: FieldPutter writes the fields, FieldTaker reads and checks them, and
/// FieldSizes knows how many bytes they take. All three have these functions:
///
/// - number(value), number(value, least, most): as it is. One out of range, which no number at all
///   always is, makes the message none for whoever takes it.
/// - flag(value): a bool.
/// - choice(value, last): an enumeration whose cases count from 0.
/// - text(value, longest): a std::string, of which at most so many bytes are put, in whole
///   characters of UTF-8.
/// - textsWithin(most): no field, but a limit on the bytes of all texts that follow.
/// - part(value): another message.
/// - list(value, longest): a std::vector of messages, of which at most so many are put.
/// - items(value, longest): PackedItems, likewise.
///
/// So what is put is taken at the other end unless a number is out of its range, no limit is
/// checked a second time, and memory is taken for no more than the payload holds.

using PayloadCount = std::uint32_t; ///< what stands before texts, lists and items

/// The bytes of a message.
class FieldSizes
{
public:
    template<typename Message> static constexpr FieldSizes of()
    {
        FieldSizes sizes;
        Message message;
        Message::describe(sizes, message);
        return sizes;
    }

    constexpr void number(const auto& value) { theFixed += sizeof value; }
    constexpr void number(const auto& value, auto, auto) { theFixed += sizeof value; }
    constexpr void flag(bool) { theFixed += 1; }
    constexpr void choice(const auto& value, auto) { theFixed += sizeof value; }
    constexpr void text(const std::string&, std::size_t longest)
    {
        theFixed += sizeof(PayloadCount);
        theTexts += longest;
    }
    constexpr void textsWithin(std::size_t most) { theMostTexts = most; }
    template<typename Message> constexpr void part(const Message&) { add(of<Message>(), 1, 1); }
    template<typename Message> constexpr void list(const std::vector<Message>&, std::size_t longest)
    {
        theFixed += sizeof(PayloadCount);
        add(of<Message>(), 0, longest);
    }
    template<typename Item> constexpr void items(const PackedItems<Item>&, std::size_t longest)
    {
        theFixed += sizeof(PayloadCount);
        theRest += longest * sizeof(Item);
    }

    constexpr std::size_t least() const { return theFixed; }
    constexpr std::size_t most() const
    {
        return theFixed + theRest + std::min(theTexts, theMostTexts);
    }

private:
    constexpr void add(const FieldSizes& part, std::size_t leastTimes, std::size_t mostTimes)
    {
        theFixed += part.theFixed * leastTimes;
        theRest += part.theFixed * (mostTimes - leastTimes) + part.theRest * mostTimes;
        theTexts += part.theTexts * mostTimes;
    }

    std::size_t theFixed = 0; ///< what every such message has
    std::size_t theRest = 0; ///< what it may have besides, but for texts
    std::size_t theTexts = 0;
    std::size_t theMostTexts = std::numeric_limits<std::size_t>::max();
};

template<typename Message> constexpr std::size_t leastSize()
{
    return FieldSizes::of<Message>().least();
}

template<typename Message> constexpr std::size_t mostSize()
{
    return FieldSizes::of<Message>().most();
}

/// Puts the fields of a message.
class FieldPutter
{
public:
    explicit FieldPutter(PayloadWriter& writer)
        : theWriter(writer)
    {
    }
    void number(auto value) { theWriter.put(value); }
    void number(auto value, auto, auto) { theWriter.put(value); }
    void flag(bool value) { theWriter.put(static_cast<std::uint8_t>(value)); }
    template<typename Choice> void choice(Choice value, Choice)
    {
        theWriter.put(static_cast<std::underlying_type_t<Choice>>(value));
    }
    void text(const std::string& value, std::size_t longest)
    {
        const std::string_view put = wholeCharacters(value, std::min(longest, theTextRoom));
        theTextRoom -= put.size();
        theWriter.put(static_cast<PayloadCount>(put.size()));
        theWriter.putBytes(put.data(), put.size());
    }
    void textsWithin(std::size_t most) { theTextRoom = most; }
    template<typename Message> void part(const Message& value) { Message::describe(*this, value); }
    template<typename Message> void list(const std::vector<Message>& value, std::size_t longest)
    {
        const std::size_t count = std::min(value.size(), longest);
        theWriter.put(static_cast<PayloadCount>(count));
        for (std::size_t index = 0; index < count; ++index)
            part(value[index]);
    }
    template<typename Item> void items(const PackedItems<Item>& value, std::size_t longest)
    {
        const std::size_t count = std::min(value.size(), longest);
        theWriter.put(static_cast<PayloadCount>(count));
        theWriter.putBytes(value.bytes().data(), count * sizeof(Item));
    }

private:
    /// The beginning of a text, which may be of any bytes.
    static std::string_view wholeCharacters(std::string_view text, std::size_t longest)
    {
        if (text.size() <= longest)
            return text;
        std::size_t end = longest;
        const auto isInside = [text](std::size_t place) {
            return (static_cast<unsigned char>(text[place]) & 0xc0u) == 0x80u;
        };
        while (end > 0 && longest - end < 3 && isInside(end))
            --end;
        return text.substr(0, end);
    }

    PayloadWriter& theWriter;
    std::size_t theTextRoom = std::numeric_limits<std::size_t>::max();
};

/// Takes the fields of a message, and refuses the payload where one is out of its limits.
class FieldTaker
{
public:
    explicit FieldTaker(PayloadReader& reader)
        : theReader(reader)
    {
    }
    template<typename Number> void number(Number& value) { value = theReader.take<Number>(); }
    template<typename Number> void number(Number& value, Number least, Number most)
    {
        number(value);
        require(value >= least && value <= most);
    }
    void flag(bool& value)
    {
        const auto byte = theReader.take<std::uint8_t>();
        require(byte <= 1);
        value = byte == 1;
    }
    template<typename Choice> void choice(Choice& value, Choice last)
    {
        const auto number = theReader.take<std::underlying_type_t<Choice>>();
        require(number <= static_cast<std::underlying_type_t<Choice>>(last));
        value = theReader.isGood() ? static_cast<Choice>(number) : Choice();
    }
    void text(std::string& value, std::size_t longest)
    {
        const std::size_t size = count(std::min(longest, theTextRoom), 1);
        theTextRoom -= size;
        value = theReader.takeBytes(size);
    }
    void textsWithin(std::size_t most) { theTextRoom = most; }
    template<typename Message> void part(Message& value) { Message::describe(*this, value); }
    template<typename Message> void list(std::vector<Message>& value, std::size_t longest)
    {
        value.resize(count(longest, leastSize<Message>()));
        for (auto item = value.begin(); item != value.end() && theReader.isGood(); ++item)
            part(*item);
    }
    template<typename Item> void items(PackedItems<Item>& value, std::size_t longest)
    {
        const std::size_t size = count(longest, sizeof(Item));
        value = PackedItems<Item>(theReader.takeBytes(size * sizeof(Item)));
    }

private:
    void require(bool isSound)
    {
        if (!isSound)
            theReader.refuse();
    }
    /// @returns how many items of at least that size follow; 0 when they cannot.
    std::size_t count(std::size_t most, std::size_t size)
    {
        const std::size_t count = theReader.take<PayloadCount>();
        require(count <= most && theReader.holds(count, size));
        return theReader.isGood() ? count : 0;
    }

    PayloadReader& theReader;
    std::size_t theTextRoom = std::numeric_limits<std::size_t>::max();
};

/// The payload of a message.
template<typename Message> std::string packed(const Message& message)
{
    PayloadWriter writer;
    FieldPutter fields(writer);
    Message::describe(fields, message);
    return writer.takeBytes();
}

/// The message that a payload holds, nothing where it is none. Its PackedItems show the payload.
template<typename Message> std::optional<Message> unpacked(std::string_view payload)
{
    PayloadReader reader(payload);
    FieldTaker fields(reader);
    Message message;
    Message::describe(fields, message);
    if (!reader.isDone())
        return std::nullopt;
    return message;
}

} // namespace tarnwick
