#include <support/quad.h>
#include <support/slab_judge.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numeric>
#include <stdexcept>

namespace judge {

namespace {

__extension__ using Wide = __int128;

struct Fraction {
  Wide num;
  Wide den;  // above 0
};

bool less(const Fraction& a, const Fraction& b) {
  return a.num * b.den < b.num * a.den;
}
bool equal(const Fraction& a, const Fraction& b) {
  return a.num * b.den == b.num * a.den;
}
Quad quadOf(const Fraction& f) {
  return static_cast<Quad>(f.num) / static_cast<Quad>(f.den);
}

// An edge from left to right (upright ones from low to high), `way` −1 where the ring runs the other way.
struct Edge {
  std::int64_t x;
  std::int64_t y;
  std::int64_t dx;
  std::int64_t dy;
  int way;
  std::size_t ring;

  // The height at an x of that fraction, for an edge that is not upright.
  Fraction heightAt(const Fraction& at) const {
    return {static_cast<Wide>(y) * dx * at.den + (at.num - static_cast<Wide>(x) * at.den) * dy,
            static_cast<Wide>(dx) * at.den};
  }
};

std::int64_t whole(double value) {
  if (!(std::fabs(value) <= kMostWhole) || value != std::floor(value)) {
    throw std::invalid_argument("judgeBySlabs: no small whole number");
  }
  return static_cast<std::int64_t>(value);
}

std::vector<Edge> edgesOf(const Rings& rings) {
  std::vector<Edge> edges;
  for (std::size_t r = 0; r < rings.size(); ++r) {
    for (std::size_t i = 0; i < rings[r].size(); ++i) {
      const gxVector<2>& a = rings[r][i];
      const gxVector<2>& b = rings[r][(i + 1) % rings[r].size()];
      Edge e{whole(a.x()), whole(a.y()), whole(b.x()) - whole(a.x()), whole(b.y()) - whole(a.y()), 1, r};
      if (e.dx == 0 && e.dy == 0) continue;
      if (e.dx < 0 || (e.dx == 0 && e.dy < 0)) e = {e.x + e.dx, e.y + e.dy, -e.dx, -e.dy, -1, r};
      edges.push_back(e);
    }
  }
  return edges;
}

void addCrossing(const Edge& e, const Edge& f, std::vector<Fraction>& cuts) {
  const std::int64_t det = e.dx * f.dy - e.dy * f.dx;
  if (det == 0) return;
  const std::int64_t s = (f.x - e.x) * f.dy - (f.y - e.y) * f.dx;
  const std::int64_t t = (f.x - e.x) * e.dy - (f.y - e.y) * e.dx;
  const std::int64_t sign = det < 0 ? -1 : 1;
  if (s * sign < 0 || s * sign > det * sign || t * sign < 0 || t * sign > det * sign) return;
  cuts.push_back({static_cast<Wide>(e.x) * det * sign + static_cast<Wide>(s) * sign * e.dx, det * sign});
}

std::vector<Fraction> cutsOf(const std::vector<Edge>& edges) {
  std::vector<Fraction> cuts;
  for (std::size_t i = 0; i < edges.size(); ++i) {
    cuts.push_back({edges[i].x, 1});
    cuts.push_back({edges[i].x + edges[i].dx, 1});
    for (std::size_t j = i + 1; j < edges.size(); ++j) addCrossing(edges[i], edges[j], cuts);
  }
  std::sort(cuts.begin(), cuts.end(), less);
  cuts.erase(std::unique(cuts.begin(), cuts.end(), equal), cuts.end());
  return cuts;
}

// A piece of a slab between two edges; null below or above all.
struct Cell {
  const Edge* low;
  const Edge* high;
  std::size_t slab;
  bool held;
};

class Slabs {
 public:
  explicit Slabs(const Question& question)
      : question_(question), edges_(edgesOf(question.rings)), cuts_(cutsOf(edges_)) {
    for (std::size_t s = 0; s + 1 < cuts_.size(); ++s) fill(s);
    if (question.outer) keepWhatIsEnclosed();
  }

  Answer answer() const {
    Quad area = 0;
    Answer result;
    for (const Cell& cell : cells_) {
      if (cell.low == nullptr || cell.high == nullptr) continue;
      const Fraction middle = middleOf(cell.slab);
      const Quad width = quadOf(cuts_[cell.slab + 1]) - quadOf(cuts_[cell.slab]);
      const Quad low = quadOf(cell.low->heightAt(middle));
      const Quad high = quadOf(cell.high->heightAt(middle));
      if (cell.held) area += width * (high - low);
      result.samples.emplace_back(static_cast<double>(quadOf(middle)),
                                  static_cast<double>((low + high) / 2));
    }
    result.area = static_cast<double>(area);
    return result;
  }

 private:
  Fraction middleOf(std::size_t slab) const {
    const Fraction& a = cuts_[slab];
    const Fraction& b = cuts_[slab + 1];
    return {a.num * b.den + b.num * a.den, 2 * a.den * b.den};
  }

