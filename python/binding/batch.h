/// Work on ragged arrays of shapes by several threads, without an object of Python for any shape.
#pragma once

#include "binding.h"

#include <io/record.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

using Offsets = py::array_t<std::int64_t, py::array::c_style>;
using Flags = py::array_t<bool, py::array::c_style>;

/// Ragged arrays as the package hands them over, checked: offsets begin with 0, never fall and end at the
/// length of what they count.  Empty `parts`: the offsets of shapes count rings.  Empty `closed`: all are.
class Ragged {
 public:
  Ragged(PointArray coords, Offsets rings, Offsets parts, Offsets shapes, Flags closed);

  std::size_t size() const { return shapeCount_; }
  /// Returns the ring without the repeat of its first point.
  PointSpan ring(std::size_t i) const;
  bool isClosed(std::size_t ring) const { return closed_ == nullptr || closed_[ring]; }
  /// Returns the parts of a shape and the rings of a part, as the index of the first and of the one behind.
  std::pair<std::size_t, std::size_t> partsOf(std::size_t shape) const;
  std::pair<std::size_t, std::size_t> ringsOf(std::size_t part) const;
  std::pair<std::size_t, std::size_t> ringsOfShape(std::size_t shape) const {
    const auto [first, end] = partsOf(shape);
    return first == end ? std::pair(std::size_t{0}, std::size_t{0})
                        : std::pair(ringsOf(first).first, ringsOf(end - 1).second);
  }
  /// Returns the ring of a shape that is one closed ring, else nothing.
  std::optional<PointSpan> onlyRing(std::size_t shape) const;
  bool isOpen(std::size_t shape) const {
    const auto [first, end] = ringsOfShape(shape);
    return first < end && !isClosed(first);
  }
  /// Fills a record with a shape: a region, a set where there is not one part, an open contour.
  void get(std::size_t shape, gxRecord& record) const;

 private:
  PointArray coordsOwner_;
  Offsets ringsOwner_, partsOwner_, shapesOwner_;
  Flags closedOwner_;
  const gxVector<2>* coords_;
  const std::int64_t *rings_, *parts_, *shapes_;
  const bool* closed_;
  std::size_t shapeCount_;
};

/// What went wrong with single shapes: status 20 and a number in the columns, a text in a list.
class Failures {
 public:
  explicit Failures(std::size_t count);
  /// Computes one shape; what it throws becomes its row.  True where it did not throw.
  template <class Compute>
  bool guard(std::size_t shape, const Compute& compute) {
    try {
      compute();
      return true;
    } catch (const std::exception& thrown) {
      add(shape, thrown);
      return false;
    }
  }
  void status(std::size_t shape, gxStatus status) {
    statuses_[shape] = static_cast<std::int8_t>(status);
  }
  gxStatus status(std::size_t shape) const { return static_cast<gxStatus>(statuses_[shape]); }

  /// Return the columns, and the list of (shape, name, number, text) by shape.
  py::array statuses() const { return statusColumn_; }
  py::array errors() const { return errorColumn_; }
  py::list texts();

 private:
  struct Text {
    std::size_t shape;
    std::string name;
    long number;
    std::string text;
  };
  void add(std::size_t shape, const std::exception& thrown);

  py::array_t<std::int8_t> statusColumn_;
  py::array_t<std::int64_t> errorColumn_;
  std::int8_t* statuses_;
  std::int64_t* errors_;
  std::mutex mutex_;
  std::vector<Text> texts_;
};

/// Work on one index, or on those from the first up to the last, which is not among them; a worker of its
/// own for each thread.
using Work = std::function<void(std::size_t)>;
using RangeWork = std::function<void(std::size_t first, std::size_t last)>;

/// Calls the work for every index below `count`, in ranges of up to 256, by `threads` threads (0: as many as
/// there are cores), the calling one among them, with the interpreter's lock let go.  `make` is called once
/// for each thread and gives what works there.  No order is promised; work on different indexes touches
/// different memory.
///
/// At most ten times a second the calling thread takes the lock, lets signals through and calls
/// `progress(done, count)`, where that is not None; False ends the run.  The pool ends with the call, so a
/// fork never meets one.
/// Throws: gxStopped for that; what the work or the callback throws, the first of them.
void forRanges(std::size_t count, unsigned threads, const py::object& progress,
               const std::function<RangeWork()>& make);
/// The same, index by index.
void forEach(std::size_t count, unsigned threads, const py::object& progress,
             const std::function<Work()>& make);

/// Shapes that were made one by one, in any order, as the arrays of all: coords, ring, part and shape
/// offsets, closed flags.
class MadeShapes {
 public:
  explicit MadeShapes(std::size_t count) : shapes_(count) {}
  void set(std::size_t shape, const gxRecord& record);
  py::tuple arrays() const;

 private:
  struct One {
    Points points;
    std::vector<std::size_t> ringEnds, partEnds;
    bool isOpen = false;
  };
  std::vector<One> shapes_;
};

/// A block of columns, one behind the other, of shape (columns, count).
class Columns {
 public:
  Columns(std::size_t columns, std::size_t count)
      : block_(std::vector<py::ssize_t>{static_cast<py::ssize_t>(columns),
                                        static_cast<py::ssize_t>(count)}),
        data_(block_.mutable_data()),
        columns_(columns),
        count_(count) {
    std::fill(data_, data_ + columns * count, std::numeric_limits<double>::quiet_NaN());
  }
  double& at(std::size_t column, std::size_t row) { return data_[column * count_ + row]; }
  std::size_t columns() const { return columns_; }
  py::array block() const { return block_; }

 private:
  py::array_t<double> block_;
  double* data_;
  std::size_t columns_, count_;
};

/// Returns (block of columns, status, error, texts).
py::tuple tableOf(const Columns& columns, Failures& failures);
