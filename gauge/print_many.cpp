// What many outlines and the columns over them print: how many rows, and how many of them are not ok.
#include <gauge/fit_many.h>
#include <gauge/measure_many.h>

#include <algorithm>
#include <ostream>

namespace {

std::ostream& printRows(std::ostream& out, const char* what, const std::vector<gxStatus>& status) {
  const auto fine = std::count(status.begin(), status.end(), gxStatus::eOk);
  return out << what << " of " << status.size() << " outlines, "
             << status.size() - static_cast<std::size_t>(fine) << " not ok";
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const gxOutlines& outlines) {
  return out << outlines.size() << " outlines in " << outlines.points().size() << " points";
}

std::ostream& operator<<(std::ostream& out, const gxMeasureColumns& columns) {
  return printRows(out, "measures", columns.status);
}

std::ostream& operator<<(std::ostream& out, const gxAreaColumns& columns) {
  return printRows(out, "areas", columns.status);
}

std::ostream& operator<<(std::ostream& out, const gxEnclosureColumns& columns) {
  return printRows(out, "enclosures", columns.status);
}

std::ostream& operator<<(std::ostream& out, const gxHullLists& hulls) {
  return printRows(out, "hulls", hulls.status);
}

std::ostream& operator<<(std::ostream& out, const gxLineColumns& columns) {
  return printRows(out, "lines", columns.status);
}

std::ostream& operator<<(std::ostream& out, const gxCircleColumns& columns) {
  return printRows(out, "circles", columns.status);
}

std::ostream& operator<<(std::ostream& out, const gxEllipseColumns& columns) {
  return printRows(out, "ellipses", columns.status);
}
