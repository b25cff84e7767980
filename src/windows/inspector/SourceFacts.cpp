#include "SourceFacts.h"

#include <QCoreApplication>

#include <algorithm>

namespace tarnwick {

namespace {

class Texts
{
    Q_DECLARE_TR_FUNCTIONS(SourceFacts)
};

QString nameOf(const NamedObject& object)
{
    if (!object.listed)
        return Texts::tr("%1").arg(object.objNo);
    if (object.objNo == trailerNumber)
        return Texts::tr("Trailer, version %1").arg(object.listed->objVer);
    return Texts::tr("%1 %2, version %3, %4")
        .arg(object.objNo)
        .arg(object.listed->objGen)
        .arg(object.listed->objVer)
        .arg(QString::fromStdString(object.listed->kind));
}

/// What a finding speaks of, as far as it speaks of anything in particular.
QString subjectOf(const FileFinding& finding)
{
    if (finding.object)
        return nameOf(*finding.object);
    return finding.page ? Texts::tr("Page %1").arg(*finding.page + 1) : Texts::tr("File");
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
        const QString where = use.user ? nameOf(namedObject(catalog, catalog.object(*use.user)))
                                       : Texts::tr("No object");
        rows.append({use.offset, where, excerpt(catalog.bytes(), use.offset), {}});
    }
    return rows;
}

QList<PlaceRow> findingRows(const FileFindings& findings)
{
    QList<PlaceRow> rows;
    for (const FileFinding& finding : findings.list) {
        const std::string_view clause = ruleOf(finding.code).clause;
        rows.append({finding.offset, subjectOf(finding),
            Texts::tr("%1 (ISO 32000-2, %2)")
                .arg(QString::fromStdString(finding.sentence),
                    QString::fromLatin1(clause.data(), static_cast<qsizetype>(clause.size()))),
            finding.page});
    }
    for (const std::string& gap : findings.gaps)
        rows.append({{}, Texts::tr("Not known"), QString::fromStdString(gap), {}});
    return rows;
}

} // namespace tarnwick
