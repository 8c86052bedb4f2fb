/// The exact area of an overlay of any finite rings, by CGAL's arrangement of exact numbers.
///
/// The one file that includes CGAL is cgal_judge.cpp; it takes long to compile, and nobody else has to.
#pragma once

#include <support/overlay_judge.h>

namespace judge {

/// Answers the question face by face: winding numbers by walking over the edges, areas as exact
/// fractions, rounded once at the end.
Answer judgeByCgal(const Question& question);

}  // namespace judge
