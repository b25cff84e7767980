#include "ClipboardText.h"

#include "TextExtract.h"
#include "dialogs/Alert.h"
#include "dialogs/Progress.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QMimeData>
#include <QTimer>

#include <chrono>
#include <utility>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

constexpr qsizetype shortUnits = 256 * 1024;

/// Text that is made when it is asked for.
class LazyText : public QMimeData
{
public:
    LazyText(std::shared_ptr<const TextStorage> storage, TextRange range)
        : theStorage(std::move(storage))
        , theRange(range)
    {
    }

    QStringList formats() const override { return {u"text/plain"_s}; }
    bool hasFormat(const QString& type) const override { return type == "text/plain"_L1; }

protected:
    QVariant retrieveData(const QString& type, QMetaType) const override
    {
        if (!hasFormat(type))
            return {};
        return textOf(theStorage, theRange, ClipboardText::mostPrimaryUnits);
    }

private:
    std::shared_ptr<const TextStorage> theStorage;
    TextRange theRange;
};

/// Collects a long text in slices of the event loop and puts it on the clipboard.
class CopyJob : public QObject
{
    Q_DECLARE_TR_FUNCTIONS(ClipboardText)

public:
    CopyJob(std::shared_ptr<const TextStorage> storage, TextRange range, QWidget* window)
        : QObject(window)
        , theCollector(std::move(storage), range, ClipboardText::mostUnits)
        , theProgress(std::make_unique<Progress>(
              tr("Copy"), tr("Copying…"), window, Progress::Blocking::isWindow))
        , theWindow(window)
    {
        connect(theProgress.get(), &Progress::cancelled, this, [this] {
            theTimer.stop();
            deleteLater();
        });
        connect(&theTimer, &QTimer::timeout, this, &CopyJob::goOn);
        theTimer.start();
    }

private:
    void goOn()
    {
        if (theCollector.advance(QDeadlineTimer(8ms)))
            return;
        theTimer.stop();
        theProgress.reset();
        if (theCollector.isCut())
            offerBeginning();
        else
            finish();
    }

    void finish()
    {
        QGuiApplication::clipboard()->setText(theCollector.text());
        deleteLater();
    }

    void offerBeginning()
    {
        const QString text = tr("The selection is too long to be copied whole.");
        auto* const alert = new Alert(QMessageBox::Warning, tr("Copy"), text, theWindow);
        alert->setTexts(text,
            tr("At most %L1 characters can be copied at once.").arg(theCollector.text().size()));
        alert->addAnswer(tr("Copy the &Beginning"), [this] { finish(); });
        alert->addAnswer(QMessageBox::Cancel, [this] { deleteLater(); });
        alert->comeUp();
    }

    TextCollector theCollector;
    std::unique_ptr<Progress> theProgress;
    QWidget* theWindow;
    QTimer theTimer;
};

} // namespace

void ClipboardText::copy(
    std::shared_ptr<const TextStorage> storage, TextRange range, QWidget* window)
{
    const qsizetype units = unitsIn(*storage, range, shortUnits, QDeadlineTimer(5ms));
    if (units <= shortUnits)
        QGuiApplication::clipboard()->setText(textOf(std::move(storage), range, shortUnits));
    else
        new CopyJob(std::move(storage), range, window);
}

void ClipboardText::offerAsPrimary(std::shared_ptr<const TextStorage> storage, TextRange range)
{
    QClipboard* clipboard = QGuiApplication::clipboard();
    if (clipboard->supportsSelection())
        clipboard->setMimeData(new LazyText(std::move(storage), range), QClipboard::Selection);
}

} // namespace tarnwick
