#include "pdf/LossText.h"

#include "pdf/FailureText.h"
#include "protocol/EngineMessages.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

class LossText
{
    Q_DECLARE_TR_FUNCTIONS(LossText)

public:
    static QString pages(const QList<PDFLosses::Range>& ranges, int most);
    static QString sentence(
        LossSubject subject, PDFLoss loss, const QList<PDFLosses::Range>& ranges, int most);

private:
    static QString head(LossSubject subject, bool isPart, bool isOne);
    static QString reason(LossSubject subject, PDFLoss loss, bool isOne);
};

constexpr PDFLoss allLosses[] = {PDFLoss::isTimedOut, PDFLoss::isEngineDead, PDFLoss::isOutOfMemory,
    PDFLoss::isDamaged, PDFLoss::isDamagedInPart, PDFLoss::isCut, PDFLoss::isNotRead};

qint64 countOf(const QList<PDFLosses::Range>& ranges)
{
    qint64 count = 0;
    for (const PDFLosses::Range& range : ranges)
        count += range.last - range.first + 1;
    return count;
}

QString number(qint64 number)
{
    return QLocale().toString(number);
}

QString LossText::pages(const QList<PDFLosses::Range>& ranges, int most)
{
    QStringList named;
    for (const PDFLosses::Range& range : ranges.first(std::min<qsizetype>(most, ranges.size()))) {
        const QString first = number(qint64{range.first} + 1);
        const QString last = number(qint64{range.last} + 1);
        named << (range.first == range.last ? first : first % u'\u2013' % last);
    }
    const qint64 others = countOf(ranges.mid(named.size()));
    if (countOf(ranges) == 1)
        return tr("page %1").arg(named.constFirst());
    if (others > 0)
        return (others == 1 ? tr("pages %1 and %2 other") : tr("pages %1 and %2 others"))
            .arg(named.join(u", "_s), number(others));
    if (named.size() < 2)
        return named.isEmpty() ? QString() : tr("pages %1").arg(named.constFirst());
    const QString end = named.takeLast();
    return tr("pages %1 and %2").arg(named.join(u", "_s), end);
}

/// @param isPart some of the pages is there. @param isOne they are a single page.
QString LossText::head(LossSubject subject, bool isPart, bool isOne)
{
    switch (subject) {
    case LossSubject::isText:
        return isPart ? tr("Not all text from %1") : tr("No text from %1");
    case LossSubject::isSearch:
        if (isOne)
            return isPart ? tr("%1 was searched only in part") : tr("%1 was not searched");
        return isPart ? tr("%1 were searched only in part") : tr("%1 were not searched");
    case LossSubject::isPrint:
        if (isOne)
            return isPart ? tr("%1 was printed only in part") : tr("%1 was printed empty");
        return isPart ? tr("%1 were printed only in part") : tr("%1 were printed empty");
    case LossSubject::isFile:
        break;
    }
    if (isOne)
        return isPart ? tr("%1 was written only in part") : tr("%1 was written empty");
    return isPart ? tr("%1 were written only in part") : tr("%1 were written empty");
}

QString LossText::reason(LossSubject subject, PDFLoss loss, bool isOne)
{
    switch (loss) {
    case PDFLoss::isNone:
        break;
    case PDFLoss::isTimedOut:
        return pageFailureReason(PDFFailure::isTimedOut, isOne);
    case PDFLoss::isEngineDead:
        return pageFailureReason(PDFFailure::isEngineDead, isOne);
    case PDFLoss::isOutOfMemory:
        return pageFailureReason(PDFFailure::isOutOfMemory, isOne);
    case PDFLoss::isDamaged:
        return pageFailureReason(PDFFailure::isDamaged, isOne);
    case PDFLoss::isNotRead:
        return pageFailureReason(PDFFailure::isCancelled, isOne);
    case PDFLoss::isDamagedInPart:
        return isOne ? tr("it is damaged in places") : tr("they are damaged in places");
    case PDFLoss::isCut: {
        if (subject == LossSubject::isPrint)
            return isOne ? tr("its content is too long") : tr("their contents are too long");
        const QString limit = number(maximumPageCharacters);
        return (
            isOne ? tr("it has more than %1 characters") : tr("each has more than %1 characters"))
            .arg(limit);
    }
    }
    return {};
}

QString LossText::sentence(
    LossSubject subject, PDFLoss loss, const QList<PDFLosses::Range>& ranges, int most)
{
    const bool isOne = countOf(ranges) == 1;
    QString text = head(subject, isPartial(loss), isOne).arg(pages(ranges, most));
    text[0] = text.at(0).toUpper();
    return tr("%1: %2.").arg(text, reason(subject, loss, isOne));
}

} // namespace

QString pageNumbers(const QList<PDFLosses::Range>& ranges, int most)
{
    return LossText::pages(ranges, most);
}

QStringList lossSentences(const PDFLosses& losses, LossSubject subject, int most)
{
    QStringList sentences;
    for (const PDFLoss loss : allLosses) {
        const QList<PDFLosses::Range> ranges = losses.ranges(loss);
        if (!ranges.isEmpty())
            sentences << LossText::sentence(subject, loss, ranges, most);
    }
    return sentences;
}

bool namesAllPages(const PDFLosses& losses, int most)
{
    return std::all_of(std::begin(allLosses), std::end(allLosses),
        [&](PDFLoss loss) { return losses.ranges(loss).size() <= most; });
}

QString lossList(const PDFLosses& losses, LossSubject subject)
{
    QString list;
    for (const PDFLosses::Range& range : losses.ranges())
        list += lossSentence(range, subject) % u'\n';
    return list;
}

QString lossSentence(const PDFLosses::Range& range, LossSubject subject)
{
    return LossText::sentence(subject, range.loss, {range}, 1);
}

QString lostObjectsSentence(qsizetype count)
{
    if (count == 1)
        return LossText::tr("1 object of the document could not be read and is empty.");
    return LossText::tr("%1 objects of the document could not be read and are empty.")
        .arg(number(count));
}

QStringList missingSentences(
    const PDFLosses& losses, qsizetype lostObjects, LossSubject subject, int most)
{
    QStringList sentences = lossSentences(losses, subject, most);
    if (lostObjects > 0)
        sentences << lostObjectsSentence(lostObjects);
    return sentences;
}

} // namespace tarnwick
