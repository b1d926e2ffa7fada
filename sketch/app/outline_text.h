// Outlines of ink as the data of an SVG path, in as few characters as one hundredth of a pixel takes.
#pragma once

#include "sketch/core/ink_outline.h"

#include <QByteArray>

#include <vector>

// With so many decimals at most, none that is 0 at the end, and a decimal point whatever the locale.
QByteArray shortDigits(double number, int decimals);

QByteArray outlineText(const std::vector<vnt::sketch::OutlinePart>& parts);
