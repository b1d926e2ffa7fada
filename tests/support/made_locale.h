// A locale of the C library for one test: one that the machine has, or one that localedef makes for it.
#pragma once

#include <stdlib.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

namespace support {

// Sets the process's C locale while it lives, where that locale can be had.
class MadeLocale {
public:
    MadeLocale(const std::string& language, const std::string& charset)
        : before_(std::setlocale(LC_ALL, nullptr))
    {
        const std::string name = language + "." + charset;
        if (std::setlocale(LC_ALL, name.c_str()) != nullptr) {
            set_ = true;
            return;
        }
        char folder[] = "/tmp/vnt_locale_XXXXXX";
        if (mkdtemp(folder) == nullptr)
            return;
        folder_ = folder;
        const std::string made = folder_ + "/" + name;
        const std::string command =
            "localedef --no-archive -i " + language + " -f " + charset + " " + made + " >/dev/null 2>&1";
        if (std::system(command.c_str()) != 0)
            return;
        setenv("LOCPATH", folder, 1);
        set_ = std::setlocale(LC_ALL, name.c_str()) != nullptr;
    }
    MadeLocale(const MadeLocale&) = delete;
    MadeLocale& operator=(const MadeLocale&) = delete;
    ~MadeLocale()
    {
        std::setlocale(LC_ALL, before_.c_str());
        if (folder_.empty())
            return;
        unsetenv("LOCPATH");
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

    bool is_set() const { return set_; }

private:
    std::string before_;
    std::string folder_;
    bool set_ = false;
};

} // namespace support
