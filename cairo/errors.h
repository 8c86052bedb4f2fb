/// What can go wrong with pictures.
#pragma once

#include <cairo/export.h>
#include <velstd/exception.h>

#include <string>

/// The scope of the exceptions of pictures.  Their messages are UTF-8.
class GXSHAPE_CAIRO_API gxPictureError {
 public:
  /// Any of them; never thrown itself.
  class GXSHAPE_CAIRO_API Errors : public gxExceptionWithString {
   public:
    Errors(const Errors&) noexcept;
    Errors& operator=(const Errors&) noexcept;
    ~Errors() override;

   protected:
    /// Makes the exception with this message.
    explicit Errors(const std::string& message);
  };

  /// The view, a width, a height or an opacity cannot be drawn with.
  class GXSHAPE_CAIRO_API BadView final : public gx_ConcreteException<BadView, Errors, 0x10003201> {
   public:
    /// Makes the exception with this message.
    explicit BadView(const std::string& message);
    BadView(const BadView&) noexcept;
    BadView& operator=(const BadView&) noexcept;
    ~BadView() override;
  };

  /// A picture could not be understood; the message says where.
  class GXSHAPE_CAIRO_API BadPicture final
      : public gx_ConcreteException<BadPicture, Errors, 0x10003202> {
   public:
    /// Makes the exception with this message.
    explicit BadPicture(const std::string& message);
    BadPicture(const BadPicture&) noexcept;
    BadPicture& operator=(const BadPicture&) noexcept;
    ~BadPicture() override;
  };

  /// A file could not be read or written, or the drawing library failed; the message says which.
  class GXSHAPE_CAIRO_API Failed final : public gx_ConcreteException<Failed, Errors, 0x10003203> {
   public:
    /// Makes the exception with this message.
    explicit Failed(const std::string& message);
    Failed(const Failed&) noexcept;
    Failed& operator=(const Failed&) noexcept;
    ~Failed() override;
  };
};
