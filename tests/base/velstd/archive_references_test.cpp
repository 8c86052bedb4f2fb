// Objects that refer to objects: shared, nested, circular, forward, and of the wrong class.
#include <archive/probe_node.h>
#include <archive/record_writer.h>
#include <gtest/gtest.h>
#include <velstd/archive.h>
#include <velstd/xform_base.h>

using archive_test::Bytes;
using archive_test::kProbeName;
using archive_test::ProbeNode;
using archive_test::RecordWriter;

namespace {

RecordWriter& bareNode(RecordWriter& w) {
  return w.u8(7).u8(0).i32(0).u32(0).u16(0).f64(0).point(0, 0).sequence(0);
}

// A chain of nodes, the outermost first.
Bytes chain(std::uint64_t levels) {
  RecordWriter w;
  for (std::uint64_t i = 1; i <= levels; ++i) {
    if (i == 1) {
      w.object(i, 1, kProbeName);
    } else {
      w.object(i, 1);
    }
    bareNode(w);
  }
  return w.null().frame();
}

// A registered class that holds handles of two kinds, for sharing between siblings.
class Pair : public gxPersistent, public gxRepBase {
 public:
  std::vector<gxPtrHandle_const<ProbeNode>> nodes;
  gxPtrHandle<gx2XformBase> xform;
  static gxPersistent* make() { return new Pair; }

 protected:
  void dispatchSerialize(gxArchive& archive) override { archive || nodes || xform; }
};
const gx_Instantiator pairIsKnown(typeid(Pair), &Pair::make);

// Makes its parts while it is stored, one after the other, and lets go of each.
class Unpacked : public gxPersistent, public gxRepBase {
 public:
  std::vector<long> numbers;
  std::vector<gxPtrHandle<ProbeNode>> loaded;
  int aliveBehindTheFirst = 0;
  static gxPersistent* make() { return new Unpacked; }

 protected:
  void dispatchSerialize(gxArchive& archive) override {
    unsigned long count = numbers.size();
    archive || count;
    if (archive.isLoading()) loaded.resize(count);
    const int before = ProbeNode::alive();
    for (unsigned long i = 0; i < count; ++i) {
      gxPtrHandle<ProbeNode> part;
      if (archive.isStoring()) {
        part = gxPtrHandle<ProbeNode>(new ProbeNode);
        part->number = numbers[i];
      }
      archive || part;
      if (archive.isLoading()) loaded[i] = part;
      part = nullptr;
      if (i == 0) aliveBehindTheFirst = ProbeNode::alive() - before;
    }
  }
};
const gx_Instantiator unpackedIsKnown(typeid(Unpacked), &Unpacked::make);

}  // namespace

TEST(ArchiveReferences, PartsThatAreMadeWhileTheyAreStoredAreEachWritten) {
  Unpacked object;
  for (long i = 0; i < 50; ++i) object.numbers.push_back(i);
  const int before = ProbeNode::alive();
  gxArchive out;
  out.store(object);
  EXPECT_EQ(object.aliveBehindTheFirst, 1) << "the pass holds what it has written";
  EXPECT_EQ(ProbeNode::alive(), before) << "and lets go when it ends";
  Unpacked back;
  gxArchive(out.bytes()).load(back);
  ASSERT_EQ(back.loaded.size(), 50U);
  for (long i = 0; i < 50; ++i) EXPECT_EQ(back.loaded[static_cast<std::size_t>(i)]->number, i);
}

TEST(ArchiveReferences, PartsOfAPassThatFailsAreLetGoOfToo) {
  Pair pair;
  const gxPtrHandle<ProbeNode> good(new ProbeNode);
  const gxPtrHandle<ProbeNode> bad(new ProbeNode);
  bad->onSerialize = [](gxArchive&) { throw 1; };
  pair.nodes = {good, bad};
  gxArchive out;
  EXPECT_THROW(out.store(pair), int);
  EXPECT_EQ(good->refCount(), 2);
  EXPECT_EQ(bad->refCount(), 2);
}

TEST(ArchiveReferences, AnObjectThatNoHandleHoldsIsItsOwnersAfterwards) {
  ProbeNode onTheStack;
  gxArchive out;
  out.store(onTheStack);
  EXPECT_EQ(onTheStack.refCount(), 0);
  const gxPtrHandle<ProbeNode> held(new ProbeNode);
  out.store(*held);
  EXPECT_EQ(held->refCount(), 1);
}

