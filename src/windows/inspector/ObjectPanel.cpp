#include "ObjectPanel.h"

#include "ObjectFactWords.h"
#include "PlacePanel.h"
#include "ReferringText.h"
#include "StreamPanel.h"
#include "StreamWords.h"
#include "analysis/StoredStream.h"
#include "frame/PaneSplitter.h"
#include "pdf/FailureText.h"
#include "text/PlainTextView.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

using namespace std::chrono_literals;

/// Whoever goes through a listing by its lines does not want each object.
constexpr auto pause = 200ms;
/// Bytes: tables often lead to a line end before their object.
constexpr std::size_t leeway = 4;
constexpr int mostFactRows = 8; ///< that show without scrolling
constexpr int factMargin
    = 12; ///< pixels that a text view has around its rows, and for a scroll bar

QPushButton* newButton(QWidget* parent, const QString& name, const QString& text)
{
    auto* const button = new QPushButton(text, parent);
    button->setObjectName(name);
    button->setAutoDefault(false);
    return button;
}

PlainTextView* newTextView(const QString& name, const QString& accessibleName)
{
    auto* const view = new PlainTextView;
    view->setObjectName(name);
    view->setAccessibleName(accessibleName);
    view->useFixedPitchFont();
    view->setWrapping(false);
    return view;
}

} // namespace

ObjectPanel::ObjectPanel(QWidget* parent)
    : QWidget(parent)
    , theTitle(newStreamLabel(this, u"objectTitle"_s))
    , theUsersButton(newButton(this, u"objectUsers"_s, tr("&Used By")))
    , thePlace(newStreamLabel(this, u"objectPlace"_s))
    , theNotice(newStreamLabel(this, u"objectNotice"_s))
    , theCurrentButton(newButton(this, u"objectInUse"_s, tr("Show the One in Use")))
    , theFacts(newTextView(u"objectFacts"_s, tr("What the object is")))
    , theParts(new PaneSplitter(Qt::Vertical, this))
    , theText(newTextView(u"objectText"_s, tr("What the object says")))
    , theStream(new StreamPanel)
    , theUsers(new PlacePanel(this))
    , theSearch(theUsers)
{
    setAccessibleName(tr("Object"));
    thePause.setSingleShot(true);
    connect(&thePause, &QTimer::timeout, this, &ObjectPanel::ask);
    connectLinks(theText);
    connectLinks(theFacts);
    connect(theStream, &StreamPanel::shown, this, &ObjectPanel::tellShown);
    connect(theUsersButton, &QPushButton::clicked, this, &ObjectPanel::showUsers);
    connect(theCurrentButton, &QPushButton::clicked, this, [this] {
        showObject({theChoice.number, std::nullopt, theChoice.file}, true);
    });
    connect(theUsers, &PlacePanel::chosen, this, [this](const PlaceRow& row) {
        if (row.offset)
            emit placeWanted(static_cast<qint64>(*row.offset));
    });
    connect(theUsers, &PlacePanel::closeWanted, this, [this] {
        theSearch.abandon();
        theUsers->hide();
        theUsersButton->setFocus(Qt::OtherFocusReason);
    });
    makeLayout();
    clear({});
}

void ObjectPanel::connectLinks(PlainTextView* view)
{
    connect(view, &PlainTextView::linkFollowed, this, [this, view](TextRange link) {
        if (const auto target = referenceTarget(*view->textStorage(), link.begin))
            emit objectWanted(*target);
    });
}

void ObjectPanel::makeLayout()
{
    QFont bold = theTitle->font();
    bold.setBold(true);
    theTitle->setFont(bold);
    theParts->setObjectName(u"objectParts"_s);
    theParts->setHandleWidth(8);
    theParts->setChildrenCollapsible(false);
    theParts->addWidget(theText);
    theParts->addWidget(theStream);
    theParts->setStretchFactor(0, 1);
    theParts->setStretchFactor(1, 2);
    auto* const head = new QHBoxLayout;
    head->addWidget(theTitle, 1);
    head->addWidget(theUsersButton);
    auto* const notice = new QHBoxLayout;
    notice->addWidget(theNotice, 1);
    notice->addWidget(theCurrentButton);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    layout->addLayout(head);
    layout->addWidget(thePlace);
    layout->addLayout(notice);
    layout->addWidget(theFacts);
    layout->addWidget(theParts, 1);
    layout->addWidget(theUsers);
    setFocusProxy(theText);
}

