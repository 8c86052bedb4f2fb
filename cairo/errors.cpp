// Exceptions that carry a message.  The texts of the base class are wide, ours are bytes: a letter beyond
// ASCII, which only the name of a file has, becomes a question mark.
#include <cairo/errors.h>

namespace {

std::wstring wide(const std::string& text) {
  std::wstring out;
  for (const char c : text)
    out += static_cast<unsigned char>(c) < 0x80U ? static_cast<wchar_t>(c) : L'?';
  return out;
}

}  // namespace

gxPictureError::Errors::Errors(const std::string& message)
    : gxExceptionWithString(wide(message).c_str()) {}
gxPictureError::Errors::Errors(const Errors&) noexcept = default;
gxPictureError::Errors& gxPictureError::Errors::operator=(const Errors&) noexcept = default;
gxPictureError::Errors::~Errors() = default;

gxPictureError::BadView::BadView(const std::string& message) : gx_ConcreteException(message) {}
gxPictureError::BadView::BadView(const BadView&) noexcept = default;
gxPictureError::BadView& gxPictureError::BadView::operator=(const BadView&) noexcept = default;
gxPictureError::BadView::~BadView() = default;

gxPictureError::BadPicture::BadPicture(const std::string& message) : gx_ConcreteException(message) {}
gxPictureError::BadPicture::BadPicture(const BadPicture&) noexcept = default;
gxPictureError::BadPicture& gxPictureError::BadPicture::operator=(const BadPicture&) noexcept = default;
gxPictureError::BadPicture::~BadPicture() = default;

gxPictureError::Failed::Failed(const std::string& message) : gx_ConcreteException(message) {}
gxPictureError::Failed::Failed(const Failed&) noexcept = default;
gxPictureError::Failed& gxPictureError::Failed::operator=(const Failed&) noexcept = default;
gxPictureError::Failed::~Failed() = default;
