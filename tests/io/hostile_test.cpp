// Input that nobody wrote in good faith: each is told, none harms, and the next good record is answered.
// Covers io/internal/text_scanner.cpp
// Covers io/internal/json_scanner.cpp
#include <io/records.h>

#include <gtest/gtest.h>
#include <io/json.h>
#include <io/number_writer.h>
#include <io/wkb.h>
#include <io/wkt.h>
#include <support/random_doubles.h>

#include <cstdlib>
#include <limits>
#include <sstream>

namespace {

using Words = std::vector<std::string>;

std::string jsonOutcome(const std::string& line) {
  const auto all =
      outcomes(line + "\n{\"id\":9,\"rings\":[[[0,0],[1,0],[0,1]]]}\n", {.format = gxFormat::eJsonl});
  EXPECT_EQ(all.size(), 2U) << line;
  EXPECT_EQ(all.back(), "ok") << line;
  return all.front();
}

std::string wktOutcome(const std::string& line) {
  const auto all = outcomes(line + "\nPOINT (1 2)\n", {.format = gxFormat::eWkt});
  EXPECT_EQ(all.size(), 2U) << line;
  EXPECT_EQ(all.back(), "ok") << line;
  return all.front();
}

std::string digitsOf(double value) {
  std::string text;
  gfAppendNumber(value, text);
  return text;
}

// The coordinates of a line, or what is wrong with it.
std::string reading(gxFormat format, const std::string& line) {
  std::istringstream stream(line + '\n');
  gxRecordReader reader(stream, {.format = format});
  gxRecord record;
  try {
    reader.next(record);
  } catch (const gxReadError& error) {
    return std::string(error.name()) + ": " + error.cause();
  }
  std::string text;
  for (const auto& p : record.points)
    text += digitsOf(p.x()) + ' ' + digitsOf(p.y()) + (std::signbit(p.y()) ? "-, " : ", ");
  return text;
}

// A text with some bytes changed, cut out, doubled, or cut off at the end.
std::string damaged(std::string text, RandomDoubles& random) {
  static const std::string kBytes =
      std::string("{}[](),:\"\\ \n\r0123456789eE+-.xnN") + '\0' + '\xff' + '\xed' + '\xc3';
  const int changes = 1 + random.whole(4);
  for (int i = 0; i < changes && !text.empty(); ++i) {
    const auto at = static_cast<std::size_t>(random.whole(static_cast<int>(text.size())));
    switch (random.whole(5)) {
      case 0:
        text[at] = kBytes[static_cast<std::size_t>(random.whole(static_cast<int>(kBytes.size())))];
        break;
      case 1: text.erase(at, static_cast<std::size_t>(1 + random.whole(5))); break;
      case 2: text.insert(at, text.substr(at / 2, 7)); break;
      case 3: text.resize(at); break;
      default: text[at] = static_cast<char>(random.whole(256)); break;
    }
  }
  return text;
}

int soakFactor() {
  return std::getenv("GXSHAPE_SOAK") != nullptr ? 100 : 1;
}

}  // namespace

TEST(Hostile, NumbersBeyondTheRangeAreTold) {
  EXPECT_EQ(wktOutcome("POINT (1e400 2)"), "bad_number");
  EXPECT_EQ(wktOutcome("POINT (-1e99999999999 2)"), "bad_number");
  EXPECT_EQ(jsonOutcome(R"({"points":[[1e400,2]]})"), "bad_number");
}

TEST(Hostile, NumbersTooSmallForADoubleAreZero) {
  gxRecord record;
  gfReadWkt("MULTIPOINT (1e-400 -1e-99999999999, 0.000e5 5e-324)", record);
  EXPECT_EQ(record.points[0], gxVector<2>(0.0, 0.0));
  EXPECT_TRUE(std::signbit(record.points[0].y()));
  EXPECT_EQ(record.points[1], gxVector<2>(0.0, 5e-324));
  std::string tiny = "POINT (0.";
  tiny.append(5000, '0');
  record.clear();
  gfReadWkt(tiny + "1 1" + std::string(400, '0') + "e-395)", record);
  EXPECT_EQ(record.points[0], gxVector<2>(0.0, 1e5));
}

