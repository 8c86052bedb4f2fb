// The registry: names, order, factories.
//
// Covers base/velstd/internal/class_names.h
#include <gtest/gtest.h>
#include <velstd/archive.h>
#include <velstd/circle.h>
#include <velstd/registry.h>
#include <velstd/xform_base.h>

#include <algorithm>
#include <memory>

namespace {

class First : public gxPersistent {
 public:
  static gxPersistent* make() { return new First; }
};
template <class T>
class Of : public gxPersistent {};

gxPersistent* makeAnother() {
  return new gxPersistent;
}

}  // namespace

TEST(RegistryNames, AreThoseOfTheSourceText) {
  EXPECT_EQ(gf_ClassName(typeid(gxCircle)), "gxCircle");
  EXPECT_EQ(gf_ClassName(typeid(Of<gxCircle>)), "(anonymous namespace)::Of<gxCircle>");
}

TEST(RegistryOrder, BeginsWithTheBaseLibrarysOwnClasses) {
  const std::vector<std::string> names = gx_Instantiator::registeredClasses();
  ASSERT_GE(names.size(), 6U);
  EXPECT_EQ(std::vector<std::string>(names.begin(), names.begin() + 6),
            (std::vector<std::string>{"gxLine", "gxLineSeg", "gxRect", "gxCircle", "gx2XformLinear",
                                      "gx2Rigid"}));
}

TEST(RegistryFactories, MakeDefaultObjectsOfTheClass) {
  for (const char* name : {"gxLine", "gxLineSeg", "gxRect", "gxCircle", "gx2XformLinear", "gx2Rigid"}) {
    const std::unique_ptr<gxPersistent> object(gx_Instantiator::make(name));
    ASSERT_NE(object, nullptr) << name;
    const gxPersistent& made = *object;
    EXPECT_EQ(gf_ClassName(typeid(made)), name);
  }
}

TEST(RegistryFactories, AreNullForAnUnknownName) {
  EXPECT_EQ(gx_Instantiator::make("gxNothing"), nullptr);
  EXPECT_EQ(gx_Instantiator::factory(""), nullptr);
  EXPECT_EQ(gx_Instantiator::make("gx2XformBase"), nullptr) << "abstract";
}

TEST(RegistryFactories, OfANameRegisteredAgainStayTheFirst) {
  const std::size_t before = gx_Instantiator::registeredClasses().size();
  const gx_Instantiator first(typeid(First), &First::make);
  const gx_Instantiator second(typeid(First), &makeAnother);
  EXPECT_EQ(gx_Instantiator::registeredClasses().size(), before + 1);
  EXPECT_EQ(gx_Instantiator::registeredClasses().back(), "(anonymous namespace)::First");
  EXPECT_EQ(gx_Instantiator::factory("(anonymous namespace)::First"), &First::make);
}

TEST(RegistryFactories, GoWithTheLibraryThatRegisteredThem) {
  const std::vector<std::string> before = gx_Instantiator::registeredClasses();
  const std::string name = "(anonymous namespace)::First";
  gxArchive out;
  {
    const gx_Instantiator first(typeid(First), &First::make);
    out.store(First());
    EXPECT_NE(gxArchive(out.bytes()).loadNew(), nullptr);
  }
  EXPECT_EQ(gx_Instantiator::registeredClasses(), before);
  EXPECT_EQ(gx_Instantiator::factory(name), nullptr);
  gxArchive in(out.bytes());
  EXPECT_THROW(in.loadNew(), gxArchive::UnknownClass);
  const gx_Instantiator again(typeid(First), &makeAnother);
  EXPECT_EQ(gx_Instantiator::factory(name), &makeAnother) << "loaded again, perhaps elsewhere";
}

TEST(RegistryFactories, ThatStandBehindOneThatWentTakeOver) {
  const std::string name = "(anonymous namespace)::First";
  auto first = std::make_unique<gx_Instantiator>(typeid(First), &First::make);
  const gx_Instantiator other(typeid(Of<int>), &makeAnother);
  auto second = std::make_unique<gx_Instantiator>(typeid(First), &makeAnother);
  const std::vector<std::string> names = gx_Instantiator::registeredClasses();
  first.reset();
  EXPECT_EQ(gx_Instantiator::factory(name), &makeAnother);
  EXPECT_EQ(gx_Instantiator::registeredClasses(), names) << "the name keeps its place";
  first = std::make_unique<gx_Instantiator>(typeid(First), &First::make);
  second.reset();
  EXPECT_EQ(gx_Instantiator::factory(name), &First::make);
}

TEST(RegistryFactories, OfTheBaseLibraryStayWhoeverElseRegistersThem) {
  const gx_Instantiator::Factory before = gx_Instantiator::factory("gxCircle");
  { const gx_Instantiator another(typeid(gxCircle), &makeAnother); }
  EXPECT_EQ(gx_Instantiator::factory("gxCircle"), before);
  EXPECT_EQ(gx_Instantiator::registeredClasses()[3], "gxCircle");
}

TEST(RegistryNames, AnArchiveKnowsAClassOnlyWhileItIsRegistered) {
  const First object;
  gxArchive archive;
  EXPECT_THROW(archive.store(object), gxArchive::UnknownClass);
  {
    const gx_Instantiator known(typeid(First), &First::make);
    archive.store(object);
    gxArchive loading(archive.bytes());
    EXPECT_NE(dynamic_cast<First*>(loading.loadNew().get()), nullptr);
  }
  EXPECT_THROW(archive.store(object), gxArchive::UnknownClass);
}

TEST(RegistryNames, AnArchiveTakesAClassOfARegisteredNameForThatClass) {
  // As of two libraries that each have the class: the name decides.
  const gx_Instantiator known(typeid(First), &First::make);
  Of<gxCircle> other;
  gxArchive archive;
  archive.store(First());
  gxArchive loading(archive.bytes());
  EXPECT_THROW(loading.load(other), gxArchive::BadFormat);
}
