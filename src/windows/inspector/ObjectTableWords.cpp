#include "ObjectTableWords.h"

#include "ObjectTableModel.h"

#include <QLocale>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

QString counted(std::size_t number)
{
    return QLocale().toString(static_cast<qulonglong>(number));
}

} // namespace

QString objectFilterHelp()
{
    return ObjectTableModel::tr(
        "font: kinds with this word\n"
        "type:font: this kind\n"
        "17 or 17-20: object numbers\n"
        "v:2: saved version, also v>1\n"
        "gen:0, offset>5000, size>1000, uses:0: numbers, with : < > <= >=\n"
        "in:45: in this object stream\n"
        "unreachable: in use, but nothing leads there\n"
        "state:current, state:replaced, state:freed, state:duplicate\n"
        "Of several words all hold; of several numbers, types or states one.");
}

QString columnSample(ObjectColumn column)
{
    switch (column) {
    case ObjectColumn::isGeneration:
    case ObjectColumn::isVersion:
        return u"999"_s;
    case ObjectColumn::isKind:
        return u"FontDescriptor"_s;
    case ObjectColumn::isOffset:
        return u"999,999,999"_s;
    case ObjectColumn::isSize:
        return u"9,999,999"_s;
    case ObjectColumn::isContainer:
        return u"8000001, number 999"_s;
    case ObjectColumn::isUses:
        return u"99,999"_s;
    case ObjectColumn::isState:
        return u"Replaced in version 99"_s;
    default:
        return u"8000001"_s;
    }
}

QString countText(const ObjectRows& rows)
{
    const bool isFiltered = rows.matching < rows.total;
    if (rows.shown.size() < rows.matching)
        return isFiltered ? ObjectTableModel::tr("%1 of %2 objects that match; narrow the filter")
                                .arg(counted(rows.shown.size()), counted(rows.matching))
                          : ObjectTableModel::tr("%1 of %2 objects; narrow the filter")
                                .arg(counted(rows.shown.size()), counted(rows.total));
    return isFiltered
        ? ObjectTableModel::tr("%1 of %2 objects").arg(counted(rows.matching), counted(rows.total))
        : ObjectTableModel::tr("%1 objects").arg(counted(rows.total));
}

QString waitingText(ObjectRowsMaker::Step step)
{
    switch (step) {
    case ObjectRowsMaker::Step::isKinds:
        return ObjectTableModel::tr("Reading the kinds of objects… %1 %");
    case ObjectRowsMaker::Step::isConnections:
        return ObjectTableModel::tr("Reading what objects refer to… %1 %");
    case ObjectRowsMaker::Step::isTable:
        return ObjectTableModel::tr("Reading the file's table of objects… %1 %");
    case ObjectRowsMaker::Step::isRows:
        break;
    }
    return ObjectTableModel::tr("Looking at objects… %1 %");
}

QString learningText(ObjectRowsMaker::Step step)
{
    return step == ObjectRowsMaker::Step::isKinds
        ? ObjectTableModel::tr("reading their kinds: %1 %")
        : ObjectTableModel::tr("reading what they refer to: %1 %");
}

} // namespace tarnwick