TEST(Hostile, NumbersAreRoundedAsTheStandardLibraryDoes) {
  constexpr std::uint64_t kSeed = 7;
  SCOPED_TRACE(kSeed);
  RandomDoubles random(kSeed);
  for (int i = 0; i < 20000; ++i) {
    std::string text =
        std::to_string(random.whole(1000000000)) + std::to_string(random.whole(1000000000));
    text = text.substr(0, static_cast<std::size_t>(1 + random.whole(static_cast<int>(text.size()))));
    text.insert(static_cast<std::size_t>(1 + random.whole(static_cast<int>(text.size()))), ".");
    text += "5";
    gxRecord record;
    gfReadWkt("MULTIPOINT (-" + text + ' ' + text + "e3, " + text + " 00000000000000001)", record);
    ASSERT_EQ(record.points[0].x(), -std::strtod(text.c_str(), nullptr)) << text;
    ASSERT_EQ(record.points[0].y(), std::strtod((text + "e3").c_str(), nullptr)) << text;
    ASSERT_EQ(record.points[1].x(), std::strtod(text.c_str(), nullptr)) << text;
  }
}

// Away from the end of a record a shorter way reads most numbers.  It must take the same texts for numbers, and find
// the same values and mistakes, as the way that the last number of a record goes.
TEST(Hostile, ANumberIsReadAlikeWhateverFollows) {
  constexpr std::uint64_t kSeed = 11;
  SCOPED_TRACE(kSeed);
  RandomDoubles random(kSeed);
  const std::string space(20, ' ');
  const std::string kLetters = "0123456789012345678900..-+eEn,";
  for (int i = 0; i < 30000; ++i) {
    std::string text;
    for (int k = random.whole(10) + 1; k > 0; --k)
      text += kLetters[static_cast<std::size_t>(random.whole(static_cast<int>(kLetters.size())))];
    if (random.whole(2) == 0)
      text = std::to_string(random.whole(100000000)) + '.' + std::to_string(random.whole(100000000)) +
             text.substr(0, static_cast<std::size_t>(random.whole(2)));
    ASSERT_EQ(reading(gxFormat::eWkt, "MULTIPOINT (1 " + text + ')'),
              reading(gxFormat::eWkt, "MULTIPOINT (1 " + text + space + ')'));
    ASSERT_EQ(reading(gxFormat::eJsonl, "{\"points\":[[1," + text + "]]}"),
              reading(gxFormat::eJsonl, "{\"points\":[[1," + text + space + "]]}"));
  }
}

TEST(Hostile, JsonIsReadStrictly) {
  for (const char* number : {"01", "1.", ".5", "+1", "1e", "-", "0x10", "1e+", "1.2.3"}) {
    EXPECT_EQ(jsonOutcome(std::string("{\"points\":[[") + number + ",2]]}").substr(0, 4), "bad_")
        << number;
  }
  for (const char* bare : {"NaN", "Infinity", "nan"}) {
    EXPECT_EQ(jsonOutcome(std::string("{\"points\":[[") + bare + ",2]]}"), "bad_syntax") << bare;
  }
  for (const char* text :
       {"{\"points\":[[1,2],]}", "{\"points\":[[1 2]]}", "{\"points\" [[1,2]]}", "{\"points\":[[1,2]]}}",
        "{points:[[1,2]]}", "{\"points\":[[1,2]],}", "{,\"points\":[[1,2]]}"}) {
    EXPECT_EQ(jsonOutcome(text), "bad_syntax") << text;
  }
  EXPECT_EQ(jsonOutcome(R"({"points":[["NaN","-Infinity"]]})"), "ok");
}

