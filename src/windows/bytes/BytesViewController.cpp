#include "bytes/BytesViewController.h"

#include "BytesSearch.h"
#include "BytesWords.h"
#include "document/Document.h"
#include "text/HexView.h"
#include "ui_BytesWindow.h"

#include <QKeyEvent>
#include <QShowEvent>

using namespace Qt::StringLiterals;

namespace tarnwick {

const QString BytesViewController::titlePrefix = u"Bytes: "_s;

BytesViewController::BytesViewController(Document* document, QWidget* parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::BytesWindow>())
    , theDocument(document)
{
    ui->setupUi(this);
    setFocusProxy(ui->bytesView);
    ui->strayNote->hide();
    ui->bytesView->setGutter(PlainTextView::Gutter::isOffsets);
    theSearch = new BytesSearch(ui->findBar, ui->bytesView, this);
    ui->offsetField->installEventFilter(this);
    connect(ui->offsetField, &QLineEdit::returnPressed, this, &BytesViewController::takeOffset);
    connect(ui->offsetField, &QLineEdit::textEdited, this, [this] { warnOfOffset({}); });
    connect(ui->bytesView, &HexView::selectionChanged, this, &BytesViewController::showPlace);
    connect(ui->strayNote, &QLabel::linkActivated, this, [this](const QString& target) {
        const StrayBytes& stray = ui->bytesView->hexStorage().stray();
        const std::size_t size = ui->bytesView->hexStorage().size();
        if (target == "#before"_L1)
            goTo(0, stray.header.value_or(0));
        else
            goTo(stray.end.value_or(size), size);
    });
    showBytes();
}

BytesViewController::~BytesViewController() = default;

HexView* BytesViewController::bytesView() const
{
    return ui->bytesView;
}

/// Coming back from an icon is no new showing.
void BytesViewController::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (!event->spontaneous())
        setWindowTitle(titlePrefix + theDocument->displayName());
}

void BytesViewController::showBytes()
{
    const FileBytes& file = theDocument->theData();
    ui->bytesView->setBytes({file.view(), file.owner()});
    setWindowTitle(titlePrefix + theDocument->displayName());
    theStraySearch.start(
        [file](const std::stop_token& stop) { return findStrayBytes(file.view(), stop); },
        [this](const StrayBytes& stray) {
            ui->bytesView->setStray(stray);
            showStray();
            showPlace();
            emit strayBytesFound();
        });
}

void BytesViewController::showStray()
{
    const HexStorage& bytes = ui->bytesView->hexStorage();
    const QString note = BytesWords::stray(bytes.stray(), bytes.size());
    ui->strayNote->setText(note);
    ui->strayNote->setVisible(!note.isEmpty());
}

void BytesViewController::showPlace()
{
    ui->placeLine->setText(
        BytesWords::place(ui->bytesView->hexStorage(), ui->bytesView->selectedBytes()));
}

void BytesViewController::goTo(std::size_t offset, std::size_t length)
{
    const std::size_t size = ui->bytesView->hexStorage().size();
    const std::size_t begin = std::min(offset, size);
    ui->bytesView->selectBytes({begin, begin + std::min(length, size - begin)});
    ui->bytesView->setFocus(Qt::OtherFocusReason);
}

bool BytesViewController::validateCommand(const QString& command) const
{
    return command != "doFindSelection"_L1 || theSearch->canFindSelection();
}

void BytesViewController::goToOffset()
{
    ui->offsetField->setFocus(Qt::ShortcutFocusReason);
    ui->offsetField->selectAll();
}

void BytesViewController::performFind()
{
    theSearch->open();
}

void BytesViewController::doFindNext()
{
    theSearch->findNext();
}

void BytesViewController::doFindPrev()
{
    theSearch->findPrevious();
}

void BytesViewController::doFindSelection()
{
    theSearch->findSelection();
}

void BytesViewController::takeOffset()
{
    const QString text = ui->offsetField->text();
    const std::size_t size = ui->bytesView->hexStorage().size();
    const OffsetInput input = readOffset(
        {reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size())},
        size);
    const QString problem = BytesWords::problem(input, text, size);
    if (input.offset)
        goTo(*input.offset, 0);
    warnOfOffset(problem);
}

/// Says in the line of places why one cannot go there, or else what place is shown.
void BytesViewController::warnOfOffset(const QString& problem)
{
    QPalette colours;
    if (!problem.isEmpty()) {
        const bool isDark = palette().color(QPalette::Base).lightness() < 128;
        colours.setColor(
            QPalette::Base, isDark ? QColor(0x5C, 0x1F, 0x1F) : QColor(0xFF, 0xD9, 0xD9));
        colours.setColor(QPalette::Text, isDark ? Qt::white : Qt::black);
    }
    ui->offsetField->setPalette(colours);
    ui->offsetField->setAccessibleDescription(problem);
    if (problem.isEmpty())
        showPlace();
    else
        ui->placeLine->setText(problem);
}

bool BytesViewController::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == ui->offsetField && event->type() == QEvent::KeyPress
        && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        warnOfOffset({});
        ui->bytesView->setFocus(Qt::OtherFocusReason);
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace tarnwick
