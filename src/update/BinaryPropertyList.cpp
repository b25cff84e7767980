#include "BinaryPropertyList.h"

#include <QStringDecoder>

#include <bit>
#include <limits>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

constexpr std::size_t headerSize = 8;
constexpr std::size_t trailerSize = 32;

/// The big-endian number of so many bytes, 0 to 8, at an offset that the caller has checked.
quint64 numberAt(const QByteArray& bytes, std::size_t offset, std::size_t size)
{
    quint64 number = 0;
    for (std::size_t i = 0; i < size; ++i)
        number = number << 8 | static_cast<quint8>(bytes.at(qsizetype(offset + i)));
    return number;
}

class Reader
{
public:
    explicit Reader(const QByteArray& bytes)
        : theBytes(bytes)
    {
    }

    std::optional<PropertyList> document()
    {
        const auto size = std::size_t(theBytes.size());
        if (size < headerSize + trailerSize)
            return std::nullopt;
        const std::size_t trailer = size - trailerSize;
        offsetSize = numberAt(theBytes, trailer + 6, 1);
        referenceSize = numberAt(theBytes, trailer + 7, 1);
        objectCount = numberAt(theBytes, trailer + 8, 8);
        const quint64 root = numberAt(theBytes, trailer + 16, 8);
        tableStart = numberAt(theBytes, trailer + 24, 8);
        const auto isSize = [](std::size_t bytes) { return bytes >= 1 && bytes <= 8; };
        if (!isSize(offsetSize) || !isSize(referenceSize) || tableStart < headerSize
            || tableStart > trailer || objectCount > (trailer - tableStart) / offsetSize)
            return std::nullopt;
        return object(root, 1);
    }

private:
    /// What the first byte of an object says, and the bytes behind it.
    struct Body
    {
        std::size_t start = 0;
        std::size_t count = 0; ///< the low four bits, or the number that follows them
    };

    /// The object with this number in the table.
    std::optional<PropertyList> object(quint64 number, int depth)
    {
        if (number >= objectCount || !budget.takeNodes(1))
            return std::nullopt;
        const quint64 offset = numberAt(theBytes, tableStart + number * offsetSize, offsetSize);
        if (offset < headerSize || offset >= tableStart)
            return std::nullopt;
        const auto marker = static_cast<quint8>(theBytes.at(qsizetype(offset)));
        const Body body{offset + 1, marker & 0x0fu};
        switch (marker >> 4) {
        case 0x0:
            return truthValue(marker);
        case 0x1:
            return integer(body);
        case 0x2:
            return real(body);
        case 0x3:
            return date(body);
        case 0x8:
            return identifier(body);
        default:
            return counted(marker >> 4, body, depth);
        }
    }

    bool hasBytes(std::size_t start, std::size_t count) const
    {
        return start <= tableStart && count <= tableStart - start;
    }

    static std::optional<PropertyList> truthValue(quint8 marker)
    {
        if (marker != 0x08 && marker != 0x09)
            return std::nullopt; // nothing, and fillings, are no values of a property list
        return PropertyList{marker == 0x09};
    }

    std::optional<PropertyList> integer(const Body& body) const
    {
        if (body.count > 4 || !hasBytes(body.start, std::size_t(1) << body.count))
            return std::nullopt;
        if (body.count < 4) {
            // Eight bytes are signed, fewer are not.
            const quint64 number = numberAt(theBytes, body.start, std::size_t(1) << body.count);
            return PropertyList{static_cast<qint64>(number)};
        }
        const quint64 high = numberAt(theBytes, body.start, 8);
        const quint64 low = numberAt(theBytes, body.start + 8, 8);
        const bool isNegative = low >> 63;
        if (high == (isNegative ? std::numeric_limits<quint64>::max() : 0))
            return PropertyList{static_cast<qint64>(low)};
        return high == 0 ? std::optional(PropertyList{low}) : std::nullopt;
    }

    std::optional<PropertyList> real(const Body& body) const
    {
        if ((body.count != 2 && body.count != 3)
            || !hasBytes(body.start, std::size_t(1) << body.count))
            return std::nullopt;
        if (body.count == 2) {
            const auto bits = static_cast<quint32>(numberAt(theBytes, body.start, 4));
            return PropertyList{double(std::bit_cast<float>(bits))};
        }
        return PropertyList{std::bit_cast<double>(numberAt(theBytes, body.start, 8))};
    }

    std::optional<PropertyList> date(const Body& body) const
    {
        if (body.count != 3 || !hasBytes(body.start, 8))
            return std::nullopt;
        const double seconds = std::bit_cast<double>(numberAt(theBytes, body.start, 8));
        return PropertyList{PropertyList::Date{seconds}};
    }

