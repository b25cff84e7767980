#include "StreamPanel.h"

#include "PictureView.h"
#include "StreamWords.h"
#include "export/BytesExport.h"
#include "frame/Notice.h"
#include "pdf/FailureText.h"
#include "text/HexView.h"
#include "text/SyntaxTextStorage.h"

#include <QBuffer>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

#include <utility>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

enum Tab
{
    isPicture,
    isText,
    isHex,
};

/// Longer texts show before their colours are known.
constexpr std::size_t colouredAtOnce = std::size_t{4} << 20; ///< bytes

SharedBytes shared(const FileBytes& bytes)
{
    return {bytes.view(), bytes.owner()};
}

QPushButton* newButton(QWidget* parent, const QString& name, const QString& text)
{
    auto* const button = new QPushButton(text, parent);
    button->setObjectName(name);
    button->setAutoDefault(false);
    return button;
}

} // namespace

QLabel* newStreamLabel(QWidget* parent, const QString& name)
{
    auto* const label = new QLabel(parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setWordWrap(true);
    return label;
}

StreamPanel::StreamPanel(QWidget* parent)
    : QWidget(parent)
    , theFilters(newStreamLabel(this, u"streamPacking"_s))
    , theOutcome(newStreamLabel(this, u"streamOutcome"_s))
    , theForm(new QComboBox(this))
    , theMore(newButton(this, u"streamMore"_s, tr("Decode up to 4 GB")))
    , theSaveRaw(newButton(this, u"saveRaw"_s, tr("Save &Raw…")))
    , theSaveDecoded(newButton(this, u"saveDecoded"_s, tr("Save &Decoded…")))
    , theTabs(new QTabWidget(this))
    , thePicture(new PictureView)
    , thePictureNote(newStreamLabel(this, u"pictureNote"_s))
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
    connect(thePicture, &PictureView::saveWanted, this, &StreamPanel::savePicture);
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
    theTabs->addTab(newPicturePage(), tr("Picture"));
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
    layout->addWidget(theFilters);
    layout->addLayout(choices);
    layout->addWidget(theOutcome);
    layout->addWidget(theTabs, 1);
}

QWidget* StreamPanel::newPicturePage()
{
    auto* const page = new QWidget;
    auto* const layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 4, 0, 0);
    layout->setSpacing(4);
    thePicture->setObjectName(u"streamPicture"_s);
    layout->addWidget(thePicture, 1);
    layout->addWidget(thePictureNote);
    return page;
}

void StreamPanel::setNames(const QString& folder, const QString& name)
{
    theFolder = folder;
    theName = name;
}

PDFStreamForm StreamPanel::form() const
{
    return theForm->currentIndex() == 0 ? PDFStreamForm::isDecoded : PDFStreamForm::isRaw;
}

bool StreamPanel::isWaiting() const
{
    return theRequest || thePictureRequest || theReading.isRunning();
}

void StreamPanel::tellShown()
{
    if (!isWaiting())
        emit shown();
}

void StreamPanel::clear()
{
    theReading.abandon();
    delete theRequest;
    delete thePictureRequest;
    theObject.reset();
    theStored = {};
    thePicture->setImage({});
    empty({});
    hide();
}

void StreamPanel::begin(PDFObjectEngines* engines, const PDFObject& object)
{
    clear();
    theEngines = engines;
    theObject = object;
    theTabs->setTabVisible(isPicture, engines && isImage(object));
    theFilters->setVisible(engines != nullptr);
    theForm->setVisible(engines != nullptr);
    theSaveDecoded->setVisible(engines != nullptr);
    show();
}

void StreamPanel::showStream(PDFObjectEngines* engines, const PDFObject& object)
{
    if (!object.isStream)
        return clear();
    begin(engines, object);
    theFilters->setText(streamPackingText(object));
    if (isImage(object))
        askPicture();
    ask(usualStream);
}

void StreamPanel::showStored(int number, const SharedBytes& bytes)
{
    PDFObject object;
    object.number = number;
    begin(nullptr, object);
    theStored = bytes;
    theOutcome->setText(storedStreamText(bytes.view.size()));
    showBytes(bytes);
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
    if (!theObject || !theEngines)
        return;
    theLimit = limit;
    empty(tr("Reading the stream…"));
    theRequest = theEngines->requestStream(theObject->number, form(), limit, this);
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
        return tellShown();
    }
    const PDFStream& stream = request->stream();
    theOutcome->setText(streamOutcomeText(stream, form()));
    theMore->setVisible(stream.end == PDFStreamEnd::isStopped && theLimit < largestStream);
    showBytes(shared(stream.bytes));
}

