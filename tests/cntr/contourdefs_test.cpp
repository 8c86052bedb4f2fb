#include <cntr/contourdefs.h>

#include <cntr/contour.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>

namespace {

using Defs = gxContourDefs;

template <class Exception>
void expectNumber(long number) {
  EXPECT_EQ(Exception().errorNumber(), number);
  EXPECT_EQ(Exception(L"text").errorNumber(), number);
}

TEST(ContourErrors, NumbersAreFixed) {
  expectNumber<Defs::EmptyContour>(268453504);
  expectNumber<Defs::EmptyRegionSet>(268453506);
  expectNumber<Defs::BadParams>(268453507);
  expectNumber<Defs::RegionCannotBeSetOpen>(268453508);
}

TEST(ContourErrors, NumbersInHexadecimalAreNotConsecutive) {
  EXPECT_EQ(Defs::EmptyContour().errorNumber(), 0x10004680);
  EXPECT_EQ(Defs::EmptyRegionSet().errorNumber(), 0x10004682);
  EXPECT_EQ(Defs::BadParams().errorNumber(), 0x10004683);
  EXPECT_EQ(Defs::RegionCannotBeSetOpen().errorNumber(), 0x10004684);
}

TEST(ContourErrors, TheFamilyItselfCannotBeMade) {
  static_assert(std::is_abstract_v<Defs::Errors>);
  static_assert(std::is_base_of_v<gxExceptionWithString, Defs::Errors>);
  static_assert(std::is_base_of_v<gxException, Defs::Errors>);
  static_assert(std::is_base_of_v<gxPersistent, Defs::Errors>);
  static_assert(std::is_base_of_v<std::exception, Defs::Errors>);
  static_assert(std::has_virtual_destructor_v<Defs::Errors>);
}

TEST(ContourErrors, AreAssignedThroughTheFamily) {
  static_assert(std::is_nothrow_copy_assignable_v<Defs::Errors>);
  Defs::BadParams target(L"before");
  const Defs::EmptyContour source(L"after");
  Defs::Errors& family = target;
  family = source;
  EXPECT_EQ(target.message(), L"after");
  EXPECT_EQ(target.errorNumber(), 0x10004683) << "the class stays";
}

TEST(ContourErrors, ADefaultOneHasNoMessage) {
  EXPECT_EQ(Defs::BadParams().message(), L"");
  EXPECT_EQ(Defs::EmptyContour().message(), L"");
  EXPECT_EQ(Defs::EmptyRegionSet().message(), L"");
  EXPECT_EQ(Defs::RegionCannotBeSetOpen().message(), L"");
}

TEST(ContourErrors, TheMessageIsKeptCharacterForCharacter) {
  EXPECT_EQ(Defs::BadParams(L"holes cannot intersect region").message(),
            L"holes cannot intersect region");
}

TEST(ContourErrors, WhatGivesTheClassNameAndTheMessage) {
  EXPECT_NE(std::string(Defs::EmptyContour().what()).find("EmptyContour"), std::string::npos);
  const Defs::BadParams withText(L"größer");
  EXPECT_NE(std::string(withText.what()).find("BadParams: größer"), std::string::npos);
}

TEST(ContourErrors, CopiesAndAssignmentsCarryTheMessage) {
  const Defs::BadParams original(L"one");
  const Defs::BadParams copy(original);
  Defs::BadParams assigned(L"two");
  assigned = original;
  EXPECT_EQ(copy.message(), L"one");
  EXPECT_EQ(assigned.message(), L"one");
  static_assert(std::is_nothrow_copy_constructible_v<Defs::BadParams>);
}

TEST(ContourErrors, AMessageDoesNotTurnIntoAnExceptionByItself) {
  static_assert(!std::is_convertible_v<std::wstring, Defs::BadParams>);
  static_assert(std::is_constructible_v<Defs::BadParams, std::wstring>);
}

template <class Handler>
void expectCaughtAs() {
  bool caught = false;
  try {
    throw Defs::EmptyContour(L"text");
  } catch (const Handler&) {
    caught = true;
  }
  EXPECT_TRUE(caught);
}

TEST(ContourErrors, CanBeCaughtAsAnyOfTheirBases) {
  expectCaughtAs<Defs::EmptyContour>();
  expectCaughtAs<Defs::Errors>();
  expectCaughtAs<gxExceptionWithString>();
  expectCaughtAs<gxException>();
  expectCaughtAs<gxPersistent>();
  expectCaughtAs<std::exception>();
}

template <class Exception>
void expectTypedRethrow() {
  auto onHeap = std::make_unique<Exception>(L"the message");
  gxException* const known = onHeap.get();
  bool caught = false;
  try {
    static_cast<void>(onHeap.release());
    known->suicideAndRethrow();
  } catch (const Exception& e) {
    caught = true;
    EXPECT_EQ(e.message(), L"the message");
  }
  EXPECT_TRUE(caught);
}

TEST(SuicideAndRethrow, ThrowsTheHeapObjectAsItsOwnClass) {
  expectTypedRethrow<Defs::EmptyRegionSet>();
  expectTypedRethrow<Defs::EmptyContour>();
  expectTypedRethrow<Defs::BadParams>();
  expectTypedRethrow<Defs::RegionCannotBeSetOpen>();
}

// An error that counts how many of it are alive.
class Counted final : public gx_ConcreteException<Counted, Defs::Errors, 1> {
 public:
  explicit Counted(const std::wstring& message) : gx_ConcreteException(message) { ++alive; }
  Counted(const Counted& other) noexcept : gx_ConcreteException(other) { ++alive; }
  Counted& operator=(const Counted&) = delete;
  ~Counted() override { --alive; }
  static inline int alive = 0;
};

TEST(SuicideAndRethrow, LeavesNothingOnTheHeap) {
  auto* const onHeap = new Counted(L"text");
  try {
    onHeap->suicideAndRethrow();
    ADD_FAILURE() << "nothing was thrown";
  } catch (const Counted& e) {
    EXPECT_EQ(Counted::alive, 1) << "only the thrown copy lives";
    EXPECT_EQ(e.message(), L"text");
  }
  EXPECT_EQ(Counted::alive, 0);
}

TEST(ContourModes, ValuesAreFixedAndAnyNumberFits) {
  static_assert(Defs::eNone == 0 && Defs::eOuterHull == 1 && Defs::eRegularize == 2);
  static_assert(Defs::eAllPairs == 0 && Defs::eFirstPoint == 1);
  static_assert(std::is_same_v<std::underlying_type_t<Defs::IntersectionMode>, int>);
  static_assert(std::is_same_v<std::underlying_type_t<Defs::DiameterMode>, int>);
  static_assert(std::is_same_v<std::underlying_type_t<Defs::DrawMode>, int>);
  EXPECT_EQ(static_cast<int>(static_cast<Defs::DrawMode>(-123456)), -123456);
}

TEST(ContourModes, TheirScopeHasNoData) {
  static_assert(std::is_empty_v<Defs>);
  Defs scope;
  scope = Defs();
}

}  // namespace
