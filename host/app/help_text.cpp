#include "host/app/help_text.h"

namespace vnt::host {
namespace {

const char* const kProgram =
    R"(usage: vant-host run ARTWORK.svg -o OUT.svg [OPTION]...
       vant-host draw ANSWER.xml -o OUT.svg [OPTION]...
       vant-host place ARTWORK.svg -o OUT.svg [--art FILE]
       vant-host install [--user]
       vant-host COMMAND --help

Runs the plug-in "Start VANT" over SVG documents, and within Inkscape.

  run       show the view of a document to the sketch application, wait for the
            figure that is drawn there, and put it into the current layer
  draw      draw a recorded answer of the sketch application, without it
  place     put a sketch that is kept into a document
  install   put the commands of Extensions > View Utilities into Inkscape
  uninstall take them away again
  extension, agent
            what Inkscape runs
  help      print this, or the help of a command

Exit status:
  0  done
  1  a file, the plug-in or the machine failed
  2  wrong usage
  3  the plug-in showed an alert; its texts stand on standard error
  4  the sketch application closed without an answer, or the time was up
In all cases but 0 no file of -o is written or changed.

Examples:
  vant-host run drawing.svg -o drawing.svg --launch vant-sketch
  vant-host draw answer.xml -o figure.svg
)";

const char* const kRun =
    R"(usage: vant-host run ARTWORK.svg -o OUT.svg [OPTION]...

Opens the document, loads the plug-in, chooses its menu item "Start VANT", and
saves the document with the new paths in its current layer. The sketch
application has to listen on 127.0.0.1:4910.

  -o, --output FILE     write the document here, whole or not at all; may be the
                        artwork itself
  --plugin FILE         another plug-in than the one beside this program
  --trace FILE          write each call that the plug-in makes of the host, one
                        JSON object a line
  --art FILE            write the new paths by themselves as well, for vant-host
                        place; not made when nothing was drawn. Without -o no
                        document is written
  --launch COMMAND      start the sketch application with this command when
                        nothing listens on the port, and wait until it does
  --timeout SECONDS     end the whole command after this time (default: never)
  --memory MIB          let the command take this much memory beyond its start
                        (default: half of the machine's, 4096 at most)
  --view X,Y,WIDTH,HEIGHT
                        where the window is on the screen, in pixels
  --zoom Z              pixels of the screen for a pixel of the page
  --center X,Y          the point of the page in the middle of the window, in
                        pixels from its top left corner
  --grid SPACING,SUBDIVISIONS
                        a grid to snap to: points, and parts of a step
  --no-grid             no grid, whatever the document says
  --strict              end at the first wrong call of a host service, and say
                        which side erred
  --help, --version     print this, or the version

What of the view is not given comes from the document.

Examples:
  vant-host run drawing.svg -o drawing.svg
  vant-host run drawing.svg -o out.svg --launch vant-sketch --timeout 600
  vant-peer --answer figure.xml & vant-host run drawing.svg -o out.svg
)";

const char* const kDraw =
    R"(usage: vant-host draw ANSWER.xml -o OUT.svg [OPTION]...

Draws a recorded answer of the sketch application as the plug-in does: the same
reading, the same curves, the same paths. Nothing is sent anywhere.

  -o, --output FILE     write the document here, whole or not at all
  --into ARTWORK.svg    draw into this document's current layer (default: into a
                        new document, the figure's box with a margin); may be
                        the file of -o
  --tolerance T         cut and join curves to this many points (default 1); a
                        host takes the size of a pixel of its view. At 0 or
                        below, arcs are cut for ever: see --timeout
  --join                make one line of an answer file of many: takes out the
                        line breaks and the indentation between elements
  --trace FILE          write each call that the plug-in makes of the host, one
                        JSON object a line
  --timeout SECONDS     end the whole command after this time (default: never)
  --memory MIB          let the command take this much memory beyond its start
                        (default: half of the machine's, 4096 at most)
  --strict              end at the first wrong call of a host service, and say
                        which side erred
  --help, --version     print this, or the version

Examples:
  vant-host draw answer.xml -o figure.svg
  vant-host draw pretty.xml --join --into drawing.svg -o drawing.svg
)";

const char* const kPlace =
    R"(usage: vant-host place ARTWORK.svg -o OUT.svg [--art FILE]
       vant-host place --list

Puts a sketch that is kept into a document: the newest one that began in this
document, else the newest of all. It goes into the layer that it was drawn for,
or into the current one. A sketch is kept when the editor could not take it.

  -o, --output FILE     write the document here, whole or not at all; may be the
                        artwork itself. Without it Inkscape is asking, and gets
                        the document on standard output
  --art FILE            this sketch, which stays where it is
  --list                list what is kept
  --help                print this

Examples:
  vant-host place --list
  vant-host place drawing.svg -o drawing.svg
)";

const char* const kExtension =
    R"(usage: vant-host extension [OPTION]... FILE

"Start VANT" as Inkscape runs it, with the document in FILE. Prints nothing and
leaves a process behind, which waits for the sketch and has Inkscape place it.
In a batch run, and where there is no session bus, it waits itself and prints
the document with the sketch in it.

  --wait                wait in any case
  --timeout SECONDS     when it waits, wait this long (default: for ever; in a
                        batch run 600, or what VANT_TIMEOUT says)
  --launch COMMAND      start the sketch application with this command when none
                        listens (default: vant-sketch, where it is installed)
  --plugin FILE         another plug-in than the one beside this program
  --id OBJECT           a selected object; not used
  --help                print this

Messages for the user appear in Inkscape. All of them are in the log,
~/.local/state/vant/vant-host.log.
)";

const char* const kInstall =
    R"(usage: vant-host install [--user]
       vant-host uninstall [--user]

Puts the commands "Start VANT" and "Place VANT sketch" into Inkscape's menu
Extensions > View Utilities, or takes them away again, and says where.

  --user                for this user alone; else for all users, as root
  --help                print this
)";

} // namespace

std::string help_text(const std::string& command)
{
    if (command == "run")
        return kRun;
    if (command == "draw")
        return kDraw;
    if (command == "place")
        return kPlace;
    if (command == "extension" || command == "agent")
        return kExtension;
    return command == "install" || command == "uninstall" ? kInstall : kProgram;
}

std::string version_text() { return "vant-host " VNT_PROJECT_VERSION "\n"; }

} // namespace vnt::host
