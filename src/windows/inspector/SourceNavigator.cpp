#include "SourceNavigator.h"

#include "analysis/PageTree.h"
#include "frame/DocumentWindow.h"

#include <QApplication>
#include <QClipboard>
#include <QLocale>
#include <QMenu>

#include <limits>
#include <utility>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

constexpr std::size_t mostVersionsOffered = 20;

QString counted(qint64 number)
{
    return QLocale().toString(number);
}

/// Why no object of a number is shown as of a version.
QString missing(const pdfObjectCatalog& catalog, std::int64_t objNo)
{
    const std::vector<pdfObject> all = catalog.findAll(objNo);
    if (!all.empty())
        return SourceNavigator::tr("Object %1 is not there yet: it comes in version %2")
            .arg(objNo)
            .arg(all.front().objVer());
    return SourceNavigator::tr(
        "This source has no object %1; objects within object streams are not listed")
        .arg(objNo);
}

QString withoutLine(const pdfObject& object)
{
    return SourceNavigator::tr("Object %1 has no line here").arg(object.objNo());
}

} // namespace

SourceNavigator::SourceNavigator(PlaceHistory& history, QObject* parent)
    : QObject(parent)
    , theHistory(history)
{
    connect(qApp, &QApplication::focusChanged, this,
        [this](const QWidget*, const QWidget* now) { followFocus(now); });
}

void SourceNavigator::setPane(
    Pane pane, PlainTextView* view, std::shared_ptr<const SourceText> source)
{
    PaneSource& own = thePanes.at(index(pane));
    if (own.view() != view) {
        if (own.view())
            own.view()->disconnect(this);
        connect(view, &PlainTextView::linkFollowed, this, [this, pane](TextRange link) {
            const PaneSource& here = this->pane(pane);
            if (const auto reference = here.referenceAt(link.begin))
                emit said(pane, followReference(*reference, here.versionAt(link.begin), pane));
        });
        connect(view, &PlainTextView::contextMenuOpening, this,
            [this, pane](QMenu* menu, QAction* before, TextPosition place) {
                extendMenu(pane, *menu, before, place);
            });
    }
    own = PaneSource(view, std::move(source));
}

// --- Where to ------------------------------------------------------------------------------------

QString SourceNavigator::goTo(const PlaceQuery& query)
{
    if (const auto* object = std::get_if<ObjectQuery>(&query))
        return goToObject(*object, theCurrent);
    if (const auto* offset = std::get_if<OffsetQuery>(&query))
        return goToOffset(offset->offset, theCurrent);
    return goToPage(std::get<PageQuery>(query).page, theCurrent);
}

bool SourceNavigator::canFollow() const
{
    const PaneSource& here = pane(theCurrent);
    return here.view() && here.referenceAt(here.view()->caret());
}

QString SourceNavigator::follow()
{
    const PaneSource& here = pane(theCurrent);
    const TextPosition caret = here.view()->caret();
    const std::optional<ScannedReference> reference = here.referenceAt(caret);
    return reference ? followReference(*reference, here.versionAt(caret), theCurrent)
                     : tr("There is no reference at the caret");
}

/// A reference means the object of the latest version at or before its own.
QString SourceNavigator::followReference(
    const ScannedReference& reference, std::int64_t version, Pane in)
{
    return goToObject({reference.objNo, reference.objGen, reference.objVer.value_or(version)}, in);
}

QString SourceNavigator::goToObject(const ObjectQuery& query, Pane in)
{
    const PaneSource& here = pane(in);
    if (!here.hasObjects())
        return tr("Objects are known here when “Show Raw Source” is off and the source is read");
    const std::int64_t version = query.objVer.value_or(std::numeric_limits<std::int64_t>::max());
    const std::optional<pdfObject> object = here.catalog().find(query.objNo, version);
    if (!object)
        return missing(here.catalog(), query.objNo);
    const QString failure = show(*object, in);
    if (!failure.isEmpty() || !query.objGen || *query.objGen == object->objGen())
        return failure;
    return tr("Generation %1 was asked for; here stands generation %2")
        .arg(*query.objGen)
        .arg(object->objGen());
}

