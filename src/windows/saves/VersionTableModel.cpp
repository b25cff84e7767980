#include "VersionTableModel.h"

#include "VersionReading.h"
#include "VersionWords.h"

#include <QTextDocument>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

struct ColumnText
{
    QString title;
    QString meaning;
};

ColumnText textOf(VersionColumn column)
{
    const auto tr = [](const char* text) { return VersionTableModel::tr(text); };
    switch (column) {
    case VersionColumn::isNumber:
        return {tr("Version"),
            tr("Which marker “%%EOF” of the file ends it; exports number "
               "versions likewise")};
    case VersionColumn::isSave:
        return {tr("Save"), tr("Which of the versions it is that stand by themselves")};
    case VersionColumn::isDate:
        return {tr("Date"), tr("When the version says that it was modified, or else created")};
    case VersionColumn::isBytesAdded:
        return {tr("Bytes"), tr("Bytes that the save added")};
    case VersionColumn::isPages:
        return {tr("Pages"), tr("Pages of the version")};
    case VersionColumn::isObjectsAdded:
        return {tr("Added"), tr("Objects that the save added")};
    case VersionColumn::isReplaced:
        return {tr("Replaced"), tr("Objects that the save wrote again")};
    case VersionColumn::isFreed:
        return {tr("Freed"), tr("Objects that the save deleted")};
    case VersionColumn::isSignatures:
        return {tr("Signatures"), tr("Signatures in the bytes that the save added")};
    case VersionColumn::isNotes:
        return {tr("Notes"), tr("What is special about it")};
    case VersionColumn::isProducer:
        return {tr("Producer"), tr("What the version says that wrote it")};
    case VersionColumn::isRange:
        return {tr("Range"), tr("Where the added bytes begin, and where the version ends")};
    case VersionColumn::isHash:
        return {tr("SHA-256"), tr("Of the version: all bytes of the file up to its end")};
    case VersionColumn::isStartxref:
        return {tr("startxref"), tr("Where its cross-reference is said to be, and what is there")};
    case VersionColumn::isPrev:
        break;
    }
    return {tr("Prev"), tr("Where its cross-reference says that the one before is")};
}

bool isText(VersionColumn column)
{
    return column == VersionColumn::isDate || column == VersionColumn::isNotes
        || column == VersionColumn::isProducer || column == VersionColumn::isHash
        || column == VersionColumn::isStartxref;
}

QString countOf(const ObjectChanges* changes, VersionColumn column)
{
    if (!changes)
        return {};
    const auto& numbers = column == VersionColumn::isObjectsAdded ? changes->added
        : column == VersionColumn::isReplaced                     ? changes->replaced
                                                                  : changes->freed;
    return VersionWords::counted(numbers.size());
}

/// What a version says of itself, in one column.
QString contentText(const VersionContent& content, VersionColumn column)
{
    if (!content.problem.isEmpty())
        return {};
    switch (column) {
    case VersionColumn::isPages:
        return VersionWords::counted(static_cast<std::uint64_t>(content.pageCount));
    case VersionColumn::isProducer:
        return content.producer;
    default:
        return content.modified.isEmpty() ? content.created : content.modified;
    }
}

} // namespace

VersionTableModel::VersionTableModel(const VersionReading* reading, QObject* parent)
    : QAbstractTableModel(parent)
    , theReading(reading)
{
    connect(reading, &VersionReading::rowsKnown, this, [this] {
        beginResetModel();
        theRowCount = static_cast<int>(theReading->rows().size());
        endResetModel();
    });
    const auto tell = [this](int first, int last) {
        if (first <= last)
            emit dataChanged(index(first, 0), index(last, versionColumnCount - 1));
    };
    connect(reading, &VersionReading::rowChanged, this,
        [this, tell](int version) { tell(versionOf(version), versionOf(version)); });
    connect(reading, &VersionReading::chainKnown, this, [this, tell] { tell(0, theRowCount - 1); });
}

int VersionTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : theRowCount;
}

int VersionTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : versionColumnCount;
}

QVariant VersionTableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const auto column = static_cast<VersionColumn>(index.column());
    const VersionRow& row = theReading->rows()[static_cast<std::size_t>(versionOf(index.row()))];
    switch (role) {
    case Qt::DisplayRole:
        return text(row, column);
    case Qt::ToolTipRole:
        return toolTip(row, column);
    case Qt::TextAlignmentRole:
        return int(Qt::AlignVCenter | (isText(column) ? Qt::AlignLeft : Qt::AlignRight));
    default:
        return {};
    }
}

QVariant VersionTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    const auto column = static_cast<VersionColumn>(section);
    switch (role) {
    case Qt::DisplayRole:
        return textOf(column).title;
    case Qt::ToolTipRole:
        return textOf(column).meaning;
    case Qt::TextAlignmentRole:
        return int(Qt::AlignVCenter | (isText(column) ? Qt::AlignLeft : Qt::AlignRight));
    default:
        return {};
    }
}

QString VersionTableModel::text(const VersionRow& row, VersionColumn column) const
{
    const SavedVersion& version = row.version;
    switch (column) {
    case VersionColumn::isNumber:
        return QString::number(version.marker);
    case VersionColumn::isSave:
        return version.isOwn ? QString::number(version.save) : QString();
    case VersionColumn::isBytesAdded:
        return VersionWords::counted(version.bytesAdded());
    case VersionColumn::isDate:
    case VersionColumn::isPages:
    case VersionColumn::isProducer:
        return row.content ? contentText(*row.content, column) : QString();
    case VersionColumn::isObjectsAdded:
    case VersionColumn::isReplaced:
    case VersionColumn::isFreed:
        return countOf(VersionWords::changes(version), column);
    case VersionColumn::isSignatures:
        return row.signatures ? VersionWords::counted(*row.signatures) : QString();
    case VersionColumn::isNotes:
        return VersionWords::notes(row, theReading->fileSize()).join(u"; "_s);
    case VersionColumn::isRange:
        return VersionWords::counted(version.begin) + u" – "_s + VersionWords::counted(version.end);
    case VersionColumn::isHash:
        return row.hash ? VersionWords::shortHash(*row.hash) : QString();
    case VersionColumn::isStartxref:
        return VersionWords::target(version);
    case VersionColumn::isPrev:
        return version.prev ? VersionWords::counted(*version.prev) : QString();
    }
    return {};
}

QString VersionTableModel::toolTip(const VersionRow& row, VersionColumn column) const
{
    switch (column) {
    case VersionColumn::isHash:
        return row.hash ? QString::fromStdString(hexadecimal(*row.hash)) : QString();
    case VersionColumn::isNotes:
    case VersionColumn::isProducer:
        // Texts of the file must not become markup.
        return text(row, column).isEmpty() ? QString()
                                           : Qt::convertFromPlainText(text(row, column));
    default:
        return {};
    }
}

QString VersionTableModel::rowText(int row) const
{
    const VersionRow& version = theReading->rows()[static_cast<std::size_t>(versionOf(row))];
    QStringList cells;
    for (int column = 0; column < versionColumnCount; ++column) {
        const auto which = static_cast<VersionColumn>(column);
        cells << (which == VersionColumn::isHash ? toolTip(version, which) : text(version, which));
    }
    return cells.join(u'\t');
}

} // namespace tarnwick