  void fill(std::size_t slab) {
    const Fraction middle = middleOf(slab);
    std::vector<std::pair<Fraction, const Edge*>> crossing;
    for (const Edge& e : edges_) {
      if (e.dx == 0 || less(cuts_[slab], {e.x, 1}) || less({e.x + e.dx, 1}, cuts_[slab + 1])) continue;
      Fraction height = e.heightAt(middle);
      height = {height.num, e.dx};  // the other factor of the denominator is the same for all
      crossing.emplace_back(height, &e);
    }
    std::sort(crossing.begin(), crossing.end(),
              [](const auto& a, const auto& b) { return less(a.first, b.first); });
    std::vector<int> windings(question_.rings.size(), 0);
    const Edge* below = nullptr;
    for (std::size_t i = 0; i < crossing.size(); ++i) {
      if (i == 0 || !equal(crossing[i - 1].first, crossing[i].first)) {
        cells_.push_back(
            {below, crossing[i].second, slab, below != nullptr && question_.holds(windings)});
        below = crossing[i].second;
      }
      windings[crossing[i].second->ring] += crossing[i].second->way;
    }
    cells_.push_back({below, nullptr, slab, false});
  }

  // ---- What is enclosed: cells joined across cuts where no upright edge parts them ----------------

  std::size_t find(std::size_t i) {
    while (root_[i] != i) i = root_[i] = root_[root_[i]];
    return i;
  }

  static bool lower(const Edge* a, const Edge* b, const Fraction& cut) {
    return less(a->heightAt(cut), b->heightAt(cut));
  }

  // Tells whether some of the line x = cut between the two heights is free of upright edges.
  bool open(const Fraction& low, const Fraction& high, const Fraction& cut) const {
    std::vector<std::pair<std::int64_t, std::int64_t>> walls;
    for (const Edge& e : edges_) {
      if (e.dx == 0 && equal({e.x, 1}, cut)) walls.emplace_back(e.y, e.y + e.dy);
    }
    std::sort(walls.begin(), walls.end());
    Fraction reached = low;
    for (const auto& [from, to] : walls) {
      if (!less(reached, high)) return false;
      if (less(reached, {from, 1})) return true;
      if (less(reached, {to, 1})) reached = {to, 1};
    }
    return less(reached, high);
  }

  void join(std::size_t i, std::size_t j, const Fraction& cut) {
    const Cell& a = cells_[i];
    const Cell& b = cells_[j];
    if (a.low == nullptr || a.high == nullptr || b.low == nullptr || b.high == nullptr)
      return joinEnds(i, j, cut);
    const Edge* low = lower(a.low, b.low, cut) ? b.low : a.low;
    const Edge* high = lower(a.high, b.high, cut) ? a.high : b.high;
    joinBetween(i, j, low, high, cut);
  }

  void joinBetween(std::size_t i, std::size_t j, const Edge* low, const Edge* high,
                   const Fraction& cut) {
    const Fraction from = low != nullptr ? low->heightAt(cut) : Fraction{-2 * kMostWhole, 1};
    const Fraction to = high != nullptr ? high->heightAt(cut) : Fraction{2 * kMostWhole, 1};
    if (less(from, to) && open(from, to, cut)) root_[find(i)] = find(j);
  }

  // Where a cell is unbounded, the bound is that of the other one.
  void joinEnds(std::size_t i, std::size_t j, const Fraction& cut) {
    const Cell& a = cells_[i];
    const Cell& b = cells_[j];
    const auto higher = [&](const Edge* p, const Edge* q) {
      if (p == nullptr || q == nullptr) return p == nullptr ? q : p;
      return lower(p, q, cut) ? q : p;
    };
    const auto deeper = [&](const Edge* p, const Edge* q) {
      if (p == nullptr || q == nullptr) return p == nullptr ? q : p;
      return lower(p, q, cut) ? p : q;
    };
    joinBetween(i, j, higher(a.low, b.low), deeper(a.high, b.high), cut);
  }

  void keepWhatIsEnclosed() {
    const std::size_t outside = cells_.size();
    root_.resize(outside + 1);
    std::iota(root_.begin(), root_.end(), std::size_t{0});
    for (std::size_t i = 0; i < cells_.size(); ++i) {
      const Cell& cell = cells_[i];
      if (cell.low == nullptr || cell.high == nullptr) root_[find(i)] = find(outside);
      if (cell.slab == 0) joinOutside(i, cuts_.front());
      if (cell.slab + 2 == cuts_.size()) joinOutside(i, cuts_.back());
      for (std::size_t j = i + 1; j < cells_.size() && cells_[j].slab <= cell.slab + 1; ++j) {
        if (cells_[j].slab == cell.slab + 1) join(i, j, cuts_[cell.slab + 1]);
      }
    }
    for (std::size_t i = 0; i < cells_.size(); ++i) cells_[i].held = find(i) != find(outside);
  }

  void joinOutside(std::size_t i, const Fraction& cut) {
    const Cell& cell = cells_[i];
    if (cell.low != nullptr && cell.high != nullptr) {
      joinBetween(i, cells_.size(), cell.low, cell.high, cut);
    }
  }

  const Question& question_;
  std::vector<Edge> edges_;
  std::vector<Fraction> cuts_;
  std::vector<Cell> cells_;
  std::vector<std::size_t> root_;
};

}  // namespace

Answer judgeBySlabs(const Question& question) {
  return Slabs(question).answer();
}

}  // namespace judge
