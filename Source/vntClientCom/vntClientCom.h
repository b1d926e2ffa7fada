// One exchange with the sketch application: the CAD information document out, the figure document back.
//
// Shapes: both documents are one line each; docs/protocol.md has their grammar and examples. Exchange types 0
//         and 1 carry the records' own text and byte forms instead. Numbers do not depend on the process's
//         locale.
// Errors: null, 0 or false; what is wrong with an answer goes to standard error, one line.
#pragma once

#include "Source/geometry/primitives.h"
#include "Source/geometry/records.h"
#include "Source/markup/parser.h"
#include "Source/markup/tagrec.h"
#include "Source/vntClientCom/BaseCom.h"

#include <cstdint>
#include <string>

namespace vnt {

enum ComType : std::int32_t {
    COM_TEXT = 0,
    COM_BINARY = 1,
    COM_XML = 2, // and every other value
};

class ClientCom : public BaseCom {
public:
    ClientCom() = default;
    ~ClientCom() override = default;

    // The whole exchange: connect, send the CAD information, wait for the answer and read it. Null when there
    // is no connection, or the answer is refused; an answer without strokes is a figure without strokes.
    //
    // Owner: the figure stays the link's, and valid until its next exchange or its end.
    FigPrimInfo* summonVANT(const ViewportInfo& viewport, const ModelSpaceInfo& modelspace, ComType type,
                            unsigned int port, const char* address);

    // Sends the CAD information as com_type says. Always true: what cannot be sent shows when the answer is
    // read.
    bool send_CAD_info(const ViewportInfo& viewport, const ModelSpaceInfo& modelspace);

    // Reads the answer into the figure and closes the connection; 1 when it was read. A refused document
    // leaves the connection open and the figure as it was. Deliberate spelling.
    //
    // Deliberate: of type 0 only the first line is read, though a figure's text form spans several.
    // Kept by ClientComText.KeepsReadingOneLineOfAFigure. Depends on it: nothing.
    int recieve_figure_primitive_info();

    // Reads an answer's line, without its line feed, into the figure, as if it had just come; false when it is
    // refused, and the figure then as it was.
    bool read_answer(std::string line);

    // Whether the document is whole and well-formed; else one line on standard error says what is wrong.
    //
    // Deliberate: "invalid date" is spelled so, the numbers are constants of the interface, and the third
    // test repeats the second. Kept by ClientComCheck.KeepsTheProblemLines. Depends on it: whoever reads the
    // log.
    bool checkData(const parser& p) const;

    // What the elements say. The caller owns the results.
    StrokeInfo* parseStroke(const tagrec& shape) const;
    PrimL* parseLine(const tagrec& node) const;
    PrimC* parseCircle(const tagrec& node) const;
    PrimE* parseEllipse(const tagrec& node) const;
    PrimF* parseFreeCurve(const tagrec& node) const;
    Point parsePoint(const tagrec& node) const;
    Matrix parseMatrix(const tagrec& node) const;

    // As number_of_text.
    double toDouble(const std::string& text) const;

protected:
    FigPrimInfo figure;
    ComType com_type = COM_TEXT;
};

} // namespace vnt