TEST(ArchiveReferences, SharedObjectsAreStoredOnceAndComeBackShared) {
  Pair pair;
  const gxPtrHandle<ProbeNode> node(new ProbeNode);
  node->number = 42;
  pair.nodes = {node, nullptr, node, node};
  pair.xform = gxPtrHandle<gx2XformBase>(new gx2XformLinear);
  gxArchive out;
  out.store(pair);
  Pair back;
  back.nodes.emplace_back(new ProbeNode);
  gxArchive(out.bytes()).load(back);
  ASSERT_EQ(back.nodes.size(), 4U);
  EXPECT_EQ(back.nodes[0]->number, 42);
  EXPECT_TRUE(back.nodes[1].isNull());
  EXPECT_EQ(back.nodes[0], back.nodes[2]);
  EXPECT_EQ(back.nodes[0], back.nodes[3]);
  EXPECT_EQ(back.nodes[0]->refCount(), 3) << "the archive has let go";
  ASSERT_FALSE(back.xform.isNull());
  EXPECT_EQ(back.xform->refCount(), 1);
}

TEST(ArchiveReferences, OfManyObjectsThatComeTwiceEachIsStoredOnce) {
  for (const long count : {1, 7, 8, 9, 40}) {
    SCOPED_TRACE(count);
    Pair pair;
    for (long i = 0; i < count; ++i) {
      const gxPtrHandle<ProbeNode> node(new ProbeNode);
      node->number = i;
      pair.nodes.emplace_back(node);
    }
    for (long i = count; i-- > 0;) pair.nodes.push_back(pair.nodes[static_cast<std::size_t>(i)]);
    gxArchive archive;
    archive.store(pair);
    Pair loaded;
    gxArchive reading(archive.bytes());
    reading.load(loaded);
    ASSERT_EQ(loaded.nodes.size(), pair.nodes.size());
    for (std::size_t i = 0; i < loaded.nodes.size(); ++i) {
      EXPECT_EQ(loaded.nodes[i]->number, pair.nodes[i]->number);
      EXPECT_EQ(loaded.nodes[i], loaded.nodes[loaded.nodes.size() - 1 - i]) << "shared";
    }
    EXPECT_EQ(loaded.nodes[0]->refCount(), 2);
    EXPECT_EQ(pair.nodes[0]->refCount(), 2) << "the pass has let go";
  }
}

TEST(ArchiveReferences, AnObjectOfAnUnexpectedClassLoadsAsNullAndDies) {
  RecordWriter w;
  w.object(1, 1, "(anonymous namespace)::Pair").sequence(2);
  w.object(2, 2, "gx2XformLinear").u8(0);
  for (int i = 0; i < 6; ++i) w.f64(i);
  bareNode(w.object(3, 3, kProbeName)).null();
  w.reference(3);  // a node where a transform belongs
  const int before = ProbeNode::alive();
  {
    Pair pair;
    const Bytes frame = w.frame();
    gxArchive(frame).load(pair);
    ASSERT_EQ(pair.nodes.size(), 2U);
    EXPECT_TRUE(pair.nodes[0].isNull());
    EXPECT_FALSE(pair.nodes[1].isNull());
    EXPECT_TRUE(pair.xform.isNull());
    EXPECT_EQ(ProbeNode::alive(), before + 1);
  }
  EXPECT_EQ(ProbeNode::alive(), before);
}

TEST(ArchiveReferences, AnObjectWithoutACountLivesUntilThePassEnds) {
  RecordWriter w;
  w.object(1, 1, "(anonymous namespace)::Pair").sequence(2);
  w.object(2, 2, "gxCircle").u8(0).point(1, 2).f64(3);
  w.reference(2).null();
  const Bytes frame = w.frame();
  Pair pair;
  gxArchive(frame).load(pair);
  ASSERT_EQ(pair.nodes.size(), 2U);
  EXPECT_TRUE(pair.nodes[0].isNull() && pair.nodes[1].isNull());
}

TEST(ArchiveReferences, ForwardAndOutOfRangeAreRefused) {
  for (const std::uint64_t number : {3U, 4U, 1000U, 0x80000000U, 0xffffffffU}) {
    RecordWriter w;
    bareNode(w.object(1, 1, kProbeName)).reference(number);
    const Bytes frame = w.frame();
    ProbeNode node;
    EXPECT_THROW(gxArchive(frame).load(node), gxArchive::BadReference) << number;
  }
}

TEST(ArchiveReferences, ToAnObjectStillBeingReadAreRefused) {
  const int before = ProbeNode::alive();
  for (const std::uint64_t number : {1U, 2U, 3U}) {
    RecordWriter w;
    bareNode(w.object(1, 1, kProbeName));
    bareNode(w.object(2, 1));
    bareNode(w.object(3, 1));
    const Bytes frame = w.reference(number).frame();
    ProbeNode node;
    EXPECT_THROW(gxArchive(frame).load(node), gxArchive::BadReference) << number;
    EXPECT_THROW(gxArchive(frame).loadNew(), gxArchive::BadReference) << number;
  }
  EXPECT_EQ(ProbeNode::alive(), before);
}

