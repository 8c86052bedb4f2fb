// Each format by hand: what the text or the bytes are, and what they mean.
// Covers io/archive_records.cpp
// Covers io/csv.cpp
// Covers io/format.cpp
// Covers io/geojson.cpp
// Covers io/internal/cut_binary.cpp
// Covers io/internal/cut_lines.cpp
// Covers io/internal/cut_objects.cpp
// Covers io/internal/cutter.h
// Covers io/json_lines.cpp
// Covers io/npz.cpp
// Covers io/ragged.cpp
// Covers io/read_error.cpp
// Covers io/reader.cpp
// Covers io/record.cpp
// Covers io/wkb.cpp
// Covers io/wkt.cpp
// Covers io/internal/byte_scanner.h
// Covers io/internal/input_block.cpp
#include <io/records.h>

#include <cntr/regionst.h>
#include <gtest/gtest.h>
#include <io/archive_records.h>
#include <io/csv.h>
#include <io/json.h>
#include <io/ragged.h>
#include <io/wkb.h>
#include <io/wkt.h>

#include <sstream>

namespace {

using Kind = gxRecord::Kind;
using Points = std::vector<gxVector<2>>;
using Ends = std::vector<std::size_t>;

gxRecord fromWkt(const std::string& text) {
  gxRecord record;
  gfReadWkt(text, record);
  return record;
}

std::string toWkt(const gxRecord& record) {
  std::string text;
  gfAppendWkt(record, text);
  return text;
}

std::string wordOf(const std::string& wkt) {
  try {
    fromWkt(wkt);
    return "ok";
  } catch (const gxReadError& error) {
    return error.name();
  }
}

}  // namespace

// ---- Records -------------------------------------------------------------------------------------------------

TEST(Record, BecomesARegionWithItsHoles) {
  const gxRecord plate =
      fromWkt("POLYGON ((0 0, 40 0, 40 30, 0 30), (25 10, 35 10, 35 20, 25 20), (1 1, 2 1, 2 2))");
  const gxRegion region = plate.toRegion();
  ASSERT_EQ(region.holes().size(), 2U);
  EXPECT_EQ(region.area(true), 1200 - 100 - 0.5);
  EXPECT_EQ(region.holes()[0]->points()[0], gxVector<2>(25, 10));
  EXPECT_FALSE(region.inside({30, 15}, true));
  EXPECT_EQ(plate.holeCount(), 2U);
}

TEST(Record, HolesThatTheSetterRefusesAreTakenAsTheyAre) {
  for (const char* text :
       {"POLYGON ((0 0, 4 0, 4 4, 0 4), (0 0, 2 1, 1 2))",
        "POLYGON ((0 0, 4 0, 4 4, 0 4), (2 2, 9 2, 9 3))", "POLYGON ((0 0), (2 2, 9 2, 9 3))",
        "POLYGON ((1e308 0, 1e308 1, 0 1), (0 0, 1 1, 1 0))"}) {
    const gxRecord record = fromWkt(text);
    gxRecord back;
    back.assign(record.toRegion());
    EXPECT_TRUE(back.sameAs(record)) << text;
  }
}

TEST(Record, ASetComesBackAsItWas) {
  const gxRecord set =
      fromWkt("MULTIPOLYGON (((0 0, 1 0, 0 1)), ((5 5, 9 5, 9 9, 5 9), (6 6, 7 6, 7 7)))");
  gxRecord back;
  back.assign(set.toSet());
  EXPECT_TRUE(back.sameAs(set));
  EXPECT_EQ(set.holeCount(), 1U);
  EXPECT_EQ(set.partEnds, (Ends{1, 3}));
}

TEST(Record, IslandsInHolesBecomeParts) {
  gxRegion hole(Points{{1, 1}, {8, 1}, {8, 8}, {1, 8}});
  hole.addHole(Points{{3, 3}, {5, 3}, {5, 5}, {3, 5}});
  gxRegion plate(Points{{0, 0}, {9, 0}, {9, 9}, {0, 9}});
  plate.addHole(hole);
  plate.label(7);
  gxRecord record;
  record.assign(plate);
  EXPECT_EQ(record.kind, Kind::eSet);
  EXPECT_EQ(record.partEnds, (Ends{2, 3}));
  EXPECT_EQ(record.id.text, "7");
}

