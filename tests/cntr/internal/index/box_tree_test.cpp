#include <cntr/internal/index/box_tree.h>

#include <support/random_shapes.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <vector>

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

std::vector<std::size_t> meeting(const gx_BoxTree& tree, const gx_Box& box) {
  std::vector<std::size_t> found;
  tree.forEachMeeting(box, [&](std::size_t i) { found.push_back(i); });
  std::sort(found.begin(), found.end());
  return found;
}

std::vector<std::size_t> plainly(const std::vector<gx_Box>& boxes, const gx_Box& box) {
  std::vector<std::size_t> found;
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    if (boxes[i].meets(box)) found.push_back(i);
  }
  return found;
}

gx_Box randomBox(RandomShapes& random, double spread) {
  gx_Box box;
  box.lowX = random.uniform(-spread, spread);
  box.lowY = random.uniform(-spread, spread);
  box.highX = box.lowX + random.uniform(0, random.chance(0.05) ? spread : 3.0);
  box.highY = box.lowY + random.uniform(0, random.chance(0.05) ? spread : 3.0);
  if (random.chance(0.02)) return {};  // empty
  if (random.chance(0.02)) box.highX = kInf;
  if (random.chance(0.01)) box = {-kInf, -kInf, kInf, kInf};
  return box;
}

}  // namespace

TEST(BoxTree, OfNoBoxesFindsNothing) {
  EXPECT_TRUE(meeting(gx_BoxTree({}), {-kInf, -kInf, kInf, kInf}).empty());
}

TEST(BoxTree, BordersCount) {
  const gx_BoxTree tree({{0, 0, 1, 1}, {2, 0, 3, 1}});
  EXPECT_EQ(meeting(tree, {1, 1, 2, 2}), (std::vector<std::size_t>{0, 1}));
  EXPECT_TRUE(meeting(tree, {1.25, 0, 1.75, 1}).empty());
}

TEST(BoxTree, EmptyAndNaNBoxesMeetNothing) {
  const gx_BoxTree tree({{}, {0, 0, 1, 1}});
  EXPECT_TRUE(meeting(tree, {}).empty());
  EXPECT_TRUE(meeting(tree, {kNaN, 0, 1, 1}).empty());
  EXPECT_EQ(meeting(tree, {-5, -5, 5, 5}), std::vector<std::size_t>{1});
}

TEST(BoxTree, EveryNumberOfBoxesUpToSeveralLevels) {
  std::vector<gx_Box> boxes;
  for (int count = 1; count <= 600; ++count) {
    const double at = 2.0 * count;
    boxes.push_back({at, -at, at + 1, -at + 1});
    const gx_BoxTree tree(boxes);
    EXPECT_EQ(meeting(tree, {-kInf, -kInf, kInf, kInf}).size(), boxes.size());
    EXPECT_EQ(meeting(tree, {at, -at, at, -at}), std::vector<std::size_t>{boxes.size() - 1});
  }
}

TEST(BoxTree, RandomBoxesMatchThePlainScan) {
  RandomShapes random("box tree", 300);
  while (random.next()) {
    SCOPED_TRACE(random.trace());
    const double spread = random.uniform(2, 60);
    std::vector<gx_Box> boxes(static_cast<std::size_t>(random.integer(0, 700)));
    for (gx_Box& box : boxes) box = randomBox(random, spread);
    const gx_BoxTree tree(boxes);
    for (int k = 0; k < 20; ++k) {
      const gx_Box query = randomBox(random, spread);
      EXPECT_EQ(meeting(tree, query), plainly(boxes, query));
    }
  }
}
