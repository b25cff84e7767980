#include "pdf/PDFPagesText.h"

namespace tarnwick {

namespace {

/// What a page's text takes in the whole text.
qsizetype lengthOf(const QString& page)
{
    return page.size() + (page.isEmpty() || page.endsWith(u'\n') ? 0 : 1);
}

} // namespace

QString PDFPagesText::string() const
{
    qsizetype size = 0;
    for (const QString& page : pages)
        size += lengthOf(page);
    QString whole;
    whole.reserve(size);
    for (const QString& page : pages) {
        whole += page;
        if (lengthOf(page) > page.size())
            whole += u'\n';
    }
    return whole;
}

/// Losses that no text parts, and neighbours that are lost for one reason, share a gap.
QList<PDFPagesText::Gap> PDFPagesText::gaps() const
{
    QList<Gap> gaps;
    qsizetype position = 0;
    int next = 0; // the first page whose length is not in position
    for (const PDFLosses::Range& range : losses.ranges()) {
        for (int page = range.first; page <= range.last; ++page) {
            for (; next <= page && next < pages.size(); ++next)
                position += lengthOf(pages.at(next));
            const bool isRest = page >= pages.size();
            if (gaps.isEmpty() || gaps.constLast().position != position)
                gaps.append(Gap{position, {}});
            gaps.last().losses.add({page, isRest ? range.last : page, range.loss});
            if (isRest)
                break;
        }
    }
    return gaps;
}

} // namespace tarnwick