    std::optional<PropertyList> identifier(const Body& body) const
    {
        if (body.count > 7 || !hasBytes(body.start, body.count + 1))
            return std::nullopt;
        const auto number = static_cast<qint64>(numberAt(theBytes, body.start, body.count + 1));
        return PropertyList{PropertyList::Dictionary{{u"CF$UID"_s, PropertyList{number}}}};
    }

    /// The kinds whose first byte counts what follows: bytes, characters or further objects.
    std::optional<PropertyList> counted(int kind, Body body, int depth)
    {
        if (body.count == 0x0f && !readCount(body))
            return std::nullopt;
        switch (kind) {
        case 0x4:
            return isAffordable(body, 1) ? std::optional(PropertyList{bytesOf(body, 1)})
                                         : std::nullopt;
        case 0x5:
            return isAffordable(body, 1)
                ? std::optional(PropertyList{QString::fromLatin1(bytesOf(body, 1))})
                : std::nullopt;
        case 0x6:
            return decodedText(body, 2, QStringDecoder::Utf16BE);
        case 0x7:
            return decodedText(body, 1, QStringDecoder::Utf8);
        case 0xa:
            return array(body, depth);
        case 0xd:
            return dictionary(body, depth);
        default:
            return std::nullopt;
        }
    }

    /// Replaces the count by the integer object that stands behind the first byte.
    bool readCount(Body& body) const
    {
        if (!hasBytes(body.start, 1))
            return false;
        const auto marker = static_cast<quint8>(theBytes.at(qsizetype(body.start)));
        const std::size_t size = std::size_t(1) << (marker & 0x0f);
        if (marker >> 4 != 0x1 || size > 8 || !hasBytes(body.start + 1, size))
            return false;
        body = {body.start + 1 + size, numberAt(theBytes, body.start + 1, size)};
        return true;
    }

    bool isAffordable(const Body& body, std::size_t unit)
    {
        return body.count <= tableStart / unit && hasBytes(body.start, body.count * unit)
            && budget.takeBytes(body.count * unit);
    }

    QByteArray bytesOf(const Body& body, std::size_t unit) const
    {
        return theBytes.mid(qsizetype(body.start), qsizetype(body.count * unit));
    }

    std::optional<PropertyList> decodedText(
        const Body& body, std::size_t unit, QStringDecoder::Encoding encoding)
    {
        if (!isAffordable(body, unit))
            return std::nullopt;
        QStringDecoder decoder(encoding, QStringDecoder::Flag::ConvertInitialBom);
        const QString text = decoder(bytesOf(body, unit));
        // The decoder lets half a surrogate pair pass.
        return decoder.hasError() || !text.isValidUtf16() ? std::nullopt
                                                          : std::optional(PropertyList{text});
    }

    bool mayHold(const Body& body, std::size_t referencesEach, int depth) const
    {
        const std::size_t unit = referenceSize * referencesEach;
        return depth <= PropertyListBudget::maximumDepth
            && body.count <= PropertyListBudget::maximumNodes
            && hasBytes(body.start, body.count * unit);
    }

    std::optional<PropertyList> referred(std::size_t place, int depth)
    {
        return object(numberAt(theBytes, place, referenceSize), depth);
    }

    std::optional<PropertyList> array(const Body& body, int depth)
    {
        if (!mayHold(body, 1, depth))
            return std::nullopt;
        PropertyList::Array items;
        for (std::size_t i = 0; i < body.count; ++i) {
            const auto item = referred(body.start + i * referenceSize, depth + 1);
            if (!item)
                return std::nullopt;
            items << *item;
        }
        return PropertyList{items};
    }

    std::optional<PropertyList> dictionary(const Body& body, int depth)
    {
        if (!mayHold(body, 2, depth))
            return std::nullopt;
        PropertyList::Dictionary entries;
        const std::size_t values = body.start + body.count * referenceSize; // all keys come first
        for (std::size_t i = 0; i < body.count; ++i) {
            const auto key = referred(body.start + i * referenceSize, depth + 1);
            if (!key || !key->string())
                return std::nullopt;
            const auto entry = referred(values + i * referenceSize, depth + 1);
            if (!entry)
                return std::nullopt;
            entries.insert(*key->string(), *entry);
        }
        return PropertyList{entries};
    }

    const QByteArray& theBytes;
    PropertyListBudget budget;
    std::size_t offsetSize = 0;
    std::size_t referenceSize = 0;
    quint64 objectCount = 0;
    std::size_t tableStart = 0;
};

} // namespace

std::optional<PropertyList> readBinaryPropertyList(const QByteArray& bytes)
{
    return bytes.startsWith("bplist0") ? Reader(bytes).document() : std::nullopt;
}

} // namespace tarnwick