TEST(Record, ARingLosesItsRepeatedLastPointOnce) {
  EXPECT_EQ(fromWkt("POLYGON ((0 0, 1 0, 0 1, 0 0))").points.size(), 3U);
  EXPECT_EQ(fromWkt("POLYGON ((0 0, 1 0, 0 0, 0 0))").points.size(), 3U);
  EXPECT_EQ(fromWkt("POLYGON ((0 0))").points.size(), 1U);
  EXPECT_EQ(fromWkt("LINESTRING (0 0, 1 0, 0 0)").points.size(), 3U);
}

// ---- Well-known text -------------------------------------------------------------------------------------------

TEST(Wkt, EveryKind) {
  EXPECT_EQ(fromWkt("POLYGON EMPTY").kind, Kind::eRegion);
  EXPECT_EQ(fromWkt("linearring(0 0,1 0,0 1,0 0)").kind, Kind::eRegion);
  EXPECT_EQ(fromWkt("MultiPolygon Empty").kind, Kind::eSet);
  EXPECT_EQ(fromWkt(" LINESTRING ( 0 0 , 1 1 ) ").kind, Kind::eOpen);
  EXPECT_EQ(fromWkt("POINT EMPTY").kind, Kind::ePoints);
  EXPECT_EQ(fromWkt("MULTIPOINT (1 2, 3 4)").points, (Points{{1, 2}, {3, 4}}));
  EXPECT_EQ(fromWkt("MULTIPOINT ((1 2), (3 4))").points, (Points{{1, 2}, {3, 4}}));
  EXPECT_EQ(fromWkt("GEOMETRYCOLLECTION EMPTY").kind, Kind::eEmpty);
}

TEST(Wkt, SpaceOfEveryKindMayStandBetweenWords) {
  EXPECT_EQ(fromWkt("\tPOLYGON\t(\t( 0\t0 ,\r1 0\n,\t0  1\t)\r\n)\r").points,
            (Points{{0, 0}, {1, 0}, {0, 1}}));
  EXPECT_THROW(fromWkt("POINT (1\v2)"), gxReadError);
  EXPECT_THROW(fromWkt("POINT (1\xa0"
                       "2)"),
               gxReadError);
}

TEST(Wkt, MoreCoordinatesAreDroppedAndRemembered) {
  const gxRecord record = fromWkt("SRID=4326;POLYGON ZM ((0 0 7 8, 1 0 7 8, 0 1 7 8))");
  EXPECT_EQ(record.points, (Points{{0, 0}, {1, 0}, {0, 1}}));
  EXPECT_TRUE(record.hadMore);
  EXPECT_FALSE(fromWkt("POINT (1 2)").hadMore);
  EXPECT_TRUE(fromWkt("POINT (1 2 3)").hadMore);
}

TEST(Wkt, WhatIsWrongHasItsWord) {
  EXPECT_EQ(wordOf("GEOMETRYCOLLECTION (POINT (1 2))"), "unsupported");
  EXPECT_EQ(wordOf("CIRCULARSTRING (0 0, 1 1, 2 0)"), "unsupported");
  EXPECT_EQ(wordOf("CUBE (1 2)"), "bad_syntax");
  EXPECT_EQ(wordOf("POLYGON (0 0, 1 1)"), "bad_syntax");
  EXPECT_EQ(wordOf("POINT (1 2"), "truncated");
  EXPECT_EQ(wordOf("POINT (1 2) POINT"), "bad_syntax");
  EXPECT_EQ(wordOf("POINT (1)"), "bad_number");
  EXPECT_EQ(wordOf("POINT (1 2 3 4 5)"), "bad_syntax");
  EXPECT_EQ(wordOf("POINT (1 nan(7))"), "bad_number");
  EXPECT_EQ(wordOf("POINT (+1 -inf)"), "ok");
  EXPECT_EQ(wordOf("POINT (+-1 2)"), "bad_number");
}

TEST(Wkt, IsWrittenWithTheFewestDigits) {
  EXPECT_EQ(toWkt(fromWkt("polygon((0.10 0,1e5 0,-0.0 1e21,0.1 0),(1 1,2 2,3 1))")),
            "POLYGON ((0.1 0, 100000 0, -0 1e+21, 0.1 0), (1 1, 2 2, 3 1, 1 1))");
  EXPECT_EQ(toWkt(fromWkt("MULTIPOLYGON (EMPTY, ((0 0, 1 0, 0 1)))")),
            "MULTIPOLYGON (EMPTY, ((0 0, 1 0, 0 1, 0 0)))");
  EXPECT_EQ(toWkt(fromWkt("MULTIPOINT ((1 2))")), "POINT (1 2)");
}

