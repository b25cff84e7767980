#include "SourceFacts.h"

#include "analysis/ObjectKind.h"

#include <QCoreApplication>

#include <algorithm>
#include <numeric>

namespace tarnwick {

namespace {

class Texts
{
    Q_DECLARE_TR_FUNCTIONS(SourceFacts)
};

QString nameOf(const pdfObjectCatalog& catalog, const pdfObject& object)
{
    if (object.objNo() == trailerNumber)
        return Texts::tr("Trailer, version %1").arg(object.objVer());
    return Texts::tr("%1 %2, version %3, %4")
        .arg(object.objNo())
        .arg(object.objGen())
        .arg(object.objVer())
        .arg(QString::fromStdString(objectKind(catalog, object)));
}

/// Some characters around an offset, on one line.
QString excerpt(std::string_view bytes, std::size_t offset)
{
    constexpr std::size_t before = 40;
    constexpr std::size_t behind = 60;
    const std::size_t begin = offset - std::min(offset, before);
    const std::string_view part = bytes.substr(begin, offset - begin + behind);
    QString text = QString::fromLatin1(part.data(), static_cast<qsizetype>(part.size()));
    for (QChar& character : text) {
        if (!character.isPrint())
            character = u' ';
    }
    return text.simplified();
}

} // namespace

QList<PlaceRow> userRows(const pdfObjectCatalog& catalog, const ObjectUses& uses)
{
    QList<PlaceRow> rows;
    rows.reserve(static_cast<qsizetype>(uses.uses.size()));
    for (const ObjectUse& use : uses.uses) {
        const QString where
            = use.user ? nameOf(catalog, catalog.object(*use.user)) : Texts::tr("No object");
        rows.append({use.offset, where, excerpt(catalog.bytes(), use.offset)});
    }
    return rows;
}

QList<PlaceRow> findingRows(const pdfObjectCatalog& catalog, const Findings& findings)
{
    QList<PlaceRow> rows;
    for (const Finding& finding : findings.list) {
        const FindingRule& rule = ruleOf(finding.code);
        const QString where
            = finding.object ? nameOf(catalog, catalog.object(*finding.object)) : Texts::tr("File");
        rows.append({finding.offset, where,
            Texts::tr("%1 (ISO 32000-2, %2)")
                .arg(QString::fromStdString(finding.sentence),
                    QString::fromLatin1(
                        rule.clause.data(), static_cast<qsizetype>(rule.clause.size())))});
    }
    return rows;
}

std::size_t countOf(const Findings& findings)
{
    return std::accumulate(findings.counts.begin(), findings.counts.end(), std::size_t{0});
}

} // namespace tarnwick
