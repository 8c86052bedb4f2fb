#include <velip/pel.h>

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

namespace {

static_assert(std::is_abstract_v<gxPel::Errors>);
static_assert(std::is_base_of_v<gxException, gxPel::Errors>);

TEST(Pel, BadWindowIsCaughtAsAnyOfItsBases) {
  EXPECT_THROW(throw gxPel::BadWindow(), gxPel::Errors);
  EXPECT_THROW(throw gxPel::BadWindow(), gxException);
  EXPECT_THROW(throw gxPel::BadWindow(), std::exception);
}

TEST(Pel, BadWindowHasNoMessage) {
  EXPECT_EQ(gxPel::BadWindow().message(), L"");
  EXPECT_EQ(std::string(gxPel::BadWindow().what()), "gxPel::BadWindow");
}

TEST(Pel, CopiesAreBadWindowsToo) {
  const gxPel::BadWindow original;
  gxPel::BadWindow copy(original);
  copy = original;
  EXPECT_EQ(copy.errorNumber(), original.errorNumber());
}

}  // namespace