// ---- Well-known binary ---------------------------------------------------------------------------------------

TEST(Wkb, BytesOfAPolygonInBothOrders) {
  std::string digits;
  gfAppendWkbHex(fromWkt("POLYGON ((0 0, 1 0, 0 2))"), digits);
  EXPECT_EQ(digits,
            "010300000001000000040000000000000000000000000000000000000000000000"
            "0000F03F0000000000000000000000000000000000000000"
            "0000004000000000000000000000000000000000");
  gxRecord big;
  gfReadWkbHex(
      "00000000010000000000000000"
      "4000000000000000",
      big);
  EXPECT_EQ(big.points, (Points{{0, 2}}));
  EXPECT_EQ(big.kind, Kind::ePoints);
}

TEST(Wkb, ARegionOfNothingHasNoRings) {
  gxRecord nothing;
  nothing.kind = Kind::eRegion;
  std::string digits;
  gfAppendWkbHex(nothing, digits);
  EXPECT_EQ(digits, "010300000000000000");
}

TEST(Wkb, WithReferenceSystemAndHeight) {
  gxRecord record;
  gfReadWkbHex("01010000A0E6100000000000000000F03F00000000000000400000000000000840", record);
  EXPECT_EQ(record.points, (Points{{1, 2}}));
  EXPECT_TRUE(record.hadMore);
  record.clear();
  gfReadWkbHex("01E9030000000000000000F03F00000000000000400000000000000840", record);
  EXPECT_EQ(record.points, (Points{{1, 2}}));
}

TEST(Wkb, WhatIsWrongHasItsWordAndPlace) {
  const auto tell = [](const std::string& digits) {
    gxRecord record;
    try {
      gfReadWkbHex(digits, record);
      return std::string("ok");
    } catch (const gxReadError& error) {
      return std::string(error.name()) + ' ' + std::to_string(error.byte());
    }
  };
  EXPECT_EQ(tell("0201000000"), "bad_syntax 0");
  EXPECT_EQ(tell("01010000000"), "truncated 10");
  EXPECT_EQ(tell("01010000zz"), "bad_syntax 8");
  EXPECT_EQ(tell("0107000000010000000101"), "unsupported 0");
  EXPECT_EQ(tell("0101000000000000000000F03F000000000000004000"), "bad_syntax 42");
}

// ---- JSON -----------------------------------------------------------------------------------------------------

TEST(Json, TheSameShapeInEverySpelling) {
  gxRecord wanted = fromWkt("POLYGON ((0 0, 4 0, 0 4), (1 1, 2 1, 1 2))");
  for (
      const char* text :
      {R"({"type":"region","rings":[[[0,0],[4,0],[0,4]],[[1,1],[2,1],[1,2]]]})",
       R"({"rings":[[[0,0],[4,0],[0,4],[0,0]],[[1,1],[2,1],[1,2]]],"type":"region","more":{"a":[1,null,true]}})",
       R"({"outer":[[0,0],[4,0],[0,4]],"holes":[[[1,1],[2,1],[1,2]]]})"}) {
    gxRecord record;
    gfReadJson(text, record);
    EXPECT_TRUE(record.sameAs(wanted)) << text;
  }
}

TEST(Json, IdsByAnotherNameAndKind) {
  gxRecord record;
  gfReadJson(R"({"id":5,"name":"x","points":[[1,2,3]]})", record, {}, "name");
  EXPECT_EQ(record.id, (gxRecordId{"x", true, false}));
  EXPECT_EQ(record.kind, Kind::eRegion);
  EXPECT_TRUE(record.hadMore);
  record.clear();
  gfReadJson(R"({"id":null,"points":[[1,2]],"type":"points"})", record);
  EXPECT_FALSE(record.id.isGiven);
  EXPECT_EQ(record.kind, Kind::ePoints);
}

TEST(GeoJson, FeaturesCollectionsAndBareGeometries) {
  const std::string point = R"({"coordinates":[1,2],"type":"Point"})";
  EXPECT_EQ(allOf(point).at(0).points, (Points{{1, 2}}));
  const auto both = allOf(R"({"type":"Feature","id":7,"geometry":)" + point + "}\n" + point);
  ASSERT_EQ(both.size(), 2U);
  EXPECT_EQ(both[0].id.text, "7");
  EXPECT_EQ(both[1].number, 2U);
  const auto all = allOf(
      R"({"name":"features","type":"FeatureCollection","crs":{"a":["features"]},"features":[{"type":"Feature","geometry":null,"properties":{"k":"]}"}},)"
      R"({"type":"Feature","properties":{"n":"q"},"geometry":{"type":"MultiPolygon","coordinates":[[[[0,0],[1,0],[0,1],[0,0]]],[]]}}],"after":[1,{"x":"}"}]})",
      {.format = gxFormat::eUnknown, .limits = {}, .idField = "n"});
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(all[0].kind, Kind::eEmpty);
  EXPECT_EQ(all[1].partEnds, (Ends{1, 1}));
  EXPECT_EQ(all[1].id.text, "q");
}

