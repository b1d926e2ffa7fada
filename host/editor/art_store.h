// The folder where art is kept until it is placed, and the note to the extension that places it.
//
// Shapes: a file ID.svg for each; placed/ has the last ones that were placed; pending is the note. The folders are made
//         when they are needed. Several processes may use them at once.
// Errors: a sentence, in the form of result.h.
#pragma once

#include "host/editor/kept_art.h"

#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace vnt::host {

// What the extension that the editor is made to run is to do.
struct Pending {
    std::string art_id; // empty: nothing to place, only something to say
    pid_t editor_pid = 0;
    std::string message;      // for the user; may be empty
    bool only_window = false; // the editor has one document open and no more
};

struct PendingSince {
    Pending pending;
    std::chrono::milliseconds age; // the largest there is when it was written in the future
};

class ArtStore {
public:
    static constexpr std::size_t kMostPlaced = 20;

    explicit ArtStore(std::string folder);

    // Writes art to a file of its own, whole or not at all, and returns its path.
    Result<std::string> keep(const KeptArt& art) const;

    // Art that is kept, by its id.
    Result<KeptArt> read(const std::string& id) const;

    struct Listing {
        std::vector<KeptArt> art;       // oldest first
        std::vector<std::string> notes; // on files that cannot be read, which stay; a sentence each
    };
    Listing list() const;

    // The ids alone, oldest first, without a look into the files.
    std::vector<std::string> ids() const;

    // Moves art that was placed to placed/, and removes the oldest there when they are too many.
    std::optional<Problem> mark_placed(const std::string& id) const;

    // Whether art of this id is kept, or was placed and is still there.
    bool has(const std::string& id) const;

    // Where art of this id is kept.
    std::string path_of(const std::string& id) const;

    std::optional<Problem> write_pending(const Pending& pending) const;

    // None when there is no note, or none that can be understood.
    std::optional<PendingSince> read_pending() const;

    // Takes the note away; of several who do it at once, one gets true.
    bool remove_pending() const;

private:
    std::string folder_;
};

} // namespace vnt::host
