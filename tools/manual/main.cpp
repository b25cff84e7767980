#include "ManualLayout.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHashFunctions>
#include <QPdfWriter>
#include <QSaveFile>

#include <cstdio>

using namespace Qt::StringLiterals;
using namespace tarnwick;

namespace {

int fail(const QString& reason)
{
    std::fprintf(stderr, "tarnwick-make-help: %s\n", qPrintable(reason));
    return 1;
}

int makeHelp(const QString& source, const QString& target)
{
    QFile file(source);
    if (!file.open(QIODevice::ReadOnly))
        return fail(source + u": "_s + file.errorString());
    QBuffer painted;
    painted.open(QIODevice::WriteOnly);
    PdfExtras extras;
    {
        QPdfWriter writer(&painted);
        writer.setPdfVersion(QPagedPaintDevice::PdfVersion_1_6);
        writer.setResolution(1200);
        writer.setPageLayout(
            QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF()));
        ManualLayout layout(
            writer, QString::fromUtf8(file.readAll()), QFileInfo(source).absolutePath());
        if (!layout.problems().isEmpty())
            return fail(source + u": "_s + layout.problems().join(u'\n'));
        layout.paint();
        extras = layout.extras();
    }
    const std::optional<QByteArray> finished = finishPdf(painted.data(), extras);
    if (!finished)
        return fail(u"the painted file is of an unknown kind"_s);
    QSaveFile output(target);
    if (!output.open(QIODevice::WriteOnly) || output.write(*finished) != finished->size()
        || !output.commit())
        return fail(target + u": "_s + output.errorString());
    return 0;
}

} // namespace

/// Lays out the manual: tarnwick-make-help SOURCE.md TARGET.pdf
int main(int argc, char* argv[])
{
    // The painter keeps its fonts in a hash table and writes them in that order.
    QHashSeed::setDeterministicGlobalSeed();
    QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3)
        return fail(u"usage: tarnwick-make-help SOURCE.md TARGET.pdf"_s);
    return makeHelp(arguments.at(1), arguments.at(2));
}
