// Persistent objects: visits, simple loading, change tracking.
//
// Covers base/velstd/archive_pass.cpp
// Covers base/velstd/internal/archive_pass.h
#include <archive/probe_node.h>
#include <archive/record_writer.h>
#include <gtest/gtest.h>
#include <velstd/archive.h>
#include <velstd/circle.h>
#include <velstd/line.h>
#include <velstd/line_seg.h>
#include <velstd/rect.h>
#include <velstd/xform_base.h>

#include <thread>

using archive_test::Bytes;
using archive_test::kProbeName;
using archive_test::ProbeNode;
using archive_test::RecordWriter;

namespace {

RecordWriter& bareNode(RecordWriter& w) {
  return w.u8(7).u8(0).i32(0).u32(0).u16(0).f64(0).point(0, 0).sequence(0);
}

// Holds a circle by value, and reads it with `loadSimple`.
class Holder : public gxPersistent {
 public:
  gxCircle first;
  gxCircle second;
  ProbeNode node;
  static gxPersistent* make() { return new Holder; }

 protected:
  void dispatchSerialize(gxArchive& archive) override {
    if (archive.isLoading()) {
      first.loadSimple(archive);
      second.loadSimple(archive);
      second.loadSimple(archive);
      node.loadSimple(archive);
    }
  }
};
// Two handles, which may share.
class Two : public gxPersistent {
 public:
  gxPtrHandle<ProbeNode> first;
  gxPtrHandle<ProbeNode> second;
  static gxPersistent* make() { return new Two; }

 protected:
  void dispatchSerialize(gxArchive& archive) override { archive || first || second; }
};
const gx_Instantiator twoIsKnown(typeid(Two), &Two::make);

const gx_Instantiator holderIsKnown(typeid(Holder), &Holder::make);

}  // namespace

TEST(PersistentVisits, BelongToOnePassAndLevel) {
  ProbeNode node;
  int other = 0;
  std::uint64_t keyOfThePass = 0;
  node.onSerialize = [&](gxArchive& archive) {
    const std::uint64_t key = keyOfThePass = archive.passAndLevel(0x200);
    EXPECT_FALSE(gxPersistent::haveVisited(&other, key));
    gxPersistent::setVisited(&other, key);
    gxPersistent::setVisited(&other, key);
    EXPECT_TRUE(gxPersistent::haveVisited(&other, key));
    EXPECT_FALSE(gxPersistent::haveVisited(&other, archive.passAndLevel(0x201)));
    EXPECT_FALSE(gxPersistent::haveVisited(&node, key));
    EXPECT_FALSE(gxPersistent::haveVisited(nullptr, key));

    // A pass on another archive, inside this one, knows nothing of it; this one goes on knowing.
    ProbeNode inner;
    inner.onSerialize = [&](gxArchive& nested) {
      EXPECT_FALSE(gxPersistent::haveVisited(&other, nested.passAndLevel(0x200)));
      EXPECT_TRUE(gxPersistent::haveVisited(&other, key));
    };
    gxArchive another;
    another.store(inner);
    EXPECT_TRUE(gxPersistent::haveVisited(&other, key));

    // Another thread has passes of its own.
    std::thread([&] { EXPECT_FALSE(gxPersistent::haveVisited(&other, key)); }).join();
  };
  gxArchive archive;
  archive.store(node);
  EXPECT_FALSE(gxPersistent::haveVisited(&other, keyOfThePass)) << "the pass is over";
  gxPersistent::setVisited(&other, keyOfThePass);
  EXPECT_FALSE(gxPersistent::haveVisited(&other, keyOfThePass));
}

TEST(PersistentVisits, AreKeptForThousandsOfObjects) {
  ProbeNode node;
  std::vector<int> many(20000);
  node.onSerialize = [&](gxArchive& archive) {
    const std::uint64_t key = archive.passAndLevel(0x300);
    for (std::size_t i = 0; i < many.size(); i += 2) gxPersistent::setVisited(&many[i], key);
    for (std::size_t i = 0; i < many.size(); ++i) {
      ASSERT_EQ(gxPersistent::haveVisited(&many[i], key), i % 2 == 0) << i;
    }
  };
  gxArchive archive;
  archive.store(node);
}

TEST(PersistentLoadSimple, ReadsAFrameThatHoldsOneObject) {
  gxArchive out;
  out.store(gxCircle(gxVector<2>(1, 2), 3));
  gxCircle circle;
  gxArchive in(out.bytes());
  circle.loadSimple(in);
  EXPECT_EQ(circle, gxCircle(gxVector<2>(1, 2), 3));
  EXPECT_TRUE(in.atEnd());
}

