/// The parts of the program that answers requests about shapes; README.md tells the protocol.
#pragma once

#include <nlohmann/json.hpp>

#include <functional>
#include <map>
#include <stdexcept>
#include <string>

using Json = nlohmann::ordered_json;

/// The request is malformed: not the library's failure but the asker's.
class ProtocolError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What a group of requests can ask of one kind of shape, by name.
template <class Shape>
using Operations = std::map<std::string, std::function<Json(Shape& shape, const Json& args)>>;

/// Runs `work` and gives {"result": …}, or {"error": …, "message": …} for what it throws.
Json answered(const std::function<Json()>& work);

/// Runs one operation on the shape, or, for "sequence", the steps of `args` one after the other.
template <class Shape>
Json run(const Operations<Shape>& operations, const std::string& name, Shape& shape, const Json& args) {
  if (name == "sequence") {
    Json results = Json::array();
    for (const Json& step : args.at("steps")) {
      const Json stepArgs = step.value("args", Json::object());
      results.push_back(answered(
          [&] { return run(operations, step.at("op").template get<std::string>(), shape, stepArgs); }));
    }
    return results;
  }
  const auto found = operations.find(name);
  if (found == operations.end()) throw ProtocolError("no such operation: " + name);
  return found->second(shape, args);
}

// The groups: each builds its shape of `shape`, runs the operation `name` on it, and gives the result.

Json answerContour(const std::string& name, const Json& shape, const Json& args);
Json answerRegion(const std::string& name, const Json& shape, const Json& args);
Json answerSet(const std::string& name, const Json& shape, const Json& args);
Json answerStats(const std::string& name, const Json& args);
Json answerEdgeletContour(const std::string& name, const Json& shape, const Json& args);
Json answerEdgeletRegion(const std::string& name, const Json& shape, const Json& args);
Json answerEdgeletSet(const std::string& name, const Json& shape, const Json& args);
