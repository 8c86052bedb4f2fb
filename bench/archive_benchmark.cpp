// Storing and loading contours, beside the peers and a plain copy of the same points.
//
// The one parameter is the number of points; an item is a point.  Bytes per second count the points
// alone (16 bytes each), so that the rows compare; `bytes_per_point` is what the archive takes in all.
// Archive and loaded shape are made anew in each round; the rows named _reused fill memory that is
// there.  Blocks above 32 MB, as the edge points' last row needs, the C library takes from the system
// anew each time, and the fresh pages then cost more than filling them.
//
//  ours    gxArchive in memory, which also takes a checksum over all bytes and checks it.
//  copy    memcpy into a fresh block: the least that anybody can do.
//  cereal  a binary archive over a string stream, the points as one block of bytes; cereal_each, element
//          by element, which is what a vector of a structure gives without more ado.
//  boost_serialization  a binary archive over the string stream's buffer, the point declared bitwise
//          serializable, so that a vector is one block.
// Peers load from a stream buffer that looks at the stored bytes where they are.  Neither peer
// keeps a checksum.
#include "outlines.h"
#include "rows.h"

#include <benchmark/benchmark.h>
#include <ch_core/cntrtmpl.h>
#include <cntr/contour.h>
#include <velstd/archive.h>

#include <cstring>
#include <memory>
#include <sstream>
#include <streambuf>
#include <string>
#include <vector>

#ifdef GXSHAPE_HAVE_CEREAL
#  include <cereal/archives/binary.hpp>
#  include <cereal/types/vector.hpp>
#endif
#ifdef GXSHAPE_HAVE_BOOST_SERIALIZATION
#  include <boost/archive/binary_iarchive.hpp>
#  include <boost/archive/binary_oarchive.hpp>
#  include <boost/serialization/is_bitwise_serializable.hpp>
#  include <boost/serialization/vector.hpp>
#endif

// ---- What the peers store ------------------------------------------------------------------------

namespace peer {

struct Point {
  double x = 0.0;
  double y = 0.0;

  template <class Archive>
  void serialize(Archive& archive) {
    archive(x, y);
  }
};

struct Outline {
  std::vector<Point> points;
  bool closed = true;
  std::uint32_t label = 0;
};

// The same, element by element.
struct OutlineOfEach : Outline {};

#ifdef GXSHAPE_HAVE_CEREAL
template <class Archive>
void save(Archive& archive, const Outline& outline) {
  archive(outline.closed, outline.label, std::uint64_t{outline.points.size()});
  archive(cereal::binary_data(outline.points.data(), outline.points.size() * sizeof(Point)));
}
template <class Archive>
void load(Archive& archive, Outline& outline) {
  std::uint64_t size = 0;
  archive(outline.closed, outline.label, size);
  outline.points.resize(size);
  archive(cereal::binary_data(outline.points.data(), outline.points.size() * sizeof(Point)));
}
template <class Archive>
void save(Archive& archive, const OutlineOfEach& outline) {
  archive(outline.closed, outline.label, outline.points);
}
template <class Archive>
void load(Archive& archive, OutlineOfEach& outline) {
  archive(outline.closed, outline.label, outline.points);
}
#endif

}  // namespace peer

#ifdef GXSHAPE_HAVE_BOOST_SERIALIZATION
BOOST_IS_BITWISE_SERIALIZABLE(peer::Point)
#endif

namespace {

void countPoints(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * state.range(0));
  state.SetBytesProcessed(state.iterations() * state.range(0) * std::int64_t{sizeof(gxVector<2>)});
}

void countBytes(benchmark::State& state, std::size_t bytes) {
  state.counters["bytes_per_point"] = static_cast<double>(bytes) / static_cast<double>(state.range(0));
}

// ---- Plain copies --------------------------------------------------------------------------------

void copy(benchmark::State& state) {
  const std::vector<gxVector<2>> points = gx_wobblyOutline(state.range(0));
  const std::size_t size = points.size() * sizeof(gxVector<2>);
  for ([[maybe_unused]] const auto _ : state) {
    const auto target = std::make_unique_for_overwrite<unsigned char[]>(size);
    std::memcpy(target.get(), points.data(), size);
    benchmark::DoNotOptimize(target.get());
    benchmark::ClobberMemory();
  }
  countPoints(state);
}
BENCHMARK(copy)->Name("store/copy")->Apply(gx_allSizes);
BENCHMARK(copy)->Name("load/copy")->Apply(gx_allSizes);

