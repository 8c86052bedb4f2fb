#include <overlay/cgal_judge.h>

#include <CGAL/Arr_consolidated_curve_data_traits_2.h>
#include <CGAL/Arr_segment_traits_2.h>
#include <CGAL/Arrangement_2.h>
#include <CGAL/Exact_predicates_exact_constructions_kernel.h>

#include <map>
#include <utility>

namespace judge {

namespace {

using Kernel = CGAL::Exact_predicates_exact_constructions_kernel;
using Segments = CGAL::Arr_segment_traits_2<Kernel>;
using Traits = CGAL::Arr_consolidated_curve_data_traits_2<Segments, int>;
using Drawing = CGAL::Arrangement_2<Traits>;
using Exact = CGAL::Exact_kernel_selector<Kernel>::Exact_kernel::FT;
using Face = Drawing::Face_const_handle;

// What an edge of the input adds: each has a number of its own, as equal data would be kept only once.
struct Origin {
  std::size_t ring;
  bool leftToRight;
};

struct Input {
  std::vector<Traits::Curve_2> curves;
  std::vector<Origin> origins;
};

Input inputOf(const Rings& rings) {
  Input input;
  for (std::size_t r = 0; r < rings.size(); ++r) {
    for (std::size_t i = 0; i < rings[r].size(); ++i) {
      const Kernel::Point_2 a(rings[r][i].x(), rings[r][i].y());
      const gxVector<2>& end = rings[r][(i + 1) % rings[r].size()];
      const Kernel::Point_2 b(end.x(), end.y());
      if (a == b) continue;
      input.curves.emplace_back(Segments::Curve_2(a, b), static_cast<int>(input.origins.size()));
      input.origins.push_back({r, CGAL::lexicographically_xy_smaller(a, b)});
    }
  }
  return input;
}

struct Walk {
  const Drawing& drawing;
  const Input& input;
  std::map<Face, std::vector<int>> windings;
  std::vector<Face> pending;

  // The face on the left of an edge is one turn more than that on the right.
  void cross(Drawing::Halfedge_const_handle edge) {
    const Face next = edge->twin()->face();
    if (windings.count(next) != 0) return;
    std::vector<int> there = windings[edge->face()];
    const bool leftToRight = edge->direction() == CGAL::ARR_LEFT_TO_RIGHT;
    for (const int number : edge->curve().data()) {
      const Origin& origin = input.origins[static_cast<std::size_t>(number)];
      there[origin.ring] += origin.leftToRight == leftToRight ? -1 : 1;
    }
    windings[next] = std::move(there);
    pending.push_back(next);
  }

  void crossAll(Drawing::Ccb_halfedge_const_circulator around) {
    const auto first = around;
    do {
      cross(around);
    } while (++around != first);
  }

  void run(std::size_t rings) {
    windings[drawing.unbounded_face()] = std::vector<int>(rings, 0);
    pending.push_back(drawing.unbounded_face());
    while (!pending.empty()) {
      const Face face = pending.back();
      pending.pop_back();
      for (auto ccb = face->outer_ccbs_begin(); ccb != face->outer_ccbs_end(); ++ccb) crossAll(*ccb);
      for (auto ccb = face->inner_ccbs_begin(); ccb != face->inner_ccbs_end(); ++ccb) crossAll(*ccb);
    }
  }
};

// Adds twice the signed area that one walk around encloses; inner ones run clockwise.
void addArea(Drawing::Ccb_halfedge_const_circulator around, Exact& twice, Ring* samples) {
  const auto first = around;
  do {
    const Exact ax = CGAL::exact(around->source()->point().x());
    const Exact ay = CGAL::exact(around->source()->point().y());
    const Exact bx = CGAL::exact(around->target()->point().x());
    const Exact by = CGAL::exact(around->target()->point().y());
    twice += ax * by - bx * ay;
    if (samples == nullptr) continue;
    const auto& c = around->next()->target()->point();
    samples->emplace_back(CGAL::to_double(Exact((ax + bx + CGAL::exact(c.x())) / 3)),
                          CGAL::to_double(Exact((ay + by + CGAL::exact(c.y())) / 3)));
  } while (++around != first);
}

}  // namespace

Answer judgeByCgal(const Question& question) {
  const Input input = inputOf(question.rings);
  Drawing drawing;
  CGAL::insert(drawing, input.curves.begin(), input.curves.end());
  Walk walk{drawing, input, {}, {}};
  walk.run(question.rings.size());
  Answer answer;
  Exact twice = 0;
  for (const auto& [face, windings] : walk.windings) {
    if (face->is_unbounded()) continue;
    const bool held = question.outer || question.holds(windings);
    Exact area = 0;
    addArea(face->outer_ccb(), area, &answer.samples);
    for (auto ccb = face->inner_ccbs_begin(); ccb != face->inner_ccbs_end(); ++ccb) {
      addArea(*ccb, area, nullptr);
    }
    if (held) twice += area;
  }
  answer.area = CGAL::to_double(Exact(twice / 2));
  return answer;
}

}  // namespace judge
