// A link that listens, and all that it says, in order.
#pragma once

#include "sketch/app/link_server.h"
#include "tests/sketch_app/scripted_editor.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace sketch_app_test {

using Said = std::vector<std::string>;

inline const char* nameOf(LinkServer::State state)
{
    switch (state) {
    case LinkServer::State::closed: return "closed";
    case LinkServer::State::idle: return "idle";
    case LinkServer::State::editorWaiting: return "waiting";
    case LinkServer::State::sent: return "sent";
    case LinkServer::State::editorGone: return "gone";
    }
    return "?";
}

class HeardLink {
public:
    explicit HeardLink(quint16 port = 0) // 0: any that is free
    {
        needApplication();
        server.setRequestTime(kLimitMilliseconds);
        QObject::connect(&server, &LinkServer::stateChanged, &server,
                         [this] { say(nameOf(server.state())); });
        QObject::connect(&server, &LinkServer::othersWaitingChanged, &server,
                         [this] { say("others " + std::to_string(server.othersWaiting())); });
        QObject::connect(&server, &LinkServer::requested, &server,
                         [this](const vnt::sketch::Request& request) {
                             say("requested " + std::to_string(request.window.width));
                         });
        QObject::connect(&server, &LinkServer::editorLeft, &server, [this] { say("left"); });
        QObject::connect(&server, &LinkServer::answered, &server, [this] { say("answered"); });
        QObject::connect(&server, &LinkServer::logged, &server,
                         [this](const QString& line) { log.push_back(line.toStdString()); });
        if (!server.listen(port))
            throw std::runtime_error(server.problem().toStdString());
        said.clear();
    }

    // True when all this is said, in this order, since the last time; nothing else may be said.
    testing::AssertionResult says(const Said& expected)
    {
        runUntil([&] { return said.size() >= expected.size(); });
        runDueEvents();
        const Said heard = std::exchange(said, {});
        if (heard == expected)
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << "it said " << testing::PrintToString(heard);
    }

    bool hasLogged(const std::string& part)
    {
        return runUntil([&] {
            for (const std::string& line : log) {
                if (line.find(part) != std::string::npos)
                    return true;
            }
            return false;
        });
    }

    Said said;
    std::vector<std::string> log;
    LinkServer server; // last: it speaks to its end

private:
    void say(const std::string& what) { said.push_back(what); }
};

// An editor that has asked, of which the link has said this. Its window is so many pixels wide.
class AskingEditor : public ScriptedEditor {
public:
    AskingEditor(HeardLink& link, int width, const Said& expected) : ScriptedEditor(link.server.port())
    {
        send(requestLine(width));
        const testing::AssertionResult result = link.says(expected);
        if (!result)
            throw std::runtime_error(result.message());
    }
    // Whose turn it is at once.
    explicit AskingEditor(HeardLink& link, int width = 1024)
        : AskingEditor(link, width, {"waiting", "requested " + std::to_string(width)})
    {
    }
};

} // namespace sketch_app_test
