// The program's icons: drawings in one colour, which is that of the text on buttons, whatever the palette is.
#pragma once

#include <QIcon>

// name: of a file in icons/, without its ending. An unknown one gives an empty picture.
QIcon iconOf(const char* name);
