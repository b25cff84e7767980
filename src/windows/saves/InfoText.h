#pragma once

#include <QByteArray>
#include <QString>

#include <string_view>

namespace tarnwick {

/// A text string (ISO 32000-2, 7.9.2.2): UTF-16 or UTF-8 by its mark, else PDFDocEncoding. Without
/// the marks of languages; line breaks and other controls become spaces.
/// @param token of a string in source, with its parentheses or angle brackets.
QString textOfString(std::string_view token);

/// A date (ISO 32000-2, 7.9.4) in UTC: "2024-01-31 11:00:00 UTC", or as it is stated where it names
/// no zone: "2024-01-31 12:00:00". What is no date stays as it is.
QString dateText(const QString& date);

/// What an Info dictionary says (ISO 32000-2, 14.3.3), as texts; empty where it says nothing.
struct InfoText
{
    QString producer;
    QString created; ///< as dateText() has it
    QString modified; ///< likewise

    /// @param source of the dictionary, as the engine spells it.
    static InfoText read(const QByteArray& source);
};

} // namespace tarnwick
