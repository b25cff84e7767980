#include "PaneLayout.h"

#include "frame/PaneSplitter.h"

#include <QPlainTextEdit>
#include <QSettings>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

/// Three panes in a window.
struct Window
{
    Window()
    {
        QList<PaneLayout::Pane> panes;
        for (QPlainTextEdit*& view : views) {
            view = new QPlainTextEdit;
            splitter.addWidget(view);
            panes.append(PaneLayout::Pane{view, view});
        }
        layout = new PaneLayout(&splitter);
        layout->setPanes(panes);
        layout->restore();
        splitter.resize(600, 600);
        splitter.show();
        splitter.activateWindow();
        views[1]->setFocus();
        isActive = QTest::qWaitForWindowActive(&splitter);
    }

    /// Which panes show: "*" with the keyboard, "+" without, "-" hidden.
    QString state() const
    {
        QString text;
        for (const QPlainTextEdit* view : views)
            text += QLatin1Char(view->hasFocus() ? '*' : view->isVisible() ? '+' : '-');
        return text;
    }

    PaneSplitter splitter{Qt::Vertical};
    QPlainTextEdit* views[3]{};
    PaneLayout* layout = nullptr;
    bool isActive = false;
};

class TestPaneLayout : public QObject
{
    Q_OBJECT

private slots:
    void init() { QSettings().clear(); }
    void leadsTheKeyboardRound();
    void standsAsItStoodLast();
};

void TestPaneLayout::leadsTheKeyboardRound()
{
    for (const bool sideBySide : {false, true}) {
        Window window;
        QVERIFY(window.isActive);
        window.layout->setSideBySide(sideBySide);
        QCOMPARE(window.state(), u"+*+"_s);
        window.layout->focusOther(1);
        window.layout->focusOther(1);
        QCOMPARE(window.state(), u"*++"_s);
        window.layout->setOneAlone(true);
        QCOMPARE(window.state(), u"*--"_s);
        window.layout->focusOther(-1);
        QCOMPARE(window.state(), u"--*"_s);
        window.layout->setSideBySide(!sideBySide);
        QCOMPARE(window.state(), u"--*"_s);
        window.layout->setOneAlone(false);
        QCOMPARE(window.state(), u"++*"_s);
    }
}

void TestPaneLayout::standsAsItStoodLast()
{
    const auto areBeside = [](const Window& window) {
        return window.views[0]->mapTo(&window.splitter, QPoint()).y()
            == window.views[1]->mapTo(&window.splitter, QPoint()).y();
    };
    QList<int> rows;
    {
        Window window;
        QVERIFY(!areBeside(window));
        window.splitter.setSizes({100, 200, 300});
        rows = window.splitter.sizes();
        window.layout->setSideBySide(true);
        QTRY_VERIFY(areBeside(window));
        window.layout->save();
    }
    Window window;
    QTRY_VERIFY(areBeside(window));
    window.layout->setSideBySide(false);
    QTRY_COMPARE(window.splitter.sizes(), rows);
}

} // namespace

QTEST_MAIN(TestPaneLayout)

#include "tst_PaneLayout.moc"
