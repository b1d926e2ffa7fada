// What lets everybody in as a message bus does, and never answers a message then.
#pragma once

#include "tests/support/temporary_folder.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <stdexcept>
#include <string>
#include <thread>

#include <cstring>

namespace editor_test {

class SilentBus {
public:
    SilentBus() : listener_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, folder_.path("bus").c_str(), sizeof address.sun_path - 1);
        const void* const bytes = &address;
        if (bind(listener_, static_cast<const sockaddr*>(bytes), sizeof address) != 0 ||
            listen(listener_, 1) != 0)
            throw std::runtime_error("no socket of the test");
        thread_ = std::thread([this] { serve(); });
    }
    SilentBus(const SilentBus&) = delete;
    SilentBus& operator=(const SilentBus&) = delete;
    // After the one who connected has gone.
    ~SilentBus()
    {
        thread_.join();
        close(listener_);
    }

    std::string address() const { return "unix:path=" + folder_.path("bus"); }
    // Whether somebody was let in, once nobody is connected any more.
    bool has_let_in()
    {
        thread_.join();
        thread_ = std::thread([] {});
        return has_let_in_;
    }

private:
    void serve()
    {
        const int connection = accept(listener_, nullptr, nullptr);
        std::string said;
        char bytes[4096];
        ssize_t size = 0;
        while ((size = read(connection, bytes, sizeof bytes)) > 0) {
            if (has_let_in_)
                continue;
            said.append(bytes, static_cast<std::size_t>(size));
            for (std::size_t end = 0; (end = said.find("\r\n")) != said.npos; said.erase(0, end + 2))
                answer(connection, said.substr(0, end));
        }
        close(connection);
    }
    void answer(int connection, const std::string& line)
    {
        std::string reply;
        if (line.find("AUTH EXTERNAL ") != line.npos)
            reply = "OK 0123456789abcdef0123456789abcdef\r\n";
        else if (line.find("AUTH") != line.npos)
            reply = "REJECTED EXTERNAL\r\n";
        else if (line == "BEGIN")
            has_let_in_ = true;
        else
            reply = "ERROR\r\n";
        send(connection, reply.data(), reply.size(), MSG_NOSIGNAL);
    }

    support::TemporaryFolder folder_;
    int listener_;
    bool has_let_in_ = false;
    std::thread thread_;
};

} // namespace editor_test
