// Many points in many shapes.
//
// Inside: a tree over the boxes of the shapes says for each point which shapes it may be in.  The points of
// one shape are then asked together, so that a shape makes its indexes once, and only where that pays; of
// the shapes that hold a point the first by index is named.  Points are taken in blocks, for their pairs
// with shapes take memory.
//
// Nearest: the tree is searched from the nearest box on, until no box is nearer than the border found.  A
// shape makes its indexes when it is first looked at and keeps them to the end of the call.
#include "batch.h"
#include "box_tree.h"

#include <gauge/locate.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>

namespace {

constexpr std::size_t kPointBlock = 1 << 17;
// Fewer points of one shape are asked one by one, without indexes.
constexpr std::size_t kFewPoints = 3;

bool isFinite(const gxVector<2>& p) {
  return std::isfinite(p.x()) && std::isfinite(p.y());
}

// The boxes of the shapes; one with a coordinate that is not finite holds nothing and is nowhere.
std::vector<Box> boxesOf(const Ragged& shapes, unsigned threads) {
  std::vector<Box> boxes(shapes.size());
  forEach(shapes.size(), threads, py::none(), [&]() -> Work {
    return [&](std::size_t i) {
      const auto [first, end] = shapes.ringsOfShape(i);
      bool finite = true;
      Box box;
      for (std::size_t r = first; r < end && finite; ++r) {
        for (const auto& p : shapes.ring(r)) {
          finite = finite && isFinite(p);
          box.add(p);
        }
      }
      if (finite) boxes[i] = box;
    };
  });
  return boxes;
}

// What a shape is asked with: a copy of it, or the bare points of a single closed ring.
template <class Use>
auto withShapeAt(const Ragged& shapes, std::size_t i, const Use& use) {
  gxRecord record;
  shapes.get(i, record);
  if (record.kind == gxRecord::Kind::eSet) return use(record.toSet());
  if (record.kind == gxRecord::Kind::eOpen) return use(record.toContour());
  return use(record.toRegion());
}

gxLocator locatorOf(const Ragged& shapes, std::size_t i) {
  return withShapeAt(shapes, i, [](const auto& shape) { return gxLocator(shape); });
}

// ---- Inside -----------------------------------------------------------------------------------------

// The pairs of a block of points with the shapes whose boxes hold them, by shape.
struct Pairs {
  std::vector<std::size_t> firstOf;  // by shape among `shapes`
  std::vector<std::size_t> shapes;   // those with a point
  std::vector<std::uint32_t> points;
  std::vector<gxState> states;
};

Pairs pairsOf(const BoxTree& tree, std::size_t shapeCount, PointSpan points, double slack) {
  std::vector<std::pair<std::size_t, std::uint32_t>> found;
  for (std::uint32_t p = 0; p < points.size(); ++p)
    tree.holding(points[p], slack, [&](std::size_t shape) { found.emplace_back(shape, p); });
  std::vector<std::size_t> counts(shapeCount + 1, 0);
  for (const auto& pair : found) ++counts[pair.first + 1];
  Pairs pairs;
  pairs.points.resize(found.size());
  pairs.states.resize(found.size(), gxState::eOutside);
  for (std::size_t s = 0; s < shapeCount; ++s) {
    if (counts[s + 1] > 0) {
      pairs.shapes.push_back(s);
      pairs.firstOf.push_back(counts[s]);
    }
    counts[s + 1] += counts[s];
  }
  pairs.firstOf.push_back(found.size());
  for (const auto& [shape, p] : found) pairs.points[counts[shape]++] = p;
  return pairs;
}

void askOne(const Ragged& shapes, std::size_t k, PointSpan points, double tolerance, Pairs& pairs) {
  const std::size_t first = pairs.firstOf[k];
  const std::size_t end = pairs.firstOf[k + 1];
  withShapeAt(shapes, pairs.shapes[k], [&](const auto& shape) {
    if (end - first <= kFewPoints) {
      for (std::size_t i = first; i < end; ++i)
        pairs.states[i] = gfLocate(shape, points[pairs.points[i]], tolerance).state;
      return;
    }
    Points asked;
    asked.reserve(end - first);
    for (std::size_t i = first; i < end; ++i) asked.push_back(points[pairs.points[i]]);
    const auto states = gxLocator(shape).states(asked, tolerance);
    std::copy(states.begin(), states.end(), pairs.states.begin() + static_cast<std::ptrdiff_t>(first));
  });
}

// One shape: its locator is made once and the points are asked in blocks.
void insideOne(const Ragged& shapes, PointSpan points, double tolerance, unsigned threads,
               const py::object& progress, std::int64_t* region, std::int8_t* state) {
  const gxLocator locator = locatorOf(shapes, 0);
  constexpr std::size_t kBlock = 4096;
  forEach((points.size() + kBlock - 1) / kBlock, threads, progress, [&]() -> Work {
    return [&](std::size_t b) {
      const PointSpan some = points.subspan(b * kBlock, (std::min)(kBlock, points.size() - b * kBlock));
      const auto states = locator.states(some, tolerance);
      for (std::size_t i = 0; i < some.size(); ++i) {
        state[b * kBlock + i] = static_cast<std::int8_t>(states[i]);
        region[b * kBlock + i] = states[i] == gxState::eOutside ? -1 : 0;
      }
    };
  });
}

void insideMany(const Ragged& shapes, PointSpan points, double tolerance, unsigned threads,
                const py::object& progress, std::int64_t* region, std::int8_t* state) {
  const BoxTree tree(boxesOf(shapes, threads));
  // Boxes are widened by more than the tolerance, for the distance to a border is rounded.
  const double slack = tolerance * (1.0 + 1e-12);
  for (std::size_t at = 0; at < points.size(); at += kPointBlock) {
    const PointSpan some = points.subspan(at, (std::min)(kPointBlock, points.size() - at));
    Pairs pairs;
    {
      const py::gil_scoped_release release;
      pairs = pairsOf(tree, shapes.size(), some, slack);
    }
    forEach(pairs.shapes.size(), threads, progress,
            [&]() -> Work { return [&](std::size_t k) { askOne(shapes, k, some, tolerance, pairs); }; });
    for (std::size_t k = 0; k < pairs.shapes.size(); ++k) {
      for (std::size_t i = pairs.firstOf[k]; i < pairs.firstOf[k + 1]; ++i) {
        const std::size_t p = at + pairs.points[i];
        if (pairs.states[i] == gxState::eOutside || region[p] >= 0) continue;
        region[p] = static_cast<std::int64_t>(pairs.shapes[k]);
        state[p] = static_cast<std::int8_t>(pairs.states[i]);
      }
    }
  }
}

py::dict inside(const Ragged& shapes, const PointArray& array, double tolerance, unsigned threads,
                const py::object& progress) {
  const PointSpan points = spanOf(array);
  const auto count = static_cast<py::ssize_t>(points.size());
  py::array_t<std::int64_t> region(count);
  py::array_t<std::int8_t> state(count);
  py::array_t<std::int8_t> status(count);
  std::int64_t* regions = region.mutable_data();
  std::int8_t* states = state.mutable_data();
  std::fill(regions, regions + count, std::int64_t{-1});
  std::fill(states, states + count, static_cast<std::int8_t>(gxState::eOutside));
  if (shapes.size() == 1) {
    insideOne(shapes, points, tolerance, threads, progress, regions, states);
  } else if (shapes.size() > 1) {
    insideMany(shapes, points, tolerance, threads, progress, regions, states);
  }
  auto* statuses = status.mutable_data();
  for (std::size_t i = 0; i < points.size(); ++i) {
    const bool finite = isFinite(points[i]);
    statuses[i] = static_cast<std::int8_t>(finite ? gxStatus::eOk : gxStatus::eNotFinite);
    if (!finite) states[i] = 0;
  }
  return py::dict("status"_a = status, "region"_a = region, "state"_a = state);
}

// ---- Nearest ----------------------------------------------------------------------------------------

// Locators that are made when they are asked for first, by whichever thread that is.
class Locators {
 public:
  explicit Locators(const Ragged& shapes)
      : shapes_(shapes), made_(shapes.size()), once_(shapes.size()) {}
  const gxLocator& at(std::size_t shape) {
    std::call_once(once_[shape], [&] { made_[shape].emplace(locatorOf(shapes_, shape)); });
    return *made_[shape];
  }

