#include "SearchField.h"

#include "GlyphIcon.h"
#include "settings/StoredList.h"
#include "text/FindBar.h"

#include <QAction>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QStyle>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

constexpr int widestMenuText = 320; // device-independent pixels

/// Shared by every window and program of this user.
const StoredList& storedTexts()
{
    static const StoredList list(u"recentSearches"_s);
    return list;
}

RecentSearches recentsOf(const QStringList& stored)
{
    std::vector<std::u16string> texts;
    for (const QString& text : stored)
        texts.push_back(text.toStdU16String());
    RecentSearches recents;
    recents.restore(texts);
    return recents;
}

} // namespace

SearchField::SearchField(QWidget* parent)
    : QLineEdit(parent)
    , theMenu(new QMenu(this))
    , theMenuAction(addAction(GlyphIcon::icon(GlyphIcon::Shape::isMagnifier), LeadingPosition))
    , theClearAction(addAction(GlyphIcon::icon(GlyphIcon::Shape::isCross), TrailingPosition))
    , theMatchLabel(new QLabel(this))
{
    setMaxLength(FindBar::longestText);
    theMenuAction->setText(tr("Recent searches"));
    theMenuAction->setToolTip(tr("Recent searches (Down)"));
    theClearAction->setText(tr("Clear"));
    theClearAction->setToolTip(tr("Clear the search text"));
    theClearAction->setVisible(false);
    theMatchLabel->setAttribute(Qt::WA_TransparentForMouseEvents);
    theMatchLabel->setForegroundRole(QPalette::PlaceholderText);
    theMatchLabel->hide();
    connect(theMenuAction, &QAction::triggered, this, &SearchField::openMenu);
    connect(theClearAction, &QAction::triggered, this, [this] {
        clear();
        setMatchText({});
        setFocus(Qt::OtherFocusReason);
    });
    connect(this, &QLineEdit::textChanged, this, [this](const QString& text) {
        theClearAction->setVisible(!text.isEmpty());
        setMatchText({});
    });
    connect(this, &QLineEdit::returnPressed, this, &SearchField::searchRequested);
    connect(theMenu, &QMenu::aboutToShow, this, &SearchField::fillMenu);
}

void SearchField::setSearchMenuTemplate(QMenu* menu)
{
    theTemplate = menu;
    theMenuAction->setEnabled(menu != nullptr);
    theMenu->setTitle(menu ? menu->title() : QString());
}

QMenu* SearchField::recentsMenu()
{
    fillMenu();
    return theMenu;
}

void SearchField::fillMenu()
{
    theMenu->clear();
    theRecents = recentsOf(storedTexts().texts());
    if (!theTemplate)
        return;
    const bool hasTexts = !theRecents.texts().empty();
    const QList<QAction*> items = theTemplate->actions();
    for (QAction* item : items) {
        const int tag = item->data().toInt();
        if (item->isSeparator() && hasTexts)
            theMenu->addSeparator();
        else if (tag == isRecentsTitle && hasTexts)
            theMenu->addAction(item->text())->setEnabled(false);
        else if (tag == isRecentsItem && hasTexts)
            addRecents();
        else if (tag == isClearRecents && hasTexts)
            connect(theMenu->addAction(item->text()), &QAction::triggered, this,
                [] { storedTexts().change([](QStringList& texts) { texts.clear(); }); });
        else if (tag == isNoRecents && !hasTexts)
            theMenu->addAction(item->text())->setEnabled(false);
        else if (tag == 0 && !item->isSeparator())
            theMenu->addAction(item);
    }
}

void SearchField::addRecents()
{
    for (const std::u16string& recent : theRecents.texts()) {
        const QString text = QString::fromStdU16String(recent);
        QString shown
            = theMenu->fontMetrics().elidedText(text.simplified(), Qt::ElideRight, widestMenuText);
        shown.replace(u'&', u"&&"_s);
        QAction* action = theMenu->addAction(shown);
        action->setData(text);
        connect(action, &QAction::triggered, this, [this, text] {
            setText(text);
            emit searchRequested();
        });
    }
}

void SearchField::openMenu()
{
    if (theTemplate)
        theMenu->popup(mapToGlobal(QPoint(0, height())));
}

void SearchField::rememberSearch(const QString& text)
{
    storedTexts().change([&text](QStringList& stored) {
        RecentSearches recents = recentsOf(stored);
        recents.add(text.toStdU16String());
        stored.clear();
        for (const std::u16string& recent : recents.texts())
            stored << QString::fromStdU16String(recent);
    });
}

void SearchField::setMatchText(const QString& text)
{
    theMatchLabel->setText(text);
    theMatchLabel->setVisible(!text.isEmpty());
    setAccessibleDescription(text);
    placeLabel();
}

QString SearchField::matchText() const
{
    return theMatchLabel->text();
}

void SearchField::placeLabel()
{
    const int frame = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, this);
    const int icon = style()->pixelMetric(QStyle::PM_LineEditIconSize, nullptr, this)
        + style()->pixelMetric(QStyle::PM_LineEditIconMargin, nullptr, this) * 2;
    const bool isLeftToRight = layoutDirection() == Qt::LeftToRight;
    const int edge = frame + (theClearAction->isVisible() ? icon : 4);
    const QSize size = theMatchLabel->sizeHint();
    theMatchLabel->setGeometry(isLeftToRight ? width() - edge - size.width() : edge,
        (height() - size.height()) / 2, size.width(), size.height());
    const int margin = theMatchLabel->text().isEmpty() ? 0 : size.width() + 6;
    setTextMargins(isLeftToRight ? 0 : margin, 0, isLeftToRight ? margin : 0, 0);
}

/// Ctrl+U shows the source, here as everywhere; a line edit would clear itself instead.
bool SearchField::event(QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_U && key->modifiers() == Qt::ControlModifier) {
            event->ignore();
            return false;
        }
    }
    return QLineEdit::event(event);
}

void SearchField::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Down && event->modifiers() == Qt::NoModifier)
        openMenu();
    else if (event->key() == Qt::Key_Escape)
        emit cancelRequested();
    else
        QLineEdit::keyPressEvent(event);
}

void SearchField::resizeEvent(QResizeEvent* event)
{
    QLineEdit::resizeEvent(event);
    placeLabel();
}

void SearchField::changeEvent(QEvent* event)
{
    QLineEdit::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::LayoutDirectionChange)
        placeLabel();
}

} // namespace tarnwick
