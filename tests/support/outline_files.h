/// Outlines from the data files: one JSON object a line.
#pragma once

#include <velstd/vector.h>

#include <string>
#include <vector>

/// A shape as a file has it: its outline, and the outlines of its holes.
struct FiledShape {
  std::string name;
  std::string operation;  ///< how a tangled outline was made; empty elsewhere
  std::vector<gxVector<2>> outline;
  std::vector<std::vector<gxVector<2>>> holes;
};

/// Reads a file of "points", or of "outer" and "holes".  Throws: std::runtime_error where there is
/// none, or it is malformed.
std::vector<FiledShape> filedShapes(const std::string& path);
