#include "document/FindingsStrip.h"

#include "document/DocumentFindings.h"
#include "frame/ElidedLabel.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLocale>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace tarnwick {

FindingsStrip::FindingsStrip(DocumentFindings* findings, Occasion occasion, QWidget* parent)
    : QFrame(parent)
    , theFindings(findings)
    , theOccasion(occasion)
    , theText(new ElidedLabel)
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    theText->setObjectName(u"findingsText"_s);
    layout->addWidget(theText, 1);
    auto* show = new QToolButton;
    show->setObjectName(u"findingsButton"_s);
    show->setText(tr("Show"));
    show->setAccessibleName(tr("Show the findings"));
    show->setFocusPolicy(Qt::StrongFocus);
    connect(show, &QToolButton::clicked, this, &FindingsStrip::wanted);
    layout->addWidget(show);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    connect(theFindings, &DocumentFindings::changed, this, &FindingsStrip::showFindings);
    hide();
    showFindings();
}

/// The count is of all, whatever the occasion: it is the same in every window.
void FindingsStrip::showFindings()
{
    const FileFindings* const all = theFindings->findings();
    const FileFinding* const gravest = all ? all->gravest() : nullptr;
    const bool isOccasion = gravest && (theOccasion == Occasion::isAny || all->areGrave());
    QString text;
    if (isOccasion) {
        const QString sentence = QString::fromStdString(gravest->sentence);
        const auto count = static_cast<qulonglong>(all->count());
        text = count == 1 ? tr("1 finding: %1").arg(sentence)
                          : tr("%1 findings: %2 …").arg(QLocale().toString(count), sentence);
    }
    if (text == theText->text())
        return;
    theText->setWhole(text);
    setVisible(!text.isEmpty());
    if (text.isEmpty())
        return;
    QAccessibleEvent event(theText, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

QString FindingsStrip::text() const
{
    return theText->text();
}

} // namespace tarnwick
