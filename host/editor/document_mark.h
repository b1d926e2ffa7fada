// What tells one document of the editor from another.
//
// Shapes: the editor numbers the elements that have no id as it goes, over all documents of one process: the first
//         new document's outermost element is svg5, the next one's svg16, and so it is in each process. A file keeps
//         the ids that it was saved with. So an id of a document that was never saved proves much within its process
//         and little beyond it, and one that every new document has proves nothing.
#pragma once

#include "host/kit/svg_document.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vnt::host {

struct DocumentMark {
    std::string path;               // of the file; empty when it was never saved
    std::string editor;             // which process: editor_name(); empty when that is not known
    std::string root_id;            // of the outermost element; may be empty
    std::vector<std::uint64_t> ids; // hashes of the distinctive ids of its elements, ascending, each once
    std::int64_t file_time =
        0; // when the file was last written, in ns since 1970; 0, long ago, when not known
    std::int64_t taken_at = 0; // when the mark was, likewise
    bool operator==(const DocumentMark&) const = default;
};

// FNV-1a in 64 bits, of the bytes.
std::uint64_t hash_of(std::string_view id);

// Whether an id is none that every new document of the editor has, or every document that was drawn into.
bool is_distinctive(std::string_view id);

// The mark of a document now, with the time of the file at path.
DocumentMark mark_of(const SvgDocument& document, const std::string& path, const std::string& editor);

// Leaves the mark with no more than this many of its ids: the smallest hashes, which is as good as drawing lots.
constexpr std::size_t kMostIdsKept = 1000;
void keep_some_ids(DocumentMark& mark, std::size_t most = kMostIdsKept);

enum class Sameness { same, other, doubtful };

// Whether the document of a mark now is the one of the mark at the start.
//
// start: may have lost some of its ids.
// now:   has all of them.
//
// By their paths, start and now; ids are those of the start, and they suffice from three on within a process, from
// eight on beyond it:
//   the same path       the same
//   and in all else     another, when the outermost elements have different ids
//   a path, another     the same, when nearly all ids are there and the file was written since the start: it was saved
//                       under that name. Not written since, it may be a copy: doubtful. Written, but too few ids to
//                       tell: doubtful. Else another.
//   a path, none        another
//   none, a path        another, when the file was not written since; else as none, none, but with too few ids doubtful
//   none, none          the same, when half of the ids are there. With less: within a process doubtful; beyond it
//                       doubtful with a tenth, else another. With too few ids to tell: the same within a process, if
//                       the editor numbered the outermost element; else doubtful.
//
// Accuracy: new documents of one template that was saved with ids, next to nothing drawn in either, are taken for the
//           same within a process.
Sameness compare(const DocumentMark& start, const DocumentMark& now);

} // namespace vnt::host
