#include "VersionWords.h"

#include "VersionReading.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

/// Texts are translated in this context.
struct Words
{
    Q_DECLARE_TR_FUNCTIONS(VersionWords)
};

QString word(VersionFlag flag)
{
    switch (flag) {
    case VersionFlag::isLinearizedFirstPart:
        return Words::tr("First part of a linearized file");
    case VersionFlag::isInStream:
        return Words::tr("Marker inside a stream");
    case VersionFlag::isInObject:
        return Words::tr("Marker inside a string or comment");
    case VersionFlag::isWithoutCrossReference:
        return Words::tr("No cross-reference of its own");
    case VersionFlag::isRepaired:
        return Words::tr("Its cross-reference cannot be read");
    case VersionFlag::isBehindUnknown:
        return Words::tr("The version before it cannot be known");
    case VersionFlag::isBeyondLimits:
        return Words::tr("The file has more cross-references than are read");
    case VersionFlag::isNotInChain:
        return Words::tr("The last version does not lead back to it");
    case VersionFlag::isChainLoop:
        return Words::tr("Its cross-references lead back to themselves");
    case VersionFlag::isBeforeHeader:
        return Words::tr("Bytes before the header");
    case VersionFlag::isBehindMarker:
        break;
    }
    return Words::tr("Bytes behind the last marker");
}

/// Why markers with a flag end no version of their own, as a clause behind their numbers.
QString reason(VersionFlag flag, bool isOne)
{
    switch (flag) {
    case VersionFlag::isLinearizedFirstPart:
        return Words::tr("ends the first part of a linearized file");
    case VersionFlag::isInStream:
        return isOne ? Words::tr("is inside a stream") : Words::tr("are inside streams");
    case VersionFlag::isInObject:
        return isOne ? Words::tr("is inside an object") : Words::tr("are inside objects");
    default:
        return isOne ? Words::tr("has no cross-reference of its own")
                     : Words::tr("have no cross-reference of their own");
    }
}

/// "Marker 1 ends the first part of a linearized file." for each reason.
QStringList reasons(const std::vector<VersionRow>& rows)
{
    constexpr qsizetype longest = 40;
    constexpr VersionFlag flags[]{VersionFlag::isLinearizedFirstPart, VersionFlag::isInStream,
        VersionFlag::isInObject, VersionFlag::isWithoutCrossReference};
    QStringList sentences;
    for (const VersionFlag flag : flags) {
        std::vector<std::uint32_t> markers;
        for (const VersionRow& row : rows) {
            const bool isReason = !row.version.isOwn && !row.version.flags.empty()
                && row.version.flags.front() == flag;
            if (isReason)
                markers.push_back(static_cast<std::uint32_t>(row.version.marker));
        }
        if (markers.empty())
            continue;
        const bool isOne = markers.size() == 1;
        sentences << (isOne ? Words::tr("Marker %1 %2.") : Words::tr("Markers %1 %2."))
                         .arg(VersionWords::numbers(markers, longest), reason(flag, isOne));
    }
    return sentences;
}

QString versionsCounted(std::uint64_t count)
{
    return count == 1 ? Words::tr("1 saved version")
                      : Words::tr("%1 saved versions").arg(VersionWords::counted(count));
}

QString objectsLine(const QString& title, const std::vector<std::uint32_t>& numbers)
{
    constexpr qsizetype longest = 1000;
    return title + (numbers.empty() ? Words::tr("none") : VersionWords::numbers(numbers, longest));
}

QStringList changeLines(const SavedVersion& version)
{
    if (!version.isOwn || version.save == 1)
        return {};
    if (!version.changes)
        return {Words::tr("Changed objects: cannot be known")};
    return {objectsLine(Words::tr("Objects added: "), version.changes->added),
        objectsLine(Words::tr("Objects replaced: "), version.changes->replaced),
        objectsLine(Words::tr("Objects freed: "), version.changes->freed)};
}

QStringList contentLines(const VersionContent& content)
{
    if (!content.problem.isEmpty())
        return {}; // among the notes
    QStringList lines{
        Words::tr("Pages: %1")
            .arg(VersionWords::counted(static_cast<std::uint64_t>(content.pageCount)))};
    const auto add = [&lines](const QString& title, const QString& text) {
        if (!text.isEmpty())
            lines << title.arg(text);
    };
    add(Words::tr("Producer: %1"), content.producer);
    add(Words::tr("Created: %1"), content.created);
    add(Words::tr("Modified: %1"), content.modified);
    return lines;
}

} // namespace

QString VersionWords::counted(std::uint64_t number)
{
    return QLocale().toString(static_cast<qulonglong>(number));
}

