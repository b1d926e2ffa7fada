// The test's own environment variables, for as long as the object is there.
#pragma once

#include <cstdlib>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

namespace editor_test {

struct Variable {
    std::string name;
    std::optional<std::string> value; // none takes it away
};

class Surroundings {
public:
    Surroundings(std::initializer_list<Variable> variables)
    {
        for (const auto& [name, value] : variables) {
            const char* const earlier = std::getenv(name.c_str());
            earlier_.push_back(
                {name, earlier == nullptr ? std::nullopt : std::optional<std::string>(earlier)});
            put(name, value);
        }
    }
    Surroundings(const Surroundings&) = delete;
    Surroundings& operator=(const Surroundings&) = delete;
    ~Surroundings()
    {
        for (const auto& [name, value] : earlier_)
            put(name, value);
    }

private:
    static void put(const std::string& name, const std::optional<std::string>& value)
    {
        if (value)
            setenv(name.c_str(), value->c_str(), 1);
        else
            unsetenv(name.c_str());
    }

    std::vector<Variable> earlier_;
};

} // namespace editor_test
