#include <velstd/handle.h>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

std::atomic<int> living{0};

class Thing : public gxRepBase {
 public:
  explicit Thing(int value = 0) : value_(value) { ++living; }
  Thing(const Thing& o) : gxRepBase(o), value_(o.value_) { ++living; }
  Thing& operator=(const Thing&) = default;
  ~Thing() override { --living; }

  int value() const { return value_; }
  void value(int v) { value_ = v; }

 private:
  int value_;
};

class SpecialThing : public Thing {
 public:
  using Thing::Thing;
};

class Unrelated : public gxRepBase {};

// The reference count reached through a virtual base, as shapes have it.
class Other {
 public:
  virtual ~Other() = default;
  long other = 17;
};
class Virtual : public virtual gxRepBase {
 public:
  int value = 5;
};
class Diamond : public Other, public Virtual {};

struct Chain : gxRepBase {
  gxPtrHandle<Chain> next;
};

using Handle = gxPtrHandle<Thing>;
using ConstHandle = gxPtrHandle_const<Thing>;

// What converts by itself …
static_assert(std::is_convertible_v<Handle, ConstHandle>);
static_assert(std::is_convertible_v<gxPtrHandle<SpecialThing>, Handle>);
static_assert(std::is_convertible_v<gxPtrHandle<SpecialThing>, ConstHandle>);
static_assert(std::is_convertible_v<gxPtrHandle_const<SpecialThing>, ConstHandle>);
static_assert(std::is_convertible_v<std::nullptr_t, Handle>);
static_assert(std::is_convertible_v<std::nullptr_t, ConstHandle>);
// … and what must not.
static_assert(!std::is_constructible_v<Handle, ConstHandle>);
static_assert(!std::is_assignable_v<Handle&, ConstHandle>);
static_assert(!std::is_constructible_v<gxPtrHandle<SpecialThing>, Handle>);
static_assert(!std::is_constructible_v<gxPtrHandle_const<SpecialThing>, ConstHandle>);
static_assert(!std::is_constructible_v<Handle, gxPtrHandle<Unrelated>>);
static_assert(!std::is_constructible_v<ConstHandle, gxPtrHandle<Unrelated>>);
static_assert(!std::is_convertible_v<Thing*, Handle>);
static_assert(std::is_constructible_v<Handle, Thing*>);
static_assert(!std::is_constructible_v<Handle, const Thing*>);
static_assert(!std::is_convertible_v<const Thing*, ConstHandle>);
static_assert(std::is_constructible_v<ConstHandle, const Thing*>);
static_assert(!std::is_convertible_v<Handle, bool>);
static_assert(!std::is_convertible_v<Handle, Thing*>);
static_assert(!std::is_constructible_v<Handle, int>);
// Through a const handle, the object is only read.
static_assert(std::is_same_v<decltype(*std::declval<ConstHandle>()), const Thing&>);
static_assert(std::is_same_v<decltype(std::declval<ConstHandle>().get()), const Thing*>);
static_assert(std::is_same_v<decltype(*std::declval<const Handle>()), Thing&>);
// Containers move them.
static_assert(std::is_nothrow_move_constructible_v<Handle> && std::is_nothrow_move_assignable_v<Handle>);
static_assert(std::is_nothrow_move_constructible_v<ConstHandle>);
static_assert(std::is_nothrow_move_assignable_v<ConstHandle>);
static_assert(std::is_base_of_v<gxPtrHandleBase, Handle>);
static_assert(std::is_base_of_v<gxPtrHandleBase_const, Handle>);
static_assert(std::is_base_of_v<gxPtrHandleBase_const, ConstHandle>);

TEST(Handle, DefaultIsNull) {
  const Handle handle;
  EXPECT_TRUE(handle.isNull());
  EXPECT_FALSE(static_cast<bool>(handle));
  EXPECT_EQ(handle.get(), nullptr);
  EXPECT_EQ(handle, nullptr);
  EXPECT_TRUE(ConstHandle(nullptr).isNull());
  EXPECT_TRUE(Handle(static_cast<Thing*>(nullptr)).isNull());
}

TEST(Handle, LastOneDestroysTheObject) {
  const int before = living;
  {
    const Handle first(new Thing(3));
    EXPECT_EQ(first->refCount(), 1);
    {
      const Handle second = first;
      const ConstHandle third = first;
      EXPECT_EQ(first->refCount(), 3);
      EXPECT_EQ(second.get(), third.get());
    }
    EXPECT_EQ(first->refCount(), 1);
    EXPECT_EQ(living, before + 1);
  }
  EXPECT_EQ(living, before);
}

