// A session with everything that is seen of it written down, and a plug-in's view of its services.
#pragma once

#include "host/api/alerts.h"
#include "host/api/art_suite.h"
#include "host/api/blocks_suite.h"
#include "host/api/document_suite.h"
#include "host/api/document_view_suite.h"
#include "host/api/grid_suite.h"
#include "host/api/layer_suite.h"
#include "host/api/menu_suite.h"
#include "host/api/path_suite.h"
#include "host/api/processes.h"
#include "host/kit/session.h"
#include "host/kit/session_state.h"
#include "tests/support/temporary_folder.h"

#include <functional>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

namespace host_test {

// What a plug-in has while it answers a message: the suites, found by their names.
struct PlugIn {
    explicit PlugIn(HostMessage& given)
        : message(given),
          views(find<AIDocumentViewSuite>(kAIDocumentViewSuiteName, kAIDocumentViewSuiteVersion)),
          grids(find<AIGridSuite>(kAIGridSuiteName, kAIGridSuiteVersion)),
          arts(find<AIArtSuite>(kAIArtSuiteName, kAIArtSuiteVersion)),
          paths(find<AIPathSuite>(kAIPathSuiteName, kAIPathSuiteVersion)),
          layers(find<AILayerSuite>(kAILayerSuiteName, kAILayerSuiteVersion)),
          menus(find<AIMenuSuite>(kAIMenuSuiteName, kAIMenuSuiteVersion)),
          texts(find<AIUnicodeStringSuite>(kAIUnicodeStringSuiteName, kAIUnicodeStringSuiteVersion))
    {
        views.GetNthDocumentView(0, &view);
        layers.GetCurrentLayer(&layer);
        arts.GetFirstArtOfLayer(layer, &group);
        window = ActiveNonFloatingWindow();
    }

    // The same suites and handles, kept for another time.
    PlugIn(const PlugIn& other, HostMessage& given)
        : message(given), views(other.views), grids(other.grids), arts(other.arts), paths(other.paths),
          layers(other.layers), menus(other.menus), texts(other.texts), view(other.view), layer(other.layer),
          group(other.group), window(other.window)
    {
    }

    template <class Suite>
    const Suite& find(const char* name, std::int32_t version) const
    {
        const void* suite = nullptr;
        if (message.basic->AcquireSuite(name, version, &suite) != kHostNoError || suite == nullptr)
            throw std::runtime_error(std::string("no ") + name);
        return *static_cast<const Suite*>(suite);
    }

    AIArtHandle new_path() const
    {
        AIArtHandle path = nullptr;
        if (arts.NewArt(kPathArt, kPlaceInsideOnTop, group, &path) != kHostNoError)
            throw std::runtime_error("no path");
        return path;
    }

    HostText new_text(const std::string& bytes) const
    {
        HostText text = nullptr;
        if (texts.MakeFromBytes(bytes.data(), static_cast<std::int32_t>(bytes.size()), kHostPlatformEncoding,
                                &text) != kHostNoError)
            throw std::runtime_error("no text");
        return text;
    }

    HostMessage& message;
    const AIDocumentViewSuite& views;
    const AIGridSuite& grids;
    const AIArtSuite& arts;
    const AIPathSuite& paths;
    const AILayerSuite& layers;
    const AIMenuSuite& menus;
    const AIUnicodeStringSuite& texts;
    AIDocumentViewHandle view = nullptr;
    AILayerHandle layer = nullptr;
    AIArtHandle group = nullptr;
    WindowRef window = nullptr;
};

class OpenSession {
public:
    explicit OpenSession(bool is_traced = true)
        : trace_(is_traced ? std::get<0>(vnt::host::Trace::open(folder_.path("trace.jsonl"))) : nullptr),
          session(setup())
    {
    }

    // Runs work within a message, and returns what it returns.
    std::string during(const std::function<std::string(PlugIn&)>& work, const char* caller = kMenuCaller,
                       const char* selector = kGoSelector)
    {
        std::string answer;
        const auto sent = session.during(caller, selector, [&](HostMessage& message) {
            PlugIn plug_in(message);
            trace_begin_ = trace_text().size();
            wrong_calls.clear();
            answer = work(plug_in);
            return kHostNoError;
        });
        if (const auto* problem = std::get_if<vnt::host::Problem>(&sent))
            return problem->sentence;
        return answer;
    }

    // What has been traced in the last during, but for the search for the suites.
    std::string traced() const { return trace_text().substr(trace_begin_); }

    std::vector<std::string> wrong_calls; // "plug-in: IsShown is about ..."
    std::vector<std::string> alerts;      // "text: explanation", as they are shown
    int fronts = 0;                       // how often the host was brought to the front

private:
    vnt::host::SessionSetup setup()
    {
        vnt::host::SessionSetup setup;
        // A pixel is half a point; the window's top left corner is at (10, 300) in the artwork.
        setup.view.window = {10, 20, 810, 620};
        setup.view.view_to_artwork = {0.5, 0, 0, -0.5, 10, 300};
        setup.grid = {75.5F, 5, true, false};
        setup.trace = trace_.get();
        setup.on_alert = [this](const vnt::host::ShownAlert& alert) {
            alerts.push_back(alert.text + ": " + alert.explanation);
        };
        setup.on_front = [this] { ++fronts; };
        setup.on_wrong_call = [this](const vnt::host::WrongCall& call) {
            wrong_calls.push_back(std::string(call.side == vnt::host::Side::plugin ? "plug-in: " : "host: ") +
                                  call.call + " " + call.why);
        };
        return setup;
    }

    std::string trace_text() const
    {
        return trace_ == nullptr ? "" : support::content_of(folder_.path("trace.jsonl"));
    }

    support::TemporaryFolder folder_;
    std::unique_ptr<vnt::host::Trace> trace_;
    std::size_t trace_begin_ = 0;

public:
    vnt::host::Session session;
};

// Values with a blank between two.
template <class... Values>
std::string answer(const Values&... values)
{
    std::ostringstream text;
    ((text << values << ' '), ...);
    std::string line = text.str();
    line.pop_back();
    return line;
}

} // namespace host_test
