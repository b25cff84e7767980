#include "PDFFontName.h"

#include <QRegularExpression>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

/// Six capitals and a plus in front of a subset's name.
QString withoutSubsetPrefix(const QString& name)
{
    const auto isCapital = [](QChar one) { return one >= u'A' && one <= u'Z'; };
    const bool isSubset = name.size() > 7 && name.at(6) == u'+'
        && std::all_of(name.begin(), name.begin() + 6, isCapital);
    return isSubset ? name.mid(7) : name;
}

/// "Bold", "ItalicMT", "BoldOblique": what stands behind "-" or "," when it tells the style.
bool isStyle(const QString& suffix)
{
    static const QRegularExpression pattern(
        u"^(Bold|Bd|Italic|Ital|It|Oblique|Obl|Regular|Reg|Roman|Normal|Book|Medium|"
        "Light|Semi|Demi|Extra|Ultra|Thin|Black|Heavy|Cond(ensed)?|Narrow|PS|MT|"
        "Identity|[HV]|[ -])+$"_s,
        QRegularExpression::CaseInsensitiveOption);
    return pattern.match(suffix).hasMatch();
}

/// Parts "TimesNewRoman", but neither "DejaVu" nor "CMR10" nor a name that has spaces.
QString withSpaces(const QString& name)
{
    if (name.contains(u' '))
        return name;
    static const QRegularExpression seam(u"(?<=\\p{Ll})(?=\\p{Lu}\\p{Ll})"_s);
    QString parted = name;
    parted.replace(seam, u" "_s);
    return parted.replace(u"Deja Vu"_s, u"DejaVu"_s);
}

} // namespace

PDFFontName parseFontName(const QString& name)
{
    QString family = withoutSubsetPrefix(name).left(255);
    QString style;
    const qsizetype seam = qMax(family.indexOf(u','), family.lastIndexOf(u'-'));
    if (seam > 0 && isStyle(family.mid(seam + 1))) {
        style = family.mid(seam + 1);
        family.truncate(seam);
    }
    for (const QString& tail : {u"PSMT"_s, u"MT"_s, u"PS"_s}) {
        if (family.size() > tail.size() && family.endsWith(tail))
            family.chop(tail.size());
    }
    PDFFontName result;
    result.family = withSpaces(family).simplified();
    if (result.family.isEmpty())
        result.family = u"Times"_s;
    const auto holds = [&style](const char* word) {
        return style.contains(QLatin1String(word), Qt::CaseInsensitive);
    };
    result.isBold = holds("bold") || holds("black") || holds("heavy") || holds("bd");
    result.isItalic = holds("ital") || holds("obl") || style == u"It"_s;
    return result;
}

} // namespace tarnwick