TEST(Handle, GivesTheObject) {
  const Handle handle(new Thing(3));
  handle->value(4);
  EXPECT_EQ((*handle).value(), 4);
  const ConstHandle reader = handle;
  EXPECT_EQ(reader->value(), 4);
  EXPECT_EQ((*reader).value(), 4);
}

TEST(Handle, NullDereferenceThrows) {
  const Handle handle;
  EXPECT_THROW(static_cast<void>(handle->value()), gxBadPointer);
  EXPECT_THROW(static_cast<void>(*handle), gxBadPointer);
  const ConstHandle reader;
  EXPECT_THROW(static_cast<void>(reader->value()), gxBadPointer);
  EXPECT_THROW(static_cast<void>(*reader), gxBadPointer);
}

TEST(Handle, EqualityIsThatOfTheObjects) {
  const Handle a(new Thing(1));
  const Handle b(new Thing(1));
  EXPECT_NE(a, b);
  EXPECT_EQ(a, Handle(a));
  EXPECT_EQ(ConstHandle(a), a);
  EXPECT_NE(a, nullptr);
  EXPECT_EQ(Handle(), ConstHandle());
}

TEST(Handle, MovesWithoutCounting) {
  Handle a(new Thing(1));
  Thing* const object = a.get();
  Handle b(std::move(a));
  EXPECT_TRUE(a.isNull());  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(b.get(), object);
  EXPECT_EQ(b->refCount(), 1);
  a = std::move(b);
  EXPECT_TRUE(b.isNull());  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(a->refCount(), 1);
}

TEST(Handle, AssignmentLetsGoOfTheOldObject) {
  const int before = living;
  Handle a(new Thing(1));
  const Handle b(new Thing(2));
  a = b;
  EXPECT_EQ(living, before + 1);
  EXPECT_EQ(b->refCount(), 2);
  a = nullptr;
  EXPECT_TRUE(a.isNull());
  EXPECT_EQ(b->refCount(), 1);
}

TEST(Handle, SelfAssignmentChangesNothing) {
  Handle a(new Thing(1));
  const Handle& same = a;
  a = same;
  EXPECT_EQ(a->refCount(), 1);
  EXPECT_EQ(a->value(), 1);
  ConstHandle b(a);
  const ConstHandle& sameConst = b;
  b = sameConst;
  EXPECT_EQ(a->refCount(), 2);
}

TEST(Handle, AssignmentFromWhatTheOldObjectOwns) {
  gxPtrHandle<Chain> head(new Chain);
  head->next = gxPtrHandle<Chain>(new Chain);
  head->next->next = gxPtrHandle<Chain>(new Chain);
  Chain* const last = head->next->next.get();
  head = head->next;
  head = head->next;
  EXPECT_EQ(head.get(), last);
  EXPECT_EQ(head->refCount(), 1);
}

TEST(Handle, DerivedObjectsThroughBaseHandles) {
  const int before = living;
  {
    const gxPtrHandle<SpecialThing> special(new SpecialThing(9));
    const Handle plain = special;
    const ConstHandle reader = special;
    EXPECT_EQ(plain->value(), 9);
    EXPECT_EQ(reader->value(), 9);
    EXPECT_EQ(special->refCount(), 3);
    const gxPtrHandle_const<SpecialThing> readsSpecial = special;
    const ConstHandle again = readsSpecial;
    EXPECT_EQ(special->refCount(), 5);
    EXPECT_TRUE(Handle(gxPtrHandle<SpecialThing>()).isNull());
  }
  EXPECT_EQ(living, before);
}

TEST(Handle, CountReachedThroughAVirtualBase) {
  const gxPtrHandle<Diamond> diamond(new Diamond);
  const gxPtrHandle<Virtual> part = diamond;
  EXPECT_EQ(part->value, 5);
  EXPECT_EQ(diamond->other, 17);
  EXPECT_EQ(diamond->refCount(), 2);
  EXPECT_TRUE(gxPtrHandle<Virtual>(gxPtrHandle<Diamond>()).isNull());
}

TEST(Handle, ConstObjects) {
  const int before = living;
  { const ConstHandle handle(static_cast<const Thing*>(new Thing(6))); }
  EXPECT_EQ(living, before);
}

