#pragma once

#include <string>
#include <string_view>

namespace VelkHost {

/// A small drawing (96 x 96 pixels) as a PNG file's bytes, from a few strokes on a grid of 0 to 96.
///
/// `strokes` are separated by blanks: "r8,8,80,80" a rectangle, "e8,8,80,80" an ellipse in that
/// rectangle, "l0,0,96,96" a line between two points. Anything else is ignored. Needs no display and no
/// application object. Any thread.
std::string drawThumbnail(std::string_view strokes);

}  // namespace VelkHost
