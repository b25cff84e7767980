#include "InfoText.h"

#include "analysis/SourceLexer.h"

#include <QDateTime>
#include <QStringDecoder>
#include <QTimeZone>

#include <array>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

constexpr qsizetype longestText = 2000; ///< characters that are of use to anybody

int hexValue(char digit)
{
    if (digit >= '0' && digit <= '9')
        return digit - '0';
    const int letter = (digit | 0x20) - 'a';
    return letter >= 0 && letter < 6 ? letter + 10 : -1;
}

QByteArray bytesOfHex(std::string_view digits)
{
    QByteArray bytes;
    int high = -1;
    for (const char digit : digits) {
        const int value = hexValue(digit);
        if (value < 0)
            continue;
        if (high >= 0)
            bytes += static_cast<char>(high << 4 | value);
        high = high >= 0 ? -1 : value;
    }
    if (high >= 0)
        bytes += static_cast<char>(high << 4);
    return bytes;
}

/// Takes what follows a backslash off the text.
QByteArray escaped(std::string_view& text)
{
    constexpr std::string_view letters = "nrtbf";
    constexpr std::string_view meanings = "\n\r\t\b\f";
    constexpr std::string_view octals = "01234567";
    const auto isOctal = [&] { return !text.empty() && octals.find(text[0]) < octals.size(); };
    int value = 0;
    int digits = 0;
    for (; digits < 3 && isOctal(); ++digits) {
        value = value * 8 + (text[0] - '0');
        text.remove_prefix(1);
    }
    if (digits > 0)
        return {1, static_cast<char>(value)};
    if (text.empty())
        return {};
    const char letter = text[0];
    text.remove_prefix(1);
    if (letter == '\r' && text.starts_with('\n'))
        text.remove_prefix(1);
    if (letter == '\r' || letter == '\n') // the line goes on
        return {};
    const std::size_t place = letters.find(letter);
    return {1, place < letters.size() ? meanings[place] : letter};
}

QByteArray bytesOfString(std::string_view token)
{
    const bool isHex = token.starts_with('<');
    token.remove_prefix(token.empty() ? 0 : 1);
    if (token.ends_with(isHex ? '>' : ')'))
        token.remove_suffix(1);
    if (isHex)
        return bytesOfHex(token);
    QByteArray bytes;
    while (!token.empty()) {
        const char character = token[0];
        token.remove_prefix(1);
        if (character == '\\')
            bytes += escaped(token);
        else
            bytes += character;
    }
    return bytes;
}

/// PDFDocEncoding (ISO 32000-2, D.2): Latin-1 but for these.
QString ofDocEncoding(const QByteArray& bytes)
{
    constexpr std::array<char16_t, 8> accents{
        0x02D8, 0x02C7, 0x02C6, 0x02D9, 0x02DD, 0x02DB, 0x02DA, 0x02DC};
    constexpr std::array<char16_t, 33> signs{0x2022, 0x2020, 0x2021, 0x2026, 0x2014, 0x2013, 0x0192,
        0x2044, 0x2039, 0x203A, 0x2212, 0x2030, 0x201E, 0x201C, 0x201D, 0x2018, 0x2019, 0x201A,
        0x2122, 0xFB01, 0xFB02, 0x0141, 0x0152, 0x0160, 0x0178, 0x017D, 0x0131, 0x0142, 0x0153,
        0x0161, 0x017E, 0xFFFD, 0x20AC};
    QString text;
    for (const char character : bytes) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte >= 0x18 && byte < 0x20)
            text += QChar(accents[byte - 0x18U]);
        else if (byte >= 0x80 && byte <= 0xA0)
            text += QChar(signs[byte - 0x80U]);
        else
            text += QLatin1Char(character);
    }
    return text;
}

QString decoded(const QByteArray& bytes)
{
    const auto behind = [&](qsizetype mark, QStringDecoder::Encoding encoding) -> QString {
        return QStringDecoder(encoding)(QByteArrayView(bytes).sliced(mark));
    };
    if (bytes.startsWith("\xFE\xFF"))
        return behind(2, QStringDecoder::Utf16BE);
    if (bytes.startsWith("\xFF\xFE")) // of no standard, and met nevertheless
        return behind(2, QStringDecoder::Utf16LE);
    if (bytes.startsWith("\xEF\xBB\xBF"))
        return behind(3, QStringDecoder::Utf8);
    return ofDocEncoding(bytes);
}

/// The digits at a place as a number.
int numberAt(const QString& text, qsizetype place, int missing)
{
    bool isNumber = false;
    const int number = text.mid(place, 2).toInt(&isNumber);
    return isNumber ? number : missing;
}

} // namespace

QString textOfString(std::string_view token)
{
    QString text = decoded(bytesOfString(token));
    for (QChar& character : text) {
        if (character.category() == QChar::Other_Control)
            character = u' ';
    }
    return text.simplified().left(longestText);
}

QString dateText(const QString& date)
{
    const QString digits = date.startsWith("D:"_L1) ? date.mid(2) : date;
    const QDate day(digits.left(4).toInt(), numberAt(digits, 4, 1), numberAt(digits, 6, 1));
    const QTime time(numberAt(digits, 8, 0), numberAt(digits, 10, 0), numberAt(digits, 12, 0));
    if (!day.isValid() || !time.isValid())
        return date;
    const QString form = u"yyyy-MM-dd HH:mm:ss"_s;
    const QDateTime stated(day, time, Qt::UTC);
    const QChar sign = digits.size() > 14 ? digits.at(14) : QChar();
    if (sign != u'Z' && sign != u'+' && sign != u'-')
        return stated.toString(form);
    const int minutes
        = 60 * numberAt(digits, 15, 0) + numberAt(digits, digits.mid(17, 1) == u"'" ? 18 : 17, 0);
    const int offset = sign == u'Z' ? 0 : sign == u'+' ? minutes : -minutes;
    return stated.addSecs(-60 * offset).toString(form) + u" UTC"_s;
}

InfoText InfoText::read(const QByteArray& source)
{
    const std::string_view text(source.constData(), static_cast<std::size_t>(source.size()));
    SourceLexer lexer(text, 0, text.size());
    InfoText info;
    int depth = 0;
    std::string key;
    for (SourceToken token = lexer.next(); token.kind != TokenKind::isEnd; token = lexer.next()) {
        const std::string_view spelled = text.substr(token.begin, token.end - token.begin);
        const bool isText
            = token.kind == TokenKind::isString || token.kind == TokenKind::isHexString;
        if (token.kind == TokenKind::isDictionaryOpen || token.kind == TokenKind::isArrayOpen)
            ++depth;
        if (token.kind == TokenKind::isDictionaryClose || token.kind == TokenKind::isArrayClose)
            --depth;
        if (depth == 1 && isText && key == "Producer")
            info.producer = textOfString(spelled);
        if (depth == 1 && isText && key == "CreationDate")
            info.created = dateText(textOfString(spelled));
        if (depth == 1 && isText && key == "ModDate")
            info.modified = dateText(textOfString(spelled));
        key = token.kind == TokenKind::isName ? nameText(spelled) : std::string();
    }
    return info;
}

} // namespace tarnwick
