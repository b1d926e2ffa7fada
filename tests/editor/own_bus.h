// A message bus for one test. Whoever calls the editor in a way that starts it starts a program that fails.
#pragma once

#include "tests/editor/running_program.h"
#include "tests/support/temporary_folder.h"

#include <string>

namespace editor_test {

class OwnBus {
public:
    OwnBus() : daemon_({"dbus-daemon", "--config-file=" + configuration(), "--nofork", "--print-address=1"})
    {
        address_ = daemon_.line();
    }

    const std::string& address() const { return address_; }
    // Whose socket is named bus, as a user's runtime folder has it.
    std::string folder() const { return folder_.path(""); }
    RunningProgram& daemon() { return daemon_; }

private:
    std::string configuration() const
    {
        folder_.file("editor.service", "[D-BUS Service]\nName=org.inkscape.Inkscape\nExec=/bin/false\n");
        return folder_.file("bus.conf",
                            "<busconfig><type>session</type><listen>unix:path=" + folder_.path("bus") +
                                "</listen><auth>EXTERNAL</auth><servicedir>" + folder_.path("") +
                                "</servicedir><policy context='default'><allow send_destination='*'/>"
                                "<allow receive_sender='*'/><allow own='*'/></policy></busconfig>");
    }

    support::TemporaryFolder folder_;
    RunningProgram daemon_;
    std::string address_;
};

} // namespace editor_test
