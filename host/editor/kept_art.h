// Path art that waits for its document, as an SVG file that any viewer opens.
//
// Shapes: a new document (svg_new_document.h) with the paths in it, a user unit is a point of the artwork with y turned
//         down. Its outermost element has attributes of the namespace urn:vant:kept-art, which say what it is for.
//         Names and paths of files stand in them with % and two digits for what is not plain ASCII.
// Errors: a sentence, in the form of result.h.
#pragma once

#include "host/editor/document_mark.h"
#include "host/kit/affine.h"
#include "host/kit/path_art.h"
#include "host/kit/result.h"

#include <string>
#include <vector>

namespace vnt::host {

struct KeptArt {
    std::string id;   // make_art_id(); names the file
    std::string made; // local_time_now()
    DocumentMark document;
    std::string layer_id; // that was current at the start; may be empty
    Affine
        artwork_to_user; // the document's outermost user units at the start: what is drawn keeps these coordinates
                         // when a page is resized, or a grid moves
    std::vector<PathArt> paths;
};

// A name that no other art has: the time in UTC to the millisecond, the process, a counter. In the order of time.
std::string make_art_id();

// A path that has no segment, or a number that is not finite, is never drawn and is left out.
//
// Errors: no path is left.
Result<std::string> svg_of(const KeptArt& art);

// What svg_of wrote.
//
// name:     what sentences call the file.
// Accuracy: every number that is drawn is the same: of the paths in single precision, of the map in double. The first
//           segment's in and the last one's out are on their anchors, as nothing draws them.
// Errors:   no kept art, one of a later version, one that was changed by another program.
Result<KeptArt> read_kept_art(const std::string& name, std::string bytes);

} // namespace vnt::host
