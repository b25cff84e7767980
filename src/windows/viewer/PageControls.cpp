#include "PageControls.h"

#include "PageInput.h"
#include "Utf16.h"
#include "pages/PDFView.h"
#include "pdf/PDFDocument.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QToolButton>

namespace tarnwick {

namespace {

enum ZoomChoice
{
    isFitWidth = -1,
    isFitPage = -2,
    isActualSize = -3,
};

QString percent(double scale)
{
    return PageControls::tr("%1 %").arg(QLocale().toString(qRound(scale * 100)));
}

void fillZoomMenu(QComboBox& menu)
{
    menu.addItem(PageControls::tr("Fit Width"), isFitWidth);
    menu.addItem(PageControls::tr("Fit Page"), isFitPage);
    menu.addItem(PageControls::tr("Actual Size"), isActualSize);
    menu.insertSeparator(menu.count());
    for (const int value : {25, 50, 75, 100, 125, 150, 200, 300, 400, 800})
        menu.addItem(percent(value / 100.), value);
}

} // namespace

PageControls::PageControls(PDFView* view, const Widgets& widgets, QObject* parent)
    : QObject(parent)
    , theWidgets(widgets)
{
    fillZoomMenu(*theWidgets.zoomMenu);
    connectButtons();
    setView(view);
    connect(theWidgets.pageField, &QLineEdit::returnPressed, this, &PageControls::goToEnteredPage);
    connect(theWidgets.pageField, &QLineEdit::editingFinished, this, &PageControls::showPage);
    connect(theWidgets.zoomMenu, &QComboBox::activated, this, &PageControls::chooseScale);
    connect(theWidgets.zoomMenu->lineEdit(), &QLineEdit::returnPressed, this,
        &PageControls::takeEnteredScale);
    connect(theWidgets.zoomMenu->lineEdit(), &QLineEdit::editingFinished, this,
        &PageControls::showScale);
}

void PageControls::connectButtons()
{
    const auto serve = [this](QToolButton* button, auto command) {
        connect(button, &QToolButton::clicked, this, [this, command] { command(*theView); });
    };
    serve(theWidgets.previousPage, [](PDFView& view) { view.goToPreviousPage(); });
    serve(theWidgets.nextPage, [](PDFView& view) { view.goToNextPage(); });
    serve(theWidgets.zoomIn, [](PDFView& view) { view.zoomIn(); });
    serve(theWidgets.zoomOut, [](PDFView& view) { view.zoomOut(); });
}

void PageControls::setView(PDFView* view)
{
    if (theView)
        theView->disconnect(this);
    theView = view;
    connect(view, &PDFView::currentPageChanged, this, &PageControls::showPage);
    connect(view, &PDFView::documentChanged, this, &PageControls::refresh);
    connect(view, &PDFView::scaleFactorChanged, this, &PageControls::showScale);
    refresh();
}

void PageControls::refresh()
{
    showPage();
    showScale();
}

void PageControls::editPage()
{
    theWidgets.pageField->setFocus(Qt::ShortcutFocusReason);
    theWidgets.pageField->selectAll();
}

void PageControls::showPage()
{
    const PDFDocument* document = theView->document();
    const int page = theView->currentPage();
    const bool hasPage = document && page >= 0 && page < document->pageCount();
    theWidgets.pageField->setEnabled(hasPage);
    theWidgets.previousPage->setEnabled(page > 0);
    theWidgets.nextPage->setEnabled(hasPage && page + 1 < document->pageCount());
    const QString number = QString::number(page + 1); // as it can be entered
    const QString count = QLocale().toString(document ? document->pageCount() : 0);
    const QString label = hasPage ? document->pageLabel(page) : QString();
    const bool isNumber = !hasPage || label.isEmpty() || label == QString::number(page + 1);
    // What the user is writing stays until it is entered or left.
    if (!theWidgets.pageField->isModified() || !theWidgets.pageField->hasFocus()) {
        theWidgets.pageField->setText(isNumber ? (hasPage ? number : QString()) : label);
        theWidgets.pageField->setCursorPosition(0);
    }
    theWidgets.pageCount->setText(
        isNumber ? tr("of %1").arg(count) : tr("(%1 of %2)").arg(number, count));
}

void PageControls::showScale()
{
    QLineEdit* line = theWidgets.zoomMenu->lineEdit();
    if (line->hasFocus() && line->isModified())
        return;
    theWidgets.zoomMenu->setEditText(percent(theView->scaleFactor()));
}

void PageControls::goToEnteredPage()
{
    const PDFDocument* document = theView->document();
    if (!document)
        return;
    const std::optional<int> page = pageForInput(unitsOf(theWidgets.pageField->text()),
        document->pageCount(), [document](int index) -> std::optional<std::u16string_view> {
            const QStringView label = document->ownPageLabel(index);
            return label.isNull() ? std::nullopt : std::optional(unitsOf(label));
        });
    theWidgets.pageField->setModified(false);
    if (page) {
        theView->goToPage(*page);
        theView->setFocus(Qt::OtherFocusReason);
    } else {
        showPage();
        theWidgets.pageField->selectAll();
    }
}

void PageControls::chooseScale(int item)
{
    const int choice = theWidgets.zoomMenu->itemData(item).toInt();
    if (choice == isFitWidth)
        theView->fitWidth();
    else if (choice == isFitPage)
        theView->fitPage();
    else if (choice == isActualSize)
        theView->actualSize();
    else if (choice > 0)
        theView->setScaleFactor(choice / 100.);
    theWidgets.zoomMenu->lineEdit()->setModified(false);
    showScale();
}

void PageControls::takeEnteredScale()
{
    QLineEdit* line = theWidgets.zoomMenu->lineEdit();
    if (const std::optional<double> scale = scaleForInput(unitsOf(line->text())))
        theView->setScaleFactor(*scale);
    line->setModified(false);
    showScale();
    line->selectAll();
}

} // namespace tarnwick
