// The folders of this user that our files go to.
//
// Source: freedesktop.org, XDG Base Directory 0.8.
// Errors: a sentence, in the form of result.h.
#pragma once

#include "host/kit/result.h"

#include <functional>
#include <optional>
#include <string>

namespace vnt::host {

// Where names are looked up; an empty value counts as none.
using Environment = std::function<std::optional<std::string>(const std::string& name)>;

Environment process_environment();

// Absolute, without a slash at the end.
struct UserFolders {
    std::string state;   // the log
    std::string data;    // kept art
    std::string runtime; // what means nothing after a log-out
};

// The folders by their names; none is made. A variable that holds no absolute path counts as none.
//
// Errors: no home folder is known, and it is needed.
Result<UserFolders> user_folders(const Environment& environment = process_environment());

// Makes a folder, and those around it that are missing, for this user alone. One that is there stays as it is.
std::optional<Problem> make_folder(const std::string& folder);

// Makes all three. Where the runtime folder cannot be made (as another user with this one's environment, whose
// session is over) the state folder takes its place.
Result<UserFolders> make_user_folders(UserFolders folders);

} // namespace vnt::host
