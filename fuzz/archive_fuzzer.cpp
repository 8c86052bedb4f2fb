// Loads whatever the fuzzer makes and asks every question of what comes out.
//
// An input is a frame, as in the golden files.  The checksum is put right first: a fuzzer cannot guess
// it, and what matters lies behind it.  Frames are kept under 16 KiB and coordinates as they come; the
// limits are lowered so that one input cannot be all nesting or all objects.
#include <archive/ask_everything.h>
#include <archive/record_writer.h>
#include <velstd/archive.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::size_t kHeader = 20;
constexpr std::size_t kSum = 8;
constexpr std::size_t kMostBytes = 16384;

// Storing what was loaded, and loading that, gives the same bytes again.
void storeAndLoadAgain(const gxPersistent& object) {
  gxArchive first;
  first.store(object);
  gxArchive in(first.bytes());
  const std::unique_ptr<gxPersistent> again = in.loadNew();
  gxArchive second;
  second.store(*again);
  if (first.bytes().size() != second.bytes().size() ||
      !std::equal(first.bytes().begin(), first.bytes().end(), second.bytes().begin())) {
    __builtin_trap();
  }
}

}  // namespace

// Among the seeds is a file of 1.6 MB, from which the fuzzer would conclude that inputs may be as long.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
  static std::string longest = "-max_len=" + std::to_string(kMostBytes);
  static std::vector<char*> arguments(*argv, *argv + *argc);
  const bool given = std::any_of(arguments.begin(), arguments.end(), [](const char* argument) {
    return std::string_view(argument).starts_with("-max_len=");
  });
  if (given) return 0;
  arguments.insert(arguments.begin() + 1, longest.data());
  *argc = static_cast<int>(arguments.size());
  arguments.push_back(nullptr);
  *argv = arguments.data();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size > kMostBytes) return -1;
  archive_test::Bytes frame(data, data + size);
  if (size >= kHeader + kSum) {
    const std::uint64_t payload = size - kHeader - kSum;
    for (std::size_t i = 0; i < 8; ++i) frame[12 + i] = static_cast<unsigned char>(payload >> (8 * i));
    archive_test::mendChecksum(frame);
  }
  gxArchive archive(frame);
  gxArchive::Limits limits;
  limits.objects = 64;
  limits.nesting = 32;
  archive.limits(limits);
  std::unique_ptr<gxPersistent> object;
  try {
    object = archive.loadNew();
  } catch (const gxArchive::Errors&) {
    return 0;
  }
  storeAndLoadAgain(*object);
  archive_test::askEverything(*object);
  return 0;
}