void ObjectPanel::setDocument(PDFDocument* document, const QString& folder, const QString& name)
{
    delete theRequest;
    delete theFactsRequest;
    theFiles.setDocument(document);
    theStream->setNames(folder, name);
    isObjectAsked = false;
    if (isVisible())
        thePause.start(pause);
}

void ObjectPanel::setStoredSource(std::shared_ptr<const SourceText> source)
{
    theFiles.setStoredSource(std::move(source));
    theUsersButton->setEnabled(theFiles.source(theChoice.file) != nullptr);
}

void ObjectPanel::setFlattened(const FileBytes& bytes, std::shared_ptr<const SourceText> source)
{
    theFiles.setFlattened(bytes, std::move(source));
}

bool ObjectPanel::isWaiting() const
{
    return thePause.isActive() || theRequest || theFactsRequest || theStream->isWaiting();
}

void ObjectPanel::tellShown()
{
    if (!isWaiting())
        emit shown();
}

void ObjectPanel::showObject(const ObjectChoice& choice, bool isUrgent)
{
    if (choice == theChoice && isObjectAsked)
        return;
    theChoice = choice;
    isObjectAsked = false;
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
    if (!isObjectAsked)
        thePause.start(0ms);
}

// --- Asking --------------------------------------------------------------------------------------

void ObjectPanel::askFor(PDFObjectEngines* engines, void (ObjectPanel::*then)(PDFObjectRequest*))
{
    theRequest = engines->requestObject(*theChoice.number, this);
    connect(theRequest, &PDFRequest::finished, this, [this, then, request = theRequest.data()] {
        request->deleteLater();
        theRequest.clear();
        (this->*then)(request);
        tellShown();
    });
}

void ObjectPanel::ask()
{
    thePause.stop();
    isObjectAsked = true;
    delete theRequest; // which cancels it
    delete theFactsRequest;
    PDFObjectEngines* const engines = theFiles.engines(theChoice.file);
    if (theChoice.number && engines)
        return askFor(engines, &ObjectPanel::take);
    clear({});
    if (theChoice.number && theChoice.range)
        showStored();
    else if (!engines)
        thePlace->setText(tr("Objects show as the PDF engine reads them when it has opened the "
                             "file; before that, those in the source show as they are stored."));
    else
        thePlace->setText(
            tr("Put the caret into an object of the source, or go to one with Ctrl+L."));
    emit shown();
}

void ObjectPanel::take(PDFObjectRequest* request)
{
    if (!request->succeeded()) {
        clear(failureSentence(tr("The object could not be read"), *request));
        if (theChoice.range)
            showStored();
        return;
    }
    const PDFObject& object = request->object();
    if (theChoice.range && isElsewhere(object)) {
        clear({});
        setNotice(replacedText(object));
        return askVersion();
    }
    clear(placeText(object));
    if (object.state == PDFObjectState::isPresent)
        showPresent(theFiles.engines(theChoice.file), object);
}

/// Up to its end the version is a document of its own (ISO 32000-2, 7.5.6).
void ObjectPanel::askVersion()
{
    const std::size_t end = theChoice.file == ObjectFile::isStored
        ? versionEndBehind(theFiles.bytes(theChoice.file).view, theChoice.range->end)
        : 0;
    PDFObjectEngines* const engines = end > 0 ? theFiles.versionEngines(end) : nullptr;
    if (engines)
        askFor(engines, &ObjectPanel::takeVersion);
    else
        showStored();
}

void ObjectPanel::takeVersion(PDFObjectRequest* request)
{
    const PDFObject& object = request->object();
    PDFObjectEngines* const engines = theFiles.versionEngines(
        versionEndBehind(theFiles.bytes(theChoice.file).view, theChoice.range->end));
    if (!request->succeeded() || !engines || object.state != PDFObjectState::isPresent
        || isElsewhere(object))
        return showStored();
    thePlace->setText(placeText(object));
    showPresent(engines, object);
}

bool ObjectPanel::isElsewhere(const PDFObject& object) const
{
    return object.state != PDFObjectState::isPresent || object.place.container > 0
        || object.place.offset + leeway < theChoice.range->begin
        || object.place.offset >= theChoice.range->end;
}

// --- Showing -------------------------------------------------------------------------------------

void ObjectPanel::clear(const QString& note)
{
    theTitle->setText(theChoice.number ? tr("Object %1").arg(*theChoice.number) : tr("Object"));
    thePlace->setText(note);
    setNotice({});
    theFacts->hide();
    theText->clear();
    theText->hide();
    theStream->clear();
    theSearch.abandon();
    theUsers->hide();
    theUsersButton->setVisible(theChoice.number.has_value());
    theUsersButton->setEnabled(theFiles.source(theChoice.file) != nullptr);
}

