// Files that are read and written whole.
//
// Errors: the system's error code; none when all went well.
#pragma once

#include <string>
#include <string_view>
#include <system_error>

namespace vnt::program {

// Replaces content with the file's bytes. After an error it holds what had been read.
std::error_code read_whole_file(const std::string& path, std::string& content);

// Makes bytes the content of the file at path: of a temporary file beside it, which is then renamed. After an
// error the file is as it was and nothing is left beside it.
//
// A file that is there keeps its permissions; a link keeps leading to its file. What is there and no file (a
// device, a pipe) is written to as it is, and may have taken a part of the bytes when an error comes.
std::error_code write_whole_file(const std::string& path, std::string_view bytes);

} // namespace vnt::program
