#include "VersionReport.h"

#include "VersionReading.h"
#include "VersionWords.h"
#include "versions/VersionNaming.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

struct Words
{
    Q_DECLARE_TR_FUNCTIONS(VersionReport)
};

const QString style
    = u"body{font:14px/1.4 sans-serif;margin:2em;color:#111;background:#fff}"
      "table{border-collapse:collapse;margin:1em 0}"
      "th,td{border:1px solid #999;padding:.25em .5em;text-align:left;vertical-align:top}"
      "td.n{text-align:right;white-space:nowrap}code{overflow-wrap:anywhere}"
      "@media(prefers-color-scheme:dark){body{color:#eee;background:#1b1b1b}}"_s;

QString escaped(const QString& text)
{
    return text.toHtmlEscaped();
}

QString cell(const QString& text)
{
    return u"<td>"_s + escaped(text) + u"</td>"_s;
}

QString numberCell(const QString& text)
{
    return u"<td class=\"n\">"_s + escaped(text) + u"</td>"_s;
}

QString code(const QString& text)
{
    return u"<code>"_s + escaped(text) + u"</code>"_s;
}

QString digestText(const std::optional<Sha256::Digest>& digest)
{
    return digest ? QString::fromStdString(hexadecimal(*digest)) : Words::tr("not computed");
}

/// Without the marks between thousands, which are no part of a number to be typed.
QString plain(std::uint64_t number)
{
    return QString::number(number);
}

QString optionalText(const std::optional<std::uint64_t>& number)
{
    return number ? plain(*number) : QString();
}

QJsonValue jsonOf(std::uint64_t number)
{
    return static_cast<qint64>(number);
}

template<class Number> QJsonValue jsonOf(const std::optional<Number>& number)
{
    return number ? jsonOf(std::uint64_t{*number}) : QJsonValue();
}

QJsonValue jsonOf(const std::optional<Sha256::Digest>& digest)
{
    return digest ? QJsonValue(QString::fromStdString(hexadecimal(*digest))) : QJsonValue();
}

QJsonValue jsonOf(const QString& text)
{
    return text.isEmpty() ? QJsonValue() : QJsonValue(text);
}

QJsonArray jsonOf(const std::vector<std::uint32_t>& numbers)
{
    QJsonArray array;
    for (const std::uint32_t number : numbers)
        array.append(jsonOf(std::uint64_t{number}));
    return array;
}

QJsonValue targetOf(SavedVersion::Target target)
{
    switch (target) {
    case SavedVersion::Target::isUnknown:
        return {};
    case SavedVersion::Target::isNothing:
        return u"nothing"_s;
    case SavedVersion::Target::isTable:
        return u"table"_s;
    case SavedVersion::Target::isStream:
        break;
    }
    return u"stream"_s;
}

void addContent(QJsonObject& json, const std::optional<VersionContent>& content)
{
    const bool isRead = content && content->problem.isEmpty();
    json[u"problem"_s] = content ? jsonOf(content->problem) : QJsonValue();
    json[u"pages"_s] = isRead ? QJsonValue(content->pageCount) : QJsonValue();
    json[u"producer"_s] = isRead ? jsonOf(content->producer) : QJsonValue();
    json[u"created"_s] = isRead ? jsonOf(content->created) : QJsonValue();
    json[u"modified"_s] = isRead ? jsonOf(content->modified) : QJsonValue();
}

