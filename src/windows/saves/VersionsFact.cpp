#include "saves/VersionsFact.h"

#include "VersionWords.h"
#include "pdf/PDFSavedVersions.h"

#include <QCoreApplication>

namespace tarnwick {

namespace {

struct Words
{
    Q_DECLARE_TR_FUNCTIONS(VersionsFact)
};

} // namespace

QString versionsFact(const PDFSavedVersions& versions)
{
    const std::size_t markers = versions.markerCount();
    const std::size_t own = versions.ownCount();
    if (markers < 2 || own == 1)
        return {};
    if (own == 0 || versions.failure() != PDFFailure::isNone)
        return Words::tr("%1 markers of saved versions").arg(VersionWords::counted(markers));
    const QString count = Words::tr("%1 saved versions").arg(VersionWords::counted(own));
    return own == markers ? count
                          : Words::tr("%1, %2 markers").arg(count, VersionWords::counted(markers));
}

} // namespace tarnwick
