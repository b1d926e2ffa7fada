// The canvas's tools as the window shows them, in their order.
#pragma once

#include "sketch/app/sketch_canvas.h"

#include <QString>

#include <vector>

struct ToolEntry {
    Tool tool = Tool::pen;
    const char* name = ""; // of its action: "toolPen"
    const char* icon = "";
    const char* key = "";
    QString text; // "&Pen"
    QString hint; // what one does with it
};

std::vector<ToolEntry> toolEntries();
