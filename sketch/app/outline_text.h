// Outlines of ink as the data of an SVG path, in as few characters as one hundredth of a pixel takes.
#pragma once

#include "sketch/core/ink_outline.h"

#include <QByteArray>

#include <vector>

QByteArray outlineText(const std::vector<vnt::sketch::OutlinePart>& parts);
