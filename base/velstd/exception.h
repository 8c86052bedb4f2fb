/// The exceptions of the library: persistent objects that carry a message.
#pragma once

#include <velstd/export.h>
#include <velstd/persistent.h>

#include <atomic>
#include <exception>
#include <iosfwd>
#include <memory>
#include <string>

/// The base class of the library's exceptions.  It is thrown and caught by value or reference, as
/// any `std::exception`, and can be archived as a persistent object.
///
/// What to catch: a class of its own for each cause (`gxContourDefs::BadParams`), the scope's `Errors` for
/// all causes of one part of the library, this class for all of it, `std::exception` for these and for
/// what comes from below, `std::bad_alloc` among it.  Each class has a number that no other has, which
/// stays the same in later versions: for logs, and for other languages, which have no C++ types.
/// An operation that throws has changed nothing, unless its comment says what it has changed.
class VELSTD_API gxException : public gxPersistent, public std::exception {
 public:
  /// Makes and copies without allocating, so that throwing one cannot fail for want of memory; the text of
  /// `what` is made when it is asked for.
  gxException() noexcept;
  gxException(const gxException& other) noexcept;
  gxException& operator=(const gxException& other) noexcept;
  ~gxException() override;

 protected:
  void dispatchSerialize(gxArchive& archive) override;

 public:
  /// Returns the number of the exception's class, the same for all its objects.
  virtual long errorNumber() const = 0;

  /// Turns an exception that lives on the heap back into a typed throw: copies it, destroys this
  /// object, throws the copy by value as its own class.
  virtual void suicideAndRethrow() = 0;

  /// Returns the message, empty where there is none.
  std::wstring message() const;

 protected:
  /// Writes the message; nothing for an exception without one.
  virtual void message_(std::basic_ostream<wchar_t>& out) const;

 public:
  /// Returns the class name, followed by ": " and the message in UTF-8 where there is one (a
  /// character that is none becomes U+FFFD).  The text lives until the exception dies or changes.
  /// May be called by several threads at a time, as several may hold one exception.
  /// Cost: makes the text anew each time.  Remembers: the text, until `what` is called after a change.
  const char* what() const noexcept override;

 private:
  mutable std::atomic<const std::string*> what_{nullptr};  // owned; copies make their own
};

/// An exception with a message given at construction (null counts as empty).  Copies share the
/// text, so that copying cannot throw.
class VELSTD_API gxExceptionWithString : public gxException {
 public:
  /// Makes the exception with this message.
  explicit gxExceptionWithString(const wchar_t* message = L"");
  gxExceptionWithString(const gxExceptionWithString&) noexcept;
  gxExceptionWithString& operator=(const gxExceptionWithString&) noexcept;
  ~gxExceptionWithString() override;

  /// Makes the message empty.
  void reInit() override;

 protected:
  void message_(std::basic_ostream<wchar_t>& out) const override;

 private:
  std::shared_ptr<const std::wstring> text_;  // shared, so that copying an exception cannot throw
};

/// Gives a class of exceptions its number and its typed rethrow: `Derived` is the class itself,
/// `Base` what it derives from.
template <class Derived, class Base, long Number>
class gx_ConcreteException : public Base {
 public:
  using Base::Base;
  long errorNumber() const override { return Number; }
  void suicideAndRethrow() override {
    Derived copy(static_cast<const Derived&>(*this));
    delete this;
    throw copy;
  }
};

/// A null handle was dereferenced.
class VELSTD_API gxBadPointer final
    : public gx_ConcreteException<gxBadPointer, gxException, 0x10000101> {
 public:
  gxBadPointer() noexcept;
  gxBadPointer(const gxBadPointer&) noexcept;
  gxBadPointer& operator=(const gxBadPointer&) noexcept;
  ~gxBadPointer() override;
};

/// The scope of the exceptions of arithmetic.
class VELSTD_API gxMathError {
 public:
  /// Any of them; never thrown itself.
  class VELSTD_API Errors : public gxException {
   public:
    Errors() noexcept;
    Errors(const Errors&) noexcept;
    Errors& operator=(const Errors&) noexcept;
    ~Errors() override;
  };

  /// A matrix or a transform has no inverse, or moments have no ellipse.
  class VELSTD_API Singular final : public gx_ConcreteException<Singular, Errors, 0x10000111> {
   public:
    Singular() noexcept;
    Singular(const Singular&) noexcept;
    Singular& operator=(const Singular&) noexcept;
    ~Singular() override;
  };
};
