/// Input and output of the tool.
#pragma once

#include <cstdint>
#include <fstream>
#include <istream>
#include <memory>
#include <streambuf>
#include <string>
#include <vector>

/// A stream buffer on a file descriptor that gives what is there, without waiting for a full block.
class DescriptorBuffer final : public std::streambuf {
 public:
  explicit DescriptorBuffer(int descriptor) : descriptor_(descriptor), block_(std::size_t{1} << 18) {}
  /// Whether reading failed, which a stream does not tell from its end.
  bool failed() const { return failed_; }
  /// Whether a read would not wait.
  bool hasWaiting() const;

 protected:
  int_type underflow() override;

 private:
  int descriptor_;
  bool failed_ = false;
  std::vector<char> block_;
};

/// An input file, "-" being standard input.
class Input {
 public:
  /// Throws: FileError.
  explicit Input(const std::string& file);
  Input(const Input&) = delete;
  Input& operator=(const Input&) = delete;
  ~Input();

  std::istream& stream() { return *stream_; }
  const DescriptorBuffer& buffer() const { return *buffer_; }
  /// Returns the size in bytes, 0 where it is not known.
  std::uint64_t size() const { return size_; }
  /// Returns the name for messages.
  const std::string& name() const { return name_; }

 private:
  std::string name_;
  int descriptor_;
  std::uint64_t size_ = 0;
  std::unique_ptr<DescriptorBuffer> buffer_;
  std::unique_ptr<std::istream> stream_;
};

/// The output: standard output, or a file that takes its name only when all is written.
class Output {
 public:
  /// Throws: FileError.
  explicit Output(const std::string& file);
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;
  ~Output();

  std::ostream& stream() { return *stream_; }
  /// Flushes and gives the file its name.  Throws: FileError.
  void finish();
  /// Throws FileError where writing has failed.
  void check();

 private:
  std::string file_;
  std::string temporary_;
  std::unique_ptr<std::ofstream> own_;
  std::ostream* stream_;
};
