#pragma once

#include <QPainter>

namespace GDI {

/// A device context, which the host's drawing code is given to draw on. It refers to a painter, which must
/// outlive it.
class Dc
{
public:
    /// A device context that draws with `painter`.
    explicit Dc(QPainter& painter) noexcept : painter_(&painter) {}

    /// The painter that it draws with.
    QPainter& painter() const noexcept { return *painter_; }

private:
    QPainter* painter_;
};

}  // namespace GDI
