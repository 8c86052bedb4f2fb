// The words of the status, and how places print.
#include <gauge/places.h>

#include <ostream>

const char* gfStatusName(gxStatus status) {
  switch (status) {
    case gxStatus::eOk: return "ok";
    case gxStatus::eEmpty: return "empty";
    case gxStatus::eNotFinite: return "not_finite";
    case gxStatus::eBadArgument: return "bad_argument";
    case gxStatus::eNotClosed: return "not_closed";
    case gxStatus::eFlat: return "flat";
    case gxStatus::eNone: return "none";
    case gxStatus::eUndetermined: return "undetermined";
    case gxStatus::eUnbounded: return "unbounded";
    case gxStatus::eWorse: return "worse";
    case gxStatus::eCapped: return "capped";
    case gxStatus::eNotOnGrid: return "not_on_grid";
    case gxStatus::eNegative: return "negative";
    case gxStatus::eCrossing: return "crossing";
    case gxStatus::eStopped: return "stopped";
    case gxStatus::eFailed: return "failed";
  }
  return "unknown";
}

std::ostream& operator<<(std::ostream& out, gxStatus status) {
  return out << gfStatusName(status);
}

std::ostream& operator<<(std::ostream& out, const gxPlace& place) {
  if (!place.valid()) return out << "no place";
  return out << "ring " << place.ring << " edge " << place.edge << " t " << place.t << " at ("
             << place.point.x() << ", " << place.point.y() << ')';
}
