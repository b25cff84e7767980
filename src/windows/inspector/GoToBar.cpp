#include "GoToBar.h"

#include "CloseButton.h"
#include "frame/ElidedLabel.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace tarnwick {

GoToBar::GoToBar(QWidget* parent)
    : QFrame(parent)
    , theField(new QLineEdit)
    , theMistake(new ElidedLabel)
{
    setAccessibleName(tr("Go to"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    auto* caption = new QLabel(tr("G&o to:"));
    caption->setBuddy(theField);
    layout->addWidget(caption);
    theField->setObjectName(u"goToField"_s);
    theField->setPlaceholderText(tr("17, 17 0, 17 v2, @2317, @0x90D or p12"));
    theField->setToolTip(
        tr("17: object; 17 0: object and generation; 17 v2: object as of version 2;\n"
           "@2317 or @0x90D: byte offset; p12: page"));
    theField->setAccessibleName(tr("Go to object, offset or page"));
    theField->setAccessibleDescription(theField->toolTip());
    theField->setMinimumWidth(theField->fontMetrics().horizontalAdvance(u'0') * 40);
    theField->setMaximumWidth(theField->fontMetrics().horizontalAdvance(u'0') * 60);
    layout->addWidget(theField, 1);
    connect(theField, &QLineEdit::returnPressed, this, [this] { emit wanted(text()); });
    connect(theField, &QLineEdit::textEdited, this, [this] { setMistake({}); });
    theMistake->setObjectName(u"goToMistake"_s);
    layout->addWidget(theMistake, 2);

    auto* close = newCloseButton(tr("Close “Go to”"));
    layout->addWidget(close);
    connect(close, &QToolButton::clicked, this, &GoToBar::closeWanted);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void GoToBar::edit()
{
    setMistake({});
    show();
    theField->setFocus(Qt::ShortcutFocusReason);
    theField->selectAll();
}

void GoToBar::setMistake(const QString& mistake)
{
    theMistake->setWhole(mistake);
    if (!mistake.isEmpty())
        theField->setFocus(Qt::OtherFocusReason);
}

QString GoToBar::text() const
{
    return theField->text();
}

void GoToBar::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        emit closeWanted();
    else if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter)
        QFrame::keyPressEvent(event);
}

} // namespace tarnwick
