#include <velip/pel.h>
#include <velstd/exception.h>
#include <velstd/handle.h>
#include <velstd/matrix.h>

#include <gtest/gtest.h>

#include <exception>
#include <sstream>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

namespace {

// A library's own exceptions, as a caller of the base layer makes them.
class Errors : public gxExceptionWithString {
 public:
  Errors(const Errors&) noexcept = default;
  Errors& operator=(const Errors&) noexcept = default;
  ~Errors() override = default;

 protected:
  explicit Errors(const wchar_t* message) : gxExceptionWithString(message) {}
};

int livingFailures = 0;

class Failure final : public gx_ConcreteException<Failure, Errors, 4711> {
 public:
  explicit Failure(const wchar_t* message = L"") : gx_ConcreteException(message) { ++livingFailures; }
  Failure(const Failure& o) noexcept : gx_ConcreteException(o) { ++livingFailures; }
  Failure& operator=(const Failure&) noexcept = default;
  ~Failure() override { --livingFailures; }
};

static_assert(std::is_abstract_v<gxException>);
static_assert(std::is_abstract_v<gxExceptionWithString>);
static_assert(std::is_abstract_v<gxMathError::Errors>);
static_assert(std::is_abstract_v<gxPel::Errors>);
static_assert(std::is_base_of_v<gxPersistent, gxException> &&
              std::is_base_of_v<std::exception, gxException>);
static_assert(std::is_nothrow_copy_constructible_v<gxBadPointer> &&
              std::is_nothrow_copy_assignable_v<gxBadPointer>);
static_assert(std::is_nothrow_copy_constructible_v<gxMathError::Singular>);
static_assert(std::is_nothrow_copy_constructible_v<gxPel::BadWindow>);
static_assert(std::is_nothrow_copy_constructible_v<Failure> &&
              std::is_nothrow_copy_assignable_v<Failure>);
static_assert(std::is_nothrow_default_constructible_v<gxBadPointer>);
static_assert(!std::is_convertible_v<const wchar_t*, Failure>);

std::string textOf(const std::exception& e) {
  return e.what();
}

TEST(Exception, WhatIsTheClassName) {
  EXPECT_EQ(textOf(gxBadPointer()), "gxBadPointer");
  EXPECT_EQ(textOf(gxMathError::Singular()), "gxMathError::Singular");
  EXPECT_EQ(textOf(gxPel::BadWindow()), "gxPel::BadWindow");
}

TEST(Exception, WhatIsTheClassNameAndTheMessageWhereThereIsOne) {
  const std::string name = textOf(Failure());
  EXPECT_NE(name.find("Failure"), std::string::npos);
  EXPECT_EQ(textOf(Failure(L"no such thing")), name + ": no such thing");
}

TEST(Exception, MessageIsKept) {
  EXPECT_EQ(Failure(L"no such thing").message(), L"no such thing");
  EXPECT_EQ(Failure().message(), L"");
  EXPECT_EQ(Failure(nullptr).message(), L"");
  EXPECT_EQ(gxBadPointer().message(), L"");
}

TEST(Exception, WhatIsUtf8) {
  const std::string name = textOf(Failure());
  EXPECT_EQ(textOf(Failure(L"\x7f\x80\x7ff\x800\xffff\x10000\x10ffff")),
            name + ": \x7f\xc2\x80\xdf\xbf\xe0\xa0\x80\xef\xbf\xbf\xf0\x90\x80\x80\xf4\x8f\xbf\xbf");
  EXPECT_EQ(textOf(Failure(L"gr\u00f6\u00dfer \u2260 \u00e9gal")), name +
                                                                       ": gr\xc3\xb6\xc3\x9f"
                                                                       "er \xe2\x89\xa0 \xc3\xa9gal");
}

TEST(Exception, WhatIsNoCharacterBecomesTheReplacementCharacter) {
  const wchar_t lone[] = {static_cast<wchar_t>(0xd800), static_cast<wchar_t>(0x110000), 0};
  EXPECT_EQ(textOf(Failure(lone)), textOf(Failure()) + ": \xef\xbf\xbd\xef\xbf\xbd");
}

TEST(Exception, CopiesCarryTheMessage) {
  const Failure original(L"first");
  static_cast<void>(original.what());
  const Failure copy(original);
  EXPECT_EQ(copy.message(), L"first");
  EXPECT_EQ(textOf(copy), textOf(original));
  Failure assigned(L"second");
  const std::string before = assigned.what();
  assigned = original;
  EXPECT_EQ(assigned.message(), L"first");
  EXPECT_NE(before, assigned.what());
  EXPECT_EQ(textOf(assigned), textOf(original));
}

TEST(Exception, WhatStaysTheSameText) {
  const Failure failure(L"first");
  const char* const text = failure.what();
  EXPECT_EQ(failure.what(), text);
}

TEST(Exception, WhatMayBeAskedByManyThreads) {
  const Failure failure(L"shared");
  const std::string expected = textOf(Failure(L"shared"));
  std::vector<std::thread> threads;
  std::vector<const char*> seen(8);
  for (std::size_t i = 0; i < seen.size(); ++i) {
    threads.emplace_back([&, i] { seen[i] = failure.what(); });
  }
  for (std::thread& thread : threads) thread.join();
  for (const char* text : seen) {
    EXPECT_EQ(text, expected);
    EXPECT_EQ(text, seen[0]);
  }
}

TEST(Exception, ReInitMakesTheMessageEmpty) {
  Failure failure(L"first");
  failure.reInit();
  EXPECT_EQ(failure.message(), L"");
  EXPECT_EQ(textOf(failure), textOf(Failure()));
}

TEST(Exception, NumbersTellTheClassesApart) {
  EXPECT_EQ(Failure().errorNumber(), 4711);
  EXPECT_NE(gxBadPointer().errorNumber(), gxMathError::Singular().errorNumber());
  EXPECT_NE(gxBadPointer().errorNumber(), gxPel::BadWindow().errorNumber());
}

template <class Caught>
bool isCaughtAs(void (*thrower)()) {
  try {
    thrower();
  } catch (const Caught&) {
    return true;
  } catch (...) {
    return false;
  }
  return false;
}

void dereferenceNull() {
  static_cast<void>(*gxPtrHandle<gxRepBase>());
}
void invertZero() {
  static_cast<void>(gxMatrix<2>().inverse());
}
void fail() {
  throw Failure(L"caught");
}

TEST(ExceptionCatch, AcrossTheBorderOfTheLibrary) {
  EXPECT_TRUE(isCaughtAs<gxMathError::Singular>(invertZero));
  EXPECT_TRUE(isCaughtAs<gxMathError::Errors>(invertZero));
  EXPECT_TRUE(isCaughtAs<gxException>(invertZero));
  EXPECT_TRUE(isCaughtAs<gxPersistent>(invertZero));
  EXPECT_TRUE(isCaughtAs<std::exception>(invertZero));
  EXPECT_FALSE(isCaughtAs<gxBadPointer>(invertZero));
}

TEST(ExceptionCatch, AsEveryBase) {
  EXPECT_TRUE(isCaughtAs<gxBadPointer>(dereferenceNull));
  EXPECT_TRUE(isCaughtAs<gxException>(dereferenceNull));
  EXPECT_TRUE(isCaughtAs<Failure>(fail));
  EXPECT_TRUE(isCaughtAs<Errors>(fail));
  EXPECT_TRUE(isCaughtAs<gxExceptionWithString>(fail));
  EXPECT_TRUE(isCaughtAs<gxPersistent>(fail));
  EXPECT_TRUE(isCaughtAs<std::exception>(fail));
}

template <class E>
bool rethrowsItself(gxException* heap) {
  try {
    heap->suicideAndRethrow();
  } catch (const E& e) {
    return typeid(e) == typeid(E);
  } catch (...) {
    return false;
  }
  return false;
}

TEST(ExceptionRethrow, TurnsAHeapObjectIntoATypedThrow) {
  EXPECT_TRUE(rethrowsItself<gxBadPointer>(new gxBadPointer));
  EXPECT_TRUE(rethrowsItself<gxMathError::Singular>(new gxMathError::Singular));
  EXPECT_TRUE(rethrowsItself<gxPel::BadWindow>(new gxPel::BadWindow));
}

TEST(ExceptionRethrow, KeepsTheMessageAndTheHeapObjectIsGone) {
  const int before = livingFailures;
  gxException* const heap = new Failure(L"on the heap");
  EXPECT_EQ(livingFailures, before + 1);
  try {
    heap->suicideAndRethrow();
    FAIL();
  } catch (const Failure& e) {
    EXPECT_EQ(e.message(), L"on the heap");
    EXPECT_EQ(livingFailures, before + 1);  // the thrown one alone
  }
  EXPECT_EQ(livingFailures, before);
}

}  // namespace