/// Long texts are cut into lines elsewhere, and shown before their colours are known.
void StreamPanel::showBytes(const SharedBytes& bytes)
{
    theHex->setBytes(bytes);
    if (!theTabs->isTabVisible(isPicture) || theTabs->currentIndex() != isPicture)
        theTabs->setCurrentIndex(isMostlyText(bytes.view) ? isText : isHex);
    using Text = std::shared_ptr<const PlainTextStorage>;
    const auto task
        = [this, bytes](const std::stop_token& stop, const Work::Report& report) -> Text {
        const auto plain = std::make_shared<const PlainTextStorage>(bytes);
        if (!isMostlyText(bytes.view) || !SyntaxColours::areSyntax(bytes.view))
            return plain;
        if (bytes.view.size() > colouredAtOnce)
            report.deliver([this, plain] { theText->setTextStorage(plain); });
        return std::make_shared<const SyntaxTextStorage>(
            *plain, std::make_shared<const SyntaxColours>(bytes.view, stop));
    };
    theReading.start(task, [this](const Text& text) {
        if (theText->textStorage()->lineCount() > 1) // what it shows already
            theText->growTextStorage(text);
        else
            theText->setTextStorage(text);
        tellShown();
    });
}

// --- Pictures ------------------------------------------------------------------------------------

void StreamPanel::askPicture()
{
    thePictureNote->setText(tr("Drawing the picture…"));
    theTabs->setCurrentIndex(isPicture);
    thePictureRequest = theEngines->requestPicture(theObject->number, this);
    connect(thePictureRequest, &PDFRequest::finished, this,
        [this, request = thePictureRequest.data()] { takePicture(request); });
}

void StreamPanel::takePicture(PDFPictureRequest* request)
{
    request->deleteLater();
    thePictureRequest.clear();
    const PDFPicture& picture = request->picture();
    thePicture->setImage(picture.image);
    thePictureNote->setText(request->succeeded()
            ? pictureText(picture)
            : failureSentence(tr("The picture cannot be drawn"), *request));
    tellShown();
}

void StreamPanel::savePicture()
{
    const auto pack = [image = thePicture->image()] {
        QByteArray bytes;
        QBuffer buffer(&bytes);
        image.save(&buffer, "PNG");
        return bytes.toStdString();
    };
    thePacking.start(pack, [this, number = theObject ? theObject->number : 0](std::string png) {
        const SharedBytes bytes = SharedBytes::ofString(std::move(png));
        BytesExport::begin({bytes.view, bytes.owner, tr("Save Picture"), theFolder,
            u"%1-obj%2.png"_s.arg(theName).arg(number), {}, window()});
    });
}

// --- Saving --------------------------------------------------------------------------------------

/// What is saved is asked for anew: all of it, whatever shows, as far as the limit lets.
void StreamPanel::save(PDFStreamForm wanted)
{
    if (!theObject)
        return;
    if (!theEngines)
        return saveBytes(theStored, *theObject, wanted, {});
    PDFStreamRequest* const request = theEngines->requestStream(
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
    if (request.succeeded() && stream.end != PDFStreamEnd::isUnknown)
        return saveBytes(shared(stream.bytes), object, wanted, streamLossText(stream));
    const QString reason = request.succeeded() ? stream.remark : failureReason(request);
    tellUser({Notice::Kind::isFailure,
                 tr("The stream of object %1 has not been saved: %2")
                     .arg(object.number)
                     .arg(asSentence(reason))},
        this);
}

void StreamPanel::saveBytes(
    const SharedBytes& bytes, const PDFObject& object, PDFStreamForm wanted, const QString& missing)
{
    const QString type = streamFileType(object, wanted, bytes.view);
    const QString title
        = wanted == PDFStreamForm::isRaw ? tr("Save Stream as Stored") : tr("Save Decoded Stream");
    BytesExport::begin({bytes.view, bytes.owner, title, theFolder,
        u"%1-obj%2.%3"_s.arg(theName).arg(object.number).arg(type), missing, window()});
}

} // namespace tarnwick