QJsonObject jsonOf(const VersionRow& row)
{
    const SavedVersion& version = row.version;
    QJsonObject json{
        {u"marker"_s, jsonOf(std::uint64_t{version.marker})},
        {u"save"_s, version.isOwn ? jsonOf(std::uint64_t{version.save}) : QJsonValue()},
        {u"begin"_s, jsonOf(std::uint64_t{version.begin})},
        {u"end"_s, jsonOf(std::uint64_t{version.end})},
        {u"sha256"_s, jsonOf(row.hash)},
        {u"startxref"_s, jsonOf(version.startxref)},
        {u"leadsTo"_s, targetOf(version.target)},
        {u"prev"_s, jsonOf(version.prev)},
        {u"signatures"_s, jsonOf(row.signatures)},
    };
    addContent(json, row.content);
    const bool isKnown = version.isOwn && version.changes;
    json[u"added"_s] = isKnown ? QJsonValue(jsonOf(version.changes->added)) : QJsonValue();
    json[u"replaced"_s] = isKnown ? QJsonValue(jsonOf(version.changes->replaced)) : QJsonValue();
    json[u"freed"_s] = isKnown ? QJsonValue(jsonOf(version.changes->freed)) : QJsonValue();
    QJsonArray flags;
    for (const VersionFlag flag : version.flags) {
        const std::string_view name = nameOf(flag);
        flags.append(QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size())));
    }
    json[u"flags"_s] = flags;
    return json;
}

} // namespace

VersionReport::VersionReport(
    const VersionReading& reading, const Names& names, const QString& program)
    : theFileName(names.file)
    , theExportName(names.exported)
    , theProgram(program)
    , theTime(QDateTime::currentDateTimeUtc())
    , theRows(reading.rows())
    , theFileHash(reading.fileHash())
    , theFileSize(reading.fileSize())
    , theMarkerCount(reading.markerCount())
    , theOwnCount(reading.ownCount())
    , theSummary(VersionWords::summary(reading))
    , theIsStopped(reading.wasStopped())
{
}

QByteArray VersionReport::json() const
{
    QJsonArray versions;
    for (const VersionRow& row : theRows)
        versions.append(jsonOf(row));
    const QJsonObject report{
        {u"schema"_s, u"versions-report"_s},
        {u"schemaVersion"_s, 1},
        {u"program"_s, theProgram},
        {u"time"_s, theTime.toString(Qt::ISODate)},
        {u"isComplete"_s, !theIsStopped},
        {u"file"_s,
            QJsonObject{{u"name"_s, theFileName}, {u"size"_s, jsonOf(std::uint64_t{theFileSize})},
                {u"sha256"_s, jsonOf(theFileHash)}}},
        {u"markers"_s, jsonOf(std::uint64_t{theMarkerCount})},
        {u"saves"_s, jsonOf(theOwnCount)},
        {u"versions"_s, versions},
    };
    return QJsonDocument(report).toJson();
}

QByteArray VersionReport::html() const
{
    const QString title = Words::tr("Saved versions of “%1”").arg(theFileName);
    const QString page = u"<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>"_s
        + escaped(title) + u"</title>\n<style>"_s + style + u"</style></head>\n<body><h1>"_s
        + escaped(title) + u"</h1>\n"_s + heading() + table() + hashes() + lists()
        + u"</body></html>\n"_s;
    return page.toUtf8();
}

QString VersionReport::heading() const
{
    const auto row = [](const QString& name, const QString& html) -> QString {
        return u"<tr><th>"_s + escaped(name) + u"</th><td>"_s + html + u"</td></tr>\n"_s;
    };
    QString text = u"<table>\n"_s + row(Words::tr("File"), escaped(theFileName))
        + row(Words::tr("Size"), escaped(Words::tr("%1 bytes").arg(plain(theFileSize))))
        + row(Words::tr("SHA-256"), code(digestText(theFileHash)))
        + row(Words::tr("Made by"), escaped(theProgram))
        + row(Words::tr("Made at"), escaped(theTime.toString(u"yyyy-MM-dd HH:mm:ss"_s) + u" UTC"_s))
        + u"</table>\n<p>"_s + escaped(theSummary) + u"</p>\n"_s;
    if (theIsStopped)
        text += u"<p><strong>"_s
            + escaped(Words::tr("Reading was stopped: what is missing has not been looked at."))
            + u"</strong></p>\n"_s;
    return text;
}

