// The bytes that go back to a client, well-mannered or not.
//
// Shapes: pieces, each of which is sent on its own; only as much as one piece is in memory beside the answer.
#pragma once

#include "tools/peer/fault.h"

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

namespace vnt::peer {

class Outgoing {
public:
    // What fault makes of the answer's line, which is given without its line feed. Faults that send nothing
    // have no piece.
    Outgoing(Fault fault, const std::string& answer);

    // The next piece, valid until the next call; empty when there is none.
    std::string_view next();

    // To be waited between two pieces.
    std::chrono::nanoseconds pause() const;

private:
    std::string_view next_of_huge();

    Fault fault_;
    std::string bytes_;     // of all pieces; for the huge line, of the last one
    std::size_t taken_ = 0; // bytes handed out; for the huge line, pieces
};

} // namespace vnt::peer
