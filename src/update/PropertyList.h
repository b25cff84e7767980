#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>

#include <cstddef>
#include <optional>
#include <variant>

namespace tarnwick {

/// A value of a property list: a text, a number, a truth value, a date, bytes, or a list or a
/// dictionary of further values. A value like any other: copies share what they hold.
struct PropertyList
{
    /// A point in time, in seconds since 1 January 2001 00:00 UTC.
    struct Date
    {
        double seconds = 0.0;
        bool operator==(const Date&) const = default;
    };
    using Array = QList<PropertyList>;
    using Dictionary = QMap<QString, PropertyList>;
    /// quint64 holds only what qint64 cannot.
    using Value
        = std::variant<bool, qint64, quint64, double, Date, QByteArray, QString, Array, Dictionary>;

    Value value;

    /// The list, the dictionary, the text that this is; null when it is something else. They live
    /// as long as this value stays unchanged.
    const Array* array() const { return std::get_if<Array>(&value); }
    const Dictionary* dictionary() const { return std::get_if<Dictionary>(&value); }
    const QString* string() const { return std::get_if<QString>(&value); }

    bool operator==(const PropertyList& other) const { return value == other.value; }
};

/// What a property list may cost its reader. Lists arrive over the network: a few bytes can ask for
/// gigabytes, by values that stand in each other, or by counts that nothing backs.
class PropertyListBudget
{
public:
    static constexpr int maximumDepth = 64; ///< lists and dictionaries within each other
    static constexpr std::size_t maximumNodes = 100'000; ///< values and keys in all
    static constexpr std::size_t maximumBytes = 16u << 20; ///< of texts and data in all

    /// Pays for so many values and keys; false when they are more than is left.
    bool takeNodes(std::size_t count) { return take(theNodes, count); }
    /// Pays for a text or data of so many bytes; false when they are more than is left.
    bool takeBytes(std::size_t count) { return take(theBytes, count); }

private:
    static bool take(std::size_t& left, std::size_t count)
    {
        if (count > left)
            return false;
        left -= count;
        return true;
    }

    std::size_t theNodes = maximumNodes;
    std::size_t theBytes = maximumBytes;
};

/// Reads a property list in whichever of its three forms the bytes hold: binary (they begin with
/// "bplist0"), XML (they begin with "<", data in angle brackets excepted), or the old text form.
/// @returns nothing when the bytes are no property list, are damaged, or cost more than the budget.
std::optional<PropertyList> readPropertyList(const QByteArray& bytes);

} // namespace tarnwick
