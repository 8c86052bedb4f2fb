// Our reader of JSON lines beside nlohmann's SAX parser and simdjson's on-demand one, on the same lines in memory,
// taking turns, best of 25.  Each collects the coordinates; simdjson is told the order of the members.
// (Debian: libsimdjson-dev, nlohmann-json3-dev.)  Behind bench/tool_speed, which writes the polygons:
//
//   gxshape convert -o jsonl --limit 4000 build/bench/polygons-200000.wkt > build/bench/lines.jsonl
//   L="-lgxshape_io -lgxshape -lvelstd -lvelip -lveldispc -lsimdjson"
//   I="-Ibase -I. -Iinclude"
//   g++ -O2 -std=c++20 $I bench/parsers/json.cpp -o build/bench/json -Lbuild/release/lib $L
//   LD_LIBRARY_PATH=build/release/lib build/bench/json build/bench/lines.jsonl
#include <io/json.h>
#include <io/reader.h>

#include <simdjson.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

namespace {

struct Numbers final : nlohmann::json_sax<nlohmann::json> {
  std::vector<double> all;
  bool add(double number) {
    all.push_back(number);
    return true;
  }
  bool null() override { return true; }
  bool boolean(bool) override { return true; }
  bool number_integer(number_integer_t n) override { return add(static_cast<double>(n)); }
  bool number_unsigned(number_unsigned_t n) override { return add(static_cast<double>(n)); }
  bool number_float(number_float_t n, const string_t&) override { return add(n); }
  bool string(string_t&) override { return true; }
  bool binary(binary_t&) override { return true; }
  bool start_object(std::size_t) override { return true; }
  bool key(string_t&) override { return true; }
  bool end_object() override { return true; }
  bool start_array(std::size_t) override { return true; }
  bool end_array() override { return true; }
  bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception&) override {
    return false;
  }
};

double sumOf(const std::vector<double>& numbers) {
  double sum = 0.0;
  for (const double number : numbers) sum += number;
  return sum;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  std::ifstream file(argv[1]);
  std::vector<std::string> lines;
  std::size_t bytes = 0;
  for (std::string line; std::getline(file, line);) {
    bytes += line.size();
    line.reserve(line.size() + simdjson::SIMDJSON_PADDING);
    lines.push_back(std::move(line));
  }
  gxRecord record;
  const gxReadLimits limits;
  Numbers sax;
  simdjson::ondemand::parser parser;
  std::vector<double> found;
  const std::array<std::function<double(const std::string&)>, 3> readers = {
      [&](const std::string& line) {
        record.clear();
        gfReadJson(line, record, limits, "");
        double sum = 0.0;
        for (const auto& p : record.points) sum += p.x() + p.y();
        return sum;
      },
      [&](const std::string& line) {
        sax.all.clear();
        nlohmann::json::sax_parse(line, &sax);
        return sumOf(sax.all);
      },
      [&](const std::string& line) {
        found.clear();
        auto document = parser.iterate(line.data(), line.size(), line.capacity());
        for (auto ring : document["rings"].get_array()) {
          for (auto point : ring.get_array()) {
            for (const double number : point.get_array()) found.push_back(number);
          }
        }
        return sumOf(found);
      }};
  const std::array<const char*, 3> names = {"ours", "nlohmann, SAX", "simdjson, on demand"};
  std::array<double, 3> best{1e9, 1e9, 1e9};
  std::array<double, 3> sums{};
  for (int round = 0; round < 25; ++round) {
    for (std::size_t i = 0; i < readers.size(); ++i) {
      const auto start = std::chrono::steady_clock::now();
      sums[i] = 0.0;
      for (const auto& line : lines) sums[i] += readers[i](line);
      const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
      best[i] = (std::min)(best[i], taken.count());
    }
  }
  // The sum of the SAX parser has the ids in it, too.
  for (std::size_t i = 0; i < readers.size(); ++i) {
    std::printf("%-20s %7.1f MB/s  (sum %.3f)\n", names[i], static_cast<double>(bytes) / best[i] / 1e6,
                sums[i]);
  }
}