QString SourceNavigator::showInOther(Pane from, qint64 objNo)
{
    const Pane to = from == Pane::isStored ? Pane::isFlattened : Pane::isStored;
    if (!theNumbers || !pane(to).hasObjects())
        return tr("The objects of the other source are not known here");
    const std::optional<std::int64_t> number
        = from == Pane::isStored ? theNumbers->flattened(objNo) : theNumbers->stored(objNo);
    if (!number)
        return from == Pane::isStored
            ? tr("The flattened PDF leaves object %1 out").arg(objNo)
            : tr("Object %1 stands within another object in the stored file").arg(objNo);
    if (const std::optional<pdfObject> object = pane(to).catalog().find(*number))
        return show(*object, to);
    if (to == Pane::isStored)
        emit unlistedWanted(static_cast<int>(*number));
    return to == Pane::isStored ? QString() : missing(pane(to).catalog(), *number);
}

QString SourceNavigator::show(const pdfObject& object, Pane in)
{
    const std::optional<TextRange> place = pane(in).placeOf(object);
    if (!place)
        return withoutLine(object);
    jump(in, *place);
    return {};
}

QString SourceNavigator::lookAt(const pdfObject& object, Pane in)
{
    const std::optional<TextRange> place = pane(in).placeOf(object);
    if (!place)
        return withoutLine(object);
    if (!present().isSameAs(theLook))
        theLookOrigin = present();
    theCurrent = in;
    pane(in).view()->goTo(*place);
    theLook = present();
    return {};
}

/// Where the user is led away from: not what was only looked at.
PanePlace SourceNavigator::departure() const
{
    const PanePlace place = present();
    return place.isSameAs(theLook) ? theLookOrigin : place;
}

QString SourceNavigator::goToOffset(std::size_t offset, Pane in)
{
    if (const std::optional<TextRange> place = pane(in).placeOf(offset)) {
        jump(in, *place);
        return {};
    }
    if (pane(in).hasObjects() && offset < pane(in).catalog().bytes().size()) {
        if (const std::optional<pdfObject> object = pane(in).catalog().recordAt(offset))
            return show(*object, in);
        return tr("Offsets have a place when “Show Summary Source” is on");
    }
    return tr("The file has no byte at offset %1").arg(counted(static_cast<qint64>(offset)));
}

QString SourceNavigator::goToPage(int page, Pane first)
{
    const Pane other = first == Pane::isStored ? Pane::isFlattened : Pane::isStored;
    for (const Pane one : {first, other}) {
        if (!pane(one).hasObjects())
            continue;
        if (const auto object = PageTree(pane(one).catalog()).page(page))
            return show(*object, one);
    }
    return tr("No page %1 is in the page tree of either source").arg(page);
}

void SourceNavigator::jump(Pane to, TextRange range)
{
    theHistory.leave(departure());
    PlainTextView* view = pane(to).view();
    view->goTo(range);
    view->setFocus(Qt::OtherFocusReason);
    theCurrent = to; // also in a window that is not in front
    emit said(to, {});
}

void SourceNavigator::followFocus(const QWidget* widget)
{
    for (const Pane one : {Pane::isFlattened, Pane::isStored}) {
        if (widget && widget == pane(one).view())
            theCurrent = one;
    }
}

// --- Back and forward ----------------------------------------------------------------------------

void SourceNavigator::goBack()
{
    arrive(theHistory.back(present()));
}

void SourceNavigator::goForward()
{
    arrive(theHistory.forward(present()));
}

void SourceNavigator::arrive(const std::optional<PanePlace>& place)
{
    if (!place)
        return;
    place->view->goTo(TextRange::between(place->anchor, place->caret));
    place->view->setSelection(place->anchor, place->caret);
    place->view->setFocus(Qt::OtherFocusReason);
    if (DocumentWindow* window = DocumentWindow::of(place->view);
        window && !window->isActiveWindow())
        window->bringUp();
}

// --- Context menu --------------------------------------------------------------------------------

