#pragma once

#include "pdf/LossText.h"

#include <QWidget>

class QLabel;
class QToolButton;

namespace tarnwick {

/// Some lines of text that say which pages lack something and why, with a button that opens the
/// whole list where the lines name only some of the pages. Hidden while nothing is missing.
class LossLine : public QWidget
{
    Q_OBJECT

public:
    explicit LossLine(QWidget* parent = nullptr);

    void setLosses(const PDFLosses& losses, LossSubject subject);
    const PDFLosses& losses() const { return theLosses; }
    /// What it says; empty while it is hidden.
    QString text() const;

public slots:
    /// Opens the whole list in a window of its own.
    void showList();

private:
    PDFLosses theLosses;
    LossSubject theSubject = LossSubject::isText;
    QLabel* theLabel;
    QToolButton* theListButton;
};

} // namespace tarnwick
