// What the exchange sort does to equal keys, without doing it.
//
// Pass i of the sort finds the strict left-to-right minima of what is left and moves each to the
// place of the next; the last, the minimum of all, comes to place i.  Look at the elements of one
// key k, and at S, the smaller ones.  Greater elements never come between them in a way that
// matters: taking them out changes nothing about the rest.  In a sequence of elements of key k and
// of S, one pass does this: if the front is in S, it goes (its place is taken by the minimum,
// which is done with).  If the front is an element x of key k, then x is moved to the place of the
// first element of S, all of S shift on by one place of S, and the minimum goes.  So, reading the
// sequence from the left with a list of the k-elements passed so far: every element of S takes the
// first of the list to its end.  Which element of S it is does not matter.
//
// Hence: sort stably by key; then for each group of equal keys, in the order of their positions,
// rotate the list of those passed by the number of smaller keys up to the next one.  The numbers
// of smaller keys between two positions come from a Fenwick tree that is filled group by group.
#include <cntr/internal/outline/break_even.h>
#include <cntr/internal/search/exchange_order.h>

#include <algorithm>
#include <cmath>
#include <deque>
#include <numeric>

namespace {

std::vector<std::size_t> exchangeSort(const std::vector<double>& keys) {
  std::vector<std::size_t> order(keys.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  for (std::size_t i = 0; i + 1 < order.size(); ++i) {
    for (std::size_t j = i + 1; j < order.size(); ++j) {
      if (gx_exchanged(keys[order[i]], keys[order[j]])) std::swap(order[i], order[j]);
    }
  }
  return order;
}

// Counts of marked positions, by prefix.
class Fenwick {
 public:
  explicit Fenwick(std::size_t size) : tree_(size + 1) {}
  void mark(std::size_t position) {
    for (std::size_t i = position + 1; i < tree_.size(); i += i & (~i + 1)) ++tree_[i];
  }
  std::size_t before(std::size_t position) const {
    std::size_t sum = 0;
    for (std::size_t i = position; i > 0; i &= i - 1) sum += tree_[i];
    return sum;
  }

 private:
  std::vector<std::size_t> tree_;
};

// Puts a group of equal keys, given by ascending position, into the order the sort leaves.
void orderGroup(std::size_t* group, std::size_t count, std::size_t positions, const Fenwick& smaller) {
  std::deque<std::size_t> passed;
  for (std::size_t g = 0; g < count; ++g) {
    passed.push_back(group[g]);
    const std::size_t next = g + 1 < count ? group[g + 1] : positions;
    const std::size_t between = smaller.before(next) - smaller.before(group[g]);
    for (std::size_t turns = between % passed.size(); turns > 0; --turns) {
      passed.push_back(passed.front());
      passed.pop_front();
    }
  }
  std::copy(passed.begin(), passed.end(), group);
}

}  // namespace

std::vector<std::size_t> gx_exchangeOrder(const std::vector<double>& keys) {
  const std::size_t count = keys.size();
  if (count <= gx_kFewKeys) return exchangeSort(keys);
  std::vector<std::size_t> order(count);
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return gx_exchanged(keys[b], keys[a]); });
  Fenwick smaller(count);
  for (std::size_t first = 0; first < count;) {
    std::size_t end = first + 1;
    while (end < count && !gx_exchanged(keys[order[end]], keys[order[first]])) ++end;
    if (end - first > 1) orderGroup(&order[first], end - first, count, smaller);
    for (; first < end; ++first) smaller.mark(order[first]);
  }
  return order;
}
