// A set of many outlines of the size of coins, none of which touches another or itself: the dearest case
// for the test of self-intersection, since nothing answers early.
#pragma once

#include <velstd/vector.h>

#include <cstdint>
#include <vector>

// The mean number of points of a coin in the sample picture.
constexpr std::int64_t gx_kCoinPoints = 182;

// The outline of one coin: radius 25 ± 2, slightly uneven; coins lie 80 apart, 200 to a row.
std::vector<gxVector<2>> gx_coin(std::int64_t number);
