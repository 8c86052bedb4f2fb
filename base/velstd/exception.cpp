// The text of an exception: its class name as a reader writes it, then its message in UTF-8.
#include <velstd/exception.h>
#include <velstd/registry.h>

#include <cstdint>
#include <ostream>
#include <sstream>

namespace {

void appendUtf8(std::string& out, std::uint32_t code) {
  const auto tail = [&out](std::uint32_t bits) { out += static_cast<char>(0x80U | (bits & 0x3fU)); };
  if (code < 0x80) {
    out += static_cast<char>(code);
  } else if (code < 0x800) {
    out += static_cast<char>(0xc0U | (code >> 6U));
    tail(code);
  } else if (code < 0x10000) {
    out += static_cast<char>(0xe0U | (code >> 12U));
    tail(code >> 6U);
    tail(code);
  } else {
    out += static_cast<char>(0xf0U | ((code >> 18U) & 7U));
    tail(code >> 12U);
    tail(code >> 6U);
    tail(code);
  }
}

std::string utf8(const std::wstring& text) {
  std::string result;
  for (const wchar_t c : text) {
    const std::uint32_t code = std::char_traits<wchar_t>::to_int_type(c);
    const bool isCharacter = code < 0xd800U || (code > 0xdfffU && code <= 0x10ffffU);
    appendUtf8(result, isCharacter ? code : 0xfffdU);
  }
  return result;
}

}  // namespace

gxException::gxException() noexcept = default;
gxException::gxException(const gxException& other) noexcept
    : gxPersistent(other), std::exception(other) {}
gxException& gxException::operator=(const gxException& /*other*/) noexcept {
  return *this;
}
gxException::~gxException() {
  delete what_.load(std::memory_order_relaxed);
}

void gxException::dispatchSerialize(gxArchive& archive) {
  gxPersistent::dispatchSerialize(archive);
}

void gxException::message_(std::basic_ostream<wchar_t>& /*out*/) const {}

std::wstring gxException::message() const {
  std::wostringstream out;
  message_(out);
  return out.str();
}

const char* gxException::what() const noexcept {
  try {
    std::string text = gf_ClassName(typeid(*this));
    const std::wstring said = message();
    if (!said.empty()) text += ": " + utf8(said);
    // The first thread to bring in the text wins, and later ones find it equal to theirs: only
    // after the message changed is an earlier text dropped, and then no other thread looks on.
    const std::string* known = what_.load(std::memory_order_acquire);
    std::unique_ptr<const std::string> made;
    while (known == nullptr || *known != text) {
      if (made == nullptr) made = std::make_unique<const std::string>(text);
      if (what_.compare_exchange_weak(known, made.get(), std::memory_order_acq_rel)) {
        delete known;
        return made.release()->c_str();
      }
    }
    return known->c_str();
  } catch (...) {
    return "gxException";  // no memory left for a text
  }
}

gxExceptionWithString::gxExceptionWithString(const wchar_t* message)
    : text_(std::make_shared<const std::wstring>(message == nullptr ? L"" : message)) {}
gxExceptionWithString::gxExceptionWithString(const gxExceptionWithString&) noexcept = default;
gxExceptionWithString& gxExceptionWithString::operator=(const gxExceptionWithString&) noexcept = default;
gxExceptionWithString::~gxExceptionWithString() = default;

void gxExceptionWithString::reInit() {
  text_ = std::make_shared<const std::wstring>();
  mutating_();
}

void gxExceptionWithString::message_(std::basic_ostream<wchar_t>& out) const {
  out << *text_;
}

gxBadPointer::gxBadPointer() noexcept = default;
gxBadPointer::gxBadPointer(const gxBadPointer&) noexcept = default;
gxBadPointer& gxBadPointer::operator=(const gxBadPointer&) noexcept = default;
gxBadPointer::~gxBadPointer() = default;

gxMathError::Errors::Errors() noexcept = default;
gxMathError::Errors::Errors(const Errors&) noexcept = default;
gxMathError::Errors& gxMathError::Errors::operator=(const Errors&) noexcept = default;
gxMathError::Errors::~Errors() = default;

gxMathError::Singular::Singular() noexcept = default;
gxMathError::Singular::Singular(const Singular&) noexcept = default;
gxMathError::Singular& gxMathError::Singular::operator=(const Singular&) noexcept = default;
gxMathError::Singular::~Singular() = default;
