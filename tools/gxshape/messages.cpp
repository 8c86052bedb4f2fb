// Messages go to standard error; a line of progress is wiped before anything else is said.
#include "messages.h"

#include <io/json.h>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>

namespace {

constexpr std::uint64_t kMostTold = 10;

std::string rateOf(std::uint64_t records, double seconds) {
  return grouped(static_cast<std::uint64_t>(static_cast<double>(records) / (seconds > 0 ? seconds : 1)));
}

}  // namespace

std::string grouped(std::uint64_t number) {
  std::string text = std::to_string(number);
  for (std::size_t i = text.size(); i > 3; i -= 3) text.insert(i - 3, 1, ',');
  return text;
}

Messages::Messages(const Options& options) : options_(options) {
  const char* const terminal = std::getenv("TERM");
  const bool canRedraw = ::isatty(2) != 0 && (terminal == nullptr || std::strcmp(terminal, "dumb") != 0);
  showsProgress_ = !options.quiet && !options.lines && canRedraw;
}

void Messages::tell(const std::string& file, const Failure& failure) {
  ++failures_;
  clearProgress();
  if (options_.logJsonl) return tellAsJson(file, failure);
  if (options_.lines || failures_ > kMostTold) return;
  std::cerr << "gxshape: " << file << ": record " << failure.record << ", byte " << failure.byte << ": "
            << failure.message << '\n';
}

void Messages::warn(const std::string& text) {
  if (options_.quiet || options_.lines) return;
  clearProgress();
  std::cerr << "gxshape: " << text << '\n';
}

void Messages::progress(std::uint64_t records, std::uint64_t bytes, std::uint64_t size) {
  const double now = elapsed();
  if (!showsProgress_ || now < 1.0 || now - last_ < 0.2) return;
  last_ = now;
  std::string line = grouped(records) + " records";
  const std::string rate = rateOf(records, now);
  if (size > 0) {
    const double share = static_cast<double>(bytes) / static_cast<double>(size);
    const auto left = share > 0 ? static_cast<long>(now / share - now) : 0L;
    char text[96];
    std::snprintf(text, sizeof text, "  %.0f %%  %s/s  %ld:%02ld left", 100.0 * share, rate.c_str(),
                  left / 60, left % 60);
    line += text;
  } else {
    line += "  " + rate + "/s";
  }
  std::fprintf(stderr, "\r%-60s", line.c_str());
  shown_ = true;
}

void Messages::finish(std::uint64_t records) {
  clearProgress();
  if (!options_.logJsonl && !options_.lines && failures_ > kMostTold)
    std::cerr << "gxshape: " << grouped(failures_ - kMostTold) << " more records failed\n";
  if (!options_.time) return;
  const double all = elapsed();
  std::fprintf(stderr, "gxshape: %s records in %.3f s, %s/s\n", grouped(records).c_str(), all,
               rateOf(records, all).c_str());
}

void Messages::tellAsJson(const std::string& file, const Failure& failure) {
  std::string line = "{\"level\":\"error\",\"file\":";
  gfAppendJsonString(file == "(standard input)" ? "-" : file, line);
  line += ",\"record\":" + std::to_string(failure.record) + ",\"byte\":" + std::to_string(failure.byte) +
          ",\"code\":";
  gfAppendJsonString(failure.code, line);
  line += ",\"message\":";
  gfAppendJsonString(failure.message, line);
  std::cerr << line << "}\n";
}

void Messages::clearProgress() {
  if (shown_) std::fprintf(stderr, "\r%60s\r", "");
  shown_ = false;
}
