#include "host/kit/session.h"

#include "host/kit/session_state.h"

#include <algorithm>
#include <exception>
#include <stdexcept>
#include <utility>

namespace vnt::host {
namespace {

Session::State* the_state = nullptr;

Rect bounds_of_window(const WindowRect& window)
{
    return {window.top, window.left, window.bottom, window.right};
}

// Between its making and its end a message is being answered.
class Answering {
public:
    Answering(Session::State& state, const char* caller, const char* selector) : state_(state)
    {
        state_.caller = caller;
        state_.selector = selector;
        state_.thread = std::this_thread::get_id();
    }
    Answering(const Answering&) = delete;
    Answering& operator=(const Answering&) = delete;
    ~Answering() { state_.caller = state_.selector = nullptr; }

private:
    Session::State& state_;
};

Problem let_out(const char* caller, const char* selector, const char* what)
{
    return {std::string("the plug-in failed at the message ") + caller + " / " + selector +
            ": it let an exception out (" + what + "); report it to the plug-in's makers"};
}

std::string cut_short_sentence(const HostArt& path)
{
    return "path " + std::to_string(path.number) + " is cut short at " +
           std::to_string(path.segments.size()) + " segments: the plug-in's segment numbers go no further";
}

} // namespace

Session::State::State(SessionSetup given)
    : setup(std::move(given)), window{{"Artwork"}, bounds_of_window(setup.view.window)}
{
}

HostArt* Session::State::find_path(AIArtHandle art)
{
    if (!paths.empty() && art == &paths.back())
        return art;
    return known_paths.count(art) > 0 ? art : nullptr;
}

Session::State* session_state() { return the_state; }

Session::Session(SessionSetup setup) : state_(std::make_unique<State>(std::move(setup)))
{
    if (the_state != nullptr)
        throw std::logic_error("there is a session already");
    the_state = state_.get();
}

Session::~Session()
{
    the_state = nullptr;
    for (const HostTextBody* text : state_->texts)
        delete text;
}

Result<HostError> Session::send(PluginEntry& entry, const char* caller, const char* selector)
{
    return during(caller, selector, [&](HostMessage& message) { return entry(caller, selector, &message); });
}

Result<HostError> Session::during(const char* caller, const char* selector,
                                  const std::function<HostError(HostMessage&)>& work)
{
    const Answering answering(*state_, caller, selector);
    HostMessage message{&state_->plugin, &basic_suite()};
    try {
        return work(message);
    } catch (const std::exception& error) {
        return let_out(caller, selector, error.what());
    } catch (...) {
        return let_out(caller, selector, "of another kind");
    }
}

bool Session::has_menu_item(std::string_view text) const
{
    return std::any_of(state_->menu_items.begin(), state_->menu_items.end(),
                       [&](const HostMenuItem& item) { return item.text == text; });
}

const std::vector<ShownAlert>& Session::alerts() const { return state_->shown_alerts; }

std::size_t Session::path_count() const { return state_->path_count.load(std::memory_order_relaxed); }

std::vector<PathArt> Session::take_paths()
{
    std::vector<PathArt> taken;
    taken.reserve(state_->paths.size());
    for (HostArt& path : state_->paths) {
        if (path.is_cut_short)
            state_->notes.push_back(cut_short_sentence(path));
        taken.push_back(std::move(path.segments));
    }
    state_->known_paths.clear();
    state_->paths.clear();
    state_->path_count = 0;
    return taken;
}

const std::vector<std::string>& Session::notes() const { return state_->notes; }

const std::string& Session::failure() const { return state_->failure; }

bool ServiceCall::is_in_message() const
{
    return state_ != nullptr && state_->caller != nullptr && state_->thread == std::this_thread::get_id();
}

HostError ServiceCall::done(HostError error)
{
    write_line(error);
    return error;
}

HostError ServiceCall::wrong(HostError error, const char* why)
{
    write_line(error);
    report(Side::plugin, why);
    return error;
}

HostError ServiceCall::out_of_memory()
{
    write_line(kHostOutOfMemory);
    state_->failure =
        std::string("not enough memory for ") + name_ + "; try a smaller figure, or allow more with --memory";
    report(Side::host, "did not get the memory that it needs");
    return kHostOutOfMemory;
}

void ServiceCall::report(Side side, const char* why)
{
    if (state_ != nullptr && state_->setup.on_wrong_call)
        state_->setup.on_wrong_call({side, name_, why});
}

void ServiceCall::write_line(HostError error)
{
    if (!is_traced())
        return;
    if (error != kHostNoError)
        line_.integer("error", error);
    state_->setup.trace->write(std::move(line_).finish());
}

} // namespace vnt::host
