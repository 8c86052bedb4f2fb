// The archive's exceptions.  The text is kept without the place and joined with it when it is asked
// for, because classes that refuse a field do not know where in the archive it stands: the archive
// adds the place as the exception passes through it.
#include <velstd/archive.h>

#include <ostream>
#include <utility>

namespace {

std::wstring widen(const char* text) {
  std::wstring result;
  for (; *text != '\0'; ++text) result += static_cast<wchar_t>(static_cast<unsigned char>(*text));
  return result;
}

std::wstring versionText(const char* source, int line) {
  std::wstring text = L"unknown version";
  if (source != nullptr) text += L", refused by " + widen(source) + L", " + std::to_wstring(line);
  return text;
}

}  // namespace

gxArchive::Errors::Errors(std::wstring message)
    : text_(std::make_shared<const std::wstring>(std::move(message))) {}
gxArchive::Errors::Errors(const Errors&) noexcept = default;
gxArchive::Errors& gxArchive::Errors::operator=(const Errors&) noexcept = default;
gxArchive::Errors::~Errors() = default;

void gxArchive::Errors::message_(std::basic_ostream<wchar_t>& out) const {
  out << *text_;
  if (!hasByteOffset()) return;
  if (!text_->empty()) out << L' ';
  out << L"(at byte " << std::to_wstring(offset_) << L')';
}

gxArchive::UnknownVersion::UnknownVersion(const char* source, int line)
    : gx_ConcreteException(versionText(source, line)), source_(source), line_(line) {}
gxArchive::UnknownVersion::UnknownVersion(const UnknownVersion&) noexcept = default;
gxArchive::UnknownVersion& gxArchive::UnknownVersion::operator=(const UnknownVersion&) noexcept =
    default;
gxArchive::UnknownVersion::~UnknownVersion() = default;

gxArchive::Truncated::Truncated(std::wstring message) : gx_ConcreteException(std::move(message)) {}
gxArchive::Truncated::Truncated(const Truncated&) noexcept = default;
gxArchive::Truncated& gxArchive::Truncated::operator=(const Truncated&) noexcept = default;
gxArchive::Truncated::~Truncated() = default;

gxArchive::BadFormat::BadFormat(std::wstring message) : gx_ConcreteException(std::move(message)) {}
gxArchive::BadFormat::BadFormat(const BadFormat&) noexcept = default;
gxArchive::BadFormat& gxArchive::BadFormat::operator=(const BadFormat&) noexcept = default;
gxArchive::BadFormat::~BadFormat() = default;

gxArchive::BadChecksum::BadChecksum(std::wstring message) : gx_ConcreteException(std::move(message)) {}
gxArchive::BadChecksum::BadChecksum(const BadChecksum&) noexcept = default;
gxArchive::BadChecksum& gxArchive::BadChecksum::operator=(const BadChecksum&) noexcept = default;
gxArchive::BadChecksum::~BadChecksum() = default;

gxArchive::LimitExceeded::LimitExceeded(std::wstring message)
    : gx_ConcreteException(std::move(message)) {}
gxArchive::LimitExceeded::LimitExceeded(const LimitExceeded&) noexcept = default;
gxArchive::LimitExceeded& gxArchive::LimitExceeded::operator=(const LimitExceeded&) noexcept = default;
gxArchive::LimitExceeded::~LimitExceeded() = default;

gxArchive::BadReference::BadReference(std::wstring message) : gx_ConcreteException(std::move(message)) {}
gxArchive::BadReference::BadReference(const BadReference&) noexcept = default;
gxArchive::BadReference& gxArchive::BadReference::operator=(const BadReference&) noexcept = default;
gxArchive::BadReference::~BadReference() = default;

gxArchive::UnknownClass::UnknownClass(std::wstring message) : gx_ConcreteException(std::move(message)) {}
gxArchive::UnknownClass::UnknownClass(const UnknownClass&) noexcept = default;
gxArchive::UnknownClass& gxArchive::UnknownClass::operator=(const UnknownClass&) noexcept = default;
gxArchive::UnknownClass::~UnknownClass() = default;

gxArchive::FileError::FileError(std::wstring message) : gx_ConcreteException(std::move(message)) {}
gxArchive::FileError::FileError(const FileError&) noexcept = default;
gxArchive::FileError& gxArchive::FileError::operator=(const FileError&) noexcept = default;
gxArchive::FileError::~FileError() = default;
