// A host for tests of the plug-in: offers every service of host/api, writes each call down as one line, and
// fails where a test asks it to.
//
// Shapes: a line is the call's name and what it was given: "NewArt 2 3 group". Comparisons of names stand in a
//         list of their own. "SetFrontProcess" says so when it comes while a link is open.
// Errors: a failing service returns its code and writes nothing; a throwing one throws std::bad_alloc.
#pragma once

#include "host/api/document_view_suite.h"
#include "host/api/menu_suite.h"
#include "host/api/path_suite.h"
#include "host/api/plugin_entry.h"
#include "host/api/strings.h"
#include "host/api/windows.h"

#include <deque>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

// A string of the host, in UTF-8; real units are counted as they are in UTF-16.
struct HostString {
    std::string utf8;
    bool converts = true;
};

struct HostWindow {
    std::string name;
    HostString title;
    bool has_title = true; // else there is a window without a title string
    bool collapsed = false;
    Rect bounds{0, 0, 0, 0};
};

struct HostArt {
    std::string name;
    std::vector<AIPathSegment> segments;
};

struct RecordedAlert {
    std::string text;
    std::string explanation;
    bool link_open; // while it was shown: whether the link that closes descriptor 0 was still there
};

namespace plugin_tests {

struct Fault {
    HostError code = 0;  // returned, with nothing written
    bool throws = false; // instead
    int at_call = 0;     // which call of that name, counted from 1; 0: every one
};

class RecordingHost {
public:
    // The host that the services ask from now on.
    RecordingHost();
    RecordingHost(const RecordingHost&) = delete;
    RecordingHost& operator=(const RecordingHost&) = delete;
    ~RecordingHost();

    HostMessage message();

    // What the host has.
    std::deque<HostWindow> windows; // front to back
    bool page_tiling = false;
    HostError page_tiling_code = 0; // returned beside the flag, which is written all the same
    float origin_h = 0;             // the artwork point of view point (0, 0)
    float origin_v = 0;
    float points_per_pixel = 1;             // artwork y runs up, view y down
    std::optional<AIRealPoint> pixel_right; // instead: the way on the artwork for a view point to the right,
    std::optional<AIRealPoint> pixel_down;  // and for one down, of a view that is turned or stretched
    bool grid_shown = false;
    bool grid_snaps = false;
    float grid_spacing = 72;
    int grid_subdivisions = 8;
    std::set<std::string> missing_suites; // acquired with kHostNoSuite, their pointer left as it was
    std::set<std::string> null_suites;    // acquired with 0 and a null pointer
    std::map<std::string, Fault> faults;  // by the call's name

    // What came of it.
    std::vector<std::string> calls;
    std::vector<std::string> comparisons;
    std::vector<RecordedAlert> alerts;
    std::deque<HostArt> paths;
    std::vector<std::string> menu_items; // their texts
    int texts_alive = 0;                 // of the string suite, not yet given back

    // A window titled "Artwork" of that port, in front of those that there are.
    HostWindow& open_artwork(Rect bounds);

    // For the services.
    void write(const std::string& line);
    HostError outcome(const std::string& name); // counts the call; throws for a throwing fault
    std::map<std::string, int> counts;
};

// The suites' tables, to compare with.
const AIDocumentViewSuite& document_view_table();
AIMenuItemHandle menu_item_handle();

// A number as the lines show it.
std::string text_of(float number);
std::string text_of(const AIRealPoint& point);
std::string text_of(const AIPathSegment& segment);

} // namespace plugin_tests