TEST(GeoJson, LaidOutOverManyLines) {
  const auto all = allOf(
      "{\r\n\t\"type\" : \"FeatureCollection\",\n\t\"features\" : "
      "[\n\t\t{\n\t\t\t\"type\":\t\"Feature\",\r\n \"id\"\n:\t7,"
      "\"geometry\": {\n\"type\": "
      "\"Polygon\",\n\"coordinates\":\n[\n[\n[\n0\n,\n0.5\n]\n,\t[\t1\t,\t0\t]\r,\r[\r0\r,\r1\r]\n]\t]"
      "\r}\n}\n]\n}\n");
  ASSERT_EQ(all.size(), 1U);
  EXPECT_EQ(all[0].id.text, "7");
  EXPECT_EQ(all[0].points, (Points{{0, 0.5}, {1, 0}, {0, 1}}));
}

TEST(GeoJson, WhatIsWrongHasItsWord) {
  using Words = std::vector<std::string>;
  const auto tell = [](const std::string& geometry) {
    return outcomes("{\"features\":[{\"type\":\"Feature\",\"geometry\":" + geometry +
                    "},{\"type\":\"Feature\",\"geometry\":null}]}");
  };
  EXPECT_EQ(tell(R"({"type":"GeometryCollection","geometries":[]})"), (Words{"unsupported", "ok"}));
  EXPECT_EQ(tell(R"({"type":"Cube","coordinates":[]})"), (Words{"bad_type", "ok"}));
  EXPECT_EQ(tell(R"({"type":"Polygon"})"), (Words{"bad_syntax", "ok"}));
  EXPECT_EQ(tell(R"({"type":"Polygon","coordinates":[[[1,"a"]]]})"), (Words{"bad_type", "ok"}));
}

// ---- CSV --------------------------------------------------------------------------------------------------------

TEST(Csv, RecordsByIdOrByEmptyLines) {
  EXPECT_EQ(allOf("0,0\n1,0\n0,1\n").size(), 1U);
  EXPECT_EQ(allOf("0,0\n1,0\n\n0,1\n").size(), 2U);
  const auto named = allOf("y,name,x,id\n2,n,1,a\n4,n,3,a\n6,n,5,\"b, c\"\n");
  ASSERT_EQ(named.size(), 2U);
  EXPECT_EQ(named[0].points, (Points{{1, 2}, {3, 4}}));
  EXPECT_EQ(named[1].id, (gxRecordId{"b, c", true, false}));
}

TEST(Csv, RingsPartsAndTypes) {
  const auto all = allOf(
      "id,ring,x,y,type\n1,0,0,0,\n1,0,9,0,\n1,0,0,9,\n1,1,1,1,\n1,1,2,1,\n1,1,1,2,\n2,0,5,5,open\n2,0,"
      "6,6,open\n");
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(all[0].ringEnds, (Ends{3, 6}));
  EXPECT_EQ(all[0].partEnds, (Ends{2}));
  EXPECT_EQ(all[1].kind, Kind::eOpen);
}

TEST(Csv, ALineFeedInQuotesEndsNoLine) {
  const auto all = allOf("id,x,y\n\"a\n\nb\",1,2\n\"a\n\nb\",3,4\n\"c \"\"\n\",7,8\n");
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(all[0].id.text, "a\n\nb");
  EXPECT_EQ(all[0].points, (Points{{1, 2}, {3, 4}}));
  EXPECT_EQ(all[1].id.text, "c \"\n");
  EXPECT_EQ(all[1].points, (Points{{7, 8}}));
}

TEST(Csv, ARecordOfTooManyRowsIsPassedOverToItsLast) {
  using Words = std::vector<std::string>;
  gxReadOptions options{.format = gxFormat::eCsv};
  options.limits.recordBytes = 60;
  std::string rows;
  for (int i = 0; i < 20; ++i) rows += "a," + std::to_string(i) + ",7\n";
  const std::string after = "b,1,2\nb,3,4\nb,5,6\n";
  EXPECT_EQ(outcomes("id,x,y\n" + rows + after, options), (Words{"too_long", "ok"}));
  EXPECT_EQ(outcomes("id,x,y\n" + rows + "\n" + after, options), (Words{"too_long", "ok"}));
  EXPECT_EQ(outcomes("id,x,y\n" + rows, options), Words{"too_long"});
}

