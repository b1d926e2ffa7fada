// What the window calls the kinds of shapes and of snapping places, in the user's language.
#pragma once

#include "sketch/core/reading.h"
#include "sketch/core/snapping.h"

#include <QString>

QString kindName(vnt::sketch::Kind kind);     // "elliptic arc"
QString snapName(vnt::sketch::SnapKind kind); // "grid crossing"
