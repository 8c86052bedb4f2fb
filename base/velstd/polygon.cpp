// Access to the vertices of a polygon, with the index checked.
#include <velstd/polygon.h>

#include <limits>
#include <stdexcept>
#include <string>

int gxPolygon::size() const {
  constexpr auto kMost = static_cast<std::size_t>(std::numeric_limits<int>::max());
  return vertices_.size() > kMost ? std::numeric_limits<int>::max() : static_cast<int>(vertices_.size());
}

const gxVector<2>& gxPolygon::operator[](long i) const {
  if (i < 0 || static_cast<std::size_t>(i) >= vertices_.size()) {
    throw std::out_of_range("gxPolygon: there is no vertex " + std::to_string(i) + " in a polygon of " +
                            std::to_string(vertices_.size()));
  }
  return vertices_[static_cast<std::size_t>(i)];
}
