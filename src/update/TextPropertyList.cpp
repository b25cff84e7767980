#include "TextPropertyList.h"

#include <QStringDecoder>

namespace tarnwick {

namespace {

/// What the octal escapes \200 to \377 stand for: the form's own code page, from 0x80.
constexpr char16_t upperHalf[] = u"\u00A0\u00C0\u00C1\u00C2\u00C3\u00C4\u00C5\u00C7"
                                 u"\u00C8\u00C9\u00CA\u00CB\u00CC\u00CD\u00CE\u00CF"
                                 u"\u00D0\u00D1\u00D2\u00D3\u00D4\u00D5\u00D6\u00D9"
                                 u"\u00DA\u00DB\u00DC\u00DD\u00DE\u00B5\u00D7\u00F7"
                                 u"\u00A9\u00A1\u00A2\u00A3\u2044\u00A5\u0192\u00A7"
                                 u"\u00A4\u2019\u201C\u00AB\u2039\u203A\uFB01\uFB02"
                                 u"\u00AE\u2013\u2020\u2021\u00B7\u00A6\u00B6\u2022"
                                 u"\u201A\u201E\u201D\u00BB\u2026\u2030\u00AC\u00BF"
                                 u"\u00B9\u02CB\u00B4\u02C6\u02DC\u00AF\u02D8\u02D9"
                                 u"\u00A8\u00B2\u02DA\u00B8\u00B3\u02DD\u02DB\u02C7"
                                 u"\u2014\u00B1\u00BC\u00BD\u00BE\u00E0\u00E1\u00E2"
                                 u"\u00E3\u00E4\u00E5\u00E7\u00E8\u00E9\u00EA\u00EB"
                                 u"\u00EC\u00C6\u00ED\u00AA\u00EE\u00EF\u00F0\u00F1"
                                 u"\u0141\u00D8\u0152\u00BA\u00F2\u00F3\u00F4\u00F5"
                                 u"\u00F6\u00E6\u00F9\u00FA\u00FB\u0131\u00FC\u00FD"
                                 u"\u0142\u00F8\u0153\u00DF\u00FE\u00FF\uFFFD\uFFFD";
static_assert(std::size(upperHalf) == 128 + 1);

std::optional<QString> decoded(const QByteArray& bytes)
{
    const auto encoding = QStringConverter::encodingForData(bytes);
    QStringDecoder decoder(encoding.value_or(QStringConverter::Utf8));
    QString text = decoder(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(text);
}

bool isBare(QChar c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9')
        || c == u'_' || c == u'$' || c == u'/' || c == u':' || c == u'.' || c == u'-';
}

/// The digit's value, or 16 when the character is none.
uint digitOf(QChar c)
{
    if (c >= u'0' && c <= u'9')
        return uint(c.unicode() - u'0');
    const char16_t lower = c.unicode() | 0x20;
    return lower >= u'a' && lower <= u'f' ? uint(lower - u'a' + 10) : 16;
}

class Reader
{
public:
    explicit Reader(QString text)
        : theText(std::move(text))
    {
    }

    std::optional<PropertyList> document()
    {
        std::optional<PropertyList> root = value(1);
        skipBlanks();
        return at == theText.size() ? root : std::nullopt;
    }

private:
    QChar current() const { return at < theText.size() ? theText.at(at) : QChar(); }

    bool skip(QChar expected)
    {
        if (at >= theText.size() || theText.at(at) != expected)
            return false;
        ++at;
        return true;
    }

    /// Skips blanks and comments; a comment without an end reaches to the text's end.
    void skipBlanks()
    {
        while (at < theText.size()) {
            const QStringView rest = QStringView(theText).sliced(at);
            qsizetype length = 0;
            if (rest.startsWith(u"//"))
                length = rest.indexOf(u'\n');
            else if (rest.startsWith(u"/*"))
                length = rest.indexOf(u"*/", 2) < 0 ? -1 : rest.indexOf(u"*/", 2) + 2;
            else if (rest.front().isSpace())
                length = 1;
            else
                return;
            at = length < 0 ? theText.size() : at + length;
        }
    }

    std::optional<PropertyList> value(int depth)
    {
        skipBlanks();
        if (!budget.takeNodes(1) || depth > PropertyListBudget::maximumDepth + 1)
            return std::nullopt;
        if (skip(u'('))
            return depth > PropertyListBudget::maximumDepth ? std::nullopt : array(depth);
        if (skip(u'{'))
            return depth > PropertyListBudget::maximumDepth ? std::nullopt : dictionary(depth);
        if (skip(u'<'))
            return data();
        const std::optional<QString> string = text();
        return string ? std::optional(PropertyList{*string}) : std::nullopt;
    }

    std::optional<PropertyList> array(int depth)
    {
        PropertyList::Array items;
        for (skipBlanks(); !skip(u')'); skipBlanks()) {
            const std::optional<PropertyList> item = value(depth + 1);
            if (!item)
                return std::nullopt;
            items << *item;
            skipBlanks();
            // A comma may stand behind the last one as well.
            if (!skip(u',') && current() != u')')
                return std::nullopt;
        }
        return PropertyList{items};
    }

    std::optional<PropertyList> dictionary(int depth)
    {
        PropertyList::Dictionary entries;
        for (skipBlanks(); !skip(u'}'); skipBlanks()) {
            const std::optional<QString> key = text();
            skipBlanks();
            if (!key || !skip(u'=') || !budget.takeNodes(1))
                return std::nullopt;
            const std::optional<PropertyList> entry = value(depth + 1);
            skipBlanks();
            if (!entry || !skip(u';'))
                return std::nullopt;
            entries.insert(*key, *entry);
        }
        return PropertyList{entries};
    }

    std::optional<PropertyList> data()
    {
        QByteArray digits;
        for (; !skip(u'>'); ++at) {
            const bool isDigit = digitOf(current()) < 16;
            if (at >= theText.size() || (!isDigit && !current().isSpace()))
                return std::nullopt;
            if (isDigit)
                digits += current().toLatin1();
        }
        if (digits.size() % 2 != 0)
            return std::nullopt;
        return PropertyList{QByteArray::fromHex(digits)};
    }

    std::optional<QString> text()
    {
        if (current() == u'"' || current() == u'\'')
            return quoted(theText.at(at++));
        const qsizetype start = at;
        while (isBare(current()))
            ++at;
        return at > start ? std::optional(theText.mid(start, at - start)) : std::nullopt;
    }

    std::optional<QString> quoted(QChar quote)
    {
        QString result;
        while (at < theText.size()) {
            const QChar c = theText.at(at++);
            if (c == quote)
                return result;
            result += c == u'\\' ? escaped() : c;
        }
        return std::nullopt;
    }

    /// The character that an escape stands for, its backslash read already.
    QChar escaped()
    {
        if (digitOf(current()) < 8) {
            const uint code = digits(8, 3) & 0xff;
            return QChar(code < 0x80 ? char16_t(code) : upperHalf[code - 0x80]);
        }
        const QChar c = current();
        ++at; // at the text's end, the closing quote is missing anyway
        switch (c.unicode()) {
        case u'a':
            return QChar(u'\a');
        case u'b':
            return QChar(u'\b');
        case u'f':
            return QChar(u'\f');
        case u'n':
            return QChar(u'\n');
        case u'r':
            return QChar(u'\r');
        case u't':
            return QChar(u'\t');
        case u'v':
            return QChar(u'\v');
        case u'U':
            return QChar(char16_t(digits(16, 4)));
        default:
            return c;
        }
    }

    /// The number that up to so many digits give.
    uint digits(uint base, int most)
    {
        uint number = 0;
        for (int i = 0; i < most && digitOf(current()) < base; ++i, ++at)
            number = number * base + digitOf(current());
        return number;
    }

    QString theText;
    qsizetype at = 0;
    PropertyListBudget budget;
};

} // namespace

std::optional<PropertyList> readTextPropertyList(const QByteArray& bytes)
{
    std::optional<QString> text = decoded(bytes);
    return text ? Reader(std::move(*text)).document() : std::nullopt;
}

} // namespace tarnwick