TEST(Hostile, WrongTypesAreTold) {
  for (const char* text :
       {R"({"points":[[1,"2"]]})", R"({"points":[[1]]})", R"({"points":{}})", R"({"points":null})",
        R"({"rings":[1]})", R"({"type":7,"rings":[]})", R"({"type":"cube","rings":[]})",
        R"({"id":{},"rings":[]})", R"({"id":1.5,"rings":[]})", R"({"id":1e300,"rings":[]})",
        R"({"type":"set","rings":[]})", R"({"id":1})", R"([])",
        R"({"points":[[1,2]],"magnitudes":[1],"angles":[]})"}) {
    EXPECT_EQ(jsonOutcome(text), "bad_type") << text;
  }
}

TEST(Hostile, TextThatIsNoUtf8IsTold) {
  for (const char* id : {"\\ud800", "\\udc00", "\\ud800\\u0041", "\\ud800x", "\xff", "\xc0\x80",
                         "\xed\xa0\x80", "\xf5\x80\x80\x80", "\xe2\x82"}) {
    EXPECT_EQ(jsonOutcome(std::string("{\"id\":\"") + id + "\",\"rings\":[]}"), "bad_utf8") << id;
  }
  gxRecord record;
  gfReadJson(R"({"id":"\ud83d\ude42\u00e9\n","rings":[]})", record);
  EXPECT_EQ(record.id.text, "\xf0\x9f\x99\x82\xc3\xa9\n");
}

TEST(Hostile, NestingIsLimited) {
  for (const char* open : {"[", "{\"a\":"}) {
    std::string text = R"({"x":)";
    for (int i = 0; i < 100000; ++i) text += open;
    EXPECT_EQ(jsonOutcome(text), "too_deep");
  }
  EXPECT_EQ(jsonOutcome("{\"x\":" + std::string(60, '[') + std::string(60, ']') + ",\"rings\":[]}"),
            "ok");
}

TEST(Hostile, CountsThatTheBytesCannotHoldReserveNothing) {
  gxRecord record;
  for (const char* hex : {"0103000000FFFFFFFF", "010300000001000000FFFFFFFF", "0106000000FFFFFFFF",
                          "0102000000FFFFFFFF", "0104000000FFFFFF0F"}) {
    record.clear();
    EXPECT_THROW(gfReadWkbHex(hex, record), gxReadError) << hex;
    EXPECT_LT(record.points.capacity() + record.ringEnds.capacity(), 100U);
  }
}

TEST(Hostile, RecordsRingsPointsAndIdsAreLimited) {
  gxReadOptions options;
  options.limits.recordBytes = 200;
  const std::string longLine = "POINT (" + std::string(3000000, ' ') + "1 2)";
  EXPECT_EQ(outcomes("POINT (1 2)\n" + longLine + "\nPOINT (3 4)\n", options),
            (Words{"ok", "too_long", "ok"}));
  options.format = gxFormat::eGeoJson;
  EXPECT_EQ(outcomes(R"({"features":[{"type":"Feature","geometry":null,"x":")" + std::string(5000, '}') +
                         R"("},{"type":"Feature","geometry":null}]})",
                     options),
            (Words{"too_long", "ok"}));
  options = {};
  options.limits.points = 3;
  options.limits.rings = 2;
  EXPECT_EQ(
      outcomes("POLYGON ((0 0, 1 0, 1 1, 0 1))\nPOLYGON ((0 0), (1 1), (2 2))\nPOLYGON ((0 0, 1 0))\n",
               options),
      (Words{"too_many", "too_many", "ok"}));
  options = {.format = gxFormat::eJsonl};
  options.limits.idBytes = 4;
  EXPECT_EQ(outcomes("{\"id\":\"12345\",\"rings\":[]}\n{\"id\":\"1234\",\"rings\":[]}\n", options),
            (Words{"too_long", "ok"}));
}

