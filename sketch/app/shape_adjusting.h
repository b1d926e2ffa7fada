// What becomes of a shape when the pen that has drawn it is dragged on before it is lifted.
//
// Space:  the sheet.
#pragma once

#include "sketch/core/reading.h"

// from: where the pen stood when the shape was offered; to: where it is now. Of no move the shape itself.
//   - open straight pieces: the last corner goes along
//   - a rectangle or square: the corner next to the pen does, about the opposite one, all angles right
//   - what is open and bent: its end goes along, about its beginning
//   - what is closed otherwise: its size follows the pen's distance from its centre
// A shape never becomes smaller than a tenth of a sheet pixel.
vnt::sketch::Shape adjusted(const vnt::sketch::Shape& shape, vnt::sketch::Kind kind, vnt::sketch::Vec2 from,
                            vnt::sketch::Vec2 to);
