#pragma once

namespace tarnwick {

/// The three view preferences as windows read them. The application delegate fills it; windows
/// read it when they are shown and never write it.
class ViewFlags
{
public:
    virtual ~ViewFlags() = default;

    /// The main window shows the thumbnail strip.
    virtual bool showThumbnail() const = 0;
    /// The inspector shows the undecorated texts instead of scanned listings.
    virtual bool showRawSource() const = 0;
    /// The inspector's scanned panes hold the coloured listing before the object list.
    virtual bool showSummarySource() const = 0;
};

} // namespace tarnwick
