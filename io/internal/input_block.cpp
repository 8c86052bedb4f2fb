// Reading ahead without blocking a partner that waits for an answer: the stream is asked to wait for one
// byte, and gives then what it has.
#include <io/internal/input_block.h>

#include <algorithm>
#include <cstring>

void gx_InputBlock::makeRoom(std::size_t bytes) {
  // What was used goes once it is more than what is left, so that moving costs O(1) a byte.
  const std::size_t left = to_ - from_;
  if (from_ > left) {
    std::memmove(buffer_.get(), buffer_.get() + from_, left);
    from_ = 0;
    to_ = left;
  }
  if (capacity_ - to_ >= bytes) return;
  capacity_ = (std::max)(2 * capacity_, to_ + bytes);
  std::unique_ptr<char[]> larger(new char[capacity_]);
  std::memcpy(larger.get(), buffer_.get() + from_, left);
  buffer_ = std::move(larger);
  from_ = 0;
  to_ = left;
}

bool gx_InputBlock::fill() {
  if (atEnd_) return false;
  if (stream_.peek() == std::istream::traits_type::eof()) {
    atEnd_ = true;
    return false;
  }
  const std::streamsize there = (std::max)(stream_.rdbuf()->in_avail(), std::streamsize{1});
  const auto wanted = (std::min)(static_cast<std::size_t>(there), kBlock);
  makeRoom(wanted);
  stream_.read(buffer_.get() + to_, static_cast<std::streamsize>(wanted));
  to_ += static_cast<std::size_t>(stream_.gcount());
  return true;
}
