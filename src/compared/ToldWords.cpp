#include "ToldWords.h"

#include <algorithm>

namespace tarnwick {

namespace {

constexpr std::size_t longestTold = 80; ///< units

QString told(const QString& text, const WordRange& range)
{
    const std::size_t length = range.end - range.begin;
    const QString words = text.mid(static_cast<qsizetype>(range.begin),
                                  static_cast<qsizetype>(std::min(length, longestTold)))
                              .simplified();
    return length > longestTold ? QString(words + u'\u2026') : words;
}

} // namespace

std::u16string_view unitsOf(const QString& text)
{
    return {reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size())};
}

ComparedWords toldWords(const QString& before, const QString& after, const WordChange& change)
{
    return {told(before, change.before), told(after, change.after), change.removed, change.added};
}

} // namespace tarnwick
