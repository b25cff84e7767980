#include "PdfFinish.h"

#include "PdfObjects.h"

#include <algorithm>

namespace tarnwick {

namespace {

/// A text string (ISO 32000-2, 7.9.2.2): UTF-16 with a mark, in hexadecimal form.
QByteArray textString(const QString& text)
{
    QByteArray bytes = "<feff";
    for (const QChar c : text)
        bytes += QByteArray::number(c.unicode(), 16).rightJustified(4, '0');
    return bytes + '>';
}

QByteArray number(double value)
{
    return QByteArray::number(value, 'f', 2);
}

class Finisher
{
public:
    Finisher(PdfObjects& file, const PdfExtras& what)
        : objects(file)
        , extras(what)
        , thePages(file.pages())
    {
    }

    bool finish()
    {
        const auto isOnPage = [this](int page) { return page >= 0 && page < thePages.size(); };
        const bool isSound = !thePages.isEmpty()
            && std::all_of(extras.bookmarks.cbegin(), extras.bookmarks.cend(),
                [&](const PdfBookmark& mark) { return isOnPage(mark.place.page); })
            && std::all_of(extras.links.cbegin(), extras.links.cend(), [&](const PdfLink& link) {
                   return isOnPage(link.page) && (!link.place || isOnPage(link.place->page));
               });
        if (!isSound)
            return false;
        addLinks();
        completeCatalog(addOutline());
        objects.replace(objects.info(),
            "<<\n/Title " + textString(extras.title) + "\n/Creator " + textString(extras.title)
                + "\n>>");
        return true;
    }

private:
    /// Shows the place at the window's upper edge, and keeps the scale.
    QByteArray destination(const PdfPlace& place) const
    {
        return "[" + PdfObjects::reference(thePages.at(place.page)) + " /XYZ 0 "
            + number(extras.pageHeight - place.top) + " null]";
    }

    static QByteArray action(const PdfLink& link)
    {
        QByteArray address = link.address.toEncoded();
        address.replace('(', "%28").replace(')', "%29"); // they would end the string
        return "/A << /S /URI /URI (" + address + ") >>";
    }

    void addLinks()
    {
        QList<QByteArray> annotations(thePages.size());
        for (const PdfLink& link : extras.links) {
            QByteArray target = action(link);
            if (link.place)
                target = "/Dest " + destination(*link.place);
            const QRectF& area = link.area;
            const QByteArray rectangle = number(area.left()) + ' '
                + number(extras.pageHeight - area.bottom()) + ' ' + number(area.right()) + ' '
                + number(extras.pageHeight - area.top());
            const int annotation
                = objects.add("<< /Type /Annot /Subtype /Link /Border [0 0 0]\n/Rect [" + rectangle
                    + "]\n" + target + " >>");
            annotations[link.page] += PdfObjects::reference(annotation) + ' ';
        }
        for (qsizetype page = 0; page < thePages.size(); ++page) {
            if (!annotations.at(page).isEmpty())
                objects.setEntry(thePages.at(page), "/Annots", '[' + annotations.at(page) + ']');
        }
    }

    /// One outline item while the tree is being laid: object numbers, 0 for none.
    struct Item
    {
        int object = 0;
        int parent = 0;
        int previous = 0;
        int next = 0;
        int first = 0;
        int last = 0;
        int children = 0;
    };

    /// @returns the outline's object number.
    int addOutline()
    {
        QList<Item> items{Item{objects.add(QByteArray())}}; // the root is item 0
        QList<qsizetype> open{0}; // the items that a further one may belong to, outermost first
        QList<int> levels{0};
        for (const PdfBookmark& mark : extras.bookmarks) {
            while (levels.constLast() >= mark.level && open.size() > 1) {
                open.removeLast();
                levels.removeLast();
            }
            Item item{objects.add(QByteArray())};
            Item& parent = items[open.constLast()];
            item.parent = parent.object;
            item.previous = parent.last;
            if (parent.last == 0)
                parent.first = item.object;
            else
                itemOf(items, parent.last).next = item.object;
            parent.last = item.object;
            ++parent.children;
            items << item;
            open << items.size() - 1;
            levels << mark.level;
        }
        for (qsizetype i = 1; i < items.size(); ++i)
            objects.replace(
                items.at(i).object, outlineItem(items.at(i), extras.bookmarks.at(i - 1)));
        objects.replace(items.constFirst().object,
            "<< /Type /Outlines" + branch(items.constFirst(), items.constFirst().children) + " >>");
        return items.constFirst().object;
    }

    static Item& itemOf(QList<Item>& items, int object)
    {
        return items[object - items.constFirst().object];
    }

    static QByteArray entry(const char* key, int object)
    {
        if (object == 0)
            return {};
        return QByteArray(" ") + key + ' ' + PdfObjects::reference(object);
    }

    static QByteArray branch(const Item& item, int count)
    {
        if (item.children == 0)
            return {};
        return entry("/First", item.first) + entry("/Last", item.last) + " /Count "
            + QByteArray::number(count);
    }

    QByteArray outlineItem(const Item& item, const PdfBookmark& mark) const
    {
        // A negative count: the sections of a chapter are folded away until asked for.
        return "<< /Title " + textString(mark.title) + entry("/Parent", item.parent)
            + entry("/Prev", item.previous) + entry("/Next", item.next)
            + branch(item, -item.children) + "\n/Dest " + destination(mark.place) + " >>";
    }

    void completeCatalog(int outline)
    {
        const int catalog = objects.catalog();
        objects.setEntry(catalog, "/Outlines", PdfObjects::reference(outline));
        objects.setEntry(catalog, "/PageMode", "/UseOutlines");
        objects.setEntry(catalog, "/Lang", '(' + extras.language + ')');
        objects.setEntry(catalog, "/ViewerPreferences", "<< /DisplayDocTitle true >>");
    }

    PdfObjects& objects;
    const PdfExtras& extras;
    const QList<int> thePages;
};

} // namespace

std::optional<QByteArray> finishPdf(const QByteArray& painted, const PdfExtras& extras)
{
    std::optional<PdfObjects> objects = PdfObjects::read(painted);
    if (!objects || !Finisher(*objects, extras).finish())
        return std::nullopt;
    return objects->written();
}

} // namespace tarnwick
