#pragma once

#include <QCoreApplication>
#include <QFileDialog>

/// A panel that asks where an export goes.
///
/// One for a file is the platform's own where there is one. One for a folder is always Qt's: those
/// of platforms either take an existing folder or make one, and this one does both.
class ExportPanel : public QFileDialog
{
    // Without Q_OBJECT: Qt replaces only its own class by the platform's panel.
    Q_DECLARE_TR_FUNCTIONS(ExportPanel)

public:
    /// For a file. @param types allowed suffixes without dot, the first given to a name without
    /// any.
    /// @param typesTitle of them for the user, "RTF documents".
    ExportPanel(const QString& title, const QStringList& types, const QString& typesTitle,
        QWidget* parent = nullptr);
    /// For a folder, existing or new. @param prompt text of the button that confirms. @param
    /// message shown above the name.
    ExportPanel(const QString& title, const QString& prompt, const QString& message,
        QWidget* parent = nullptr);

    /// Proposes a name, in a folder where that exists.
    void propose(const QString& folder, const QString& name);

    /// The chosen place; empty when there is none. Valid once accepted.
    QString chosenPath() const;

protected:
    void accept() override;

private:
    class QLineEdit* nameField() const;
    void showMessage(const QString& message);
    void acceptTypedName();
    bool confirmsUseOf(const QString& path);

    bool isForFolder = false;
    QString theTypedPath; ///< what was typed, where this class and not Qt has read it
};
