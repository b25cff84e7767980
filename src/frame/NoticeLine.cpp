#include "NoticeLine.h"

#include "NoticeAccessible.h"
#include "WrappedText.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QStyle>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

QStyle::StandardPixmap iconOf(Notice::Kind kind)
{
    switch (kind) {
    case Notice::Kind::isDone:
        return QStyle::SP_MessageBoxInformation;
    case Notice::Kind::isIncomplete:
        return QStyle::SP_MessageBoxWarning;
    case Notice::Kind::isFailure:
        break;
    }
    return QStyle::SP_MessageBoxCritical;
}

} // namespace

NoticeLine::NoticeLine(QWidget* parent)
    : QFrame(parent)
    , theIcon(new QLabel)
    , theText(new WrappedText)
    , theCount(new QLabel)
{
    NoticeAccessible::install();
    setObjectName(u"noticeLine"_s);
    setAutoFillBackground(true);
    setFrameStyle(static_cast<int>(QFrame::StyledPanel) | static_cast<int>(QFrame::Raised));
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(8, 4, 6, 4);
    row->setSpacing(8);
    row->addWidget(theIcon, 0, Qt::AlignVCenter);
    theText->setObjectName(u"noticeText"_s);
    row->addWidget(theText, 1);
    theCount->setObjectName(u"noticeCount"_s);
    row->addWidget(theCount, 0, Qt::AlignVCenter);
    theAllButton = addButton(u"noticeCloseAll"_s, tr("Close all"), tr("Close all messages"));
    connect(theAllButton, &QToolButton::clicked, this, &NoticeLine::closeAll);
    QToolButton* const close = addButton(u"noticeClose"_s, u"\u2715"_s, tr("Close message"));
    close->setToolTip(tr("Close (Esc)"));
    connect(close, &QToolButton::clicked, this, &NoticeLine::closeLatest);

    setContextMenuPolicy(Qt::ActionsContextMenu);
    auto* const copying = new QAction(tr("Copy message"), this);
    connect(copying, &QAction::triggered, this, &NoticeLine::copy);
    addAction(copying);
    hide();
}

QToolButton* NoticeLine::addButton(
    const QString& objectName, const QString& text, const QString& name)
{
    auto* const button = new QToolButton;
    button->setObjectName(objectName);
    button->setAutoRaise(true);
    button->setText(text);
    button->setFocusPolicy(Qt::TabFocus);
    button->setAccessibleName(name);
    layout()->addWidget(button);
    layout()->setAlignment(button, Qt::AlignVCenter);
    return button;
}

void NoticeLine::add(const Notice& notice)
{
    theNotices.removeIf([&](const Notice& other) {
        return notice.subject.isEmpty()
            ? other.subject.isEmpty() && other.kind == notice.kind && other.text == notice.text
            : other.subject == notice.subject;
    });
    theNotices.append(notice);
    showLatest();
    NoticeAccessible::tell(this);
}

void NoticeLine::closeLatest()
{
    if (!theNotices.isEmpty())
        theNotices.removeLast();
    showLatest();
}

void NoticeLine::closeAll()
{
    theNotices.clear();
    showLatest();
}

void NoticeLine::copy() const
{
    if (!theNotices.isEmpty())
        QGuiApplication::clipboard()->setText(theNotices.constLast().text);
}

void NoticeLine::showLatest()
{
    const qsizetype count = theNotices.size();
    setVisible(count > 0);
    if (count == 0)
        return;
    theText->setText(theNotices.constLast().text);
    setAccessibleName(theText->text());
    theCount->setText(tr("%Ln messages", nullptr, static_cast<int>(count)));
    theCount->setVisible(count > 1);
    theAllButton->setVisible(count > 1);
    showIcon();
}

void NoticeLine::showIcon()
{
    if (theNotices.isEmpty())
        return;
    const int size = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    const QIcon icon = style()->standardIcon(iconOf(theNotices.constLast().kind), nullptr, this);
    theIcon->setPixmap(icon.pixmap(QSize(size, size), devicePixelRatioF()));
}

void NoticeLine::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        closeLatest();
    else
        QFrame::keyPressEvent(event);
}

void NoticeLine::changeEvent(QEvent* event)
{
    QFrame::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange)
        showIcon();
}

} // namespace tarnwick
