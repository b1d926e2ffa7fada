// A trace, read.
#pragma once

#include "host/kit/path_art.h"
#include "tests/host/json_check.h"

#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

namespace host_app_test {

// The lines, without their line feeds. Each has one, or std::runtime_error is thrown.
inline std::vector<std::string> lines_of(const std::string& text)
{
    std::vector<std::string> lines;
    std::size_t begin = 0;
    for (std::size_t end = text.find('\n'); end != text.npos; end = text.find('\n', begin)) {
        lines.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    if (begin != text.size())
        throw std::runtime_error("the last line has no line feed: " + text.substr(begin));
    return lines;
}

// What is wrong with the first line that is no JSON object; empty when all are.
inline std::string problem_of_lines(const std::string& trace)
{
    for (const std::string& line : lines_of(trace)) {
        if (line.empty() || line[0] != '{')
            return "no object: " + line;
        const std::string problem = host_test::JsonCheck::problem_of(line);
        if (!problem.empty())
            return problem;
    }
    return "";
}

inline bool is_call(const std::string& line, const std::string& name)
{
    const std::string start = "{\"call\":\"" + name + "\"";
    return line.compare(0, start.size(), start) == 0;
}

// The lines that make paths.
inline std::vector<std::string> path_lines_of(const std::string& trace)
{
    std::vector<std::string> lines;
    for (const std::string& line : lines_of(trace)) {
        if (is_call(line, "NewArt") || is_call(line, "SetPathSegments"))
            lines.push_back(line);
    }
    return lines;
}

// The paths that a trace without errors has made, one segment a call.
inline std::vector<vnt::host::PathArt> paths_of(const std::string& trace)
{
    std::vector<vnt::host::PathArt> paths;
    for (const std::string& line : path_lines_of(trace)) {
        std::size_t path = 0;
        std::size_t index = 0;
        vnt::host::PathSegment s;
        if (std::sscanf(line.c_str(), "{\"call\":\"NewArt\",\"path\":%zu}", &path) == 1) {
            paths.resize(path + 1);
        } else if (std::sscanf(line.c_str(),
                               "{\"call\":\"SetPathSegments\",\"path\":%zu,\"index\":%zu,\"p\":[%f,%f],"
                               "\"in\":[%f,%f],\"out\":[%f,%f],\"corner\":true}",
                               &path, &index, &s.p.h, &s.p.v, &s.in.h, &s.in.v, &s.out.h, &s.out.v) == 8) {
            vnt::host::PathArt& art = paths.at(path);
            if (index >= art.size())
                art.resize(index + 1);
            art[index] = s;
        } else {
            throw std::runtime_error("not understood: " + line);
        }
    }
    return paths;
}

} // namespace host_app_test
