#include "export/AttributedText.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

/// The place of a value in a table that holds each value once.
template<class Value>
int indexIn(QList<Value>& table, QHash<Value, int>& indexes, const Value& value)
{
    const auto found = indexes.constFind(value);
    if (found != indexes.constEnd())
        return *found;
    const int index = static_cast<int>(table.size());
    table.append(value);
    indexes.insert(value, index);
    return index;
}

} // namespace

bool AttributedText::Run::looksLike(const Run& other) const
{
    return family == other.family && colour == other.colour && isBold == other.isBold
        && isItalic == other.isItalic && qFuzzyCompare(sizeInPoints, other.sizeInPoints);
}

void AttributedText::append(const PDFPageText& page)
{
    const qsizetype base = theString.size();
    theString.append(page.string);
    qsizetype covered = base;
    for (const PDFTextRun& run : page.runs) {
        const qsizetype start = std::clamp(base + run.start, covered, theString.size());
        const qsizetype end = std::clamp(base + run.start + run.length, start, theString.size());
        if (start == end)
            continue;
        appendPlain(covered, start);
        Run added;
        added.start = start;
        added.length = end - start;
        added.sizeInPoints = run.sizeInPoints;
        added.isBold = run.isBold;
        added.isItalic = run.isItalic;
        appendRun(added, run.family, run.colour.rgb());
        covered = end;
    }
    appendPlain(covered, theString.size());
}

void AttributedText::appendPlain(qsizetype start, qsizetype end)
{
    if (start == end)
        return;
    Run run;
    run.start = start;
    run.length = end - start;
    run.sizeInPoints = 12;
    appendRun(run, u"Helvetica"_s, qRgb(0, 0, 0));
}

void AttributedText::appendRun(Run run, const QString& family, QRgb colour)
{
    run.family = indexIn(theFamilies, theFamilyIndexes, family);
    run.colour = indexIn(theColours, theColourIndexes, colour);
    if (!theRuns.isEmpty() && theRuns.last().looksLike(run))
        theRuns.last().length += run.length;
    else
        theRuns.append(run);
}

} // namespace tarnwick
