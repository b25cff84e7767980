#include "compare/MergedText.h"

#include <algorithm>

namespace tarnwick {

namespace {

using Kind = MergedText::Kind;

void add(MergedText& merged, std::u16string_view text, const WordRange& range, Kind kind)
{
    if (range.isEmpty())
        return;
    const std::size_t begin = merged.text.size();
    const bool isRemoved = kind == Kind::isRemoved;
    merged.text += isRemoved ? u"[-" : u"{+";
    merged.text += text.substr(range.begin, range.end - range.begin);
    merged.text += isRemoved ? u"-]" : u"+}";
    merged.stretches.push_back({begin, merged.text.size(), kind});
}

/// Keeps what was removed apart from the words around it.
void addSpace(MergedText& merged)
{
    if (!merged.text.empty() && merged.text.back() != u' ' && merged.text.back() != u'\n')
        merged.text += u' ';
}

} // namespace

MergedText mergedText(std::u16string_view before, std::u16string_view after, const WordDiff& diff)
{
    MergedText merged;
    merged.text.reserve(after.size());
    std::size_t place = 0;
    for (const WordChange& change : diff.changes) {
        merged.text += after.substr(place, change.after.begin - place);
        place = change.after.end;
        if (!change.before.isEmpty())
            addSpace(merged);
        const std::size_t begin = merged.text.size();
        add(merged, before, change.before, Kind::isRemoved);
        if (!change.before.isEmpty() && !change.after.isEmpty())
            addSpace(merged);
        add(merged, after, change.after, Kind::isAdded);
        merged.changes.push_back({begin, merged.text.size()});
        if (change.after.isEmpty() && place < after.size() && after[place] > u' ')
            addSpace(merged);
    }
    merged.text += after.substr(std::min(place, after.size()));
    return merged;
}

} // namespace tarnwick
