/// The exceptions of picture windows.
#pragma once

#include <velip/export.h>
#include <velstd/exception.h>

// X11 has a macro of this name, which is set aside here and put back below.
#pragma push_macro("BadWindow")
#undef BadWindow

/// The scope of the exceptions of picture windows.
class VELIP_API gxPel {
 public:
  /// Any of them; never thrown itself.
  class VELIP_API Errors : public gxException {
   public:
    Errors() noexcept;
    Errors(const Errors&) noexcept;
    Errors& operator=(const Errors&) noexcept;
    ~Errors() override;
  };

  /// The operation has no window to work on: what the operations throw that edge-point shapes
  /// declare and refuse.
  class VELIP_API BadWindow final : public gx_ConcreteException<BadWindow, Errors, 0x10002101> {
   public:
    BadWindow() noexcept;
    BadWindow(const BadWindow&) noexcept;
    BadWindow& operator=(const BadWindow&) noexcept;
    ~BadWindow() override;
  };
};

#pragma pop_macro("BadWindow")
