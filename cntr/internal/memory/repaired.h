/// The repaired form of a shape, computed once.
#pragma once

#include <cntr/internal/memo/published.h>
#include <cntr/internal/memory/computation_count.h>
#include <velstd/handle.h>

/// Assigns the repaired form that is remembered, or, where there is none, the one that `repair(form)` makes,
/// which is then remembered; where that is news, `published()` is called before the assignment.  `result`
/// may be the shape that remembers, or owned by it: the form is held by a handle meanwhile.
/// Throws: as `repair` does, with nothing remembered and `result` untouched.
template <class Shape, class Repair, class Published>
void gx_assignRepaired(const gx_Once<gxPtrHandle_const<Shape>>& memory, gx_Computation what,
                       const Repair& repair, const Published& published, Shape& result) {
  gxPtrHandle_const<Shape> form;
  if (const auto* known = memory.get()) {
    form = *known;
  } else {
    gx_countComputation(what);
    const auto made = gfMakeHandle<Shape>();
    repair(*made);
    if (memory.publish(made)) published();
    form = made;
  }
  result = *form;
}
