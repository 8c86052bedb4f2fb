#include <cntr/contourdefs.h>

#include <velstd/archive.h>

#include <gtest/gtest.h>

#include <memory>

namespace {

template <class Exception>
void expectTypeComesBack() {
  gxArchive storing;
  storing.store(Exception(L"a message that is not written"));
  gxArchive loading(storing.bytes());
  const std::unique_ptr<gxPersistent> loaded = loading.loadNew();
  const auto* const exception = dynamic_cast<const Exception*>(loaded.get());
  ASSERT_NE(exception, nullptr);
  EXPECT_EQ(exception->message(), L"");
  EXPECT_EQ(exception->errorNumber(), Exception().errorNumber());
}

TEST(ContourErrorsInAnArchive, ComeBackAsTheirOwnClassWithoutTheirMessage) {
  expectTypeComesBack<gxContourDefs::EmptyContour>();
  expectTypeComesBack<gxContourDefs::EmptyRegionSet>();
  expectTypeComesBack<gxContourDefs::BadParams>();
  expectTypeComesBack<gxContourDefs::RegionCannotBeSetOpen>();
}

TEST(ContourErrorsInAnArchive, AreNotLoadedIntoOneOfAnotherClass) {
  gxArchive storing;
  storing.store(gxContourDefs::BadParams(L"text"));
  gxArchive loading(storing.bytes());
  gxContourDefs::EmptyContour other;
  EXPECT_THROW(loading.load(other), gxArchive::BadFormat);
}

TEST(ContourErrorsInAnArchive, LoadingLeavesTheMessageOfTheTargetAlone) {
  gxArchive storing;
  storing.store(gxContourDefs::BadParams(L"stored"));
  gxArchive loading(storing.bytes());
  gxContourDefs::BadParams target(L"before");
  loading.load(target);
  EXPECT_EQ(target.message(), L"before");
}

}  // namespace
