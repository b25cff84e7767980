#include "AnswerChecks.h"

#include "FuzzTarget.h"
#include "PDFCheckAnswer.h"
#include "PDFCrossReferenceAnswers.h"
#include "PDFDigestAnswers.h"
#include "PDFObjectAnswers.h"
#include "PDFSignAnswers.h"
#include "PDFTableAnswers.h"

#include <cmath>

namespace tarnwick {

namespace {

/// Bytes of the file that answers on a document as a whole are about.
constexpr std::size_t checkedFile = std::size_t{1} << 30;

void checkSide(double side)
{
    require(side >= 1 && side <= 14'400, "a page's side");
}

void checkPoint(const QPointF& point)
{
    require(std::abs(point.x()) <= 1e6 && std::abs(point.y()) <= 1e6, "a coordinate");
}

void checkTarget(int page, int pageCount)
{
    require(page >= -1 && page < std::max(pageCount, 0), "a target outside the document");
}

bool isSound(const PDFOpenedAnswer& answer)
{
    require(answer.facts.pageCount >= 0 && answer.facts.pageCount <= maximumPageCount, "pages");
    checkSide(answer.firstPageSize.width());
    checkSide(answer.firstPageSize.height());
    return true;
}

bool isSound(const QList<PDFPageMeasure>& measures, int count)
{
    require(measures.size() == std::max(count, 0), "measures of other pages");
    for (const PDFPageMeasure& measure : measures) {
        checkSide(measure.size.width());
        checkSide(measure.size.height());
        require(!measure.label || measure.label->size() <= 255, "a long label");
    }
    return true;
}

void checkRuns(const PDFPageText& text)
{
    qsizetype end = 0;
    for (const PDFTextRun& run : text.runs) {
        require(run.start == end && run.length > 0, "a gap between runs");
        require(run.sizeInPoints > 0 && run.colour.alpha() == 255, "a run's look");
        end += run.length;
    }
    require(end == text.string.size(), "runs of another text");
}

bool isSound(const PDFPageText& text, PDFTextDetail detail)
{
    require(text.string.isValidUtf16() && !text.string.contains(QChar(0)), "characters");
    if (detail == PDFTextDetail::isWithAttributes)
        checkRuns(text);
    if (detail != PDFTextDetail::isWithQuads)
        return true;
    require(text.quads.size() == text.string.size(), "a quad for each unit");
    for (const PDFQuad& quad : text.quads)
        for (const QPointF& corner : QPolygonF(quad))
            checkPoint(corner);
    return true;
}

bool isSound(const QList<PDFLink>& links, int pageCount)
{
    for (const PDFLink& link : links) {
        checkTarget(link.page, pageCount);
        for (const QPointF& point : {link.area.topLeft(), link.point})
            checkPoint(point);
        require(link.area.isNull() || (link.area.width() >= 0 && link.area.height() >= 0), "area");
    }
    return true;
}

bool isSound(const PDFOutline& outline, int pageCount)
{
    int deepest = 0;
    for (const PDFOutlineEntry& entry : outline.entries) {
        require(entry.depth >= 0 && entry.depth <= std::min(deepest, 63), "an entry's depth");
        deepest = entry.depth + 1;
        checkTarget(entry.page, pageCount);
        checkPoint(entry.point);
    }
    return true;
}

bool isSound(const PDFWrittenAnswer& written, int pageCount)
{
    int next = 0;
    for (const PDFLosses::Range& range : written.losses.ranges()) {
        require(range.first >= next && range.last >= range.first && range.last < pageCount,
            "a lost page outside the document");
        require(range.loss != PDFLoss::isNone, "a page lost for no reason");
        next = range.last + 1;
    }
    require(written.lostObjects >= 0, "a count of lost objects");
    return true;
}

bool isSound(const PDFObject& object)
{
    require(
        object.text.isEmpty() == (object.state != PDFObjectState::isPresent), "an object's text");
    require(object.filters.size() <= maximumFilters
            && object.filterCount >= static_cast<quint32>(object.filters.size()),
        "filters");
    require(object.place.container >= 0 && object.place.index >= 0, "an object's place");
    return true;
}

bool isSound(const PDFStreamAnswer& stream, std::uint64_t limit)
{
    require(stream.size <= limit, "a stream's size");
    return true;
}

bool isSound(const PDFSigns& answer)
{
    std::uint32_t least = 0;
    for (const ObjectSign& sign : answer.signs.list) {
        require(sign.number >= least && sign.number <= maximumObjectNumber, "an object's number");
        least = sign.number + 1;
    }
    require(answer.next == 0 || answer.next >= least, "an object to go on with");
    return true;
}

bool isSound(const PDFCrossReferences& answer)
{
    require(!answer.sections.empty() && answer.sections.size() <= 2, "sections");
    for (const CrossReferenceSection& section : answer.sections) {
        for (const CrossReferenceRow& row : section.rows)
            require(row.use <= RowUse::isPacked && row.number <= maximumObjectNumber, "a row");
    }
    return true;
}

bool isSound(const DocumentCheck& check, int pageCount, std::size_t fileSize)
{
    require(check.pagesLookedAt <= std::max(pageCount, 0), "pages looked at");
    for (const EngineFinding& finding : check.findings) {
        require(finding.page < std::max(pageCount, 0), "a finding outside the document");
        require(finding.code != EngineFindingCode::isEntryElsewhere
                || static_cast<std::uint64_t>(finding.said) < fileSize,
            "a place behind the file");
        require(check.counts.at(static_cast<std::size_t>(finding.code)) > 0, "no count");
    }
    return true;
}

bool isSound(const PDFFacts& facts)
{
    require(facts.facts.size() <= maximumFacts, "facts");
    for (const PDFFact& fact : facts.facts) {
        for (const QChar one : fact.text)
            require(one.isPrint() || one == QChar::ReplacementCharacter, "a fact's text");
    }
    return true;
}

bool isSound(const PDFPictureAnswer& picture)
{
    require(picture.size.isEmpty() == (picture.end == PDFPictureEnd::isUnreadable)
            && picture.size.width() <= maximumPictureSide
            && picture.size.height() <= maximumPictureSide,
        "a picture's size");
    return true;
}

bool isSound(PDFTableAnswers answers)
{
    require(answers.next() <= answers.length(), "a portion behind the table");
    const CrossReference table = answers.takeTable();
    for (const CrossReference::Member& member : table.members) {
        require(member.container > 0 && member.kind < table.kinds.size()
                && member.firstReference <= table.references.size(),
            "an object in an object stream");
    }
    for (const std::uint32_t number : table.references)
        require(number > 0 && number <= maximumObjectNumber, "a reference");
    return true;
}

} // namespace

bool takesAnswer(const AskedFor& asked, std::string_view payload)
{
    const auto check = [](const auto& result, const auto&... context) {
        return result && isSound(*result, context...);
    };
    switch (asked.kind) {
    case EngineRequest::isOpen:
    case EngineRequest::isUnlock:
        return check(readOpenedAnswer(payload));
    case EngineRequest::isMeasure:
        return check(readMeasureAnswer(payload, asked.pageCount), asked.pageCount);
    case EngineRequest::isDigest:
        return readDigestAnswer(payload, asked.pageCount).has_value();
    case EngineRequest::isTile: {
        const QByteArray bytes(payload.data(), static_cast<qsizetype>(payload.size()));
        const auto image = readTileAnswer(bytes, asked.size);
        require(!image || image->size() == asked.size, "an image of another size");
        return image.has_value();
    }
    case EngineRequest::isText:
        return check(readTextAnswer(payload, asked.detail), asked.detail);
    case EngineRequest::isLinks:
        return check(readLinksAnswer(payload, asked.pageCount), asked.pageCount);
    case EngineRequest::isOutline:
        return check(readOutlineAnswer(payload, asked.pageCount), asked.pageCount);
    case EngineRequest::isFlat:
    case EngineRequest::isPrint:
        return check(readWrittenAnswer(payload, asked.pageCount), asked.pageCount);
    case EngineRequest::isObject:
        return check(readObjectAnswer(payload, 1));
    case EngineRequest::isTable: {
        PDFTableAnswers answers(std::uint64_t{1} << 40);
        return answers.take(payload) && isSound(std::move(answers));
    }
    case EngineRequest::isStream:
        return check(readStreamAnswer(payload, usualStream), usualStream);
    case EngineRequest::isSign:
        return check(readSignAnswer(payload, 0));
    case EngineRequest::isCrossReference:
        return check(readCrossReferenceAnswer(payload, {9, 99}));
    case EngineRequest::isCheck:
        return check(readCheckAnswer(payload, asked.pageCount, checkedFile), asked.pageCount,
            std::size_t{checkedFile});
    case EngineRequest::isFacts:
        return check(readFactsAnswer(payload));
    case EngineRequest::isPicture:
        return check(readPictureAnswer(payload));
    }
    return false;
}

} // namespace tarnwick
