// Sketches in files, as the answers that an editor would get for them.
//
// Space:  what is read comes onto the sheet that it is read for, where it lies in that sheet's artwork.
// Errors: a sentence for people: what failed, on which file, what is unharmed. Files are written whole or not
//         at all.
#pragma once

#include "sketch/core/answer.h"

#include <QByteArray>
#include <QString>

#include <variant>
#include <vector>

struct FileProblem {
    QString sentence;
};

// Strokes without ink, with ids from firstId on. A document of many lines is read as if it were one.
std::variant<std::vector<vnt::sketch::Stroke>, FileProblem>
readSketch(const QString& file, const vnt::sketch::Sheet& sheet, vnt::sketch::StrokeId firstId = 1);

// An empty sentence when all went well, as of the next.
FileProblem writeSketch(const QString& file, const std::vector<vnt::sketch::StrokePtr>& strokes,
                        const vnt::sketch::Sheet& sheet, const vnt::sketch::CubicsOf& cubics = {});
FileProblem writeWhole(const QString& file, const QByteArray& bytes);
