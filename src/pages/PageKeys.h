#pragma once

class QKeyEvent;

namespace tarnwick {

class PDFView;
class PageScroller;

/// What the keys do in a page view.
/// @returns false for a key that does nothing there.
bool pressPageKey(const QKeyEvent& event, PDFView& view, PageScroller& scroller);

} // namespace tarnwick
