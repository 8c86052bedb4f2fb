/// The scenes of the demo, one file each.  Each prints what it measures and returns; a scene that
/// draws says so and writes its picture into `out`.
#pragma once

#include <filesystem>

/// Scene 1: coins, measured one by one.
void showCoins(const std::filesystem::path& data, const std::filesystem::path& out);
