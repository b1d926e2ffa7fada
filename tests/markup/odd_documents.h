// Random documents that love odd forms, and yet get far enough to make trees.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <random>
#include <string>
#include <vector>

namespace markup_test {

class OddDocument {
public:
    explicit OddDocument(std::mt19937_64& random) : random_(random)
    {
        for (std::size_t items = 1 + below(12); items > 0; --items)
            item();
        while (!open_.empty() && below(4) != 0)
            end_tag();
        if (below(8) == 0)
            text_.resize(below(text_.size() + 1)); // left in the middle of anything
    }

    const std::string& text() const { return text_; }

private:
    std::size_t below(std::size_t bound) { return static_cast<std::size_t>(random_() % bound); }

    const char* one_of(std::initializer_list<const char*> choices)
    {
        return choices.begin()[below(choices.size())];
    }

    std::string odd_run(std::size_t most)
    {
        static const std::string kLoved = "<>\"'/=?!-[] \t\r\nab&;x>\"='/ \xC3\xA4\xFF";
        std::string run;
        for (std::size_t size = below(most + 1); size > 0; --size)
            run += below(40) == 0 ? '\0' : kLoved[below(kLoved.size())];
        return run;
    }

    std::string name()
    {
        if (below(6) == 0)
            return one_of(
                {"a\"b\"", "\"a>b\"", "''", "a/", "a=b", " a", "a<b", "\"?x\"", "\"!x\"", "'/'", "a/b"});
        return one_of({"a", "b", "A", "shape", "Shape", "line", "x", "\xC3\xA4"});
    }

    void attribute()
    {
        text_ += below(5) == 0 ? one_of({"  ", "\t", "\n", "", "\r\n"}) : " ";
        text_ += below(6) == 0 ? odd_run(3) : one_of({"x", "y", "m00", "start"});
        text_ += below(6) == 0 ? one_of({"", " = ", "= ", "=="}) : "=";
        const char* const quote = one_of({"\"", "'", "\"", "'", "\"", ""});
        text_ += quote;
        text_ += below(3) == 0 ? odd_run(4) : one_of({"", "1", "-2.5", ">", "/", "a b", "it"});
        text_ += below(30) == 0 ? "" : quote;
    }

    void start_tag()
    {
        const std::string its_name = name();
        text_ += "<" + its_name;
        for (std::size_t attributes = below(4); attributes > 0; --attributes)
            attribute();
        if (below(6) == 0)
            text_ += one_of({" ", "  ", " /", "/ ", "//"});
        const bool empty = below(3) == 0;
        text_ += empty ? "/>" : ">";
        if (!empty)
            open_.push_back(its_name);
    }

    void end_tag()
    {
        std::string its_name = open_.empty() ? "a" : open_.back();
        if (!open_.empty())
            open_.pop_back();
        if (below(10) == 0 && !its_name.empty() && its_name[0] == 'a')
            its_name[0] = 'A';
        text_ += "</" + its_name + (below(40) == 0 ? " >" : ">");
    }

    void item()
    {
        switch (below(16)) {
        case 0: text_ += "<!--" + odd_run(5) + one_of({"-->", "--->", "---->", "->"}); break;
        case 1: text_ += "<?" + odd_run(4) + one_of({"?>", "?\?>", ">", "?"}); break;
        case 2: text_ += "<!" + odd_run(4) + ">"; break;
        case 3:
            text_ +=
                below(6) == 0 ? one_of({"<![CDATA[", "<![CDATA[x]]>", "<![CDA", "</>", "<>", "<\"\">"}) : "t";
            break;
        case 4: text_ += below(4) == 0 ? odd_run(6) : "text"; break;
        case 5:
        case 6:
        case 7: end_tag(); break;
        default: start_tag();
        }
    }

    std::mt19937_64& random_;
    std::string text_;
    std::vector<std::string> open_;
};

} // namespace markup_test
