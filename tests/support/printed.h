/// What a value prints.
#pragma once

#include <sstream>
#include <string>

/// Returns what `operator<<` writes of a value.
template <class Value>
std::string printed(const Value& value) {
  std::ostringstream out;
  out << value;
  return out.str();
}