QString VersionReport::table() const
{
    QString text = u"<table>\n<tr>"_s;
    for (const QString& title : {Words::tr("Version"), Words::tr("Save"), Words::tr("Modified"),
             Words::tr("From"), Words::tr("Up to"), Words::tr("Bytes added"), Words::tr("Pages"),
             Words::tr("Objects added"), Words::tr("Replaced"), Words::tr("Freed"),
             Words::tr("Signatures"), Words::tr("startxref"), Words::tr("Leads to"),
             Words::tr("Prev"), Words::tr("Producer"), Words::tr("Notes")})
        text += u"<th>"_s + escaped(title) + u"</th>"_s;
    text += u"</tr>\n"_s;
    for (auto row = theRows.rbegin(); row != theRows.rend(); ++row) {
        const SavedVersion& version = row->version;
        const VersionContent content = row->content.value_or(VersionContent());
        const bool isRead = row->content && content.problem.isEmpty();
        const ObjectChanges* const changes = VersionWords::changes(version);
        const auto count = [&](const std::vector<std::uint32_t> ObjectChanges::*list) {
            return numberCell(changes ? plain((changes->*list).size()) : QString());
        };
        text += u"<tr>"_s + numberCell(plain(version.marker))
            + numberCell(version.isOwn ? plain(version.save) : QString())
            + cell(content.modified.isEmpty() ? content.created : content.modified)
            + numberCell(plain(version.begin)) + numberCell(plain(version.end))
            + numberCell(plain(version.bytesAdded()))
            + numberCell(isRead ? QString::number(content.pageCount) : QString())
            + count(&ObjectChanges::added) + count(&ObjectChanges::replaced)
            + count(&ObjectChanges::freed)
            + numberCell(row->signatures ? plain(*row->signatures) : QString())
            + numberCell(optionalText(version.startxref))
            + cell(VersionWords::targetKind(version.target))
            + numberCell(optionalText(version.prev)) + cell(content.producer)
            + cell(VersionWords::notes(*row, theFileSize).join(u"; "_s)) + u"</tr>\n"_s;
    }
    return text + u"</table>\n"_s;
}

QString VersionReport::hashes() const
{
    const FileNameParts parts = fileNameParts(theExportName.toStdString());
    QString lines;
    for (auto row = theRows.rbegin(); row != theRows.rend(); ++row) {
        const std::string name
            = versionFileName(parts.base, row->version.marker, versionExtension(parts));
        lines += digestText(row->hash) + u"  "_s + QString::fromStdString(name) + u'\n';
    }
    return u"<h2>SHA-256</h2>\n<p>"_s
        + escaped(Words::tr("Of the versions as they are exported; sha256sum checks these lines."))
        + u"</p>\n<pre>"_s + escaped(lines) + u"</pre>\n"_s;
}

QString VersionReport::lists() const
{
    QString text = u"<h2>"_s + escaped(Words::tr("Numbers of changed objects")) + u"</h2>\n"_s;
    for (auto row = theRows.rbegin(); row != theRows.rend(); ++row) {
        const SavedVersion& version = row->version;
        if (!version.isOwn || version.save == 1)
            continue;
        text += u"<h3>"_s + escaped(Words::tr("Version %1").arg(version.marker)) + u"</h3>\n"_s;
        if (!version.changes) {
            text += u"<p>"_s + escaped(Words::tr("Cannot be known.")) + u"</p>\n"_s;
            continue;
        }
        const auto line = [&](const QString& name, const std::vector<std::uint32_t>& numbers) {
            text += u"<p>"_s + escaped(name) + u": "_s
                + (numbers.empty() ? escaped(Words::tr("none"))
                                   : escaped(VersionWords::numbers(numbers, 0)))
                + u"</p>\n"_s;
        };
        line(Words::tr("Added"), version.changes->added);
        line(Words::tr("Replaced"), version.changes->replaced);
        line(Words::tr("Freed"), version.changes->freed);
    }
    return text;
}

} // namespace tarnwick
