// The text of a reader's error: where, then why.  The cause is kept as a place in that text, so that
// copying an error allocates nothing.
#include <io/read_error.h>

namespace {

std::string placeText(std::uint64_t record, std::uint64_t byte) {
  const std::string place = "byte " + std::to_string(byte) + ": ";
  return record == 0 ? place : "record " + std::to_string(record) + ", " + place;
}

}  // namespace

gxReadError::gxReadError(Code code, std::uint64_t byte, const std::string& cause)
    : gxReadError(code, 0, byte, cause) {}

gxReadError::gxReadError(Code code, std::uint64_t record, std::uint64_t byte, const std::string& cause)
    : std::runtime_error(placeText(record, byte) + cause),
      record_(record),
      byte_(byte),
      causeAt_(placeText(record, byte).size()),
      code_(code) {}

gxReadError::gxReadError(const gxReadError&) noexcept = default;
gxReadError& gxReadError::operator=(const gxReadError&) noexcept = default;
gxReadError::~gxReadError() = default;

const char* gxReadError::name() const noexcept {
  switch (code_) {
    case Code::eBadSyntax: return "bad_syntax";
    case Code::eBadNumber: return "bad_number";
    case Code::eBadType: return "bad_type";
    case Code::eBadUtf8: return "bad_utf8";
    case Code::eTooDeep: return "too_deep";
    case Code::eTooLong: return "too_long";
    case Code::eTooMany: return "too_many";
    case Code::eTruncated: return "truncated";
    case Code::eCompressed: return "compressed";
    case Code::eUnsupported: return "unsupported";
    case Code::eBadChecksum: return "bad_checksum";
  }
  return "unknown";
}
