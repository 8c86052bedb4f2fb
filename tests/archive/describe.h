/// Turns a persistent object into text that tells every stored bit of it and what is shared with what.
#pragma once

#include <ch_core/cntrtmpl.h>
#include <cntr/contour.h>
#include <cntr/region.h>
#include <cntr/regionst.h>
#include <velstd/archive.h>
#include <velstd/circle.h>
#include <velstd/line.h>
#include <velstd/line_seg.h>
#include <velstd/rect.h>
#include <velstd/registry.h>
#include <velstd/xform_base.h>

#include <bit>
#include <cstdint>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace archive_test {

/// A registered class of the tests: a list of objects that share what they share.
class ShapeList : public gxPersistent, public gxRepBase {
 public:
  std::vector<gxPtrHandle_const<gxContour>> shapes;
  static gxPersistent* make() { return new ShapeList; }

 protected:
  void dispatchSerialize(gxArchive& archive) override;
};

class Description {
 public:
  explicit Description(const gxPersistent& object) { add(object); }
  const std::string& text() const { return text_; }

 private:
  void word(const std::string& text) { text_ += text + ' '; }
  void number(double value) {
    char text[20];
    std::snprintf(text, sizeof text, "%016llx",
                  static_cast<unsigned long long>(std::bit_cast<std::uint64_t>(value)));
    word(text);
  }
  void integer(long value) { word(std::to_string(value)); }
  void point(const gxVector<2>& p) {
    number(p.x());
    number(p.y());
  }

  template <class T>
  void handles(const char* name, const std::vector<T>& handles) {
    word(name);
    for (const auto& handle : handles) this->handle(handle.get());
    word("end");
  }
  void handle(const gxPersistent* object) {
    if (object == nullptr) {
      word("null");
      return;
    }
    const auto [place, isNew] = seen_.try_emplace(dynamic_cast<const void*>(object), seen_.size());
    word("#" + std::to_string(place->second));
    if (isNew) add(*object);
  }

  void addContour(const gxContour& contour) {
    word("label");
    integer(static_cast<long>(contour.label()));
    word(contour.gxContour::isClosed() ? "closed" : "open");
    word("remembers");
    integer(contour.cachedVectorSize());
    word("points");
    for (const gxVector<2>& p : contour.points()) point(p);
  }
  void addEdges(const gxContourT<gxEdgelet>& contour) {
    word("data");
    for (const gxEdgelet& edgelet : contour.data()) {
      point(edgelet.position());
      integer(edgelet.magnitude());
      integer(edgelet.angle().toByte());
    }
    word("xform");
    handle(contour.dataFromPointsXform().get());
  }

  void add(const gxPersistent& object) {
    word(gf_ClassName(typeid(object)));
    if (const auto* contour = dynamic_cast<const gxContour*>(&object)) addContour(*contour);
    if (const auto* region = dynamic_cast<const gxRegion*>(&object)) handles("holes", region->holes());
    if (const auto* edges = dynamic_cast<const gxContourT<gxEdgelet>*>(&object)) addEdges(*edges);
    if (const auto* region = dynamic_cast<const gxRegionT<gxEdgelet>*>(&object)) {
      handles("holesT", region->holes());
    }
    if (const auto* set = dynamic_cast<const gxRegionSet*>(&object)) {
      integer(set->cachedVectorSize());
      handles("regions", set->regions());
    }
    if (const auto* set = dynamic_cast<const gxRegionSetT<gxEdgelet>*>(&object)) {
      handles("regionsT", set->regionsT());
    }
    if (const auto* list = dynamic_cast<const ShapeList*>(&object)) handles("shapes", list->shapes);
    addBaseShape(object);
  }

  void addBaseShape(const gxPersistent& object) {
    if (const auto* line = dynamic_cast<const gxLine*>(&object)) {
      point(line->point());
      point(line->direction());
    }
    if (const auto* segment = dynamic_cast<const gxLineSeg*>(&object)) {
      point(segment->p1());
      point(segment->p2());
    }
    if (const auto* rect = dynamic_cast<const gxRect*>(&object)) {
      point(rect->origin());
      point(rect->corner());
      point(rect->size());
    }
    if (const auto* circle = dynamic_cast<const gxCircle*>(&object)) {
      point(circle->center());
      number(circle->radius());
    }
    if (const auto* linear = dynamic_cast<const gx2XformLinear*>(&object)) {
      for (int i = 0; i < 7; ++i) number(linear->xform().stored(i));
    }
    if (const auto* rigid = dynamic_cast<const gx2Rigid*>(&object)) {
      number(rigid->angle().toDouble());
      point(rigid->translation());
    }
  }

  std::string text_;
  std::map<const void*, std::size_t> seen_;
};

inline std::string describe(const gxPersistent& object) {
  return Description(object).text();
}

inline const gx_Instantiator kShapeListIsKnown(typeid(ShapeList), &ShapeList::make);

inline void ShapeList::dispatchSerialize(gxArchive& archive) {
  archive || shapes;
}

}  // namespace archive_test
