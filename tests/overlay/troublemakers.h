/// The corpus of overlays: shapes that were trouble somewhere, and the right answers.
///
///     name: a bow
///     map: 0x1p-52 1 1                 every coordinate times the first, plus the others in x and y
///     shape: A                         of several operands, where one begins
///     outline: 0 0, 10 10, 10 0, 0 10  a region, as tests write points everywhere
///     hole: 1 1, 2 1, 2 2              of the region before
///     path: 0 0, 4 0                   instead of regions, an open contour
///     ask: repair even-odd             or union, intersection, difference, offset, check; then what is known:
///     area: 9664/285                   exact
///     rounded: 2                       instead: of the result in doubles, where the two differ much
///     within: 1e-13                    how far the area may be off; else 1e-12 of it
///     regions: 2
///     holes: 0
///     points: 4                        of all rings
///     keeps: vertices                  every vertex of the result is one of the input, bits and all, or a crossing
///     tells: spike                     a kind that the check tells
///
/// Lines that begin with # are the story.
#pragma once

#include <support/overlay_judge.h>

#include <string>
#include <vector>

struct Trouble {
  struct Question {
    std::string ask;
    double area = -1.0;
    double rounded = -1.0;
    double within = -1.0;
    int regions = -1;
    int holes = -1;
    int points = -1;
    bool keepsVertices = false;
    std::string tells;
  };
  std::string name;
  std::vector<slow::Set> operands;
  judge::Ring path;
  std::vector<Question> questions;
};

/// The names of all files, in order.
std::vector<std::string> troubleNames();
/// Throws: std::runtime_error for a file that it cannot understand.
Trouble troubleNamed(const std::string& name);
