#pragma once

#include <QPrintDialog>

class QLineEdit;

namespace tarnwick {

/// The print dialog. It proposes no opened file for printing into and takes none, nor a device or
/// a pipe; that is said before the question whether to replace a file.
class PrintPanel : public QPrintDialog
{
    Q_OBJECT

public:
    /// @param printer with the job's name, borrowed.
    PrintPanel(QPrinter* printer, QWidget* window);

protected:
    void showEvent(QShowEvent* event) override;

private:
    QLineEdit* fileField() const;
    void check();
};

} // namespace tarnwick
