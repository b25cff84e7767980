#pragma once

#include <QFrame>
#include <QHash>
#include <QString>

class QToolButton;

namespace tarnwick {

/// The quiet line under the pages that says what is remarkable about the file. Each fact is a
/// button for the command that tells more of it. Hidden while there is none.
class FactLine : public QFrame
{
    Q_OBJECT

public:
    explicit FactLine(QWidget* parent = nullptr);

    /// Tells a fact, or another one of the same command, behind those that are told already.
    /// @param command sent when the user asks for more. @param text empty for no such fact.
    void setFact(const QString& command, const QString& text);
    QString fact(const QString& command) const;

private:
    QToolButton* buttonOf(const QString& command);

    QHash<QString, QToolButton*> theButtons; ///< by command
};

} // namespace tarnwick
