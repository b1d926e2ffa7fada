#include "host/app/place_command.h"

#include "host/app/editor_context.h"
#include "host/app/stage.h"
#include "host/app/standard_output.h"
#include "host/kit/svg_document.h"
#include "tools/program/whole_file.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace vnt::host {
namespace {

using program::Console;
using program::ExitStatus;
using program::kFailed;

// A note that is older was for a run of the extension that never came.
constexpr std::chrono::minutes kPendingLasts{15};

constexpr const char* kHowToPlace =
    "Go to the document of the sketch and choose Extensions > View Utilities > Place VANT sketch.";

Result<std::string> with_art(const SvgDocument& document, const KeptArt& art, std::vector<std::string>& notes)
{
    Placement placement;
    if (!art.layer_id.empty())
        placement.layer_id = art.layer_id;
    placement.artwork_to_user = art.artwork_to_user;
    Result<DrawnText> drawn = document.with_paths(art.paths, placement);
    if (const auto* problem = std::get_if<Problem>(&drawn))
        return *problem;
    auto& text = std::get<DrawnText>(drawn);
    notes.insert(notes.end(), text.notes.begin(), text.notes.end());
    return std::move(text.text);
}

// The newest art of this document, else the newest of all.
const KeptArt* choose(const std::vector<KeptArt>& kept, const DocumentMark& now)
{
    const auto of_this = std::find_if(kept.rbegin(), kept.rend(), [&](const KeptArt& art) {
        return compare(art.document, now) == Sameness::same;
    });
    if (of_this != kept.rend())
        return &*of_this;
    return kept.empty() ? nullptr : &kept.back();
}

// ------------------------------------------------------------------------------------------ inside the editor

class EditorPlace {
public:
    EditorPlace(const EditorContext& context, const SvgDocument& document)
        : context_(context), document_(document),
          now_(mark_of(document, EditorContext::document_path(),
                       context.editor() ? editor_name(*context.editor()) : std::string()))
    {
    }

    // What the process that waited for the sketch has asked for.
    ExitStatus answer(const Pending& pending)
    {
        const Result<KeptArt> art = context_.art().read(pending.art_id);
        if (const auto* problem = std::get_if<Problem>(&art))
            return fail(problem->sentence);
        const auto& found = std::get<KeptArt>(art);
        const Sameness sameness = compare(found.document, now_);
        if (sameness == Sameness::same || (sameness == Sameness::doubtful && pending.only_window))
            return place(found);
        return fail(
            sameness == Sameness::other
                ? std::string("The sketch has come back, but this is another document than the one where it "
                              "began. It is kept. ") +
                      kHowToPlace
                : std::string(
                      "The sketch has come back, but it is not certain that this is the document where "
                      "it began. It is kept. ") +
                      kHowToPlace);
    }

    // The user has chosen the command.
    ExitStatus place_newest()
    {
        const ArtStore::Listing kept = context_.art().list();
        for (const std::string& note : kept.notes)
            context_.log().add(note);
        const KeptArt* const art = choose(kept.art, now_);
        if (art == nullptr)
            return fail("There is no sketch to place. Start VANT begins one.");
        return place(*art);
    }

private:
    ExitStatus place(const KeptArt& art)
    {
        std::vector<std::string> notes;
        const Result<std::string> text = with_art(document_, art, notes);
        if (const auto* problem = std::get_if<Problem>(&text))
            return fail("The sketch could not be placed and is kept: " + problem->sentence);
        if (!try_print_document(std::get<std::string>(text)))
            return fail("The editor did not take the document; the sketch is kept.");
        for (const std::string& note : notes)
            context_.log().add(note);
        context_.log().add("placed " + art.id);
        if (const auto problem = context_.art().mark_placed(art.id))
            context_.log().add(problem->sentence);
        return program::kDone;
    }

    ExitStatus fail(const std::string& text)
    {
        context_.tell(text);
        return kFailed;
    }