TEST(PersistentLoadSimple, ReadsNewObjectsAndRefusesReferencesToEarlierOnes) {
  RecordWriter w;
  w.object(1, 1, "(anonymous namespace)::Two");
  bareNode(w.object(2, 2, kProbeName)).null();
  w.reference(2);
  const Bytes shared = w.frame();
  Two two;
  gxArchive(shared).load(two);
  EXPECT_FALSE(two.first.isNull());
  EXPECT_EQ(two.first, two.second) << "with the bookkeeping of references";
  gxArchive in(shared);
  EXPECT_THROW(two.loadSimple(in), gxArchive::BadReference);

  RecordWriter apart;
  apart.object(1, 1, "(anonymous namespace)::Two");
  bareNode(apart.object(2, 2, kProbeName)).null();
  bareNode(apart.object(3, 2)).null();
  const Bytes frame = apart.frame();
  gxArchive again(frame);
  two.loadSimple(again);
  EXPECT_FALSE(two.second.isNull());
  EXPECT_NE(two.first, two.second);
}

TEST(PersistentLoadSimple, IsRefusedByAnArchiveThatStores) {
  ProbeNode node;
  gxArchive storing;
  EXPECT_THROW(node.loadSimple(storing), gxArchive::BadFormat);

  // Inside a pass too, where the record would be written instead.
  ProbeNode outer;
  int refused = 0;
  outer.onSerialize = [&](gxArchive& archive) {
    try {
      node.loadSimple(archive);
    } catch (const gxArchive::BadFormat&) {
      ++refused;
    }
  };
  gxArchive plain;
  plain.store(node);
  gxArchive out;
  out.store(outer);
  EXPECT_EQ(refused, 1);
  EXPECT_EQ(out.bytes().size(), plain.bytes().size());
}

TEST(PersistentLoadSimple, ReadsTheBareRecordInsideARunningPass) {
  RecordWriter w;
  w.object(1, 1, "(anonymous namespace)::Holder");
  w.u8(0).point(1, 2).f64(3);
  w.u8(0).point(4, 5).f64(6);
  w.u8(0).point(7, 8).f64(9);  // read into the same object again
  bareNode(w).null();
  Bytes frame = w.frame();
  Holder holder;
  gxArchive(frame).load(holder);
  EXPECT_EQ(holder.first, gxCircle(gxVector<2>(1, 2), 3));
  EXPECT_EQ(holder.second, gxCircle(gxVector<2>(7, 8), 9));
}

TEST(PersistentReInit, OfTheBaseClassDoesNothing) {
  gxPersistent object;
  object.trackChanges(true);
  object.reInit();
  EXPECT_EQ(object.changeCount(), 0U);
}

// The value shapes and the transforms alike.
TEST(PersistentTracking, CountsAnAssignmentOfAValueAsAChange) {
  const auto changes = [](auto& target, const auto& source) {
    target.trackChanges(true);
    target = source;
    return target.changeCount();
  };
  gxLine line;
  gxLineSeg seg;
  gxRect rect;
  gxCircle circle;
  gx2XformLinear linear;
  gx2Rigid rigid;
  EXPECT_EQ(changes(line, gxLine()), 1U);
  EXPECT_EQ(changes(seg, gxLineSeg()), 1U);
  EXPECT_EQ(changes(rect, gxRect()), 1U);
  EXPECT_EQ(changes(circle, gxCircle()), 1U);
  EXPECT_EQ(changes(linear, gx2XformLinear(gxXform<2>(gxMatrix<2>(1, 2, 3, 4), gxVector<2>(5, 6)))), 1U);
  EXPECT_EQ(linear.mapPoint(gxVector<2>(0, 0)), gxVector<2>(5, 6));
  EXPECT_EQ(changes(rigid, gx2Rigid(gxDegree(90), gxVector<2>(1, 2))), 1U);
  EXPECT_EQ(rigid.angle(), gxDegree(90));
  const gx2Rigid copy(rigid);
  EXPECT_FALSE(copy.isTrackingChanges());
}

TEST(PersistentTracking, CountsALoadAsAChange) {
  gxArchive out;
  out.store(gxCircle());
  gxCircle circle;
  circle.trackChanges(true);
  gxArchive(out.bytes()).load(circle);
  EXPECT_GT(circle.changeCount(), 0U);
  circle.trackChanges(true);
  gxArchive again;
  again.store(circle);
  EXPECT_EQ(circle.changeCount(), 0U);
}