void ObjectPanel::setNotice(const QString& text)
{
    theNotice->setText(text);
    theNotice->setVisible(!text.isEmpty());
    theCurrentButton->setVisible(!text.isEmpty());
}

void ObjectPanel::showText(const SharedBytes& bytes)
{
    theText->setTextStorage(std::make_shared<const ReferringSyntax>(bytes));
    theText->show();
}

void ObjectPanel::showPresent(PDFObjectEngines* engines, const PDFObject& object)
{
    theTitle->setText(tr("Object %1 %2").arg(object.number).arg(object.generation));
    showText(SharedBytes::ofString(object.text.toStdString()));
    theStream->showStream(engines, object);
    theFactsRequest = engines->requestFacts(object.number, this);
    connect(theFactsRequest, &PDFRequest::finished, this,
        [this, request = theFactsRequest.data()] { takeFacts(request); });
}

void ObjectPanel::takeFacts(PDFFactsRequest* request)
{
    request->deleteLater();
    theFactsRequest.clear();
    const PDFFacts& facts = request->facts();
    QString text = factLines(facts.facts);
    if (!request->succeeded())
        text = failureSentence(tr("What it is could not be found out"), *request);
    if (const QString kind = objectKindText(facts.kind); !kind.isEmpty())
        theTitle->setText(theTitle->text() + u" · "_s + kind);
    theFacts->setTextStorage(std::make_shared<const ReferringText>(text));
    const int rows = std::min(static_cast<int>(text.count(u'\n')) + 1, mostFactRows);
    theFacts->setFixedHeight(
        rows * QFontMetrics(QFontDatabase::systemFont(QFontDatabase::FixedFont)).lineSpacing()
        + 2 * theFacts->frameWidth() + factMargin);
    theFacts->setVisible(!text.isEmpty());
    tellShown();
}

/// As the file has it, from header to stream or end.
void ObjectPanel::showStored()
{
    const SharedBytes bytes = theFiles.bytes(theChoice.file);
    const ByteRange range = *theChoice.range;
    if (range.end > bytes.view.size() || range.begin > range.end)
        return;
    const ObjectSource source(bytes.view, range, longestObjectText);
    const std::size_t end = source.streamBegin().value_or(source.valueEnd());
    if (thePlace->text().isEmpty())
        thePlace->setText(storedPlaceText(range));
    showText({bytes.view.substr(range.begin, end - range.begin), bytes.owner});
    if (!source.streamBegin())
        return;
    const StoredStream stream = findStream(bytes.view, range, source, source.integer("Length"));
    theStream->showStored(*theChoice.number,
        {bytes.view.substr(stream.range.begin, stream.range.size()), bytes.owner});
}

QString ObjectPanel::placeText(const PDFObject& object) const
{
    QString text = objectPlaceText(object);
    const std::shared_ptr<const SourceText>& source = theFiles.source(theChoice.file);
    if (source && object.state == PDFObjectState::isPresent) {
        const pdfObjectCatalog& catalog = source->theCatalog();
        const auto record = object.place.container > 0
            ? catalog.find(object.place.container)
            : catalog.recordAt(static_cast<std::size_t>(object.place.offset) + leeway);
        if (record)
            text += u", "_s + extentText(*record, object.place.container > 0);
    }
    if (theChoice.file == ObjectFile::isFlattened)
        text = tr("Flattened document: %1").arg(text);
    if (object.isCut)
        text += u". "_s + tr("It is longer or deeper than what shows of it.");
    return text;
}

QString ObjectPanel::replacedText(const PDFObject& inUse) const
{
    switch (inUse.state) {
    case PDFObjectState::isFree:
        return tr("This object is not in use: a later version deleted it.");
    case PDFObjectState::isMissing:
    case PDFObjectState::isUnreadable:
        return tr("This object is not in use: the file's table does not lead to it.");
    case PDFObjectState::isPresent:
        break;
    }
    const QString where = objectPlaceText(inUse);
    const bool isLater = inUse.place.container > 0 || inUse.place.offset > theChoice.range->begin;
    return isLater ? tr("This object is not in use: a later one has replaced it. %1.").arg(where)
                   : tr("This object is not in use: readers take an earlier one. %1.").arg(where);
}

// --- Users ---------------------------------------------------------------------------------------

void ObjectPanel::showUsers()
{
    const std::shared_ptr<const SourceText>& source = theFiles.source(theChoice.file);
    if (!source || !theChoice.number)
        return;
    theSearch.start(source, *theChoice.number);
    theUsers->edit();
}

} // namespace tarnwick
