// A text as a value, over the Unicode string suite that sAIUnicodeString holds; and the error that it throws.
//
// When:   after sAIUnicodeString has been set.
// Errors: a suite function that does not return 0 throws ai::Error; giving a text back throws nothing.
#pragma once

#include "host/api/unicode_string_suite.h"

namespace ai {

// The code that a service of the host returned.
class Error {
public:
    explicit Error(HostError code) : code_(code) {}
    HostError code() const { return code_; }

private:
    HostError code_;
};

// Owner: the text is its own, and given back at its end. Read it with get(), which stays its own.
class UnicodeString {
public:
    UnicodeString(const char* bytes, std::int32_t size, std::int32_t encoding = kHostPlatformEncoding)
    {
        const HostError error = sAIUnicodeString->MakeFromBytes(bytes, size, encoding, &text_);
        if (error != kHostNoError)
            throw Error(error);
    }

    UnicodeString(const UnicodeString&) = delete;
    UnicodeString& operator=(const UnicodeString&) = delete;
    ~UnicodeString() { sAIUnicodeString->Release(text_); }

    HostText get() const { return text_; }

private:
    HostText text_ = nullptr;
};

} // namespace ai
