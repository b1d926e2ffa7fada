// The one way to call a suite.
#pragma once

#include <stdexcept>

// The suite, which throws where the host did not give it.
template <class Suite>
Suite& present(Suite* suite)
{
    if (suite == nullptr)
        throw std::runtime_error("the host does not have this suite");
    return *suite;
}
