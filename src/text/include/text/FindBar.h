#pragma once

#include <QFrame>

class QCheckBox;
class QLabel;
class QLineEdit;
class QToolButton;

namespace tarnwick {

/// The strip under a text in which one types what to find.
///
/// Enter and Shift+Enter step through the matches, Escape closes it.
class FindBar : public QFrame
{
    Q_OBJECT

public:
    /// Longest text that a field for search texts takes: QLineEdit's own limit, 32,767 characters,
    /// drops the end of what is pasted without a word.
    static constexpr int longestText = 10'000'000;

    explicit FindBar(QWidget* parent);

    QString text() const;
    /// Shows another text without telling anyone.
    void setText(const QString& text);
    Qt::CaseSensitivity sensitivity() const;

    /// Has the box mean something else than the use of case; it is unchecked then.
    void setBox(const QString& title, const QString& toolTip);
    bool isBoxChecked() const;
    /// Checks it or not without telling anyone.
    void setBoxChecked(bool checked);
    /// What the field asks for while it is empty, and its name for screen readers.
    void setPrompt(const QString& prompt);

    /// Gives the keyboard to the field, its text selected.
    void edit();

    enum class Mood
    {
        isNeutral,
        isNotFound, ///< told by the field's colour as well
    };
    void setStatus(const QString& status, Mood mood);
    QString status() const;

signals:
    /// Another text or another use of case is wanted.
    void wantedChanged();
    void nextWanted();
    void previousWanted();
    void closeWanted();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QToolButton* addButton(const QString& name);

    QLineEdit* theField;
    QCheckBox* theBox; ///< of the use of case, at first
    QLabel* theStatus;
};

} // namespace tarnwick