QString VersionWords::numbers(const std::vector<std::uint32_t>& numbers, qsizetype longest)
{
    QString text;
    for (std::size_t first = 0; first < numbers.size();) {
        std::size_t last = first;
        while (last + 1 < numbers.size() && numbers[last + 1] == numbers[last] + 1)
            ++last;
        QString part = QString::number(numbers[first]);
        if (last > first)
            part += (last == first + 1 ? u", "_s : u"–"_s) + QString::number(numbers[last]);
        if (longest > 0 && text.size() + part.size() > longest)
            return Words::tr("%1 … (%2 in all)").arg(text, counted(numbers.size()));
        text += (text.isEmpty() ? QString() : u", "_s) + part;
        first = last + 1;
    }
    return text;
}

QString VersionWords::targetKind(SavedVersion::Target target)
{
    switch (target) {
    case SavedVersion::Target::isUnknown:
        return {};
    case SavedVersion::Target::isNothing:
        return Words::tr("nothing there");
    case SavedVersion::Target::isTable:
        return Words::tr("a table");
    case SavedVersion::Target::isStream:
        break;
    }
    return Words::tr("a stream");
}

QString VersionWords::target(const SavedVersion& version)
{
    if (!version.startxref)
        return Words::tr("none");
    const QString place = counted(*version.startxref);
    const QString what = targetKind(version.target);
    return what.isEmpty() ? place : Words::tr("%1, %2").arg(place, what);
}

const ObjectChanges* VersionWords::changes(const SavedVersion& version)
{
    const bool isKnown = version.isOwn && version.save > 1 && version.changes;
    return isKnown ? &*version.changes : nullptr;
}

QString VersionWords::shortHash(const Sha256::Digest& digest)
{
    constexpr qsizetype digits = 8;
    const QString all = QString::fromStdString(hexadecimal(digest));
    return all.left(digits) + u'…' + all.right(digits);
}

QStringList VersionWords::notes(const VersionRow& row, std::size_t fileSize)
{
    QStringList notes;
    if (row.content && !row.content->problem.isEmpty())
        notes << Words::tr("Does not open: %1").arg(row.content->problem);
    for (const VersionFlag flag : row.version.flags) {
        if (flag == VersionFlag::isBehindMarker)
            notes << word(flag) + u": "_s + counted(fileSize - row.version.end);
        else
            notes << word(flag);
    }
    return notes;
}

QString VersionWords::summary(const VersionReading& reading)
{
    const std::size_t markers = reading.markerCount();
    if (reading.rows().empty())
        return reading.progress().isEmpty()
            ? Words::tr("No saved version: the file has no marker “%%EOF”.")
            : reading.progress();
    QStringList sentences;
    const QString counts = markers == 1 ? Words::tr("1 marker “%%EOF”")
                                        : Words::tr("%1 markers “%%EOF”").arg(counted(markers));
    if (!reading.ownCount())
        sentences << counts + u'.';
    else if (*reading.ownCount() == markers)
        sentences << versionsCounted(markers) + u'.';
    else
        sentences << versionsCounted(*reading.ownCount()) + u", "_s + counts + u'.';
    if (!reading.failure().isEmpty())
        sentences
            << Words::tr("Which of them end versions is not known: %1.").arg(reading.failure());
    else if (reading.ownCount() && *reading.ownCount() != markers)
        sentences << reasons(reading.rows());
    if (reading.rows().size() < markers)
        sentences
            << Words::tr("Only the first %1 are looked into.").arg(counted(reading.rows().size()));
    return sentences.join(u' ');
}

QString VersionWords::details(const VersionRow& row, const VersionReading& reading)
{
    const SavedVersion& version = row.version;
    QStringList lines;
    lines << (version.isOwn
            ? Words::tr("Version %1 (save %2)").arg(version.marker).arg(version.save)
            : Words::tr("Version %1").arg(version.marker));
    for (const QString& note : notes(row, reading.fileSize()))
        lines << note;
    lines << Words::tr(
        "Bytes added: %1, from %2 up to %3; the version is all that stands before %3")
                 .arg(counted(version.bytesAdded()), counted(version.begin), counted(version.end));
    if (row.hash)
        lines << Words::tr("SHA-256: %1").arg(QString::fromStdString(hexadecimal(*row.hash)));
    lines << Words::tr("startxref: %1").arg(target(version));
    if (version.prev)
        lines << Words::tr("Prev: %1").arg(counted(*version.prev));
    if (row.content)
        lines << contentLines(*row.content);
    if (row.signatures)
        lines << Words::tr("Signatures made: %1").arg(counted(*row.signatures));
    lines << changeLines(version);
    return lines.join(u'\n');
}

} // namespace tarnwick
