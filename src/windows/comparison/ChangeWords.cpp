#include "ChangeWords.h"

#include "compared/DocumentComparison.h"
#include "pdf/FailureText.h"

#include <QCoreApplication>
#include <QLocale>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace tarnwick::ChangeWords {

namespace {

QString tr(const char* text, int count = -1)
{
    return QCoreApplication::translate("ChangeWords", text, nullptr, count);
}

QString counted(int count)
{
    return QLocale().toString(count);
}

/// "1 page", "1,203 pages".
QString pageCount(int count)
{
    return count == 1 ? tr("1 page") : tr("%1 pages").arg(counted(count));
}

QString lossOfText(PDFLoss loss)
{
    switch (loss) {
    case PDFLoss::isNone:
        return {};
    case PDFLoss::isTimedOut:
        return pageFailureReason(PDFFailure::isTimedOut, true);
    case PDFLoss::isEngineDead:
        return pageFailureReason(PDFFailure::isEngineDead, true);
    case PDFLoss::isOutOfMemory:
        return pageFailureReason(PDFFailure::isOutOfMemory, true);
    case PDFLoss::isDamaged:
        return pageFailureReason(PDFFailure::isDamaged, true);
    case PDFLoss::isDamagedInPart:
        return tr("a part of it is damaged");
    case PDFLoss::isCut:
        return tr("its text is too long");
    case PDFLoss::isNotRead:
        return tr("it was not read");
    }
    return {};
}

QString looks(const ComparedPage& page)
{
    QStringList parts;
    if (page.isResized)
        parts << tr("another size");
    const auto areas = static_cast<int>(page.areas.size());
    if (areas > 0)
        parts << (areas == 1 ? tr("1 area differs") : tr("%1 areas differ").arg(counted(areas)));
    return parts.join(u", "_s);
}

} // namespace

QString pages(int before, int after)
{
    if (before == after || before < 0 || after < 0)
        return tr("Page %1").arg(counted(std::max(before, after) + 1));
    return tr("Page %1 \u2192 %2").arg(counted(before + 1), counted(after + 1));
}

QString losses(const ComparedPage& page)
{
    QStringList parts;
    const QString sides[] = {tr("earlier"), tr("later")};
    for (std::size_t side = 0; side < 2; ++side) {
        const bool isDrawn = page.failures[side] == PDFFailure::isNone;
        if (isDrawn && page.losses[side] == PDFLoss::isNone)
            continue;
        const QString reason = isDrawn ? lossOfText(page.losses[side])
                                       : pageFailureReason(page.failures[side], true);
        parts << (isDrawn ? tr("text of the %1 page not compared: %2")
                          : tr("%1 page not drawn: %2"))
                     .arg(sides[side], reason);
    }
    return parts.join(u"; "_s);
}

QString page(const ComparedPage& page)
{
    QStringList parts;
    if (page.isAdded())
        parts << tr("added");
    else if (page.isRemoved())
        parts << tr("removed");
    else if (page.pair.isMoved)
        parts << tr("moved");
    parts << looks(page) << losses(page);
    parts.removeAll(QString());
    return pages(page.pair.before, page.pair.after) % u": " % parts.join(u", "_s);
}

QString words(const QString& page, const ComparedWords& words)
{
    const QString change = words.before.isEmpty() ? tr("added \u201c%1\u201d").arg(words.after)
        : words.after.isEmpty()                   ? tr("removed \u201c%1\u201d").arg(words.before)
                                : QString(words.before % u" \u2192 " % words.after);
    return page % u": " % change;
}

QString summary(const DocumentComparison& comparison)
{
    int same = 0, changed = 0, added = 0, removed = 0, moved = 0, lost = 0, waiting = 0;
    for (const ComparedPage& page : comparison.pages()) {
        added += page.isAdded();
        removed += page.isRemoved();
        moved += page.pair.isMoved;
        lost += page.isLost();
        waiting += !page.isCompared;
        const bool isChanged = page.looksDifferent() || page.readsDifferent();
        changed += isChanged && !page.isAdded() && !page.isRemoved();
        same += page.isCompared && !isChanged && !page.isTold();
    }
    QStringList parts = {tr("%1 unchanged").arg(pageCount(same))};
    const auto add = [&parts](int count, const QString& text) {
        if (count > 0)
            parts << text.arg(counted(count));
    };
    add(changed, tr("%1 changed"));
    add(added, tr("%1 added"));
    add(removed, tr("%1 removed"));
    add(moved, tr("%1 moved"));
    add(lost, tr("%1 not compared whole"));
    add(waiting, tr("%1 waiting"));
    return parts.join(u", "_s);
}

} // namespace tarnwick::ChangeWords
