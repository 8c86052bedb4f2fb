/// Every const question that a shape answers, each with its answer as bits, so that answers given to
/// several threads can be compared with the one given to a thread on its own.
#pragma once

#include <velstd/persistent.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace threads_test {

/// What an answer, or an exception, comes down to.
using Bits = std::vector<std::uint64_t>;

struct Question {
  std::string name;
  std::function<Bits(const gxPersistent&)> ask;
};

/// Returns the questions that fit the class of this object.  No two of them ask about transforms that
/// share a key, whose answers depend on which is asked first.
std::vector<Question> questionsFor(const gxPersistent& object);

/// Returns the answer; for an exception, its text.
Bits answerOf(const Question& question, const gxPersistent& object);

}  // namespace threads_test
