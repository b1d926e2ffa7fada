#include "tools/peer/help_text.h"

#include "tools/peer/fault.h"

namespace vnt::peer {
namespace {

constexpr std::size_t kNameColumns = 24;

const char* const kUsage =
    R"(usage: vant-peer --answer FILE [OPTION]...
       vant-peer --fault NAME [OPTION]...

The sketch application without a screen. Waits on 127.0.0.1 for a client,
reads its request, which is one line, and answers with one line, or misbehaves
on demand. Prints "listening on 127.0.0.1:PORT" when it is ready. Reads
nothing from standard input.

  --answer FILE         answer with this file, which holds one line
  --join                make one line of an answer file of many: takes out the
                        line breaks and the indentation between elements
  --save-request FILE   write each request here as soon as it is complete,
                        before it is answered: whole or not at all, with its
                        line feed; the newest replaces the one before
  --port N              listen on this port (default 4910; 0 takes a free one)
  --exchanges N         serve N clients, one after the other (default 1;
                        0 serves until it is stopped)
  --fault NAME          misbehave, as below
  --timeout SECONDS     end the whole command after this time (default: never)
  --help                print this
  --version             print the version

Faults:
)";

const char* const kRest = R"(
What a client sends behind its request is not used, only told. A request has
room for 16 MiB. After the answer the client has 10 seconds to close.

Exit status:
  0  all exchanges done, or stopped by SIGINT or SIGTERM. The answer was sent;
     whether the client liked it is not known here
  1  a file or the port failed, or a client left too early: before its request
     was complete, or before it had taken the whole answer of no fault. The
     clients after it are still served
  2  wrong usage
  4  the time was up

Examples:
  vant-peer --answer figure.xml
  vant-peer --answer drawing.xml --join --save-request request.xml
  vant-peer --port 0 --exchanges 0 --answer figure.xml
  vant-peer --fault close-mid-line --answer figure.xml --timeout 30
)";

std::string fault_lines()
{
    std::string lines;
    for (const FaultEntry& entry : fault_entries()) {
        std::string line = std::string("  ") + entry.name;
        line.resize(kNameColumns, ' ');
        for (const char c : std::string(entry.effect))
            line += c == '\n' ? "\n" + std::string(kNameColumns, ' ') : std::string(1, c);
        lines += line + "\n";
    }
    return lines;
}

} // namespace

std::string help_text() { return kUsage + fault_lines() + kRest; }

std::string version_text() { return "vant-peer " VNT_PROJECT_VERSION "\n"; }

} // namespace vnt::peer
