#include "document/FindingsStrip.h"

#include "document/DocumentFindings.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QStylePainter>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

/// A line of text that ends in an ellipsis where there is no room for more.
class ElidedLabel : public QLabel
{
protected:
    void paintEvent(QPaintEvent*) override
    {
        const QRect area = contentsRect();
        QStylePainter painter(this);
        painter.drawItemText(area, Qt::AlignLeading | Qt::AlignVCenter, palette(), isEnabled(),
            fontMetrics().elidedText(text(), Qt::ElideRight, area.width()), foregroundRole());
    }
};

} // namespace

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
    theText->setTextFormat(Qt::PlainText);
    theText->setMinimumWidth(10);
    theText->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
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
    theText->setText(text);
    theText->setToolTip(text);
    theText->setAccessibleName(text);
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
