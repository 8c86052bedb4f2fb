// Ragged arrays, threads, failures.  Blocks of shapes are handed out by one counter, so that a few large
// shapes do not leave a thread without work; every answer has its place, so that the order in which
// they come does not show.
#include "batch.h"

#include <io/read_error.h>
#include <velstd/budget.h>
#include <velstd/exception.h>

#include <algorithm>
#include <new>
#include <thread>

namespace {

const std::int64_t* dataOf(const Offsets& offsets) {
  return offsets.size() == 0 ? nullptr : offsets.data();
}

std::size_t asSize(std::int64_t number) {
  return static_cast<std::size_t>(number);
}

py::array_t<std::int64_t> offsetsOf(const std::vector<std::int64_t>& numbers) {
  py::array_t<std::int64_t> array(static_cast<py::ssize_t>(numbers.size()));
  std::copy(numbers.begin(), numbers.end(), array.mutable_data());
  return array;
}

// What all threads of a run look at.
struct Run {
  std::size_t count, block;
  std::atomic<std::size_t> next{0};
  std::atomic<std::size_t> done{0};
  std::atomic<bool> stop{false};
  std::mutex mutex;
  std::exception_ptr thrown;  // the first; of Python's it is dropped with the lock held

  void fail() {
    const std::scoped_lock lock(mutex);
    if (!thrown) thrown = std::current_exception();
    stop = true;
  }
};

void work(Run& run, const std::function<RangeWork()>& make, const std::function<void()>& between) {
  try {
    const RangeWork answer = make();
    while (!run.stop) {
      const std::size_t first = run.next.fetch_add(run.block);
      if (first >= run.count) return;
      const std::size_t end = (std::min)(first + run.block, run.count);
      answer(first, end);
      run.done += end - first;
      if (between) between();
    }
  } catch (...) {
    run.fail();
  }
}

// Lets signals through and tells the caller how far it is, now and then.
class Teller {
 public:
  Teller(Run& run, const py::object& progress) : run_(run), progress_(progress) {}

  void operator()() {
    const auto now = Clock::now();
    if (now - last_ < std::chrono::milliseconds(100)) return;
    last_ = now;
    const py::gil_scoped_acquire lock;
    tell();
  }

  /// With the lock held.
  void tell() {
    if (PyErr_CheckSignals() != 0) throw py::error_already_set();
    if (progress_.is_none()) return;
    const py::object answer = progress_(run_.done.load(), run_.count);
    if (py::isinstance<py::bool_>(answer) && !answer.cast<bool>())
      throw gxStopped(L"the progress callback said so");
  }

 private:
  using Clock = std::chrono::steady_clock;
  Run& run_;
  const py::object& progress_;
  Clock::time_point last_ = Clock::now();
};

}  // namespace

// ---- Ragged arrays ----------------------------------------------------------------------------------

Ragged::Ragged(PointArray coords, Offsets rings, Offsets parts, Offsets shapes, Flags closed)
    : coordsOwner_(std::move(coords)),
      ringsOwner_(std::move(rings)),
      partsOwner_(std::move(parts)),
      shapesOwner_(std::move(shapes)),
      closedOwner_(std::move(closed)),
      coords_(spanOf(coordsOwner_).data()),
      rings_(dataOf(ringsOwner_)),
      parts_(dataOf(partsOwner_)),
      shapes_(dataOf(shapesOwner_)),
      closed_(closedOwner_.size() == 0 ? nullptr : closedOwner_.data()),
      shapeCount_(static_cast<std::size_t>(shapesOwner_.size()) - 1) {}

PointSpan Ragged::ring(std::size_t i) const {
  const auto first = asSize(rings_[i]);
  auto count = asSize(rings_[i + 1]) - first;
  if (count > 1 && isClosed(i) && coords_[first] == coords_[first + count - 1]) --count;
  return {coords_ + first, count};
}

std::pair<std::size_t, std::size_t> Ragged::partsOf(std::size_t shape) const {
  if (parts_ != nullptr) return {asSize(shapes_[shape]), asSize(shapes_[shape + 1])};
  // Without parts a shape is one, which has the shape's number; without rings it has none.
  return {shape, shapes_[shape] == shapes_[shape + 1] ? shape : shape + 1};
}

std::pair<std::size_t, std::size_t> Ragged::ringsOf(std::size_t part) const {
  const std::int64_t* offsets = parts_ != nullptr ? parts_ : shapes_;
  return {asSize(offsets[part]), asSize(offsets[part + 1])};
}

std::optional<PointSpan> Ragged::onlyRing(std::size_t shape) const {
  const auto [firstPart, endPart] = partsOf(shape);
  if (endPart - firstPart != 1) return std::nullopt;
  const auto [first, end] = ringsOf(firstPart);
  if (end - first != 1 || !isClosed(first)) return std::nullopt;
  return ring(first);
}

