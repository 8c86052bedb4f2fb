/// Counts what the test program's allocator gives out (memory_count_test.cpp replaces it).
#pragma once

#include <cstddef>

namespace archive_test {

/// Returns the bytes that are allocated at this moment.
std::size_t bytesInUse();
/// Returns the most bytes that were in use at a time since `forgetPeak`.
std::size_t peakBytes();
/// Lets the peak start again from what is in use now.
void forgetPeak();

}  // namespace archive_test
