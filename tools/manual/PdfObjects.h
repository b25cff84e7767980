#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>

#include <optional>

namespace tarnwick {

/// The objects of a PDF file as QPdfWriter lays it out: found through its classic cross-reference
/// table, changed as bytes, and written out again under the same numbers.
class PdfObjects
{
public:
    /// @returns nothing when the file has no such table, or no catalog, pages or Info dictionary.
    static std::optional<PdfObjects> read(const QByteArray& file);

    int catalog() const { return theCatalog; }
    int info() const { return theInfo; }
    /// The object numbers of the pages, in reading order.
    QList<int> pages() const;

    /// Adds an object and returns its number. Numbers rise by one.
    int add(const QByteArray& body);
    /// Replaces what stands between "obj" and "endobj".
    void replace(int object, const QByteArray& body);
    /// Sets an entry of an object that is a dictionary, in place of one that has a line of its own.
    void setEntry(int object, const QByteArray& key, const QByteArray& value);

    /// The file: the same objects always give the same bytes, its identifier included.
    QByteArray written() const;

    static QByteArray reference(int object) { return QByteArray::number(object) + " 0 R"; }

private:
    QByteArray theHeader; ///< what stands in front of the first object
    QMap<int, QByteArray> theBodies; ///< without "n 0 obj" and "endobj"
    int theCatalog = 0;
    int theInfo = 0;
};

} // namespace tarnwick
