#pragma once

#include "PageSource.h"
#include "TileCache.h"

#include <QStringList>

#include <map>

namespace tarnwick {

/// Pages whose answers come when the test wants, and a record of what was asked for (+) and given
/// up (-): tiles as "7a", the letter being the row; texts as "t7", links as "l7".
class FakePages : public PageSource
{
public:
    using Failure = PDFFailure;

    bool isThere() const override { return true; }
    /// Of three tiles, one below the other.
    QSizeF pageSize(int) const override { return {100, 3000}; }

    Pending requestTile(const TileKey& key, const QRect&, TakeTile take) override
    {
        return ask(nameOf(key), [take](Failure failure, qsizetype) {
            QImage image(1, 1, QImage::Format_RGB32);
            image.fill(Qt::white);
            take(image, failure);
        });
    }
    Pending requestText(int page, TakeText take) override
    {
        return ask(u't' + QString::number(page), [take](Failure, qsizetype size) {
            PDFPageText text;
            text.string.fill(u'x', size);
            take(text);
        });
    }
    Pending requestLinks(int page, TakeLinks take) override
    {
        return ask(u'l' + QString::number(page),
            [take](Failure, qsizetype size) { take(QList<PDFLink>(size)); });
    }

    static QString nameOf(const TileKey& key)
    {
        return QString::number(key.page) + QChar(u'a' + key.row);
    }
    static TileKey keyOf(const QString& name)
    {
        return {name.chopped(1).toInt(), 0, 1, 0, name.back().unicode() - u'a'};
    }

    /// @param size of a text in characters, of links in their number.
    void answer(const QString& name, Failure failure = Failure::isNone, qsizetype size = 1)
    {
        const auto entry = theAsked.extract(name);
        if (entry)
            entry.mapped()(failure, size);
    }
    /// What has happened since this was last called.
    QString takeRecord() { return std::exchange(theRecord, {}).join(u' '); }
    const QStringList& record() const { return theRecord; }

private:
    struct Asked : Errand
    {
        Asked(FakePages* source, const QString& what)
            : pages(source)
            , name(what)
        {
        }
        ~Asked() override
        {
            if (pages->theAsked.erase(name) > 0)
                pages->theRecord.append(u'-' + name);
        }
        FakePages* pages;
        QString name;
    };

    Pending ask(const QString& name, std::function<void(Failure, qsizetype)> take)
    {
        theRecord.append(u'+' + name);
        theAsked[name] = std::move(take);
        return std::make_unique<Asked>(this, name);
    }

    std::map<QString, std::function<void(Failure, qsizetype)>> theAsked;
    QStringList theRecord;
};

} // namespace tarnwick
