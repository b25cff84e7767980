#include "MenuTitle.h"

#include <QMenu>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

constexpr int longestTitle = 640; // pixels at 96 dpi: wider menus leave small screens

} // namespace

QString menuTitle(qsizetype index, const QString& title, const QMenu& menu)
{
    QString text = menu.fontMetrics().elidedText(title, Qt::ElideMiddle, longestTitle);
    text.replace(u'&', "&&"_L1);
    const QString number = QString::number(index + 1);
    const QString mnemonic = index < 9 ? u"&"_s : QString();
    return mnemonic + number + u' ' + text;
}

} // namespace tarnwick
