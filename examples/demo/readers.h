/// Reads the input of the demo: outlines, one JSON object a line, and edge points, comma-separated.
#pragma once

#include <velip/edgelet.h>
#include <velstd/vector.h>

#include <filesystem>
#include <string>
#include <vector>

/// One line of a file of outlines.
struct Outline {
  std::string name;
  std::string origin;  ///< what was done to which shape, where the file says so
  std::vector<gxVector<2>> points;
  std::vector<std::vector<gxVector<2>>> holes;
};

/// Returns the outlines of a file in order.
/// Throws: std::runtime_error, which names the file and the line, for what cannot be read.
std::vector<Outline> readOutlines(const std::filesystem::path& path);

/// Returns the edge points of a file, one list an outline, in the order of the file.
/// Throws: std::runtime_error, which names the file and the line, for what cannot be read.
std::vector<std::vector<gxEdgelet>> readEdgePoints(const std::filesystem::path& path);