TEST(RepBase, TheCountIsNotCopiedAssignedOrMoved) {
  const Handle held(new Thing(1));
  const Thing copy(*held);
  EXPECT_EQ(copy.refCount(), 0);
  const Handle other(new Thing(2));
  const Handle second = other;
  *other = *held;
  EXPECT_EQ(other->value(), 1);
  EXPECT_EQ(other->refCount(), 2);
  EXPECT_EQ(held->refCount(), 1);
}

TEST(RepBase, ObjectsOnTheStackNeedNoHandle) {
  const Thing thing(3);
  EXPECT_EQ(thing.refCount(), 0);
}

TEST(Interlocked, ReturnTheNewValue) {
  std::atomic<long> count{5};
  EXPECT_EQ(gfInterlockedIncrement(count), 6);
  EXPECT_EQ(gfInterlockedDecrement(count), 5);
  EXPECT_EQ(count, 5);
}

TEST(HandleDestruction, AChainOfAMillionDiesOnAnOrdinaryStack) {
  auto* const first = new Chain;
  gxPtrHandle<Chain> head(first);
  Chain* last = first;
  for (int i = 1; i < 1000000; ++i) {
    last->next = gxPtrHandle<Chain>(new Chain);
    last = last->next.get();
  }
  const gxPtrHandle<Chain> end(last);
  EXPECT_EQ(end->refCount(), 2);
  head = nullptr;
  EXPECT_EQ(end->refCount(), 1);  // all before it are gone
}

struct Tree : gxRepBase {
  explicit Tree(std::atomic<int>& count) : living_(count) { ++living_; }
  ~Tree() override { --living_; }
  std::vector<gxPtrHandle<Tree>> children;

 private:
  std::atomic<int>& living_;
};

TEST(HandleDestruction, ADeepTreeWithSharedBranchesDiesWholly) {
  std::atomic<int> trees{0};
  gxPtrHandle<Tree> root(new Tree(trees));
  gxPtrHandle<Tree> at = root;
  const gxPtrHandle<Tree> shared(new Tree(trees));
  for (int depth = 0; depth < 20000; ++depth) {
    for (int i = 0; i < 3; ++i) at->children.emplace_back(new Tree(trees));
    at->children.push_back(shared);
    at = at->children[static_cast<std::size_t>(depth % 3)];
  }
  EXPECT_EQ(trees, 60002);
  at = nullptr;
  EXPECT_EQ(trees, 60002);
  root = nullptr;
  EXPECT_EQ(trees, 1);
  EXPECT_EQ(shared->refCount(), 1);
}

TEST(HandleThreads, OneObjectIsSharedByManyThreads) {
  const int before = living;
  {
    const Handle shared(new Thing(11));
    std::atomic<long> sum{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
      threads.emplace_back([shared, &sum] {
        std::vector<ConstHandle> mine;
        for (int i = 0; i < 20000; ++i) {
          mine.push_back(shared);
          sum += mine.back()->value();
          if (mine.size() == 100) mine.clear();
        }
      });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(sum, 4L * 20000 * 11);
    EXPECT_EQ(shared->refCount(), 1);
  }
  EXPECT_EQ(living, before);
}

TEST(HandleThreads, WhoeverLetsGoLastDestroysOnce) {
  const int before = living;
  for (int round = 0; round < 300; ++round) {
    Handle shared(new Thing(round));
    std::vector<std::thread> threads;
    for (int t = 0; t < 3; ++t) {
      threads.emplace_back([copy = shared, round]() mutable {
        EXPECT_EQ(copy->value(), round);
        copy = nullptr;
      });
    }
    shared = nullptr;
    for (std::thread& thread : threads) thread.join();
    ASSERT_EQ(living, before);
  }
}

// ---- Making -------------------------------------------------------------------------------------

struct Made : gxRepBase {
  Made(int a, std::unique_ptr<int> b) : sum(a + *b) {}
  int sum;
};

TEST(HandleMaking, HandsItsArgumentsOnToTheConstructor) {
  const gxPtrHandle<Made> made = gfMakeHandle<Made>(2, std::make_unique<int>(3));
  EXPECT_EQ(made->sum, 5);
  EXPECT_EQ(made->refCount(), 1);
  const gxPtrHandle_const<Made> read = made;
  EXPECT_EQ(made->refCount(), 2);
}

}  // namespace
