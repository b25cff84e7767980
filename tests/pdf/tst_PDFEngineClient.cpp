#include "PDFEngine.h"
#include "PDFEngineClient.h"

#include "support/Rows.h"

#include <QHash>
#include <QPointer>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

/// An engine that does what the test says and writes down what it is asked for.
class ScriptedEngine : public PDFEngine
{
public:
    ScriptedEngine(QStringList& log, QObject* parent)
        : PDFEngine(parent)
        , theLog(log)
    {
    }
    bool start(const FileBytes&, std::uint64_t) override
    {
        theLog << u"engine"_s;
        return true;
    }
    void send(
        std::uint32_t, EngineRequest kind, std::string_view payload, std::uint32_t, int) override
    {
        if (kind != EngineRequest::isOpen)
            theLog << QString::fromUtf8(payload.data(), static_cast<qsizetype>(payload.size()));
    }
    std::optional<FileBytes> takeFile(std::size_t) override { return std::nullopt; }
    bool hasStarted() const override { return true; }
    qint64 processId() const override { return 0; }

private:
    QStringList& theLog;
};

QString nameOf(PDFFailure failure)
{
    switch (failure) {
    case PDFFailure::isNone:
        return u"done"_s;
    case PDFFailure::isEngineDead:
        return u"dead"_s;
    case PDFFailure::isOutOfMemory:
        return u"full"_s;
    case PDFFailure::isDamaged:
        return u"damaged"_s;
    case PDFFailure::isTimedOut:
        return u"late"_s;
    case PDFFailure::isCancelled:
        break;
    }
    return {};
}

/// A client, its engines, and what is done with them step by step.
class Story
{
public:
    Story()
        : theClient(*FileBytes::copy("a file"), false, nullptr, [this](QObject* parent) {
            theEngine = new ScriptedEngine(theLog, parent);
            return theEngine.data();
        })
    {
    }
    QString log() const { return theLog.join(u' '); }

    /// "a", "Ta", "Ba": submits a job of that name, a tile, background work. "-a" gives it up.
    void take(const QString& step)
    {
        if (step.startsWith(u'-'))
            theClient.giveUp(theNumbers.value(step.sliced(1)));
        else if (step.size() <= 2)
            submit(step);
        else
            answer(step);
        QCoreApplication::processEvents(); // what is told later
    }

private:
    void submit(const QString& name)
    {
        PDFEngineJob job = jobFor(TextRequest());
        job.payload = name.toStdString();
        if (name.startsWith(u'T'))
            job.priority = PDFEngineJob::Priority::isTile;
        if (name.startsWith(u'B'))
            job.priority = PDFEngineJob::Priority::isBackground;
        if (name == u"Z") // which no engine does in time
            job.timeLimit = 1;
        job.decode = [](std::string_view payload) { return payload == "sound"; };
        job.finish = [this, name](PDFFailure failure) { theLog << name + u'=' + nameOf(failure); };
        theNumbers.insert(name, theClient.submit(std::move(job)));
    }
    void answer(const QString& step)
    {
        if (step == u"later") {
            QTRY_VERIFY(theLog.count(u"engine"_s) > theEngines);
        } else if (step == u"opens") {
            theEngines = theLog.count(u"engine"_s);
            say(EngineAnswer::isOpened, packed(OpenedAnswer()));
        } else if (step == u"opens-otherwise") {
            say(EngineAnswer::isOpened, packed(OpenedAnswer{7}));
        } else if (step == u"answers") {
            say(EngineAnswer::isDone, "sound");
        } else if (step == u"lies") {
            say(EngineAnswer::isDone, "nonsense");
        } else if (step == u"reports") {
            say(EngineAnswer::isProgress, packed(ProgressAnswer{1, 2}));
        } else if (step == u"fails") {
            say(EngineAnswer::isFailed, packed(FailedAnswer{EngineFault::isDamaged}));
        } else if (step == u"fills") {
            say(EngineAnswer::isFailed, packed(FailedAnswer{EngineFault::isOutOfMemory}));
        } else if (step == u"dies") {
            emit theEngine->ended(false);
        } else {
            QFAIL(qPrintable(step));
        }
    }
    void say(EngineAnswer kind, const std::string& payload)
    {
        emit theEngine->answered(kind, QByteArray::fromStdString(payload));
    }

    QStringList theLog;
    QPointer<ScriptedEngine> theEngine;
    qsizetype theEngines = 0;
    QHash<QString, PDFEngineClient::Number> theNumbers;
    PDFEngineClient theClient;
};

} // namespace

class TestPDFEngineClient : public QObject
{
    Q_OBJECT

private slots:
    void keepsAnEngineAtWork_data();
    void keepsAnEngineAtWork();
};

/// What happens, and the log of it: engines that are started, jobs that they are given, and how
/// jobs end.
using KeepsAnEngineAtWork = Rows<QString, QString>;

void TestPDFEngineClient::keepsAnEngineAtWork_data()
{
    const KeepsAnEngineAtWork row;
    row("one at a time, first come first served", "a b opens answers answers",
        "engine a b a=done b=done");
    row("the latest tile first, behind what the user waits for and before what nobody does",
        "x opens B1 T1 T2 c answers answers answers answers answers",
        "engine x c x=done T2 c=done T1 T2=done B1 T1=done B1=done");
    row("a job that waits is given up without a word", "a b c opens -b answers answers",
        "engine a c a=done c=done");
    row("a job that runs may still end by itself", "a b opens -a answers answers",
        "engine a b b=done");
    row("or is ended with its engine", "a b opens -a later opens answers",
        "engine a engine b b=done");
    row("given up twice", "a b opens -a -a answers -a answers", "engine a b b=done");
    row("damage costs its job alone", "a b opens fails answers", "engine a b a=damaged b=done");
    row("an engine that dies is replaced", "a b opens dies opens answers",
        "engine a engine a=dead b b=done");
    row("and one whose memory is full", "a b opens fills opens answers",
        "engine a engine a=full b b=done");
    row("and one that takes too long", "Z b opens later opens answers",
        "engine Z engine Z=late b b=done");
    row("and one that lies", "a b opens lies opens answers", "engine a engine a=dead b b=done");
    row("and one that reports where nothing is written", "a b opens reports opens answers",
        "engine a engine a=dead b b=done");
    row("nothing is started for nobody", "a opens dies", "engine a a=dead");
    row("an engine that dies at work any number of times",
        "a b c d e f opens dies opens dies opens dies opens dies opens dies opens answers",
        "engine a engine a=dead b engine b=dead c engine c=dead d engine d=dead e engine e=dead f "
        "f=done");
    row("but lies four times at most", "a b c d e f opens lies opens lies opens lies opens lies",
        "engine a engine a=dead b engine b=dead c engine c=dead d d=dead e=dead f=dead");
    row("and nobody asks it again", "a b c d opens lies opens lies opens lies opens lies e",
        "engine a engine a=dead b engine b=dead c engine c=dead d d=dead e=dead");
    row("another document the second time", "a b opens dies opens-otherwise",
        "engine a engine a=dead engine");
    row("an answer that nobody waits for", "a opens answers answers b opens answers",
        "engine a a=done engine b b=done");
}

void TestPDFEngineClient::keepsAnEngineAtWork()
{
    const auto [steps, log] = KeepsAnEngineAtWork::fetch();
    Story story;
    for (const QString& step : steps.split(u' '))
        story.take(step);
    QCOMPARE(story.log(), log);
}

QTEST_GUILESS_MAIN(TestPDFEngineClient)
#include "tst_PDFEngineClient.moc"