    const EditorContext& context_;
    const SvgDocument& document_;
    DocumentMark now_;
};

ExitStatus place_in_editor(const EditorOptions& options)
{
    const auto entered = EditorContext::enter();
    if (std::holds_alternative<Problem>(entered))
        return kFailed;
    const EditorContext& context = *std::get<0>(entered);
    const std::optional<PendingSince> pending = context.art().read_pending();
    const bool is_asked = pending && context.editor() &&
                          context.editor()->pid == pending->pending.editor_pid &&
                          context.art().remove_pending();
    if (is_asked && !pending->pending.message.empty())
        context.tell(pending->pending.message);
    if (is_asked && pending->pending.art_id.empty())
        return program::kDone;
    if (is_asked && pending->age >= kPendingLasts) {
        context.tell(std::string("The sketch came back long ago, and is kept. ") + kHowToPlace);
        return kFailed;
    }
    std::string bytes;
    if (const std::error_code error = program::read_whole_file(options.document, bytes)) {
        context.tell("Nothing was placed: the document could not be read: " + error.message() + ". " +
                     kHowToPlace);
        return kFailed;
    }
    const Result<SvgDocument> document = SvgDocument::read("the document", std::move(bytes));
    if (const auto* problem = std::get_if<Problem>(&document)) {
        context.tell("Nothing was placed: " + problem->sentence + ". " + kHowToPlace);
        return kFailed;
    }
    EditorPlace place(context, std::get<SvgDocument>(document));
    return is_asked ? place.answer(pending->pending) : place.place_newest();
}

// ----------------------------------------------------------------------------------------- on the command line

Result<ArtStore> store_of_this_user()
{
    Result<UserFolders> folders = user_folders();
    if (const auto* problem = std::get_if<Problem>(&folders))
        return *problem;
    return ArtStore(std::get<UserFolders>(folders).data + "/sketches");
}

program::Result<KeptArt> read_named_art(const std::string& file, const std::string& unharmed)
{
    std::string bytes;
    if (const std::error_code error = program::read_whole_file(file, bytes))
        return program::Problem{kFailed, "cannot read the sketch " + file + ": " + error.message() + "; " +
                                             unharmed + "; vant-host place --list tells what is kept"};
    Result<KeptArt> art = read_kept_art(file, std::move(bytes));
    if (const auto* problem = std::get_if<Problem>(&art))
        return in_words(*problem, unharmed);
    return std::get<KeptArt>(std::move(art));
}

program::Result<KeptArt> find_art(const EditorOptions& options, const SvgDocument& document,
                                  const ArtStore& store, const std::string& unharmed)
{
    if (options.art)
        return read_named_art(*options.art, unharmed);
    ArtStore::Listing kept = store.list();
    const KeptArt* const art = choose(kept.art, mark_of(document, absolute_path(options.document), ""));
    if (art == nullptr)
        return program::Problem{kFailed, "no sketch is kept; " + unharmed + "; name a file with --art"};
    return *art;
}

ExitStatus place_on_command_line(const EditorOptions& options, const Console& console)
{
    const std::string unharmed = unharmed_clause(*options.out);
    const auto document = read_document(options.document, unharmed, console);
    if (const auto* problem = std::get_if<program::Problem>(&document))
        return console.report(*problem);
    const Result<ArtStore> store = store_of_this_user();
    if (const auto* problem = std::get_if<Problem>(&store))
        return console.report(in_words(*problem, unharmed));
    const auto art = find_art(options, std::get<SvgDocument>(document), std::get<ArtStore>(store), unharmed);
    if (const auto* problem = std::get_if<program::Problem>(&art))
        return console.report(*problem);
    std::vector<std::string> notes;
    const Result<std::string> text = with_art(std::get<SvgDocument>(document), std::get<KeptArt>(art), notes);
    if (const auto* problem = std::get_if<Problem>(&text))
        return console.report(in_words(*problem, unharmed));
    for (const std::string& note : notes)
        console.note(note);
    if (const std::error_code error = program::write_whole_file(*options.out, std::get<std::string>(text)))
        return console.report({kFailed, "cannot write " + *options.out + ": " + error.message() + "; " +
                                            unharmed + "; " + remedy_for(error, "-o")});
    if (!options.art) {
        if (const auto problem = std::get<ArtStore>(store).mark_placed(std::get<KeptArt>(art).id))
            console.note(problem->sentence);
    }
    return tell_done(console, *options.out + ": the sketch of " + std::get<KeptArt>(art).made + "\n");
}

} // namespace

ExitStatus place_command(const EditorOptions& options, const Console& console)
{
    return options.out ? place_on_command_line(options, console) : place_in_editor(options);
}

ExitStatus list_command(const Console& console)
{
    const Result<ArtStore> store = store_of_this_user();
    if (const auto* problem = std::get_if<Problem>(&store))
        return console.report({kFailed, problem->sentence});
    const ArtStore::Listing kept = std::get<ArtStore>(store).list();
    for (const std::string& note : kept.notes)
        console.note(note);
    std::string lines;
    for (const KeptArt& art : kept.art)
        lines += std::get<ArtStore>(store).path_of(art.id) + "  " + art.made + "  " +
                 std::to_string(art.paths.size()) + " paths for " +
                 (art.document.path.empty() ? "a document without a name" : art.document.path) + "\n";
    return console.print(lines.empty() ? "no sketch is kept\n" : lines);
}

} // namespace vnt::host