TEST(Csv, WhatIsWrongHasItsWord) {
  using Words = std::vector<std::string>;
  EXPECT_EQ(outcomes("1,2\n3\n\n5,6\n"), (Words{"bad_syntax", "ok"}));
  EXPECT_EQ(outcomes("1,2\n3,x\n\n5,6\n"), (Words{"bad_number", "ok"}));
  EXPECT_EQ(outcomes("1,2\n3,\n\n5,6\n"), (Words{"bad_number", "ok"}));
  EXPECT_EQ(outcomes("x,z\n1,2\n"), Words{"bad_syntax!"});
  EXPECT_EQ(outcomes("x,y,x\n1,2,3\n"), Words{"bad_syntax!"});
  EXPECT_EQ(outcomes("x,y,type\n1,2,cube\n"), Words{"bad_type"});
  EXPECT_EQ(outcomes("x,y,magnitude,angle\n1,2,70000,3\n\n1,2,7,256\n\n1,2,7,255\n"),
            (Words{"bad_number", "bad_number", "ok"}));
}

// ---- Arrays and archives -------------------------------------------------------------------------------------

TEST(Ragged, OffsetsThatFallOrEndEarlyAreRefused) {
  std::string body;
  gfAppendRagged(fromWkt("POLYGON ((0 0, 1 0, 0 1), (2 2, 3 2, 2 3))"), body);
  gxRecord record;
  gfReadRagged(body, record);
  EXPECT_EQ(record.points.size(), 6U);
  for (const auto& [at, byte] :
       {std::pair{28, 9}, {36, 1}, {36, 7}, {0, 9}, {1, 8}, {8, 2}, {16, 7}, {16, 5}, {23, 1}}) {
    std::string broken = body;
    broken[static_cast<std::size_t>(at)] = static_cast<char>(byte);
    record.clear();
    EXPECT_THROW(gfReadRagged(broken, record), gxReadError) << at << ' ' << byte;
  }
}

TEST(Ragged, BodiesAreAsLongAsTheirCountsSay) {
  std::string body;
  gfAppendRagged(fromWkt("POLYGON ((0 0, 1 0, 0 1))"), body);
  const auto told = [](const std::string& text) {
    gxRecord record;
    try {
      gfReadRagged(text, record);
    } catch (const gxReadError& error) {
      return error.name() + std::string(" at ") + std::to_string(error.byte());
    }
    return std::string("ok");
  };
  const std::string size = std::to_string(body.size());
  EXPECT_EQ(told(body), "ok");
  EXPECT_EQ(told(body + "x"), "bad_syntax at " + size);
  EXPECT_EQ(told(body.substr(0, body.size() - 1)), "truncated at " + std::to_string(body.size() - 1));
}

TEST(Ragged, WhatIsWrongWithTheFramesHasItsPlace) {
  using namespace std::string_literals;
  const auto told = [](const std::string& file) {
    std::istringstream stream(file);
    gxRecord record;
    try {
      gxRecordReader reader(stream);
      while (reader.next(record)) {}
    } catch (const gxReadError& error) {
      return std::string(error.name()) + " at " + std::to_string(error.byte()) + ": " + error.cause();
    }
    return "ok"s;
  };
  const std::string mark(gnRaggedMark);
  const std::string good = mark + "\1\0\0\0\0\0\0\0"s;
  EXPECT_EQ(told(good), "ok");
  EXPECT_EQ(told(mark + "\2\0\0\0\0\0\0\0"s), "unsupported at 8: version 2 is not read");
  EXPECT_EQ(told(good.substr(0, 15)), "truncated at 15: ends within its head");
  EXPECT_EQ(told(good + "\5"), "truncated at 16: ends within the length of a record");
  EXPECT_EQ(told(good + "\5\0\0"s), "truncated at 16: ends within the length of a record");
  EXPECT_EQ(told(good + "\5\0\0\0abcd"s), "truncated at 16: ends within a record");
}

