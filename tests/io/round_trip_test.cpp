// Covers io/writer.cpp
// Covers io/number_writer.cpp
// Covers io/internal/json_rings.cpp
#include <io/records.h>

#include <gtest/gtest.h>
#include <io/json.h>
#include <io/number_writer.h>
#include <support/random_doubles.h>
#include <velstd/number_text.h>

#include <algorithm>
#include <charconv>
#include <iterator>
#include <limits>

namespace {

using Kind = gxRecord::Kind;

std::vector<gxRecord> randomRecords(int count, std::uint64_t seed) {
  std::vector<gxRecord> records;
  for (int i = 0; i < count; ++i) records.push_back(randomRecord(seed + static_cast<std::uint64_t>(i)));
  return records;
}

// Columns of points have no rows for a record without points, and tell records apart by id alone.
std::vector<gxRecord> fitFor(gxFormat format, std::vector<gxRecord> records) {
  if (format != gxFormat::eCsv) return records;
  std::erase_if(records, [](const gxRecord& r) { return r.points.empty(); });
  for (std::size_t i = 0; i < records.size(); ++i) records[i].id = {std::to_string(i), true, true};
  return records;
}

void expectSame(gxFormat format, const std::vector<gxRecord>& given,
                const std::vector<gxRecord>& found) {
  SCOPED_TRACE(gfFormatName(format));
  ASSERT_EQ(given.size(), found.size());
  int different = 0;
  for (std::size_t i = 0; i < given.size() && different < 5; ++i) {
    const gxRecord held = asHeldBy(format, given[i]);
    if (held.sameAs(found[i])) continue;
    ++different;
    std::string a;
    std::string b;
    gfAppendJson(held, a);
    gfAppendJson(found[i], b);
    ADD_FAILURE() << "record " << i << "\n" << a << "\n" << b;
  }
}

}  // namespace

TEST(RoundTrip, EveryFormatHoldsRandomRecordsBitByBit) {
  constexpr std::uint64_t kSeed = 1700;
  SCOPED_TRACE(kSeed);
  for (const gxFormat format : everyFormat()) {
    const auto records = fitFor(format, randomRecords(1500, kSeed));
    expectSame(format, records, allOf(written(records, format)));
  }
}

namespace {

void expectEveryPair(const std::vector<gxRecord>& records) {
  for (const gxFormat first : everyFormat()) {
    const auto once = allOf(written(fitFor(first, records), first));
    for (const gxFormat second : everyFormat()) {
      const auto fit = fitFor(second, once);
      expectSame(second, fit, allOf(written(fit, second)));
    }
  }
}

}  // namespace

// Edge points apart: a file of columns has those of magnitude and angle for all of its records or for none.
TEST(RoundTrip, TheDataFilesGoThroughEveryPairOfFormats) {
  std::vector<gxRecord> plain = filedRecords();
  std::vector<gxRecord> edges;
  std::copy_if(plain.begin(), plain.end(), std::back_inserter(edges),
               [](const gxRecord& r) { return r.hasEdges(); });
  std::erase_if(plain, [](const gxRecord& r) { return r.hasEdges(); });
  ASSERT_GT(plain.size(), 400U);
  ASSERT_GT(edges.size(), 20U);
  expectEveryPair(plain);
  expectEveryPair(edges);
}

TEST(RoundTrip, EdgePointsKeepMagnitudeAndAngle) {
  gxRecord record;
  record.kind = Kind::eRegion;
  record.points = {{0, 0}, {4, 0}, {0, 3}};
  record.endRing(true);
  record.endPart();
  record.magnitudes = {0, 300, 65535};
  record.angles = {0, 128, 255};
  for (const gxFormat format :
       {gxFormat::eJsonl, gxFormat::eCsv, gxFormat::eRagged, gxFormat::eNpz, gxFormat::eArchive}) {
    const auto found = allOf(written({record}, format));
    ASSERT_EQ(found.size(), 1U) << gfFormatName(format);
    EXPECT_EQ(found[0].magnitudes, record.magnitudes) << gfFormatName(format);
    EXPECT_EQ(found[0].angles, record.angles) << gfFormatName(format);
  }
}

TEST(RoundTrip, NumbersThatAreNoneSurviveInText) {
  gxRecord record;
  record.kind = Kind::eOpen;
  const double inf = std::numeric_limits<double>::infinity();
  record.points = {{std::numeric_limits<double>::quiet_NaN(), 0.0}, {inf, -inf}, {-0.0, 5e-324}};
  record.endRing(false);
  record.endPart();
  for (const gxFormat format : everyFormat()) {
    const auto found = allOf(written({record}, format));
    ASSERT_EQ(found.size(), 1U) << gfFormatName(format);
    ASSERT_EQ(found[0].points.size(), 3U) << gfFormatName(format);
    EXPECT_NE(found[0].points[0].x(), found[0].points[0].x()) << gfFormatName(format);
    EXPECT_EQ(found[0].points[1], gxVector<2>(inf, -inf)) << gfFormatName(format);
    EXPECT_TRUE(std::signbit(found[0].points[2].x())) << gfFormatName(format);
    EXPECT_EQ(found[0].points[2].y(), 5e-324) << gfFormatName(format);
  }
}

TEST(RoundTrip, AFileOfNoRecordsIsReadAsNone) {
  for (const gxFormat format : everyFormat()) {
    EXPECT_TRUE(allOf(written({}, format)).empty()) << gfFormatName(format);
  }
}

TEST(NumberWriter, WritesWhatTheLibrarysTextOfNumbersIs) {
  constexpr std::uint64_t kSeed = 41;
  SCOPED_TRACE(kSeed);
  RandomDoubles random(kSeed);
  const auto check = [](double value) {
    std::string text;
    gfAppendNumber(value, text);
    ASSERT_EQ(text, gfNumberText(value));
  };
  for (const double value : {0.0,
                             -0.0,
                             1.0,
                             1e-3,
                             9.99e-4,
                             1e6,
                             999999.5,
                             1e15,
                             0x1p53,
                             0x1p53 + 2,
                             1e21,
                             1e-7,
                             1e-6,
                             9.99999e-7,
                             1.000001,
                             0.1 + 0.2,
                             999999999.999999,
                             1e9 - 0.5,
                             1e9 + 0.5,
                             1e9 + 0.000001,
                             std::numeric_limits<double>::quiet_NaN(),
                             -std::numeric_limits<double>::infinity()}) {
    check(value);
    check(-value);
  }
  for (int i = 0; i < 30000; ++i) {
    check(random.anyFinite());
    check(random.withExponent(-14, 24));
    check(random.whole(1000000) / 1000.0);
    const double millionths = random.whole(1000000) / 1e6 + 1e3 * random.whole(1000000);
    check(millionths);
    check(-std::nextafter(millionths, 0.0));
  }
}
