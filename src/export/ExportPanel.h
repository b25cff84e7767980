#pragma once

#include <QFileDialog>

#include <functional>

class QLineEdit;

namespace tarnwick {

/// A panel that asks where an export goes.
///
/// It is always Qt's own. Those of platforms either take an existing folder or make one, and this
/// one does both; and they ask whether to replace a file before a name has got its ending, and
/// before the opened file can be refused.
class ExportPanel : public QFileDialog
{
    Q_OBJECT

public:
    /// Says why a place cannot be used, as a sentence for the user; empty when it can.
    using Refusal = std::function<QString(const QString& path)>;

    /// For a file. @param types allowed endings without dot (withAllowedType()).
    /// @param typesTitle of them for the user, "RTF documents".
    ExportPanel(const QString& title, const QStringList& types, const QString& typesTitle,
        QWidget* parent = nullptr);
    /// For a folder, existing or new. @param prompt text of the button that confirms. @param
    /// message shown above the name.
    ExportPanel(const QString& title, const QString& prompt, const QString& message,
        QWidget* parent = nullptr);

    /// Asked about each place that the user confirms, before the question whether to replace. At
    /// first it refuses every opened file.
    void setRefusal(Refusal refusal) { theRefusal = std::move(refusal); }

    /// Proposes a name, in a folder where that exists; another one where that file is opened.
    void propose(const QString& folder, const QString& name);

    /// The chosen place; empty when there is none. Valid once accepted.
    QString chosenPath() const;

protected:
    void accept() override;

private:
    QLineEdit* nameField() const;
    void showMessage(const QString& message);
    QString typedPath() const;
    QString refusal(const QString& path) const;
    void askWhetherToUse(const QString& path);
    void choose(const QString& path);

    bool isForFolder = false;
    QStringList theTypes;
    Refusal theRefusal;
    QString theChosenPath;
};

} // namespace tarnwick