 private:
  const Ragged& shapes_;
  std::vector<std::optional<gxLocator>> made_;
  std::vector<std::once_flag> once_;
};

struct Nearest {
  gxNearest answer;
  std::int64_t shape = -1;
};

Nearest nearestOf(const BoxTree& tree, Locators& locators, const gxVector<2>& point, double most) {
  Nearest best;
  if (!isFinite(point)) {
    best.answer.status = gxStatus::eNotFinite;
    return best;
  }
  best.answer.status = gxStatus::eNone;
  double bound = most;
  tree.nearest(
      point, [&] { return bound; },
      [&](std::size_t shape) {
        const gxNearest found = locators.at(shape).nearest(point);
        if (found.status != gxStatus::eOk || !(found.distance <= bound)) return;
        const auto index = static_cast<std::int64_t>(shape);
        if (best.shape >= 0 && found.distance == bound && index > best.shape) return;
        best = {found, index};
        bound = found.distance;
      });
  return best;
}

py::dict nearest(const Ragged& shapes, const PointArray& array, double most, unsigned threads,
                 const py::object& progress) {
  const PointSpan points = spanOf(array);
  const auto count = static_cast<py::ssize_t>(points.size());
  py::array_t<std::int8_t> status(count);
  py::array_t<std::int64_t> region(count);
  py::array_t<std::int64_t> ring(count);
  py::array_t<std::int64_t> edge(count);
  Columns columns(4, points.size());
  auto* statuses = status.mutable_data();
  auto* regions = region.mutable_data();
  auto* rings = ring.mutable_data();
  auto* edges = edge.mutable_data();
  const BoxTree tree(boxesOf(shapes, threads));
  Locators locators(shapes);
  forEach(points.size(), threads, progress, [&]() -> Work {
    return [&](std::size_t i) {
      const Nearest found = nearestOf(tree, locators, points[i], most);
      const gxPlace& place = found.answer.place;
      statuses[i] = static_cast<std::int8_t>(found.answer.status);
      regions[i] = found.shape;
      rings[i] = place.ring;
      edges[i] = place.edge;
      columns.at(0, i) = found.answer.distance;
      columns.at(1, i) = place.t;
      columns.at(2, i) = place.point.x();
      columns.at(3, i) = place.point.y();
    };
  });
  return py::dict("status"_a = status, "region"_a = region, "ring"_a = ring, "edge"_a = edge,
                  "block"_a = columns.block());
}

}  // namespace

void bindBatchPlaces(py::module_& module) {
  module.def("batch_inside", &inside, "shapes"_a, "points"_a, "tolerance"_a, "threads"_a, "progress"_a);
  module.def("batch_nearest", &nearest, "shapes"_a, "points"_a, "most"_a, "threads"_a, "progress"_a);
}
