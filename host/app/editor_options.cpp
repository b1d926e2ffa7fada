#include "host/app/editor_options.h"

#include "tools/program/arguments.h"

namespace vnt::host {
namespace {

using program::Arguments;

void take_flag(const Arguments& arguments, bool& flag)
{
    arguments.no_value();
    flag = true;
}

bool take_extension(Arguments& arguments, EditorOptions& options)
{
    const std::string& option = arguments.option();
    if (option == "--wait")
        take_flag(arguments, options.wait);
    else if (option == "--launch")
        options.launch = arguments.value("the command that starts the sketch application");
    else if (option == "--plugin")
        options.plugin = arguments.value("the plug-in to load");
    else if (option == "--timeout")
        options.timeout = arguments.seconds();
    else if (option == "--id" || option == "--selected-nodes")
        arguments.value("an object of the document");
    else
        return false;
    return true;
}

bool take_place(Arguments& arguments, EditorOptions& options)
{
    const std::string& option = arguments.option();
    bool list = false;
    if (option == "-o" || option == "--output")
        options.out = arguments.value("the file to write");
    else if (option == "--art")
        options.art = arguments.value("the file of a sketch that is kept");
    else if (option == "--list")
        take_flag(arguments, list);
    else if (option == "--id" || option == "--selected-nodes")
        arguments.value("an object of the document");
    else
        return false;
    if (list)
        options.command = EditorCommand::list;
    return true;
}

bool take_agent(Arguments& arguments, EditorOptions& options)
{
    const std::string& option = arguments.option();
    if (option == "--lock")
        options.lock = arguments.number<int>("a descriptor");
    else if (option == "--editor")
        options.editor = arguments.value("the name of an editor");
    else if (option == "--launch")
        options.launch = arguments.value("the command that starts the sketch application");
    else if (option == "--plugin")
        options.plugin = arguments.value("the plug-in to load");
    else
        return false;
    return true;
}

bool take(Arguments& arguments, EditorOptions& options)
{
    switch (options.command) {
    case EditorCommand::extension: return take_extension(arguments, options);
    case EditorCommand::list:
    case EditorCommand::place: return take_place(arguments, options);
    case EditorCommand::agent: return take_agent(arguments, options);
    case EditorCommand::install:
    case EditorCommand::uninstall:
        if (arguments.option() != "--user")
            return false;
        take_flag(arguments, options.user);
        return true;
    case EditorCommand::help: break;
    }
    return false;
}

std::string* operand(EditorOptions& options)
{
    if (options.command == EditorCommand::extension || options.command == EditorCommand::place)
        return &options.document;
    return options.command == EditorCommand::agent ? &options.spool : nullptr;
}

EditorCommand command_of(const std::string& name)
{
    if (name == "extension")
        return EditorCommand::extension;
    if (name == "place")
        return EditorCommand::place;
    if (name == "agent")
        return EditorCommand::agent;
    return name == "install" ? EditorCommand::install : EditorCommand::uninstall;
}

EditorOptions read_all(Arguments& arguments, const std::string& name)
{
    EditorOptions options;
    options.command = command_of(name);
    while (arguments.next()) {
        if (arguments.is_option() && (arguments.option() == "--help" || arguments.option() == "-h")) {
            arguments.no_value();
            options.command = EditorCommand::help;
            options.subject = name;
            return options;
        }
        if (arguments.is_option()) {
            if (!take(arguments, options))
                arguments.refuse_unknown("vant-host " + name + " --help lists the options");
            continue;
        }
        std::string* const file = operand(options);
        if (file == nullptr || !file->empty())
            arguments.refuse("unexpected argument " + arguments.option(),
                             "vant-host " + name + " --help tells what there is");
        *file = arguments.option();
    }
    const std::string* const file = operand(options);
    if (file != nullptr && file->empty())
        arguments.refuse("no file to work on", "name it, as in vant-host " + name + " drawing.svg");
    return options;
}

} // namespace

program::Result<EditorOptions> read_editor_options(const std::string& command,
                                                   const std::vector<std::string>& arguments)
{
    Arguments rest(arguments, "nothing was done", "o");
    try {
        return read_all(rest, command);
    } catch (const program::WrongUsage& wrong) {
        return program::Problem{program::kWrongUsage, wrong.sentence};
    }
}

} // namespace vnt::host
