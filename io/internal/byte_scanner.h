/// A place in binary data, and the numbers that stand there.
#pragma once

#include <io/read_error.h>

#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>

/// Walks through bytes of either order.  Reading past the end throws "truncated".
class gx_ByteScanner {
 public:
  gx_ByteScanner(const void* bytes, std::size_t size)
      : begin_(static_cast<const unsigned char*>(bytes)), at_(begin_), end_(begin_ + size) {}

  void bigEndian(bool big) { big_ = big; }
  std::uint64_t byte() const { return static_cast<std::uint64_t>(at_ - begin_); }
  std::size_t left() const { return static_cast<std::size_t>(end_ - at_); }
  const unsigned char* at() const { return at_; }

  void want(std::uint64_t bytes, const char* what) const {
    if (bytes > left()) {
      throw gxReadError(gxReadError::Code::eTruncated, byte(), std::string("ends within ") + what);
    }
  }
  void skip(std::uint64_t bytes, const char* what) {
    want(bytes, what);
    at_ += bytes;
  }
  /// Reads one number of the type.
  template <class T>
  T read(const char* what) {
    want(sizeof(T), what);
    return readUnchecked<T>();
  }
  /// The same where `want` has been asked already.
  template <class T>
  T readUnchecked() {
    using Bits = std::conditional_t<
        sizeof(T) == 8, std::uint64_t,
        std::conditional_t<sizeof(T) == 4, std::uint32_t,
                           std::conditional_t<sizeof(T) == 2, std::uint16_t, std::uint8_t>>>;
    Bits bits = 0;
    for (std::size_t i = 0; i < sizeof(T); ++i) {
      const std::size_t place = big_ ? sizeof(T) - 1 - i : i;
      bits = static_cast<Bits>(bits | static_cast<Bits>(static_cast<Bits>(at_[i]) << (8 * place)));
    }
    at_ += sizeof(T);
    return std::bit_cast<T>(bits);
  }

 private:
  const unsigned char* begin_;
  const unsigned char* at_;
  const unsigned char* end_;
  bool big_ = false;
};

/// Appends a number in little-endian order.
template <class T>
void gx_appendLittle(T value, std::string& out) {
  unsigned char bytes[sizeof(T)];
  std::memcpy(bytes, &value, sizeof(T));
  if constexpr (std::endian::native == std::endian::big) {
    for (std::size_t i = 0; i < sizeof(T) / 2; ++i) std::swap(bytes[i], bytes[sizeof(T) - 1 - i]);
  }
  out.append(reinterpret_cast<const char*>(bytes), sizeof(T));
}
