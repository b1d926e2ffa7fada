// An SVG document as artwork that path art can be added to.
//
// Space:  artwork has its y axis up and its origin at a crossing of the document's grid, else at the page's top
//         left corner. Nothing outside this unit knows of viewBoxes or layer transforms. User space is what
//         coordinates in the outermost element mean: what is drawn keeps them when the page or the grid changes.
// Units:  points.
// Shapes: a document is text, and stays it: what is written back are its own bytes, with new ones between them.
#pragma once

#include "host/kit/affine.h"
#include "host/kit/path_art.h"
#include "host/kit/result.h"
#include "host/kit/svg_grid.h"
#include "host/kit/svg_view.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vnt::host {

struct DrawingLayer;

// A document's text with new paths in it.
struct DrawnText {
    std::string text;
    // The id of each path's element; empty for a path that has none.
    std::vector<std::string> ids;
    // Where the paths are, if not in the layer that was asked for, and why paths have no element; a sentence each,
    // without an end stop. Paths are counted from 0, as in the trace.
    std::vector<std::string> notes;
};

// Where new paths go, when that was settled with an earlier state of the document.
struct Placement {
    // The layer; where nothing can be drawn into what has this id, the current layer.
    std::optional<std::string> layer_id;
    // Instead of the document's own.
    std::optional<Affine> artwork_to_user;
};

class SvgDocument {
public:
    // Reads a document and finds the layer that new art goes to, so that what cannot be drawn into is known
    // before anything is drawn.
    //
    // name:   what sentences call the document, as its file name.
    // Errors: bytes that are no well-formed XML in UTF-8 or another extension of ASCII; that are not SVG; a
    //         layer that is flattened by its transform.
    static Result<SvgDocument> read(const std::string& name, std::string bytes);

    SvgDocument(SvgDocument&&) noexcept;
    SvgDocument& operator=(SvgDocument&&) noexcept;
    ~SvgDocument();

    // The bytes that were read.
    const std::string& bytes() const;

    // What people should know of how the document was understood; a sentence each, without an end stop.
    const std::vector<std::string>& notes() const;

    const GridSettings& grid() const;
    DocumentView view(const ViewOptions& options = {}) const;

    // How new art will be written: layer space is what coordinates in the current layer mean.
    const Affine& artwork_to_layer() const;

    // The map of Placement, as it is now.
    Affine artwork_to_user() const;

    // Of the current layer and the outermost element; empty when they have none.
    std::string layer_id() const;
    std::string root_id() const;

    // Those of all elements that have one, in document order.
    std::vector<std::string> ids() const;

    // The document with each path as a new element on top of its layer: a thin black line of 1 pt, not
    // filled. A path without segments, or with a number that is not finite, is left out.
    //
    // Shapes: without any element to add the text is bytes(), to the last one.
    // Errors: the result is read again before it is handed out, and compared with this document; a difference
    //         would be a defect of this program, and no text is handed out then.
    //         A map of the placement that flattens the artwork.
    Result<DrawnText> with_paths(const std::vector<PathArt>& paths, const Placement& placement = {}) const;

private:
    struct Parts;
    struct LayerMaps;
    class Drawer;
    explicit SvgDocument(std::unique_ptr<Parts> parts);
    std::optional<LayerMaps> try_maps(const DrawingLayer& layer,
                                      const std::optional<Affine>& artwork_to_user) const;

    std::unique_ptr<Parts> parts_;
};

} // namespace vnt::host
