#include "StreamPanel.h"

#include "StreamWords.h"
#include "export/BytesExport.h"
#include "frame/Notice.h"
#include "pdf/FailureText.h"
#include "text/HexView.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

enum Tab
{
    isText,
    isHex,
};

SharedBytes shared(const FileBytes& bytes)
{
    return {bytes.view(), bytes.owner()};
}

QLabel* newLabel(QWidget* parent, const QString& name)
{
    auto* const label = new QLabel(parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setWordWrap(true);
    return label;
}

QPushButton* newButton(QWidget* parent, const QString& name, const QString& text)
{
    auto* const button = new QPushButton(text, parent);
    button->setObjectName(name);
    button->setAutoDefault(false);
    return button;
}

} // namespace

StreamPanel::StreamPanel(QWidget* parent)
    : QWidget(parent)
    , thePacking(newLabel(this, u"streamPacking"_s))
    , theOutcome(newLabel(this, u"streamOutcome"_s))
    , theForm(new QComboBox(this))
    , theMore(newButton(this, u"streamMore"_s, tr("Decode up to 4 GB")))
    , theSaveRaw(newButton(this, u"saveRaw"_s, tr("Save &Raw…")))
    , theSaveDecoded(newButton(this, u"saveDecoded"_s, tr("Save &Decoded…")))
    , theTabs(new QTabWidget(this))
    , theText(new PlainTextView)
    , theHex(new HexView)
{
    theForm->setObjectName(u"streamForm"_s);
    theForm->setAccessibleName(tr("Stream shown"));
    theForm->addItems({tr("Decoded"), tr("As stored")});
    connect(theForm, &QComboBox::currentIndexChanged, this, [this] { ask(usualStream); });
    connect(theMore, &QPushButton::clicked, this, [this] { ask(largestStream); });
    connect(theSaveRaw, &QPushButton::clicked, this, [this] { save(PDFStreamForm::isRaw); });
    connect(
        theSaveDecoded, &QPushButton::clicked, this, [this] { save(PDFStreamForm::isDecoded); });
    makeLayout();
    hide();
}

void StreamPanel::makeLayout()
{
    theText->setObjectName(u"streamText"_s);
    theText->setAccessibleName(tr("Stream as text"));
    theText->useFixedPitchFont();
    theText->setWrapping(false);
    theHex->setObjectName(u"streamHex"_s);
    theHex->setAccessibleName(tr("Stream in hexadecimal"));
    theTabs->setObjectName(u"streamTabs"_s);
    theTabs->addTab(theText, tr("Text"));
    theTabs->addTab(theHex, tr("Hex"));
    theTabs->setDocumentMode(true);
    auto* const choices = new QHBoxLayout;
    choices->addWidget(theForm);
    choices->addWidget(theMore);
    choices->addStretch(1);
    choices->addWidget(theSaveRaw);
    choices->addWidget(theSaveDecoded);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    layout->addWidget(thePacking);
    layout->addLayout(choices);
    layout->addWidget(theOutcome);
    layout->addWidget(theTabs, 1);
}

void StreamPanel::setDocument(PDFDocument* document, const QString& folder, const QString& name)
{
    theDocument = document;
    theFolder = folder;
    theName = name;
}

PDFStreamForm StreamPanel::form() const
{
    return theForm->currentIndex() == 0 ? PDFStreamForm::isDecoded : PDFStreamForm::isRaw;
}

void StreamPanel::showStream(const std::optional<PDFObject>& object)
{
    theReading.abandon();
    delete theRequest;
    theObject = object && object->isStream ? object : std::nullopt;
    setVisible(theObject.has_value());
    if (!theObject)
        return empty({});
    thePacking->setText(streamPackingText(*theObject));
    ask(usualStream);
}

void StreamPanel::empty(const QString& note)
{
    theOutcome->setText(note);
    theMore->hide();
    theText->clear();
    theHex->setBytes({});
}

void StreamPanel::ask(quint64 limit)
{
    theReading.abandon();
    delete theRequest;
    if (!theObject || !theDocument)
        return;
    theLimit = limit;
    empty(tr("Reading the stream…"));
    theRequest = theDocument->requestStream(theObject->number, form(), limit, this);
    connect(theRequest, &PDFRequest::progressed, this,
        [this](int done, int) { theOutcome->setText(tr("Reading the stream… %1 MB").arg(done)); });
    connect(theRequest, &PDFRequest::finished, this,
        [this, request = theRequest.data()] { take(request); });
}

void StreamPanel::take(PDFStreamRequest* request)
{
    request->deleteLater();
    theRequest.clear();
    if (!request->succeeded()) {
        empty(failureSentence(tr("The stream could not be read"), *request));
        emit shown();
        return;
    }
    const PDFStream& stream = request->stream();
    theOutcome->setText(streamOutcomeText(stream, form()));
    theMore->setVisible(stream.end == PDFStreamEnd::isStopped && theLimit < largestStream);
    showBytes(stream.bytes);
}

/// Long texts are cut into lines elsewhere.
void StreamPanel::showBytes(const FileBytes& bytes)
{
    theHex->setBytes(shared(bytes));
    theTabs->setCurrentIndex(isMostlyText(bytes.view()) ? isText : isHex);
    theReading.start([bytes] { return std::make_shared<const PlainTextStorage>(shared(bytes)); },
        [this](std::shared_ptr<const PlainTextStorage> storage) {
            theText->setTextStorage(std::move(storage));
            emit shown();
        });
}

/// What is saved is asked for anew: all of it, whatever shows, as far as the limit lets.
void StreamPanel::save(PDFStreamForm wanted)
{
    if (!theObject || !theDocument)
        return;
    PDFStreamRequest* const request = theDocument->requestStream(
        theObject->number, wanted, wanted == PDFStreamForm::isRaw ? largestStream : theLimit, this);
    connect(request, &PDFRequest::finished, this, [this, request, object = *theObject, wanted] {
        saveAnswer(*request, object, wanted);
        request->deleteLater();
    });
}

void StreamPanel::saveAnswer(
    const PDFStreamRequest& request, const PDFObject& object, PDFStreamForm wanted)
{
    const PDFStream& stream = request.stream();
    if (!request.succeeded() || stream.end == PDFStreamEnd::isUnknown) {
        const QString reason = request.succeeded() ? stream.remark : failureReason(request);
        tellUser({Notice::Kind::isFailure,
                     tr("The stream of object %1 has not been saved: %2")
                         .arg(object.number)
                         .arg(asSentence(reason))},
            this);
        return;
    }
    const QString type = streamFileType(object, wanted, stream.bytes.view());
    const QString title
        = wanted == PDFStreamForm::isRaw ? tr("Save Stream as Stored") : tr("Save Decoded Stream");
    BytesExport::begin(
        {stream.bytes, title, theFolder, u"%1-obj%2.%3"_s.arg(theName).arg(object.number).arg(type),
            streamLossText(stream), window()});
}

} // namespace tarnwick
