// The plug-in: answers the host's messages, adds the menu item "Start VANT", and runs its command, which shows
// the view to the sketch application and draws the figure that comes back.
//
// Space:  viewport space is the window's pixels, y down; model space is the artwork, y up. The figure comes in
//         model space, and its z is dropped.
// Units:  model space in points.
// When:   while the host waits for the answer to a message, on its main thread. Nothing is kept between two
//         uses of the command.
// Errors: the host's codes, 0 for success; most are not looked at. A suite that is null is not called: the
//         menu is then not added, and the command ends as by an exception. A failed command shows an alert.
#pragma once

#include "Source/geometry/primitives.h"
#include "Source/geometry/records.h"
#include "Source/plugin/host_services.h"

#include <list>

// The entry; no other symbol leaves the bundle. Throws nothing but what the host throws while it shows the alert
// of an exception, and std::bad_alloc before the first message is answered.
extern "C" HostError PluginMain(const char* caller, const char* selector, HostMessage* message);

class vantPlugin {
public:
    AIMenuItemHandle menu_item = nullptr; // of "Start VANT"; the host writes it
    AIDocumentViewSuite* document_view_suite = nullptr;
    AILayerSuite* layer_suite = nullptr;
    AIGridSuite* grid_suite = nullptr;
    AIArtSuite* art_suite = nullptr;
    AIPathSuite* path_suite = nullptr;
    AIDocumentSuite* document_suite = nullptr; // no command uses it

    static vantPlugin* inst; // null until first use

    // The one instance, made at the first call and never destroyed.
    static vantPlugin* get();

    vantPlugin() { Initialize(); }

    // Sets the suites to null, but leaves the menu item and the document suite as they are.
    void Initialize();

    // The answers to the messages. Without work: those that return 0 and nothing else.
    HostError StartupPlugin(HostMessage* message); // 0 even when the menu item could not be added
    HostError ShutdownPlugin(HostMessage* message);
    HostError AboutPlugin(HostMessage* message);
    HostError ReloadPlugin(HostMessage* message);
    HostError UnloadPlugin(HostMessage* message);

    // Acquires the suites of the fields above. A suite that the host does not have leaves its field as it was.
    //
    // Deliberate: runs before every message but "SP Access" ones, looks at no result, and nothing gives the
    // suites back. Kept by PluginMain.KeepsAcquiringTheSuitesWithEveryMessage. Depends on it: a host that
    // answers with other tables later.
    HostError AcquireSuites(HostMessage* message);

    // Adds the menu item. Returns the code of what failed; ai::Error does not leave it.
    HostError AddMenus(HostMessage* message);

    // The messages of other callers: runs the command for "AI Go" of any menu item.
    HostError HandlePluginCaller(const char* caller, const char* selector, HostMessage* message);

    // The command. Returns the code of its first query, whatever happens later.
    //
    // Deliberate: after an exception the front process is left as it is.
    // Kept by SketchCommand.KeepsTheFrontProcessAsItIsAfterAnException. Depends on it: nothing.
    //
    // Deliberate: "VANT information" here, "VANT Information" in CorrespondWithVANT.
    // Kept by SketchCommand.KeepsTwoSpellingsOfTheAlertsTitle. Depends on it: who tells the failures apart.
    HostError GoMenuItem(HostMessage* message);

    // Captures the view, runs one exchange on port 4910 of this machine, and draws the answer. Waits for the
    // sketch application without limit. The link ends with it, after the alert that there was no figure.
    void CorrespondWithVANT();

    // A modal stop alert: text in bold, explanation below it. Returns when the user has dismissed it.
    void showDialog(CFStringRef text, CFStringRef explanation);

    // The window titled "Artwork": the active one or the one behind it, or null.
    //
    // Deliberate: whether the second is taken depends on the active window's being collapsed, not on its own.
    // Kept by WindowSearch.KeepsLookingAtTheActiveWindowTwice. Depends on it: nothing.
    WindowRef getNonCollapsedFocusDocument();

    // The string as UTF-8, or null: for null, and for what does not fit.
    //
    // Owner:  the caller's, to be given to free().
    //
    // Deliberate: no byte is added for the terminator, so that a string whose every unit takes 3 bytes does not
    // fit, nor does an empty one. Kept by TitleText.KeepsNoByteForTheTerminator. Depends on it: an empty title,
    // which matches nothing.
    char* CFStringRefToCharConverter(CFStringRef string);

    // The rectangle of the artwork window's port.
    //
    // Deliberate: an edge is read as 16 bits without sign; one left of or above the main screen arrives as a
    // large number. Kept by DrawingBoard.KeepsEdgesUnsigned. Depends on it: sketch applications.
    void CreateDrawingBoard(vnt::ViewportInfo& viewport);

    // How the front view maps viewport points to the model; z scales as x does. The grid part is left unset.
    // Deliberate spelling.
    vnt::ModelSpaceInfo GetTranceformMatrix();

    // Completes the record from the document's grid. Without subdivisions the grid's step is infinite.
    //
    // Deliberate: here and in CreateAdequateGridSpace the grid starts at the model's origin, whatever the view
    // shows, and its y axis runs down. Kept by GridSpace.KeepsTheGridAtTheModelsOrigin. Depends on it: hosts,
    // which lay their artwork's origin on their grid.
    void CreateGridSpace(vnt::ModelSpaceInfo& model_space);

    // Completes the record where the document's grid is not in force: steps of 50, of 2 subdivisions.
    void CreateAdequateGridSpace(vnt::ModelSpaceInfo& model_space);

    // Makes one path art per stroke, in order. An exception leaves the paths that were made before.
    //
    // tolerance: the size of a viewport unit in the model; cuts arcs (vnt::conv_prim_to_bezier) and joins the
    //            segments of a primitive that end closer than it to the next one's start.
    void CreateStroke(const vnt::FigPrimInfo& figure, double tolerance);

    // Makes one path of a stroke's chains of anchors: anchor, control, control, anchor, ...; one chain per
    // primitive, straight lines between them.
    //
    // Deliberate: every segment is a corner, and no path is closed, even where it ends at its start.
    // Kept by PathArt.KeepsEveryPathOpenAndCornered. Depends on it: nothing.
    //
    // Deliberate: a segment's number has 16 bits and wraps to negative ones.
    // Kept by PathArt.KeepsSegmentNumbersInSixteenBits. Depends on it: hosts, which refuse those numbers.
    void CreatePathArt(const std::list<std::list<vnt::Point>>& chains);

    // Whether the points are closer than the tolerance; exactly as far apart is not near.
    static bool CheckNearPoint(const vnt::Point& a, const vnt::Point& b, double tolerance);
};
