#pragma once

#include <QHash>
#include <QString>

#include <functional>

class QWidget;

namespace tarnwick {

/// Makes windows by identifier, so that those who open a window need not know its class.
///
/// The application registers a factory for each identifier at start; a document then asks for the
/// window that shows it. Identifiers are listed in WindowIdentifiers below.
template<class Subject> class WindowRegistry
{
public:
    /// @param subject what the window shows, borrowed for the window's life.
    using Factory = std::function<QWidget*(Subject* subject)>;

    void add(const QString& identifier, Factory factory)
    {
        theFactories.insert(identifier, std::move(factory));
    }

    /// Whether make() can make such a window.
    bool knows(const QString& identifier) const { return theFactories.contains(identifier); }

    /// A new window, not shown yet, owned by the caller. @returns null for an unknown identifier.
    QWidget* make(const QString& identifier, Subject* subject) const
    {
        const Factory factory = theFactories.value(identifier);
        return factory ? factory(subject) : nullptr;
    }

private:
    QHash<QString, Factory> theFactories;
};

namespace WindowIdentifiers {
using namespace Qt::StringLiterals;
inline const QString document = u"Document Window Controller"_s;
inline const QString source = u"SourceWindowController"_s;
inline const QString bytes = u"BytesWindowController"_s;
inline const QString versions = u"VersionsWindowController"_s;
inline const QString plainPDF = u"PlainPDFWindowController"_s;
inline const QString help = u"Help Window Controller"_s;
}

} // namespace tarnwick