TEST(Npz, WhatIsWrongIsToldWithItsIndex) {
  gxRaggedArrays arrays;
  arrays.add(fromWkt("POLYGON ((0 0, 1 0, 0 1))"));
  const std::string file = arrays.file();
  EXPECT_EQ(gxRaggedArrays(file).size(), 1U);
  const auto tell = [&](const char* find, const char* replace) {
    std::string broken = file;
    const std::size_t at = broken.find(find);
    broken.replace(at, std::string(replace).size(), replace);
    try {
      static_cast<void>(gxRaggedArrays(broken));
      return std::string("ok");
    } catch (const gxReadError& error) {
      return std::string(error.name());
    }
  };
  EXPECT_EQ(tell("ring_offsets", "king"), "bad_syntax");
  EXPECT_EQ(tell("<f8", "<c8"), "bad_type");
  EXPECT_EQ(tell("<f8", ">f8"), "unsupported");
  EXPECT_EQ(tell("False", "True "), "unsupported");
  EXPECT_EQ(tell("(3, 2)", "(9, 2)"), "truncated");
  std::string deflated = file;
  deflated[8] = 8;
  EXPECT_EQ(outcomes(deflated), std::vector<std::string>{"compressed!"});
  EXPECT_EQ(outcomes(file.substr(0, 200)).back().substr(0, 9), "truncated");
}

TEST(Archive, ADamagedObjectIsToldAfterThoseBeforeIt) {
  std::string file = written({fromWkt("POLYGON ((0 0, 1 0, 0 1))"), fromWkt("LINESTRING (0 0, 1 1)")},
                             gxFormat::eArchive);
  EXPECT_EQ(outcomes(file), (std::vector<std::string>{"ok", "ok"}));
  file[file.size() - 20] ^= 1;
  EXPECT_EQ(outcomes(file), (std::vector<std::string>{"ok", "bad_checksum"}));
  file.resize(file.size() - 5);
  EXPECT_EQ(outcomes(file), (std::vector<std::string>{"ok", "truncated"}));
}

// ---- Telling formats apart --------------------------------------------------------------------------------------

TEST(Format, IsToldByTheFirstBytes) {
  EXPECT_EQ(gfDetectFormat("POLYGON ((0 0"), gxFormat::eWkt);
  EXPECT_EQ(gfDetectFormat("\n  point(1 2)"), gxFormat::eWkt);
  EXPECT_EQ(gfDetectFormat("0101000000"), gxFormat::eWkb);
  EXPECT_EQ(gfDetectFormat("010100000"), gxFormat::eCsv);
  EXPECT_EQ(gfDetectFormat("0101000000,5"), gxFormat::eCsv);
  EXPECT_EQ(gfDetectFormat("-1,2"), gxFormat::eCsv);
  EXPECT_EQ(gfDetectFormat("x,y\n"), gxFormat::eCsv);
  EXPECT_EQ(gfDetectFormat("\"x\",\"y\"\n"), gxFormat::eCsv);
  EXPECT_EQ(gfDetectFormat(R"({"type":"Feature"})"), gxFormat::eGeoJson);
  EXPECT_EQ(gfDetectFormat(R"({"type":"region"})"), gxFormat::eJsonl);
  EXPECT_EQ(gfDetectFormat("PK\3\4"), gxFormat::eNpz);
  EXPECT_EQ(gfDetectFormat(" \n"), gxFormat::eUnknown);
  EXPECT_EQ(gfDetectFormat("<svg>"), gxFormat::eUnknown);
}

TEST(Format, EveryWordIsReadBack) {
  for (const gxFormat format : everyFormat()) EXPECT_EQ(gfFormatOf(gfFormatName(format)), format);
  EXPECT_EQ(gfFormatOf("dxf"), gxFormat::eUnknown);
}

TEST(Reader, NumbersAndPlacesGoOnOverEmptyLines) {
  std::istringstream in("\nPOINT (1 2)\n\nPOINT (3 4)");
  gxRecordReader reader(in);
  gxRecord record;
  ASSERT_TRUE(reader.next(record));
  EXPECT_EQ(record.byte, 1U);
  ASSERT_TRUE(reader.next(record));
  EXPECT_EQ(record.number, 2U);
  EXPECT_EQ(record.byte, 14U);
  EXPECT_FALSE(reader.next(record));
  EXPECT_EQ(reader.bytesCut(), 25U);
}

TEST(Reader, RecordsLongerThanABlockAreWhole) {
  std::string text = "LINESTRING (0 0";
  for (int i = 1; i < 300000; ++i) text += ", " + std::to_string(i) + " 1";
  text += ")\nPOINT (1 2)\n";
  const auto all = allOf(text);
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(all[0].points.size(), 300000U);
}