std::optional<pdfObject> SourceNavigator::subjectAt(Pane in, TextPosition place) const
{
    const PaneSource& here = pane(in);
    if (!here.hasObjects())
        return std::nullopt;
    if (const auto reference = here.referenceAt(place))
        return here.catalog().find(
            reference->objNo, reference->objVer.value_or(here.versionAt(place)));
    return here.objectAt(place);
}

std::optional<qint64> SourceNavigator::subjectNumber() const
{
    const PaneSource& here = pane(theCurrent);
    if (!here.hasObjects())
        return std::nullopt;
    const TextPosition caret = here.view()->caret();
    if (const std::optional<ScannedReference> reference = here.referenceAt(caret))
        return reference->objNo;
    const std::optional<pdfObject> object = here.objectAt(caret);
    if (!object || object->objNo() == trailerNumber)
        return std::nullopt;
    return object->objNo();
}

void SourceNavigator::extendMenu(Pane in, QMenu& menu, QAction* before, TextPosition place)
{
    const auto add = [&](const QString& title, auto action) {
        auto* entry = new QAction(title, &menu);
        connect(entry, &QAction::triggered, this, std::move(action));
        menu.insertAction(before, entry);
    };
    const PaneSource& here = pane(in);
    const std::optional<ScannedReference> reference = here.referenceAt(place);
    if (reference) {
        add(tr("&Go to Object %1").arg(reference->objNo),
            [this, in, reference = *reference, version = here.versionAt(place)] {
                emit said(in, followReference(reference, version, in));
            });
    }
    const std::optional<pdfObject> subject = subjectAt(in, place);
    if (subject && subject->objNo() != trailerNumber) {
        const qint64 objNo = subject->objNo();
        const qint64 objGen = subject->objGen();
        offerVersions(in, menu, before, *subject);
        add(tr("Show &Users of Object %1").arg(objNo),
            [this, in, objNo] { emit usersWanted(in, objNo); });
        add(in == Pane::isStored ? tr("Show in &Flattened PDF") : tr("Show in &Stored File"),
            [this, in, objNo] { emit said(in, showInOther(in, objNo)); });
        if (const auto page = PageTree(here.catalog()).numberOf(*subject))
            add(tr("Show &Page %1").arg(*page),
                [this, page = *page] { emit pageWanted(static_cast<int>(page - 1)); });
        add(tr("Copy &Reference"), [objNo, objGen] {
            QGuiApplication::clipboard()->setText(u"%1 %2 R"_s.arg(objNo).arg(objGen));
        });
    }
    const std::optional<ByteRange> bytes
        = in == Pane::isStored ? here.bytesAt(place) : std::nullopt; // the other file has no window
    if (bytes)
        add(tr("Show &Bytes"),
            [this, bytes = *bytes] { emit bytesWanted(bytes.begin, bytes.size()); });
    if (const std::optional<std::size_t> offset = here.offsetAt(place)) {
        add(tr("Copy &Offset %1").arg(counted(static_cast<qint64>(*offset))),
            [offset = *offset] { QGuiApplication::clipboard()->setText(QString::number(offset)); });
    }
    menu.insertSeparator(before);
}

/// The object as other versions have it.
void SourceNavigator::offerVersions(Pane in, QMenu& menu, QAction* before, const pdfObject& object)
{
    const std::vector<pdfObject> all = pane(in).catalog().findAll(object.objNo());
    if (all.size() < 2)
        return;
    auto* versions = new QMenu(tr("Object %1 in &Version").arg(object.objNo()), &menu);
    menu.insertMenu(before, versions);
    const std::size_t first = all.size() - std::min(all.size(), mostVersionsOffered);
    for (std::size_t at = all.size(); at-- > first;) {
        const pdfObject& one = all[at];
        versions->addAction(tr("Version %1, offset %2")
                                .arg(one.objVer())
                                .arg(counted(static_cast<qint64>(one.range().begin))),
            this, [this, in, one, source = pane(in).source()] {
                if (pane(in).source() == source) // else it shows another one since
                    emit said(in, show(one, in));
            });
    }
    if (first > 0)
        versions->addAction(tr("%1 earlier ones").arg(first))->setEnabled(false);
}

} // namespace tarnwick
