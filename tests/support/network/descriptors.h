#pragma once

#include <filesystem>
#include <iterator>

namespace TorvixTest {

/** How many descriptors this process has open, from /proc/self/fd. */
inline int openDescriptors()
{
    using std::filesystem::directory_iterator;
    const auto count = std::distance(directory_iterator("/proc/self/fd"), directory_iterator());
    return static_cast<int>(count) - 1; // the one that reads the directory
}

} // namespace TorvixTest
