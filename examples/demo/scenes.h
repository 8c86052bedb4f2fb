/// The scenes of the demo, one file each.  Each prints what it measures; a scene that writes a file
/// into `out` says so.  Each throws what the readers and the library throw.
#pragma once

#include <filesystem>

/// Scene 1: countries, with their holes and without.
void showCountries(const std::filesystem::path& data, const std::filesystem::path& out);
/// Scene 2: tangled outlines, before and after their repair.
void showTangled(const std::filesystem::path& data, const std::filesystem::path& out);
/// Scene 3: the coins as one shape.
void showCoinSet(const std::filesystem::path& data);
/// Scene 4: the coins' edge points, calibrated.
void showEdgePoints(const std::filesystem::path& data, const std::filesystem::path& out);
/// Scene 5: the coin set and the edge points, saved and loaded.
/// Throws also: std::runtime_error where what comes back is not what went in.
void showArchives(const std::filesystem::path& data, const std::filesystem::path& out);
/// Scene 7: punched coins, inspected against a golden one.
void showInspection(const std::filesystem::path& data, const std::filesystem::path& out);
