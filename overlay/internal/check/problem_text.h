/// Sentences about problems, for a person.
#pragma once

#include <overlay/check.h>

#include <string>

/// Returns "(2, 2.5)".
std::string gx_textOf(const gxVector<2>& point);
/// Returns "the outline", "hole 3", or, of a set, "the outline of region 2" and so on.
std::string gx_ringName(long ring, long region, bool ofSet);

/// What a sentence says beside the members of its problem.
struct gx_ProblemDetail {
  gxVector<2> end{};  ///< the other end of an overlap
  int direction = 0;  ///< of a ring that is the wrong way round, +1 counter-clockwise
  bool ofSet = false;
};

/// Returns the sentence of a problem whose other members are filled in.
std::string gx_sentenceOf(const gxProblem& problem, const gx_ProblemDetail& detail);
