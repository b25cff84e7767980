#pragma once

#include <QObject>

class QComboBox;
class QLabel;
class QLineEdit;
class QToolButton;

namespace tarnwick {

class PDFView;

/// Ties the controls that show and choose the page and the magnification to a page view.
class PageControls : public QObject
{
    Q_OBJECT

public:
    struct Widgets
    {
        QLineEdit* pageField; ///< the current page's label; takes a label or a number
        QLabel* pageCount; ///< "of 17", or "(3 of 17)" where the label is not the number
        QComboBox* zoomMenu; ///< editable
        QToolButton* previousPage;
        QToolButton* nextPage;
        QToolButton* zoomIn;
        QToolButton* zoomOut;
    };

    /// All borrowed; they outlive this object.
    PageControls(PDFView* view, const Widgets& widgets, QObject* parent = nullptr);

    /// Ties the controls to another page view, borrowed likewise.
    void setView(PDFView* view);

    /// Shows the current page and magnification anew.
    void refresh();
    /// Puts the cursor into the page field.
    void editPage();

private:
    void connectButtons();
    void showPage();
    void showScale();
    void goToEnteredPage();
    void chooseScale(int item);
    void takeEnteredScale();

    PDFView* theView = nullptr;
    Widgets theWidgets;
};

} // namespace tarnwick
