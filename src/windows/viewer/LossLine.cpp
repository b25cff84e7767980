#include "LossLine.h"

#include "text/PlainTextView.h"

#include <QAccessible>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

/// Ranges of pages that a sentence beside a text names.
constexpr int mostRanges = 4;

} // namespace

LossLine::LossLine(QWidget* parent)
    : QWidget(parent)
    , theLabel(new QLabel(this))
    , theListButton(new QToolButton(this))
{
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 0, 8, 4);
    layout->setSpacing(4);
    layout->addWidget(theLabel);
    layout->addWidget(theListButton, 0, Qt::AlignRight);
    theLabel->setWordWrap(true);
    theLabel->setTextFormat(Qt::PlainText);
    theLabel->setTextInteractionFlags(Qt::TextSelectableByMouse);
    theLabel->setObjectName(u"lossText"_s);
    theListButton->setObjectName(u"lossListButton"_s);
    theListButton->setText(tr("All Pages…"));
    theListButton->setToolTip(tr("List every page from which something is missing"));
    theListButton->setAccessibleName(tr("Pages from which something is missing"));
    theListButton->setFocusPolicy(Qt::StrongFocus);
    connect(theListButton, &QToolButton::clicked, this, &LossLine::showList);
    hide();
}

void LossLine::setLosses(const PDFLosses& losses, LossSubject subject)
{
    if (losses == theLosses && subject == theSubject)
        return;
    theLosses = losses;
    theSubject = subject;
    const QString text = lossSentences(losses, subject, mostRanges).join(u'\n');
    theLabel->setText(text.isEmpty() ? QString() : u"⚠ " % text);
    theLabel->setAccessibleName(text);
    theListButton->setVisible(!namesAllPages(losses, mostRanges));
    setVisible(!losses.isEmpty());
    if (losses.isEmpty())
        return;
    QAccessibleEvent event(theLabel, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

QString LossLine::text() const
{
    return theLabel->accessibleName();
}

void LossLine::showList()
{
    auto* const dialog = new QDialog(this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(tr("Pages That Lack Something"));
    auto* const list = new PlainTextView(dialog);
    list->setAccessibleName(theListButton->accessibleName());
    list->setPlainText(lossList(theLosses, theSubject));
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close, dialog);
    connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    auto* const layout = new QVBoxLayout(dialog);
    layout->addWidget(list);
    layout->addWidget(buttons);
    dialog->resize(520, 360);
    dialog->show();
}

} // namespace tarnwick
