#include "BytesWords.h"

#include <QCoreApplication>
#include <QLocale>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

struct Words
{
    Q_DECLARE_TR_FUNCTIONS(BytesWords)
};

QString count(std::size_t bytes)
{
    return bytes == 1 ? Words::tr("1 byte")
                      : Words::tr("%1 bytes").arg(QLocale().toString(qulonglong{bytes}));
}

QString link(const QString& target, const QString& text)
{
    return u"<a href=\"#%1\">%2</a>"_s.arg(target, text);
}

/// As much of what was typed as a line has room for.
QString shortened(const QString& text)
{
    constexpr qsizetype longest = 24;
    return text.size() > longest ? text.left(longest) + QChar(u'\u2026') : text;
}

} // namespace

QString BytesWords::offset(std::size_t offset)
{
    return u"%1 (0x%2)"_s.arg(
        QLocale().toString(qulonglong{offset}), QString::number(qulonglong{offset}, 16).toUpper());
}

QString BytesWords::place(const HexStorage& bytes, HexView::Span selected)
{
    QString text = Words::tr("Offset %1").arg(offset(selected.begin));
    if (selected.begin < selected.end)
        text += Words::tr(", %1 selected").arg(count(selected.end - selected.begin));
    if (selected.begin == bytes.size())
        text += Words::tr(", the file's end");
    else if (bytes.stray().isBefore(selected.begin))
        text += Words::tr(", before the header");
    else if (bytes.stray().isBehind(selected.begin))
        text += Words::tr(", behind the last end-of-file marker");
    return text;
}

QString BytesWords::stray(const StrayBytes& stray, std::size_t size)
{
    QStringList parts;
    if (!stray.header)
        parts += Words::tr("There is no header (%PDF-).");
    else if (*stray.header > 0)
        parts += link(u"before"_s, count(*stray.header)) + Words::tr(" before the header (%PDF-).");
    if (!stray.end)
        parts += Words::tr("There is no end-of-file marker (%%EOF).");
    else if (*stray.end < size)
        parts += link(u"behind"_s, count(size - *stray.end))
            + Words::tr(" behind the last end-of-file marker (%%EOF).");
    return parts.join(u' ');
}

QString BytesWords::problem(const OffsetInput& input, const QString& text, std::size_t size)
{
    const QString trimmed = text.trimmed();
    const QString typed = shortened(trimmed.startsWith(u'@') ? trimmed.mid(1).trimmed() : trimmed);
    switch (input.problem) {
    case OffsetInput::Problem::isNone:
        return {};
    case OffsetInput::Problem::isEmpty:
        return Words::tr("Enter an offset: 2317 or 0x90D.");
    case OffsetInput::Problem::isHexWithoutSign:
        return Words::tr("“%1” is no decimal number. For a hexadecimal one, enter 0x%1.")
            .arg(typed);
    case OffsetInput::Problem::isBehindEnd:
        return Words::tr("“%1” is behind the file's end, which is at %2.").arg(typed, offset(size));
    case OffsetInput::Problem::isNoNumber:
        break;
    }
    return Words::tr("“%1” is no offset. Enter one like 2317 or 0x90D.").arg(typed);
}

QString BytesWords::problem(const BytePattern::Reading& reading)
{
    const QString place
        = QString::fromUtf16(reading.place.data(), static_cast<qsizetype>(reading.place.size()));
    switch (reading.problem) {
    case BytePattern::Reading::Problem::isNone:
        return {};
    case BytePattern::Reading::Problem::isNoDigit:
        return Words::tr("“%1” is no hexadecimal digit.").arg(place);
    case BytePattern::Reading::Problem::isHalfByte:
        return Words::tr("Half a byte: “%1” lacks a second digit.").arg(place);
    case BytePattern::Reading::Problem::isAllUnknown:
        break;
    }
    return Words::tr("At least one digit must be given.");
}

} // namespace tarnwick
