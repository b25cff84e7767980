#pragma once

#include "compared/ComparedPage.h"
#include "comparison/ComparedFile.h"

#include <QTimer>
#include <QWidget>

#include <array>
#include <memory>

class QListView;
namespace Ui {
class ComparisonWindow;
}

namespace tarnwick {

class ChangeListModel;
class ComparedDocument;
class DocumentComparison;
class PagePairPane;
class PlainTextView;
class TextComparing;
struct ComparedText;

/// Content of the window in which two documents are compared: what has changed in a list, and
/// pages or text at the place of the change that is chosen.
///
/// It keeps what it has opened for itself; a document that was open already is borrowed. Its public
/// slots are commands.
class ComparisonViewController : public QWidget
{
    Q_OBJECT

public:
    explicit ComparisonViewController(QWidget* parent = nullptr);
    ~ComparisonViewController() override;

    /// Opens what is not open and compares. To be called once.
    void compare(const ComparedFile& before, const ComparedFile& after);

    /// Null until both documents are open.
    DocumentComparison* comparison() const { return theComparison.get(); }
    QListView* changeList() const;
    PagePairPane* pagePane() const;
    PlainTextView* textView() const;

    Q_INVOKABLE bool validateCommand(const QString& command) const;

public slots:
    void goToNextChange();
    void goToPreviousChange();
    /// Compares the other way round.
    void swapSides();
    /// Pages side by side, by turns (further calls show the other one), on each other.
    void showSideBySide();
    void showByTurns();
    void showOverlay();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void connectParts();
    void open();
    void begin();
    void restart();
    void fail(std::size_t side, const QString& reason);
    void showState();
    void showStateSoon();
    void showTab();
    void showChange();
    void showPairText(int pair, int word);
    void showText(const std::shared_ptr<const ComparedText>& text);
    void toggleWholeText(bool on);
    void step(int direction);
    ChangeListModel* presentModel() const;
    int selectedRow() const;
    void showMode();
    void updateCommands();

    std::unique_ptr<Ui::ComparisonWindow> ui;
    std::array<ComparedFile, 2> theFiles;
    std::array<std::unique_ptr<ComparedDocument>, 2> theDocuments;
    std::unique_ptr<DocumentComparison> theComparison;
    std::unique_ptr<TextComparing> theTextComparing;
    ChangeListModel* thePageChanges = nullptr;
    ChangeListModel* theTextChanges = nullptr;
    QTimer theStateTimer;
    QString theProblem; ///< a document that does not open
    QString theTextProgress;
    int theWantedWord = -1; ///< to be shown once the text is there
    int theTextPair = -1; ///< whose text shows, or is on its way; -1 for none
    bool isWholeWanted = false; ///< the text under way is that of all pages
};

} // namespace tarnwick
