#pragma once

#include <QSizeF>

namespace tarnwick {

/// The rectangle on a screen that pages show in.
class ViewFrame
{
public:
    virtual ~ViewFrame() = default;

    /// In device-independent pixels.
    virtual QSizeF size() const = 0;
    /// Device pixels for one of these.
    virtual double pixelRatio() const = 0;
    /// Device-independent pixels for a point at actual size.
    virtual double actualScale() const = 0;
};

} // namespace tarnwick
