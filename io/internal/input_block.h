/// What has been read of a stream and not yet been used.
#pragma once

#include <io/export.h>

#include <cstdint>
#include <istream>
#include <memory>
#include <string_view>

/// A window on a stream that moves forward: `fill` appends what the stream has, `drop` gives the front free.
class GXSHAPE_IO_API gx_InputBlock {
 public:
  static constexpr std::size_t kBlock = std::size_t{1} << 20;

  explicit gx_InputBlock(std::istream& stream) : stream_(stream) {}

  std::string_view text() const { return {buffer_.get() + from_, to_ - from_}; }
  /// Returns where the window begins in the stream.
  std::uint64_t byte() const { return byte_; }
  /// Reads more, what there is without waiting for a whole block; false at the end of the stream.
  bool fill();
  bool atEnd() const { return atEnd_; }
  void drop(std::size_t bytes) {
    from_ += bytes;
    byte_ += bytes;
  }

 private:
  std::istream& stream_;
  void makeRoom(std::size_t bytes);

  // Not a string, which would fill with zeros what is to be read over.
  std::unique_ptr<char[]> buffer_ = std::make_unique<char[]>(1);
  std::size_t capacity_ = 0;
  std::size_t from_ = 0;
  std::size_t to_ = 0;
  std::uint64_t byte_ = 0;
  bool atEnd_ = false;
};
