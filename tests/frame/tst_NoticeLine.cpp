#include "NoticeLine.h"

#include "WrappedText.h"
#include "frame/DocumentWindow.h"
#include "frame/FrameDocument.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>

#include <memory>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

using Kind = Notice::Kind;

class PlainDocument : public FrameDocument
{
public:
    void readFromData(const FileBytes&) override { }
    void unlock(const QString&) override { }
    State state() const override { return State::isOpened; }
    void giveUp() override { }
    void makeWindowControllers() override { }
    void showSource() override { }
};

DocumentWindow* shownWindow(FrameDocument* document = nullptr)
{
    auto* const window = new DocumentWindow(u"Test Window"_s, document);
    auto* const content = new QWidget;
    content->resize(500, 300);
    (new QVBoxLayout(content))->addWidget(new QLineEdit);
    window->setContent(content);
    window->show();
    return window;
}

QString shownText(const DocumentWindow* window)
{
    return window->noticeLine()->isVisible()
        ? window->findChild<WrappedText*>(u"noticeText"_s)->text()
        : QString();
}

} // namespace

class TestNoticeLine : public QObject
{
    Q_OBJECT

private slots:
    void keepsWhatIsUnread();
    void leavesTheKeyboardAlone();
    void fitsAnyNameIntoTheWindow();
    void isAMessageToScreenReaders();
    void findsAWindow();
};

void TestNoticeLine::keepsWhatIsUnread()
{
    const std::unique_ptr<DocumentWindow> window(shownWindow());
    const auto texts = [&] {
        QStringList list;
        for (const Notice& notice : window->noticeLine()->unread())
            list << notice.text;
        return list;
    };
    QVERIFY(shownText(window.get()).isNull());
    window->notify({Kind::isFailure, u"one"_s});
    window->notify({Kind::isIncomplete, u"page 2"_s, u"pages"_s});
    window->notify({Kind::isDone, u"three"_s});
    QCOMPARE(shownText(window.get()), u"three"_s);
    window->notify({Kind::isIncomplete, u"pages 2 and 3"_s, u"pages"_s});
    window->notify({Kind::isFailure, u"one"_s});
    QCOMPARE(texts(), (QStringList{u"three"_s, u"pages 2 and 3"_s, u"one"_s}));
    window->noticeLine()->copy();
    QCOMPARE(QGuiApplication::clipboard()->text(), u"one"_s);

    auto* const close = window->findChild<QToolButton*>(u"noticeClose"_s);
    auto* const closeAll = window->findChild<QToolButton*>(u"noticeCloseAll"_s);
    close->click();
    QCOMPARE(shownText(window.get()), u"pages 2 and 3"_s);
    QVERIFY(closeAll->isVisible());
    close->click();
    QCOMPARE(shownText(window.get()), u"three"_s);
    QVERIFY(!closeAll->isVisible());
    window->notify({Kind::isDone, u"four"_s});
    closeAll->click();
    QVERIFY(window->noticeLine()->isHidden() && texts().isEmpty());
}

void TestNoticeLine::leavesTheKeyboardAlone()
{
    const std::unique_ptr<DocumentWindow> window(shownWindow());
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    auto* const field = window->content()->findChild<QLineEdit*>();
    QTRY_VERIFY(field->hasFocus());
    window->notify({Kind::isDone, u"written"_s});
    QVERIFY(field->hasFocus());
    QTest::keyClick(field, Qt::Key_Escape);
    QCOMPARE(shownText(window.get()), u"written"_s); // Escape belongs to the field
    QTest::keyClick(field, Qt::Key_Tab);
    QVERIFY(window->noticeLine()->isAncestorOf(window->focusWidget()));
    QTest::keyClick(window->focusWidget(), Qt::Key_Escape);
    QVERIFY(window->noticeLine()->isHidden());
    QVERIFY(field->hasFocus());
}

void TestNoticeLine::fitsAnyNameIntoTheWindow()
{
    const std::unique_ptr<DocumentWindow> window(shownWindow());
    auto* const text = window->findChild<WrappedText*>(u"noticeText"_s);
    window->notify({Kind::isDone, u"<b>“a\nb”</b>"_s});
    QCOMPARE(text->text(), u"<b>“a b”</b>"_s);
    QVERIFY(text->toolTip().isEmpty());
    const int rowHeight = text->height();
    window->notify({Kind::isFailure, QString(2000, u'n')});
    QTRY_VERIFY(text->height() > rowHeight);
    QCOMPARE(window->width(), 500);
    QVERIFY(window->noticeLine()->height() < 150);
    QCOMPARE(text->toolTip(), QString(2000, u'n'));
    QCOMPARE(shownName(u"/a/b/"_s + QString(200, u'n') + u".pdf"_s),
        u'“' + QString(40, u'n') + u'…' + QString(36, u'n') + u".pdf”"_s);
    QCOMPARE(shownName(u"/a/report.pdf"_s), u"“report.pdf”"_s);
}

void TestNoticeLine::isAMessageToScreenReaders()
{
    const std::unique_ptr<DocumentWindow> window(shownWindow());
    window->notify({Kind::isDone, u"first"_s});
    const QAccessibleInterface* const line
        = QAccessible::queryAccessibleInterface(window->noticeLine());
    QCOMPARE(line->role(), QAccessible::AlertMessage);
    QCOMPARE(line->text(QAccessible::Name), u"first"_s);
    window->notify({Kind::isDone, u"second"_s});
    QCOMPARE(line->text(QAccessible::Name), u"second"_s);
}

void TestNoticeLine::findsAWindow()
{
    auto* const document = new PlainDocument;
    DocumentWindow* const main = shownWindow(document);
    DocumentWindow* const inspector = shownWindow(document);
    const std::unique_ptr<DocumentWindow> stranger(shownWindow());
    const auto tell = [&](const QString& text) {
        tellUser({Kind::isFailure, text}, inspector, document);
    };
    tell(u"in its own"_s);
    QCOMPARE(shownText(inspector), u"in its own"_s);
    inspector->setAttribute(Qt::WA_DeleteOnClose, false);
    inspector->close();
    tell(u"in another of the document"_s);
    QCOMPARE(shownText(main), u"in another of the document"_s);
    delete document; // with its windows
    tellUser({Kind::isFailure, u"in any"_s}, nullptr);
    QCOMPARE(shownText(stranger.get()), u"in any"_s);
}

QTEST_MAIN(TestNoticeLine)
#include "tst_NoticeLine.moc"
