#include "XmlPropertyList.h"

#include <QDateTime>
#include <QTimeZone>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

std::optional<PropertyList> integerFrom(QString text)
{
    const bool isNegative = text.startsWith(u'-');
    if (isNegative || text.startsWith(u'+'))
        text.remove(0, 1);
    const bool isHexadecimal = text.startsWith(u"0x", Qt::CaseInsensitive);
    if (isHexadecimal)
        text.remove(0, 2);
    if (text.isEmpty() || !text.at(0).isLetterOrNumber())
        return std::nullopt; // a second sign
    bool isNumber = false;
    const quint64 magnitude = text.toULongLong(&isNumber, isHexadecimal ? 16 : 10);
    constexpr quint64 smallestNegative = quint64(1) << 63;
    if (!isNumber || (isNegative && magnitude > smallestNegative))
        return std::nullopt;
    if (isNegative)
        return PropertyList{static_cast<qint64>(0 - magnitude)};
    if (magnitude < smallestNegative)
        return PropertyList{static_cast<qint64>(magnitude)};
    return PropertyList{magnitude};
}

std::optional<PropertyList> realFrom(const QString& text)
{
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    return isNumber ? std::optional(PropertyList{number}) : std::nullopt;
}

std::optional<PropertyList> dateFrom(const QString& text)
{
    QDateTime time = QDateTime::fromString(text, u"yyyy-MM-dd'T'HH:mm:ss'Z'"_s);
    time.setTimeSpec(Qt::UTC);
    if (!time.isValid())
        return std::nullopt;
    static const QDateTime reference(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC);
    return PropertyList{PropertyList::Date{double(reference.secsTo(time))}};
}

std::optional<PropertyList> dataFrom(const QString& text)
{
    QByteArray encoded = text.toLatin1();
    for (const char blank : {' ', '\t', '\n', '\r'})
        encoded.replace(blank, QByteArray());
    const auto decoded = QByteArray::fromBase64Encoding(
        encoded, QByteArray::Base64Encoding | QByteArray::AbortOnBase64DecodingErrors);
    return decoded ? std::optional(PropertyList{*decoded}) : std::nullopt;
}

class Reader
{
public:
    explicit Reader(const QByteArray& bytes)
        : xml(bytes)
    {
    }

    std::optional<PropertyList> document()
    {
        if (!nextChild())
            return std::nullopt;
        const bool isWrapped = xml.name() == "plist"_L1;
        if (isWrapped && !nextChild())
            return std::nullopt;
        std::optional<PropertyList> root = value(1);
        if (root && isWrapped && nextChild())
            return std::nullopt; // a second value
        while (root && !xml.atEnd())
            xml.readNext(); // the rest must be well-formed, too
        return xml.hasError() ? std::nullopt : root;
    }

private:
    /// Goes to the next element within the current one; false at its end, and in front of anything
    /// else that has a meaning.
    bool nextChild()
    {
        while (!xml.atEnd()) {
            switch (xml.readNext()) {
            case QXmlStreamReader::StartElement:
                return true;
            case QXmlStreamReader::EndElement:
                return false;
            case QXmlStreamReader::DTD:
                if (!xml.entityDeclarations().isEmpty())
                    xml.raiseError();
                break;
            case QXmlStreamReader::Characters:
                if (!xml.isWhitespace())
                    xml.raiseError();
                break;
            case QXmlStreamReader::EntityReference:
                xml.raiseError();
                break;
            default:
                break;
            }
        }
        return false;
    }

    /// The value whose start the reader stands at; afterwards it stands at its end.
    std::optional<PropertyList> value(int depth)
    {
        if (!budget.takeNodes(1))
            return std::nullopt;
        const QString kind = xml.name().toString();
        if (kind == "array"_L1)
            return array(depth);
        if (kind == "dict"_L1)
            return dictionary(depth);
        const QString text = xml.readElementText();
        if (xml.hasError())
            return std::nullopt;
        return leaf(kind, text);
    }

    static std::optional<PropertyList> leaf(const QString& kind, const QString& text)
    {
        if (kind == "string"_L1)
            return PropertyList{text};
        if (kind == "data"_L1)
            return dataFrom(text);
        if (kind == "integer"_L1)
            return integerFrom(text.trimmed());
        if (kind == "real"_L1)
            return realFrom(text.trimmed());
        if (kind == "date"_L1)
            return dateFrom(text.trimmed());
        if (kind == "true"_L1 || kind == "false"_L1)
            return PropertyList{kind == "true"_L1};
        return std::nullopt;
    }

    std::optional<PropertyList> array(int depth)
    {
        if (depth > PropertyListBudget::maximumDepth)
            return std::nullopt;
        PropertyList::Array items;
        while (nextChild()) {
            const std::optional<PropertyList> item = value(depth + 1);
            if (!item)
                return std::nullopt;
            items << *item;
        }
        return PropertyList{items};
    }

    std::optional<PropertyList> dictionary(int depth)
    {
        if (depth > PropertyListBudget::maximumDepth)
            return std::nullopt;
        PropertyList::Dictionary entries;
        while (nextChild()) {
            if (xml.name() != "key"_L1 || !budget.takeNodes(1))
                return std::nullopt;
            const QString key = xml.readElementText();
            if (!nextChild())
                return std::nullopt;
            const std::optional<PropertyList> entry = value(depth + 1);
            if (!entry)
                return std::nullopt;
            entries.insert(key, *entry);
        }
        return PropertyList{entries};
    }

    QXmlStreamReader xml;
    PropertyListBudget budget;
};

} // namespace

std::optional<PropertyList> readXmlPropertyList(const QByteArray& bytes)
{
    return Reader(bytes).document();
}

} // namespace tarnwick
