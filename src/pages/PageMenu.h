#pragma once

#include <QList>

#include <optional>

class QMenu;

namespace tarnwick {

class PDFView;
struct PDFLink;

/// Fills a page view's context menu, which goes when it closes.
/// @param link under the pointer. @param links all of the present page: the menu is the way to them
/// without a mouse.
void fillPageMenu(
    QMenu& menu, PDFView& view, const std::optional<PDFLink>& link, const QList<PDFLink>& links);

} // namespace tarnwick
