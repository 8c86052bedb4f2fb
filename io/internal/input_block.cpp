// Reading ahead without blocking a partner that waits for an answer: the stream is asked to wait for one
// byte, and gives then what it has.
#include <io/internal/input_block.h>

#include <algorithm>

bool gx_InputBlock::fill() {
  if (atEnd_) return false;
  // What was used goes once it is more than what is left, so that moving costs O(1) a byte.
  if (from_ > buffer_.size() - from_) {
    buffer_.erase(0, from_);
    from_ = 0;
  }
  if (stream_.peek() == std::istream::traits_type::eof()) {
    atEnd_ = true;
    return false;
  }
  const std::streamsize there = (std::max)(stream_.rdbuf()->in_avail(), std::streamsize{1});
  const auto wanted = (std::min)(static_cast<std::size_t>(there), kBlock);
  const std::size_t before = buffer_.size();
  buffer_.resize(before + wanted);
  stream_.read(buffer_.data() + before, static_cast<std::streamsize>(wanted));
  buffer_.resize(before + static_cast<std::size_t>(stream_.gcount()));
  return true;
}
