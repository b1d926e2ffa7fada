// A sketch application whose moves a test makes: it takes one request, and answers when it is told to.
//
// Owner: the plug-in's port; a test of it holds RESOURCE_LOCK port_4910.
#pragma once

#include "tests/editor/real/process.h"
#include "tests/plugin/fixed_port_peer.h"
#include "tests/support/descriptors.h"

#include <string>

namespace real_editor_test {

class SketchApplication {
public:
    bool is_asked() const { return listener_.somebody_waits(); }

    // Waits for the plug-in, and takes its request.
    const std::string& take_request()
    {
        wait_until("the plug-in's request", [this] { return is_asked(); });
        connection_ = listener_.accept_one();
        request_ = support::receive_line(connection_.get());
        return request_;
    }

    void send(const std::string& answer)
    {
        support::send_all(connection_.get(), answer + "\n");
        connection_.reset(-1);
    }
    // As one that is not willing: the request is never read.
    void refuse()
    {
        wait_until("the plug-in", [this] { return is_asked(); });
        connection_ = listener_.accept_one();
        for (char last = 0; last != '\n';) { // until all of it is there
            std::string waiting(kMostBytes, '\0');
            const ssize_t size = recv(connection_.get(), waiting.data(), waiting.size(), MSG_PEEK);
            if (size <= 0)
                throw std::runtime_error("the plug-in has gone");
            last = waiting[static_cast<std::size_t>(size) - 1];
        }
        plugin_tests::reset_connection(connection_);
    }

private:
    static constexpr std::size_t kMostBytes = 65536; // of a request

    plugin_tests::FixedPortListener listener_;
    support::Descriptor connection_;
    std::string request_;
};

} // namespace real_editor_test