TEST(ArchiveReferences, CyclesAreNotStored) {
  const gxPtrHandle<ProbeNode> a(new ProbeNode);
  const gxPtrHandle<ProbeNode> b(new ProbeNode);
  a->next = b;
  b->next = a;
  gxArchive out;
  EXPECT_THROW(out.store(*a), gxArchive::BadReference);
  EXPECT_TRUE(out.bytes().empty());
  b->next = nullptr;
  out.store(*a);
}

TEST(ArchiveNesting, UpToTheLimitIsReadAndWritten) {
  const Bytes frame = chain(256);
  ProbeNode node;
  gxArchive(frame).load(node);
  gxArchive out;
  out.store(node);
  EXPECT_EQ(Bytes(out.bytes().begin(), out.bytes().end()), frame);
}

TEST(ArchiveNesting, BeyondTheLimitIsRefused) {
  for (const std::uint64_t levels : {257U, 1000000U}) {
    const Bytes frame = chain(levels);
    ProbeNode node;
    gxArchive in(frame);
    EXPECT_THROW(in.load(node), gxArchive::LimitExceeded) << levels;
  }
  const gxPtrHandle<ProbeNode> outermost(new ProbeNode);
  gxPtrHandle<ProbeNode> last = outermost;
  for (int i = 2; i <= 257; ++i) {
    const gxPtrHandle<ProbeNode> inner(new ProbeNode);
    last->next = inner;
    last = inner;
  }
  gxArchive out;
  EXPECT_THROW(out.store(*outermost), gxArchive::LimitExceeded);
  EXPECT_TRUE(out.bytes().empty());
}

TEST(ArchiveNesting, LimitCanBeSetUpToAThousand) {
  gxArchive::Limits limits;
  limits.nesting = 2;
  const Bytes two = chain(2);
  const Bytes three = chain(3);
  ProbeNode node;
  gxArchive a(two);
  a.limits(limits);
  a.load(node);
  gxArchive b(three);
  b.limits(limits);
  EXPECT_THROW(b.load(node), gxArchive::LimitExceeded);

  limits.nesting = gxArchive::kMostNesting;
  const Bytes thousand = chain(1000);
  const Bytes more = chain(1001);
  gxArchive c(thousand);
  c.limits(limits);
  c.load(node);
  gxArchive out;
  out.limits(limits);
  out.store(node);
  EXPECT_EQ(out.bytes().size(), thousand.size());
  gxArchive d(more);
  d.limits(limits);
  EXPECT_THROW(d.load(node), gxArchive::LimitExceeded);
}

TEST(ArchiveObjects, BeyondTheLimitAreRefusedInBothDirections) {
  Pair pair;
  for (int i = 0; i < 9; ++i) pair.nodes.emplace_back(new ProbeNode);
  gxArchive out;
  out.store(pair);
  gxArchive::Limits limits;
  limits.objects = 10;
  gxArchive in(out.bytes());
  in.limits(limits);
  in.load(pair);
  limits.objects = 9;
  gxArchive tightIn(out.bytes());
  tightIn.limits(limits);
  EXPECT_THROW(tightIn.load(pair), gxArchive::LimitExceeded);
  Pair full;
  for (int i = 0; i < 9; ++i) full.nodes.emplace_back(new ProbeNode);
  gxArchive tightOut;
  tightOut.limits(limits);
  EXPECT_THROW(tightOut.store(full), gxArchive::LimitExceeded);
}

TEST(ArchiveLoadNew, MakesTheObjectOfItsClass) {
  const int before = ProbeNode::alive();
  {
    gxArchive out;
    const ProbeNode node;
    for (int i = 0; i < 4; ++i) out.store(node);
    gxArchive in(out.bytes());
    const std::unique_ptr<gxPersistent> owned = in.loadNew();
    auto* probe = dynamic_cast<ProbeNode*>(owned.get());
    ASSERT_NE(probe, nullptr);
    EXPECT_EQ(probe->refCount(), 0);
    const gxPtrHandle<ProbeNode> handle = in.loadHandle<ProbeNode>();
    ASSERT_FALSE(handle.isNull());
    EXPECT_EQ(handle->refCount(), 1);
    EXPECT_FALSE(in.loadHandle<gxRepBase>().isNull());
    EXPECT_TRUE(in.loadHandle<gx2XformBase>().isNull());
    EXPECT_TRUE(in.atEnd());
  }
  EXPECT_EQ(ProbeNode::alive(), before);
}
