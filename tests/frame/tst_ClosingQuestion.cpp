#include "OpenFailureAlert.h"
#include "PasswordPrompt.h"
#include "dialogs/Progress.h"
#include "frame/DocumentWindow.h"
#include "support/Panels.h"
#include "support/Rows.h"

#include <QProgressDialog>
#include <QTest>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;
using namespace tarnwick;

/// What comes up while a window asks whether it may close, and would cover the question and keep it
/// from being answered.
class TestClosingQuestion : public QObject
{
    Q_OBJECT

private slots:
    void isAnsweredFirst_data();
    void isAnsweredFirst();
    void hasTheKeyboardWhereverItIsAskedFrom();
    void progressComesUpSoon();
};

namespace {

/// Brings a dialog up, or makes it due. @returns it.
using BringUp = std::function<QDialog*(QWidget* window)>;

QDialog* dueProgress(QWidget* window, Progress::Blocking blocking)
{
    auto* const progress = new Progress(u"Printing"_s, u"Printing…"_s, window, blocking);
    QObject::connect(window, &QObject::destroyed, progress, &QObject::deleteLater);
    auto* const dialog = window->findChild<QProgressDialog*>();
    QMetaObject::invokeMethod(dialog, "forceShow"); // its time has come
    return dialog;
}

} // namespace

using IsAnsweredFirst = Rows<BringUp>;

void TestClosingQuestion::isAnsweredFirst_data()
{
    const IsAnsweredFirst row;
    row("progress of printing",
        [](QWidget* window) { return dueProgress(window, Progress::Blocking::isWindow); });
    row("progress of what blocks nothing",
        [](QWidget* window) { return dueProgress(window, Progress::Blocking::isNothing); });
    row("a password prompt", [](QWidget* window) {
        auto* const prompt
            = new PasswordPrompt(u"a.pdf"_s, window, PasswordPrompt::Blocking::isWindow);
        prompt->ask(false);
        return prompt;
    });
    row("a file that cannot be opened", [](QWidget* window) {
        return OpenFailureAlert::report(window, u"a.pdf"_s, u"It is a folder."_s);
    });
}

void TestClosingQuestion::isAnsweredFirst()
{
    const auto [bringUp] = IsAnsweredFirst::fetch();
    DocumentWindow window(u"Test Window"_s);
    window.setAttribute(Qt::WA_DeleteOnClose, false);
    window.setContent(new QWidget);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QObject work;
    window.askBeforeClosing(&work, {u"Printing."_s, {}, u"Stop"_s});
    QVERIFY(!window.close());
    auto* const question = shown<Alert>();
    QVERIFY(question);
    const QPointer<QDialog> later = bringUp(&window);
    QCoreApplication::processEvents();
    QVERIFY(!later->isVisible());
    question->escapeButton()->click();
    QTRY_VERIFY(later && later->isVisible());
    QVERIFY(window.isVisible());
}

void TestClosingQuestion::hasTheKeyboardWhereverItIsAskedFrom()
{
    DocumentWindow window(u"Test Window"_s);
    window.setAttribute(Qt::WA_DeleteOnClose, false);
    window.setContent(new QWidget);
    window.show();
    QObject work;
    window.askBeforeClosing(&work, {u"Printing."_s, {}, u"Stop"_s});
    QWidget other; // that the user quits from
    other.show();
    for (int attempt = 0; attempt < 2; ++attempt) {
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        window.askToClose([] {});
        QTRY_COMPARE(QApplication::activeWindow(), shown<Alert>());
    }
}

/// A bar without end has Qt wait for four seconds, unless it is told otherwise.
void TestClosingQuestion::progressComesUpSoon()
{
    QWidget window;
    const Progress progress(u"Export"_s, u"a"_s, &window, Progress::Blocking::isNothing);
    const auto* const timer = window.findChild<QProgressDialog*>()->findChild<QTimer*>();
    QVERIFY(timer->isActive());
    QCOMPARE(timer->interval(), 500);
}

QTEST_MAIN(TestClosingQuestion)
#include "tst_ClosingQuestion.moc"