void copyReused(benchmark::State& state) {
  const std::vector<gxVector<2>> points = gx_wobblyOutline(state.range(0));
  const std::size_t size = points.size() * sizeof(gxVector<2>);
  const auto target = std::make_unique<unsigned char[]>(size);
  for ([[maybe_unused]] const auto _ : state) {
    std::memcpy(target.get(), points.data(), size);
    benchmark::ClobberMemory();
  }
  countPoints(state);
}
BENCHMARK(copyReused)->Name("load_reused/copy")->Apply(gx_allSizes);

// ---- Ours ----------------------------------------------------------------------------------------

template <class Shape>
std::vector<unsigned char> stored(const Shape& shape) {
  gxArchive archive;
  archive.store(shape);
  return {archive.bytes().begin(), archive.bytes().end()};
}

bool isSame(const gxContour& a, const gxContour& b) {
  return a == b;
}
// The class's own comparison asks for the very same transform.
bool isSame(const gxContourT<gxEdgelet>& a, const gxContourT<gxEdgelet>& b) {
  return a.points() == b.points() && a.data() == b.data();
}

template <class Shape>
void timeStore(benchmark::State& state, const Shape& shape) {
  std::size_t bytes = 0;
  for ([[maybe_unused]] const auto _ : state) {
    gxArchive archive;
    archive.store(shape);
    bytes = archive.bytes().size();
    benchmark::DoNotOptimize(archive.bytes().data());
  }
  countPoints(state);
  countBytes(state, bytes);
}

template <class Shape>
void timeLoad(benchmark::State& state, const Shape& shape) {
  const std::vector<unsigned char> bytes = stored(shape);
  {
    gxArchive archive(bytes);
    Shape loaded;
    archive.load(loaded);
    if (!gx_agree(state, 1.0, isSame(loaded, shape) ? 1.0 : 0.0)) return;
  }
  for ([[maybe_unused]] const auto _ : state) {
    gxArchive archive(bytes);
    Shape loaded;
    archive.load(loaded);
    benchmark::DoNotOptimize(loaded.points().data());
  }
  countPoints(state);
}

void storeOurs(benchmark::State& state) {
  timeStore(state, gxContour(gx_wobblyOutline(state.range(0))));
}
BENCHMARK(storeOurs)->Name("store/ours")->Apply(gx_allSizes);

void loadOurs(benchmark::State& state) {
  timeLoad(state, gxContour(gx_wobblyOutline(state.range(0))));
}
BENCHMARK(loadOurs)->Name("load/ours")->Apply(gx_allSizes);

void loadReusedOurs(benchmark::State& state) {
  const std::vector<unsigned char> bytes = stored(gxContour(gx_wobblyOutline(state.range(0))));
  gxContour contour;
  for ([[maybe_unused]] const auto _ : state) {
    gxArchive archive(bytes);
    archive.load(contour);
    benchmark::DoNotOptimize(contour.points().data());
  }
  countPoints(state);
}
BENCHMARK(loadReusedOurs)->Name("load_reused/ours")->Apply(gx_allSizes);

gxContourT<gxEdgelet> edgelets(std::int64_t count) {
  std::vector<gxEdgelet> data;
  for (const gxVector<2>& p : gx_wobblyOutline(count))
    data.emplace_back(p, static_cast<unsigned short>(100), gxAngle8(7));
  return gxContourT<gxEdgelet>(data);
}

void storeEdgeletsOurs(benchmark::State& state) {
  timeStore(state, edgelets(state.range(0)));
}
BENCHMARK(storeEdgeletsOurs)->Name("store_edgelets/ours")->Apply(gx_allSizes);

void loadEdgeletsOurs(benchmark::State& state) {
  timeLoad(state, edgelets(state.range(0)));
}
BENCHMARK(loadEdgeletsOurs)->Name("load_edgelets/ours")->Apply(gx_allSizes);

// ---- The peers -----------------------------------------------------------------------------------

#if defined GXSHAPE_HAVE_CEREAL || defined GXSHAPE_HAVE_BOOST_SERIALIZATION

