#pragma once

#include <QFrame>

namespace tarnwick {

class DocumentFindings;
class ElidedLabel;

/// A quiet line that tells how many findings there are and the gravest of them, with a button for
/// all. Hidden while there is nothing to say; a screen reader says it when it comes.
class FindingsStrip : public QFrame
{
    Q_OBJECT

public:
    enum class Occasion
    {
        isAny, ///< a fact is enough
        isGrave, ///< something is wrong, missing, or acts
    };

    /// @param findings borrowed, outlives this.
    FindingsStrip(DocumentFindings* findings, Occasion occasion, QWidget* parent);

    /// What it says; empty while it is hidden.
    QString text() const;

signals:
    /// The user wants to see all.
    void wanted();

private:
    void showFindings();

    DocumentFindings* theFindings;
    Occasion theOccasion;
    ElidedLabel* theText;
};

} // namespace tarnwick
