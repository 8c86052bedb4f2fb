/// What contours and sets remember by argument, and what they forget: the bounded memories told the
/// plain way, with a generator of their own that draws the same numbers.
#pragma once

#include <support/slow_truth_set.h>
#include <velstd/random.h>
#include <velstd/real_eq.h>

#include <cmath>
#include <optional>
#include <utility>
#include <vector>

namespace slow {

/// The choices of what is forgotten: one sequence for everything that one thread asks.
class Evictions {
 public:
  long draw(std::size_t size) { return gfIFloor(generator_.next(0.0, static_cast<double>(size))); }

 private:
  gxRandomUniform generator_{1};
};

/// A bounded memory: sorted entries, at most `limit` + 1 of them; then a new one takes the place of
/// one drawn at random.
template <class Key, class Value>
class Memo {
 public:
  std::optional<Value> find(const Key& key) const {
    for (const auto& [known, value] : entries_) {
      if (known == key) return value;
    }
    return std::nullopt;
  }
  void remember(const Key& key, const Value& value, long limit, Evictions& evictions) {
    const bool room = static_cast<long>(entries_.size()) <= limit;
    if (!room) {
      const long victim = evictions.draw(entries_.size());
      entries_.erase(entries_.begin() + victim);
    }
    auto place = entries_.begin();
    while (place != entries_.end() && place->first < key) ++place;
    entries_.insert(place, {key, value});
  }
  void clear() { entries_.clear(); }
  std::size_t size() const { return entries_.size(); }

 private:
  std::vector<std::pair<Key, Value>> entries_;
};

/// The numbers of a transform that are compared: all but yx and the determinant.
inline std::vector<double> keyOf(const gxXform<2>& x) {
  return {x.xx(), x.xy(), x.yy(), x.tx(), x.ty()};
}
inline bool usable(const std::vector<double>& key) {
  for (const double number : key) {
    if (std::isnan(number)) return false;
  }
  return true;
}

/// Rectangles by transform.
class RectMemo {
 public:
  template <class Compute>
  gxRect get(const gxXform<2>& xform, long limit, Evictions& evictions, const Compute& compute) {
    const std::vector<double> key = keyOf(xform);
    if (!usable(key)) return compute();
    if (const auto known = memo_.find(key)) return *known;
    const gxRect rect = compute();
    memo_.remember(key, rect, limit, evictions);
    return rect;
  }
  void clear() { memo_.clear(); }

 private:
  Memo<std::vector<double>, gxRect> memo_;
};

/// A contour that remembers; `computed` counts what it had to compute by argument.
struct RememberingContour {
  Outline outline;
  long limit = 3;
  RectMemo rects;
  Memo<double, long> extremes;
  long computed = 0;

  void forget() {
    rects.clear();
    extremes.clear();
  }
  gxRect encloseRect(const gxXform<2>& xform, Evictions& evictions) {
    checkContour(outline.points);
    return rects.get(xform, limit, evictions, [&] {
      ++computed;
      return slow::encloseRect(outline.points, xform);
    });
  }
  long extremalVertexIndex(double angle, Evictions& evictions) {
    checkContour(outline.points);
    if (!std::isnan(angle)) {
      if (const auto known = extremes.find(angle)) return *known;
    }
    ++computed;
    const long index = slow::extremalVertexIndex(outline.points, angle);
    if (!std::isnan(angle)) extremes.remember(angle, index, limit, evictions);
    return index;
  }
};

/// A set that remembers rectangles, of contours that do.
struct RememberingSet {
  std::vector<RememberingContour> regions;
  long limit = 3;
  RectMemo rects;
  long computed = 0;

  gxRect encloseRect(const gxXform<2>& xform, Evictions& evictions) {
    if (regions.empty()) throw gxContourDefs::EmptyRegionSet();
    return rects.get(xform, limit, evictions, [&] {
      ++computed;
      gxRect rect = regions[0].encloseRect(xform, evictions);
      for (std::size_t i = 1; i < regions.size(); ++i) {
        rect = rect.enclose(regions[i].encloseRect(xform, evictions));
      }
      return rect;
    });
  }
};

}  // namespace slow
