/// Which operands hold the place that one stands at, while one walks through an arrangement.
#pragma once

#include <cntr/export.h>
#include <overlay/internal/edge_set.h>

#include <cstddef>
#include <cstdint>
#include <vector>

/// What a ring encloses, of the places it is gone around w times (counter-clockwise positive).
enum class gx_RingRule : unsigned char { eEvenOdd, eNonZero, ePositive, eNothing };

/// The part that a ring plays in a call: the outline or a hole of a region of an operand.
struct gx_RingRole {
  std::uint32_t operand = 0;
  std::uint32_t parent =
      gx_EdgeSet::kNone;  ///< the ring that this one is a hole of; kNone for an outline
  gx_RingRule rule = gx_RingRule::eEvenOdd;
  /// The ring to whose turns those of this one are added, which comes before it; kNone for none.  The rest
  /// of the role is then without meaning.
  std::uint32_t together = gx_EdgeSet::kNone;
};

/// Counts, for one place at a time, how often every ring goes around it, and what follows: a region holds
/// the place where its outline does by rule and none of its holes, each with holes of its own, does; an
/// operand does where one of its regions does.
///
/// A step over a ring costs the depth of its nesting; the memory is that of the rings, however many places
/// are visited.
class GXSHAPE_API gx_Membership {
 public:
  /// What `label` tells.
  enum Question : unsigned char {
    eUnion,         ///< 1 where some operand holds the place, else 0
    eIntersection,  ///< 1 where all do
    eDifference,    ///< 1 where the first does and no other
    eSymmetric,     ///< 1 where an odd number does
    eFirstTwo,      ///< 1 where operand 0 does, and 2 more where operand 1 does
  };

  gx_Membership(const std::vector<gx_RingRole>& roles, std::size_t operands, Question question);

  /// Steps over a ring, to where it goes around `by` times more.
  void step(std::uint32_t ring, int by);
  /// Returns what the question is for the place that one stands at.
  unsigned char label() const;

 private:
  struct Ring {
    std::int32_t around = 0;
    std::uint32_t holdingHoles = 0;
    std::uint32_t parent = 0;
    std::uint32_t operand = 0;
    std::uint32_t counted = 0;  // where its turns are counted
    gx_RingRule rule = gx_RingRule::eEvenOdd;
    bool encloses = false;
  };

  void changed_(std::uint32_t ring, bool holds);

  std::vector<Ring> rings_;
  std::vector<std::uint32_t> regions_;  // of each operand: how many of its regions hold the place
  std::size_t holding_ = 0;             // operands that do
  Question question_;
};