void Ragged::get(std::size_t shape, gxRecord& record) const {
  record.clear();
  const auto [firstPart, endPart] = partsOf(shape);
  record.kind = endPart - firstPart > 1 ? gxRecord::Kind::eSet
                : isOpen(shape)         ? gxRecord::Kind::eOpen
                                        : gxRecord::Kind::eRegion;
  for (std::size_t part = firstPart; part < endPart; ++part) {
    const auto [firstRing, endRing] = ringsOf(part);
    for (std::size_t r = firstRing; r < endRing; ++r) {
      const PointSpan points = ring(r);
      record.points.insert(record.points.end(), points.begin(), points.end());
      record.ringEnds.push_back(record.points.size());
    }
    record.endPart();
  }
  record.dropEmptyRing();
}

// ---- Failures ---------------------------------------------------------------------------------------

Failures::Failures(std::size_t count)
    : statusColumn_(static_cast<py::ssize_t>(count)),
      errorColumn_(static_cast<py::ssize_t>(count)),
      statuses_(statusColumn_.mutable_data()),
      errors_(errorColumn_.mutable_data()) {
  std::fill(statuses_, statuses_ + count, std::int8_t{0});
  std::fill(errors_, errors_ + count, std::int64_t{0});
}

void Failures::add(std::size_t shape, const std::exception& thrown) {
  Text text{shape, "internal", 0, thrown.what()};
  if (const auto* ours = dynamic_cast<const gxException*>(&thrown)) {
    text.number = ours->errorNumber();
    const std::size_t colon = text.text.find(": ");
    text.name = text.text.substr(0, colon);
    text.text = colon == std::string::npos ? "" : text.text.substr(colon + 2);
  } else if (dynamic_cast<const std::bad_alloc*>(&thrown) != nullptr) {
    text.name = "out_of_memory";
  }
  statuses_[shape] = static_cast<std::int8_t>(gxStatus::eFailed);
  errors_[shape] = text.number;
  const std::scoped_lock lock(mutex_);
  texts_.push_back(std::move(text));
}

py::list Failures::texts() {
  std::sort(texts_.begin(), texts_.end(),
            [](const Text& a, const Text& b) { return a.shape < b.shape; });
  py::list list;
  for (const Text& t : texts_) list.append(py::make_tuple(t.shape, t.name, t.number, t.text));
  return list;
}

py::tuple tableOf(const Columns& columns, Failures& failures) {
  return py::make_tuple(columns.block(), failures.statuses(), failures.errors(), failures.texts());
}

// ---- Threads ----------------------------------------------------------------------------------------

void forRanges(std::size_t count, unsigned threads, const py::object& progress,
               const std::function<RangeWork()>& make) {
  if (threads == 0) threads = (std::max)(1U, std::thread::hardware_concurrency());
  threads = static_cast<unsigned>((std::min)(std::size_t{threads}, (std::max)(count, std::size_t{1})));
  Run run;
  run.count = count;
  run.block = std::clamp(count / (std::size_t{threads} * 32), std::size_t{1}, std::size_t{256});
  Teller teller(run, progress);
  {
    const py::gil_scoped_release release;
    std::vector<std::thread> others;
    try {
      for (unsigned i = 1; i < threads; ++i) others.emplace_back([&] { work(run, make, nullptr); });
    } catch (...) {
      run.fail();
    }
    work(run, make, [&] { teller(); });
    for (auto& other : others) other.join();
  }
  if (run.thrown) std::rethrow_exception(run.thrown);
  if (count > 0) teller.tell();
}

void forEach(std::size_t count, unsigned threads, const py::object& progress,
             const std::function<Work()>& make) {
  forRanges(count, threads, progress, [&]() -> RangeWork {
    return [one = make()](std::size_t first, std::size_t last) {
      for (std::size_t i = first; i < last; ++i) one(i);
    };
    // The analyzer loses sight of what std::function holds.
  });  // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks)
}

// ---- Shapes that were made --------------------------------------------------------------------------

void MadeShapes::set(std::size_t shape, const gxRecord& record) {
  shapes_[shape] = {record.points, record.ringEnds, record.partEnds,
                    record.kind == gxRecord::Kind::eOpen};
}

py::tuple MadeShapes::arrays() const {
  std::size_t points = 0;
  for (const One& one : shapes_) points += one.points.size();
  py::array_t<double> coords(std::vector<py::ssize_t>{static_cast<py::ssize_t>(points), 2});
  auto* to = reinterpret_cast<gxVector<2>*>(coords.mutable_data());
  std::vector<std::int64_t> rings{0};
  std::vector<std::int64_t> parts{0};
  std::vector<std::int64_t> shapes{0};
  std::vector<bool> closed;
  for (const One& one : shapes_) {
    const auto firstPoint = rings.back();
    const auto firstRing = static_cast<std::int64_t>(rings.size()) - 1;
    to = std::copy(one.points.begin(), one.points.end(), to);
    for (const auto end : one.ringEnds) {
      rings.push_back(firstPoint + static_cast<std::int64_t>(end));
      closed.push_back(!one.isOpen);
    }
    for (const auto end : one.partEnds) parts.push_back(firstRing + static_cast<std::int64_t>(end));
    shapes.push_back(static_cast<std::int64_t>(parts.size()) - 1);
  }
  py::array_t<bool> flags(static_cast<py::ssize_t>(closed.size()));
  std::copy(closed.begin(), closed.end(), flags.mutable_data());
  return py::make_tuple(coords, offsetsOf(rings), offsetsOf(parts), offsetsOf(shapes), flags);
}