TEST(Hostile, CompressedFilesAndArraysAreToldByName) {
  EXPECT_EQ(outcomes("\x1f\x8b\x08rest"), Words{"compressed!"});
  EXPECT_EQ(outcomes("\x28\xb5\x2f\xfdrest"), Words{"compressed!"});
  EXPECT_EQ(outcomes("[{\"rings\":[]}]"), Words{"unsupported!"});
  EXPECT_EQ(outcomes("<svg/>"), Words{"bad_syntax!"});
}

TEST(Hostile, CarriageReturnsMarksAndEmptyLinesDoNotMatter) {
  EXPECT_EQ(outcomes("\xef\xbb\xbfPOINT (1 2)\r\n\r\n\nPOINT (3 4)\r\n"), (Words{"ok", "ok"}));
  EXPECT_EQ(outcomes("\xef\xbb\xbf{\"rings\":[]}\r\n"), Words{"ok"});
  EXPECT_EQ(outcomes("\xef\xbb\xbfx,y\r\n1,2\r\n\r\n3,4"), (Words{"ok", "ok"}));
}

TEST(Hostile, BracesThatDoNotBalanceEndTheReading) {
  EXPECT_EQ(
      outcomes(
          R"({"type":"FeatureCollection","features":[{"type":"Feature","geometry":null},{"type":"Feature")"),
      (Words{"ok", "truncated!"}));
  EXPECT_EQ(outcomes(R"({"type":"FeatureCollection","features":[)"), Words{"truncated!"});
}

TEST(Hostile, ErrorsNameRecordByteAndCause) {
  std::istringstream in("POINT (1 2)\nPOINT (1 x)\n");
  gxRecordReader reader(in);
  gxRecord record;
  ASSERT_TRUE(reader.next(record));
  try {
    reader.next(record);
    FAIL();
  } catch (const gxReadError& error) {
    EXPECT_EQ(error.record(), 2U);
    EXPECT_EQ(error.byte(), 21U);
    EXPECT_STREQ(error.cause(), "number expected, found 'x'");
    EXPECT_STREQ(error.what(), "record 2, byte 21: number expected, found 'x'");
    EXPECT_STREQ(error.name(), "bad_number");
  }
  EXPECT_FALSE(reader.next(record));
}

TEST(Hostile, TenThousandDamagedFilesAreReadToTheirEnd) {
  constexpr std::uint64_t kSeed = 99;
  SCOPED_TRACE(kSeed);
  RandomDoubles random(kSeed);
  std::vector<gxRecord> records;
  for (std::uint64_t i = 0; i < 6; ++i) records.push_back(randomRecord(5000 + i));
  std::size_t refused = 0;
  std::size_t read = 0;
  for (const gxFormat format : everyFormat()) {
    const std::string text = written(records, format);
    for (int i = 0; i < 1250 * soakFactor(); ++i) {
      const auto all = outcomes(damaged(text, random),
                                {.format = random.whole(2) == 0 ? gxFormat::eUnknown : format});
      for (const auto& word : all) ++(word == "ok" ? read : refused);
      ASSERT_LE(all.size(), 200U);
    }
  }
  // The damage is noticed often, and what is whole beside it is read.
  EXPECT_GT(refused, 4000U);
  EXPECT_GT(read, 10000U);
}

TEST(Hostile, AGoodLineBehindADamagedOneIsAlwaysRead) {
  constexpr std::uint64_t kSeed = 123;
  SCOPED_TRACE(kSeed);
  RandomDoubles random(kSeed);
  for (const gxFormat format : {gxFormat::eWkt, gxFormat::eWkb, gxFormat::eJsonl}) {
    for (std::uint64_t i = 0; i < 1000; ++i) {
      std::string text = damaged(written({randomRecord(i)}, format), random) + "\n";
      text += written({randomRecord(4)}, format);
      const auto all = outcomes(text, {.format = format});
      ASSERT_FALSE(all.empty());
      ASSERT_EQ(all.back(), "ok") << text;
    }
  }
}
