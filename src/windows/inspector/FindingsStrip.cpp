#include "FindingsStrip.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace tarnwick {

FindingsStrip::FindingsStrip(QWidget* parent)
    : QFrame(parent)
    , theText(new QLabel)
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
    show->setText(tr("Show"));
    show->setAccessibleName(tr("Show the findings"));
    connect(show, &QToolButton::clicked, this, &FindingsStrip::wanted);
    layout->addWidget(show);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    hide();
}

void FindingsStrip::setText(const QString& text)
{
    theText->setText(text);
    theText->setToolTip(text);
    setVisible(!text.isEmpty());
}

QString FindingsStrip::text() const
{
    return theText->text();
}

} // namespace tarnwick
