#pragma once

#include <QPainter>

namespace GDI {

/// A device context: what drawing code of the host is given to draw on. Refers to a painter that
/// outlives it.
class Dc
{
public:
    /// Draws with `painter`.
    explicit Dc(QPainter& painter) noexcept : painter_(&painter) {}

    /// What it draws with.
    QPainter& painter() const noexcept { return *painter_; }

private:
    QPainter* painter_;
};

}  // namespace GDI
