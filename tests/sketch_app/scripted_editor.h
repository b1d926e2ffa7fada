// An editor at its end of the link, which does what a test says: also what no editor would.
#pragma once

#include "tests/sketch_app/event_loop.h"
#include "tests/support/scripted_peer.h"

#include <fcntl.h>

#include <stdexcept>
#include <string>

namespace sketch_app_test {

// A window of so many pixels, each a point, at (0, 22), and a grid of 200 points in 4 subdivisions.
inline std::string requestLine(int width = 1024)
{
    return R"(<?xml version="1.0" encoding="UTF-8" standalone="no"?><vant><viewport_information height="768" )"
           R"(width=")" +
           std::to_string(width) +
           R"(" x="0" y="22"/><model_space_information><viewport_space_to_model_space_mapping_matrix m00="1" )"
           R"(m01="0" m02="0" m03="0" m10="0" m11="-1" m12="0" m13="768" m20="0" m21="0" m22="1" m23="0" )"
           R"(m30="0" m31="0" m32="0" m33="1"/><snapping_information>)"
           R"(<unit_grid_space_to_model_space_mapping_matrix m00="50" m01="0" m02="0" m03="0" m10="0" )"
           R"(m11="-50" m12="0" m13="0" m20="0" m21="0" m22="50" m23="0" m30="0" m31="0" m32="0" m33="1"/>)"
           R"(<derivational_scale_factor>4</derivational_scale_factor></snapping_information>)"
           "</model_space_information></vant>\n";
}

constexpr const char* kEmptyFigure = "<vant></vant>\n";

class ScriptedEditor {
public:
    // Connects.
    explicit ScriptedEditor(quint16 port) : socket_(::socket(AF_INET, SOCK_STREAM, 0))
    {
        const sockaddr_in address = support::loopback(port);
        if (::connect(socket_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
            throw std::runtime_error("nobody takes the connection");
        fcntl(socket_.get(), F_SETFL, O_NONBLOCK);
    }

    int socket() const { return socket_.get(); }

    // False when the connection ends before all of it is sent.
    bool send(const std::string& bytes)
    {
        std::size_t sent = 0;
        const bool isOver = runUntil([&] {
            const ssize_t count = ::send(socket(), bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
            if (count < 0)
                return errno != EAGAIN;
            sent += static_cast<std::size_t>(count);
            return sent == bytes.size();
        });
        if (!isOver)
            throw std::runtime_error("the link takes no bytes");
        return sent == bytes.size();
    }

    // Each piece when the one before has been taken.
    bool sendInPieces(const std::string& bytes, std::size_t size)
    {
        for (std::size_t sent = 0; sent < bytes.size(); sent += size) {
            if (!send(bytes.substr(sent, size)))
                return false;
            QCoreApplication::processEvents();
        }
        return true;
    }

    void endSending() { ::shutdown(socket(), SHUT_WR); }
    void close() { socket_.reset(-1); }

    void reset()
    {
        const linger at_once{1, 0};
        setsockopt(socket(), SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
        close();
    }

    // What has come so far.
    const std::string& received()
    {
        char buffer[65536];
        ssize_t count = 0;
        while ((count = ::recv(socket(), buffer, sizeof buffer, 0)) > 0)
            received_.append(buffer, static_cast<std::size_t>(count));
        isAtEnd_ = isAtEnd_ || count == 0;
        isReset_ = isReset_ || (count < 0 && errno != EAGAIN);
        return received_;
    }

    bool isOver() { return received(), isAtEnd_ || isReset_; }
    bool isReset() { return received(), isReset_; }

    // All that comes until the link ends the connection, which it must.
    std::string receivedToItsEnd()
    {
        if (!runUntil([this] { return isOver(); }))
            return received_ + "[and no end]";
        return received_ + (isReset_ ? "[reset]" : "");
    }

private:
    support::Descriptor socket_;
    std::string received_;
    bool isAtEnd_ = false;
    bool isReset_ = false;
};

} // namespace sketch_app_test
