// The document suite: acquired with the others; no command calls it.
#pragma once

#include "host/api/types.h"

constexpr const char* kAIDocumentSuiteName = "AI Document Suite";
constexpr std::int32_t kAIDocumentSuiteVersion = 1012;

struct AIDocumentSuite {
    HostReservedFunction reserved;
};
