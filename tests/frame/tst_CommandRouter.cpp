#include "frame/CommandRouter.h"

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QMainWindow>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <memory>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

/// Takes "work", and "mark" with its sender; refuses what it is told to.
class Responder : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
    QStringList taken;
    QStringList refused;
    QAction* sender = nullptr;
    bool isMarked = false;

    Q_INVOKABLE bool validateCommand(const QString& command) const
    {
        return !refused.contains(command);
    }
    Q_INVOKABLE bool commandIsChecked(const QString&) const { return isMarked; }

public slots:
    void work() { taken << u"work"_s; }
    void mark(QAction* action)
    {
        taken << u"mark"_s;
        sender = action;
    }

signals:
    void announce();

private slots:
    void hide() { taken << u"hide"_s; }
};

/// Takes "work" and is never asked.
class Plain : public QObject
{
    Q_OBJECT

public:
    int count = 0;

public slots:
    void work() { ++count; }
};

} // namespace

class TestCommandRouter : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void firstTakerGetsIt();
    void takesNothingButPublicMethods();
    void actionsFollowTheirTakers();
    void shortcutsMeetAFreshState();
    void keysOfDisabledCommandsDoNothing();
    void focusedFieldComesFirst();

private:
    QAction* addAction(const QString& command);

    std::unique_ptr<QMainWindow> theWindow;
    CommandRouter* theRouter = nullptr;
    std::unique_ptr<Responder> theNear;
    std::unique_ptr<Plain> theFar;
    QLineEdit* theField = nullptr;
};

void TestCommandRouter::init()
{
    theWindow = std::make_unique<QMainWindow>();
    theNear = std::make_unique<Responder>();
    theFar = std::make_unique<Plain>();
    theField = new QLineEdit(u"some words"_s, theWindow.get());
    theWindow->setCentralWidget(theField);
    theRouter = new CommandRouter(theWindow.get(), [this] {
        return QList<QObject*>{theWindow->focusWidget(), nullptr, theNear.get(), theFar.get()};
    });
    theWindow->show();
    theWindow->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(theWindow.get()));
    theField->clearFocus();
}

void TestCommandRouter::cleanup()
{
    theWindow.reset();
}

QAction* TestCommandRouter::addAction(const QString& command)
{
    auto* action = new QAction(theWindow.get());
    action->setObjectName(command);
    theWindow->addAction(action);
    theRouter->adopt(action);
    return action;
}

void TestCommandRouter::firstTakerGetsIt()
{
    QVERIFY(theRouter->send(u"work"_s));
    QCOMPARE(theNear->taken, {u"work"_s});
    QCOMPARE(theFar->count, 0);
    theNear->refused << u"work"_s;
    QVERIFY(theRouter->send(u"work"_s));
    QCOMPARE(theNear->taken.size(), 1);
    QCOMPARE(theFar->count, 1);
}

void TestCommandRouter::takesNothingButPublicMethods()
{
    for (const char* name : {"unknown", "announce", "hide", "validateCommand", ""}) {
        const QString command = QString::fromLatin1(name);
        QCOMPARE(theRouter->taker(command), nullptr);
        QVERIFY2(!theRouter->send(command), name);
        QVERIFY2(theNear->taken.isEmpty(), name);
    }
}

void TestCommandRouter::actionsFollowTheirTakers()
{
    QAction* mark = addAction(u"mark"_s);
    mark->setCheckable(true);
    QAction* unknown = addAction(u"unknown"_s);
    QTRY_VERIFY(!unknown->isEnabled());
    QVERIFY(mark->isEnabled());
    QVERIFY(!mark->isChecked());
    theNear->isMarked = true;
    theRouter->validate();
    QVERIFY(mark->isChecked());
    theNear->refused << u"mark"_s;
    theRouter->validate();
    QVERIFY(!mark->isEnabled());
}

void TestCommandRouter::shortcutsMeetAFreshState()
{
    QAction* action = addAction(u"mark"_s);
    action->setShortcut(QKeySequence(u"Ctrl+D"_s));
    theNear->refused << u"mark"_s;
    theRouter->validate();
    QTest::keyClick(theWindow.get(), Qt::Key_D, Qt::ControlModifier);
    QVERIFY(theNear->taken.isEmpty());
    theNear->refused.clear(); // and nobody says so
    QTest::keyClick(theWindow.get(), Qt::Key_D, Qt::ControlModifier);
    QCOMPARE(theNear->taken, {u"mark"_s});
    QCOMPARE(theNear->sender, action);
}

void TestCommandRouter::keysOfDisabledCommandsDoNothing()
{
    QAction* action = addAction(u"mark"_s);
    action->setShortcut(QKeySequence(u"Alt+Down"_s));
    auto* box = new QComboBox;
    box->addItems({u"one"_s, u"two"_s});
    theWindow->setCentralWidget(box);
    box->show();
    box->setFocus();
    QTest::keyClick(box, Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(theNear->taken.size(), 1);
    theNear->refused << u"mark"_s;
    QTest::keyClick(box, Qt::Key_Down, Qt::AltModifier);
    QVERIFY(!QApplication::activePopupWidget());
    QCOMPARE(theNear->taken.size(), 1);
    action->setShortcut(QKeySequence()); // the key is the box's again
    QTest::keyClick(box, Qt::Key_Down, Qt::AltModifier);
    QVERIFY(QApplication::activePopupWidget());
}

void TestCommandRouter::focusedFieldComesFirst()
{
    QAction* all = addAction(u"selectAll"_s);
    theRouter->validate();
    QVERIFY(!all->isEnabled());
    theField->setFocus();
    QTRY_VERIFY(all->isEnabled());
    all->trigger();
    QCOMPARE(theField->selectedText(), u"some words"_s);
}

QTEST_MAIN(TestCommandRouter)
#include "tst_CommandRouter.moc"