// Reads bytes where they are.
class BytesBuffer : public std::streambuf {
 public:
  explicit BytesBuffer(std::string& bytes) {
    setg(bytes.data(), bytes.data(), bytes.data() + bytes.size());
  }
};

template <class Shape>
Shape peerOutline(std::int64_t count) {
  Shape outline;
  outline.points.reserve(static_cast<std::size_t>(count));
  for (const gxVector<2>& p : gx_wobblyOutline(count)) outline.points.push_back({p.x(), p.y()});
  return outline;
}

// `save(stream, outline)` stores, `load(buffer, outline)` loads.
template <class Shape>
void timePeerStore(benchmark::State& state, const auto& save) {
  const auto outline = peerOutline<Shape>(state.range(0));
  std::size_t bytes = 0;
  for ([[maybe_unused]] const auto _ : state) {
    std::ostringstream stream;
    save(stream, outline);
    bytes = stream.view().size();
    benchmark::DoNotOptimize(stream.view().data());
  }
  countPoints(state);
  countBytes(state, bytes);
}

template <class Shape>
void timePeerLoad(benchmark::State& state, const auto& save, const auto& load) {
  const auto outline = peerOutline<Shape>(state.range(0));
  std::ostringstream stream;
  save(stream, outline);
  std::string bytes = stream.str();
  {
    BytesBuffer buffer(bytes);
    Shape loaded;
    load(buffer, loaded);
    const auto same = [](const peer::Point& a, const peer::Point& b) {
      return a.x == b.x && a.y == b.y;
    };
    const bool equal = std::equal(loaded.points.begin(), loaded.points.end(), outline.points.begin(),
                                  outline.points.end(), same);
    if (!gx_agree(state, 1.0, equal ? 1.0 : 0.0)) return;
  }
  for ([[maybe_unused]] const auto _ : state) {
    BytesBuffer buffer(bytes);
    Shape loaded;
    load(buffer, loaded);
    benchmark::DoNotOptimize(loaded.points.data());
  }
  countPoints(state);
}
#endif

#ifdef GXSHAPE_HAVE_CEREAL
const auto kCerealSave = [](std::ostringstream& stream, const auto& outline) {
  cereal::BinaryOutputArchive archive(stream);
  archive(outline);
};
const auto kCerealLoad = [](BytesBuffer& buffer, auto& outline) {
  std::istream stream(&buffer);
  cereal::BinaryInputArchive archive(stream);
  archive(outline);
};

template <class Shape>
void storeCereal(benchmark::State& state) {
  timePeerStore<Shape>(state, kCerealSave);
}
template <class Shape>
void loadCereal(benchmark::State& state) {
  timePeerLoad<Shape>(state, kCerealSave, kCerealLoad);
}
BENCHMARK(storeCereal<peer::Outline>)->Name("store/cereal")->Apply(gx_allSizes);
BENCHMARK(storeCereal<peer::OutlineOfEach>)->Name("store/cereal_each")->Apply(gx_allSizes);
BENCHMARK(loadCereal<peer::Outline>)->Name("load/cereal")->Apply(gx_allSizes);
BENCHMARK(loadCereal<peer::OutlineOfEach>)->Name("load/cereal_each")->Apply(gx_allSizes);
#endif

#ifdef GXSHAPE_HAVE_BOOST_SERIALIZATION
const auto kBoostSave = [](std::ostringstream& stream, const peer::Outline& outline) {
  boost::archive::binary_oarchive archive(*stream.rdbuf(), boost::archive::no_header);
  archive << outline.closed << outline.label << outline.points;
};
const auto kBoostLoad = [](BytesBuffer& buffer, peer::Outline& outline) {
  boost::archive::binary_iarchive archive(buffer, boost::archive::no_header);
  archive >> outline.closed >> outline.label >> outline.points;
};

void storeBoost(benchmark::State& state) {
  timePeerStore<peer::Outline>(state, kBoostSave);
}
BENCHMARK(storeBoost)->Name("store/boost_serialization")->Apply(gx_allSizes);

void loadBoost(benchmark::State& state) {
  timePeerLoad<peer::Outline>(state, kBoostSave, kBoostLoad);
}
BENCHMARK(loadBoost)->Name("load/boost_serialization")->Apply(gx_allSizes);
#endif

}  // namespace
