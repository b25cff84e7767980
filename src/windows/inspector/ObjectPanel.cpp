#include "ObjectPanel.h"

#include "ReferringText.h"
#include "StreamPanel.h"
#include "StreamWords.h"
#include "frame/PaneSplitter.h"
#include "pdf/FailureText.h"
#include "text/PlainTextView.h"

#include <QLabel>
#include <QLocale>
#include <QVBoxLayout>

#include <chrono>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

using namespace std::chrono_literals;

/// Whoever goes through a listing by its lines does not want each object.
constexpr auto pause = 200ms;
/// Bytes: tables often lead to a line end before their object.
constexpr std::size_t leeway = 4;

QLabel* newLabel(QWidget* parent, const QString& name)
{
    auto* const label = new QLabel(parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setWordWrap(true);
    return label;
}

} // namespace

ObjectPanel::ObjectPanel(QWidget* parent)
    : QWidget(parent)
    , theTitle(newLabel(this, u"objectTitle"_s))
    , thePlace(newLabel(this, u"objectPlace"_s))
    , theParts(new PaneSplitter(Qt::Vertical, this))
    , theText(new PlainTextView)
    , theStream(new StreamPanel)
{
    setAccessibleName(tr("Object"));
    thePause.setSingleShot(true);
    connect(&thePause, &QTimer::timeout, this, &ObjectPanel::ask);
    connect(theText, &PlainTextView::linkFollowed, this, [this](TextRange link) {
        const auto target = theStorage ? theStorage->targetAt(link.begin) : std::nullopt;
        if (target)
            emit objectWanted(*target);
    });
    connect(theStream, &StreamPanel::shown, this, &ObjectPanel::shown);
    makeLayout();
    clear({});
}

void ObjectPanel::makeLayout()
{
    QFont bold = theTitle->font();
    bold.setBold(true);
    theTitle->setFont(bold);
    theText->setObjectName(u"objectText"_s);
    theText->setAccessibleName(tr("What the object says"));
    theText->useFixedPitchFont();
    theText->setWrapping(false);
    theParts->setObjectName(u"objectParts"_s);
    theParts->setHandleWidth(8);
    theParts->setChildrenCollapsible(false);
    theParts->addWidget(theText);
    theParts->addWidget(theStream);
    theParts->setStretchFactor(0, 1);
    theParts->setStretchFactor(1, 2);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    layout->addWidget(theTitle);
    layout->addWidget(thePlace);
    layout->addWidget(theParts, 1);
    setFocusProxy(theText);
}

void ObjectPanel::setDocument(PDFDocument* document, const QString& folder, const QString& name)
{
    theDocument = document;
    theStream->setDocument(document, folder, name);
    theObjectIsAsked = false;
    if (isVisible())
        thePause.start(pause);
}

bool ObjectPanel::isWaiting() const
{
    return thePause.isActive() || theRequest || theStream->isWaiting();
}

void ObjectPanel::showObject(
    std::optional<int> number, std::optional<ByteRange> range, bool isUrgent)
{
    if (number == theNumber && range == theRange && theObjectIsAsked)
        return;
    theNumber = number;
    theRange = range;
    theObjectIsAsked = false;
    if (!isVisible())
        return;
    if (isUrgent)
        ask();
    else
        thePause.start(pause);
}

void ObjectPanel::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (!theObjectIsAsked)
        thePause.start(0ms);
}

void ObjectPanel::ask()
{
    thePause.stop();
    theObjectIsAsked = true;
    delete theRequest; // which cancels it
    if (!theDocument || theDocument->state() != PDFDocument::State::isOpen) {
        clear(tr("Single objects show when the PDF engine has opened the file. What is stored of "
                 "them is in the source."));
        emit shown();
        return;
    }
    if (!theNumber) {
        clear(tr("Put the caret into an object of the source below, or go to one with Ctrl+L."));
        emit shown();
        return;
    }
    theRequest = theDocument->requestObject(*theNumber, this);
    connect(theRequest, &PDFRequest::finished, this,
        [this, request = theRequest.data()] { take(request); });
}

void ObjectPanel::clear(const QString& note)
{
    theTitle->setText(theNumber ? tr("Object %1").arg(*theNumber) : tr("Object"));
    thePlace->setText(note);
    theStorage.reset();
    theText->clear();
    theText->hide();
    theStream->showStream(std::nullopt);
}

void ObjectPanel::take(PDFObjectRequest* request)
{
    request->deleteLater();
    theRequest.clear();
    if (!request->succeeded()) {
        clear(failureSentence(tr("The object could not be read"), *request));
        emit shown();
        return;
    }
    const PDFObject& object = request->object();
    clear(placeText(object));
    if (object.state == PDFObjectState::isPresent) {
        theTitle->setText(tr("Object %1 %2").arg(object.number).arg(object.generation));
        theStorage = std::make_shared<const ReferringText>(object.text);
        theText->setTextStorage(theStorage);
        theText->show();
        theStream->showStream(object);
    }
    if (!theStream->isWaiting())
        emit shown();
}

/// What the caret is in may be another object of the number than the file's table leads to.
QString ObjectPanel::placeText(const PDFObject& object) const
{
    QString text = objectPlaceText(object);
    if (object.isCut)
        text += u' ' + tr("It is longer or deeper than what shows of it.");
    const bool isElsewhere = object.state == PDFObjectState::isPresent && theRange
        && (object.place.container > 0 || object.place.offset + leeway < theRange->begin
            || object.place.offset >= theRange->end);
    if (isElsewhere)
        text += u' '
            + tr("Readers use this one; the object at the caret, at byte %1, is not in use.")
                  .arg(QLocale(QLocale::English).toString(static_cast<quint64>(theRange->begin)));
    return text;
}

} // namespace tarnwick
