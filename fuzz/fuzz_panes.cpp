// Text as a pane holds it: its lines, what is copied of it, its words, and the search in it. The
// input: a byte for the kind of text, a byte for the length of what is searched for, a byte for how
// often the text is repeated (long lines are cut into stretches), and the text.

#include "FuzzTarget.h"

#include "LineSearch.h"
#include "TextExtract.h"
#include "TextWords.h"
#include "text/PlainTextStorage.h"

#include <QList>

using namespace tarnwick;

namespace {

using Storage = std::shared_ptr<const PlainTextStorage>;

/// The text, put together from its lines again.
QString rejoined(const PlainTextStorage& storage)
{
    QString text;
    for (qsizetype line = 0; line < storage.lineCount(); ++line) {
        const QString whole = storage.line(line).text;
        require(whole.size() == storage.lineLength(line), "a line's length");
        require(storage.lineAt(text.size()) == line, "the line at its first unit");
        text += whole;
        if (line + 1 < storage.lineCount())
            text += storage.lineEnd(line);
    }
    return text;
}

void checkCopies(const Storage& storage, const QString& text)
{
    const qsizetype last = storage->lineCount() - 1;
    const TextRange whole{{}, {last, storage->lineLength(last)}};
    require(textOf(storage, whole, text.size()) == text, "the copied text");
    const QString beginning = textOf(storage, whole, text.size() / 2);
    require(text.startsWith(beginning), "the copied beginning");
}

void checkSearch(const Storage& storage, const QString& wanted, Qt::CaseSensitivity sensitivity)
{
    QList<TextRange> expected;
    for (qsizetype line = 0; !wanted.isEmpty() && line < storage->lineCount(); ++line) {
        const QString text = storage->line(line).text;
        for (qsizetype at = text.indexOf(wanted, 0, sensitivity); at >= 0;
             at = text.indexOf(wanted, at + wanted.size(), sensitivity))
            expected.append(TextRange{{line, at}, {line, at + wanted.size()}});
    }
    const LineSearch search(storage, wanted, sensitivity);
    const TextRange everything = search.everything();
    QList<TextRange> found;
    TextPosition from = everything.begin;
    while (from < everything.end) // by portions, as a thread does
        from = search.search({from, everything.end}, 100, [&found](TextRange match) {
            found.append(match);
            return true;
        });
    require(found == expected, "matches of the search");
}

void checkWords(const PlainTextStorage& storage)
{
    constexpr int steps = 12;
    TextPosition at;
    for (int step = 0; step < steps; ++step) {
        const TextRange word = wordAt(storage, at);
        require(word.begin <= word.end && word.begin.line == at.line, "a word");
        require(word.end.unit <= storage.lineLength(at.line), "a word beyond its line");
        const TextPosition next = nextWord(storage, at);
        require(next == clampedToText(storage, next), "a word's place");
        if (next == at)
            break;
        require(next > at && previousWord(storage, next) < next, "the way back from a word");
        at = next;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr std::size_t headSize = 3;
    if (size <= headSize)
        return 0;
    const bool isWide = data[0] & 1;
    const std::string_view part = textOf(data + headSize, size - headSize);
    // A single line alone is repeated often: many short ones would only take time.
    const bool isOneLine = !isWide && part.find_first_of("\n\v\f\r\x85") == part.npos;
    constexpr std::size_t longLine = 70'000;
    const std::size_t often
        = data[2] < 250 || !isOneLine ? data[2] % 4 + 1u : longLine / part.size();
    std::string bytes;
    for (std::size_t time = 0; time < often; ++time)
        bytes += part;
    QString text = QString::fromLatin1(bytes.data(), static_cast<qsizetype>(bytes.size()));
    if (isWide)
        text = QString::fromUtf16(reinterpret_cast<const char16_t*>(bytes.data()),
            static_cast<qsizetype>(bytes.size() / 2));
    const auto storage = isWide
        ? std::make_shared<const PlainTextStorage>(text)
        : std::make_shared<const PlainTextStorage>(SharedBytes::ofString(bytes));
    require(rejoined(*storage) == text, "the lines' text");
    checkCopies(storage, text);
    QString wanted = text.left(data[1]);
    wanted.truncate(std::min(wanted.size(), storage->lineLength(0)));
    checkSearch(storage, wanted, data[0] & 2 ? Qt::CaseSensitive : Qt::CaseInsensitive);
    checkWords(*storage);
    return 0;
}
