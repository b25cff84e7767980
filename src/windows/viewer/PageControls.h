#pragma once

#include <QObject>

class PDFView;
class QComboBox;
class QLabel;
class QLineEdit;

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
    };

    /// All borrowed; they outlive this object.
    PageControls(PDFView* view, const Widgets& widgets, QObject* parent = nullptr);

    /// Shows the current page and magnification anew.
    void refresh();
    /// Puts the cursor into the page field.
    void editPage();

private:
    void showPage();
    void showScale();
    void goToEnteredPage();
    void chooseScale(int item);
    void takeEnteredScale();

    PDFView* theView;
    Widgets theWidgets;
};
