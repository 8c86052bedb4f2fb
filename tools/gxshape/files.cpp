// Reading by read(2), so that a partner who sends one line and waits for its answer gets it.
#include "files.h"

#include "options.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>

DescriptorBuffer::int_type DescriptorBuffer::underflow() {
  ssize_t got = 0;
  do got = ::read(descriptor_, block_.data(), block_.size());
  while (got < 0 && errno == EINTR);
  failed_ = failed_ || got < 0;
  if (got <= 0) return traits_type::eof();
  setg(block_.data(), block_.data(), block_.data() + got);
  return traits_type::to_int_type(*gptr());
}

bool DescriptorBuffer::hasWaiting() const {
  pollfd waiting{descriptor_, POLLIN, 0};
  return ::poll(&waiting, 1, 0) > 0;
}

Input::Input(const std::string& file)
    : name_(file == "-" ? "(standard input)" : file),
      descriptor_(file == "-" ? 0 : ::open(file.c_str(), O_RDONLY | O_CLOEXEC)) {
  if (descriptor_ < 0) throw FileError{file + ": " + std::strerror(errno)};
  struct stat about {};
  if (::fstat(descriptor_, &about) == 0) {
    if (S_ISDIR(about.st_mode)) {
      if (descriptor_ > 0) ::close(descriptor_);
      throw FileError{file + ": is a folder"};
    }
    if (S_ISREG(about.st_mode)) size_ = static_cast<std::uint64_t>(about.st_size);
  }
  buffer_ = std::make_unique<DescriptorBuffer>(descriptor_);
  stream_ = std::make_unique<std::istream>(buffer_.get());
}

Input::~Input() {
  if (descriptor_ > 0) ::close(descriptor_);
}

Output::Output(const std::string& file) : file_(file), stream_(&std::cout) {
  if (file.empty() || file == "-") {
    file_.clear();
    return;
  }
  temporary_ = file + ".part" + std::to_string(::getpid());
  own_ = std::make_unique<std::ofstream>(temporary_, std::ios::binary);
  if (!*own_) throw FileError{file + ": cannot be written"};
  stream_ = own_.get();
}

Output::~Output() {
  if (own_ == nullptr) return;
  own_->close();
  ::unlink(temporary_.c_str());
}

void Output::check() {
  if (!*stream_)
    throw FileError{(file_.empty() ? std::string("standard output") : file_) + ": cannot be written"};
}

void Output::finish() {
  stream_->flush();
  check();
  if (own_ == nullptr) return;
  own_->close();
  check();
  if (std::rename(temporary_.c_str(), file_.c_str()) != 0)
    throw FileError{file_ + ": " + std::strerror(errno)};
  own_.reset();
}
