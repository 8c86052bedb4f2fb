// Reads requests, one a line, and writes what the library answers, one a line.
#include <cntr/contourdefs.h>
#include <conformance/answer.h>
#include <velip/pel.h>
#include <velstd/exception.h>

#include <exception>
#include <iostream>

namespace {

Json failure(const char* name, const std::string& message) {
  return {{"error", name}, {"message", message}};
}

// The text of `what()` without the class name in front.
std::string messageOf(const std::exception& error) {
  const std::string text = error.what();
  const auto colon = text.find(": ");
  return colon == std::string::npos ? "" : text.substr(colon + 2);
}

Json resultOf(const Json& request) {
  const auto op = request.at("op").get<std::string>();
  const auto dot = op.find('.');
  if (dot == std::string::npos) throw ProtocolError("no group: " + op);
  const std::string group = op.substr(0, dot);
  const std::string name = op.substr(dot + 1);
  const Json shape = request.value("shape", Json::object());
  const Json args = request.value("args", Json::object());
  if (group == "contour") return answerContour(name, shape, args);
  if (group == "region") return answerRegion(name, shape, args);
  if (group == "set") return answerSet(name, shape, args);
  if (group == "stats") return answerStats(name, args);
  if (group == "edgeletContour") return answerEdgeletContour(name, shape, args);
  if (group == "edgeletRegion") return answerEdgeletRegion(name, shape, args);
  if (group == "edgeletSet") return answerEdgeletSet(name, shape, args);
  throw ProtocolError("no such group: " + group);
}

Json answer(const std::string& line) {
  Json id = nullptr;
  Json outcome = answered([&] {
    const Json request = Json::parse(line);
    id = request.value("id", Json(nullptr));
    return resultOf(request);
  });
  Json response = {{"id", id}};
  response.update(outcome);
  return response;
}

}  // namespace

Json answered(const std::function<Json()>& work) {
  try {
    return {{"result", work()}};
  } catch (const gxContourDefs::EmptyContour& error) {
    return failure("EmptyContour", messageOf(error));
  } catch (const gxContourDefs::EmptyRegionSet& error) {
    return failure("EmptyRegionSet", messageOf(error));
  } catch (const gxContourDefs::BadParams& error) {
    return failure("BadParams", messageOf(error));
  } catch (const gxContourDefs::RegionCannotBeSetOpen& error) {
    return failure("RegionCannotBeSetOpen", messageOf(error));
  } catch (const gxBadPointer&) {
    return failure("BadPointer", "");
  } catch (const gxMathError::Singular&) {
    return failure("Singular", "");
  } catch (const gxPel::BadWindow&) {
    return failure("BadWindow", "");
  } catch (const ProtocolError& error) {
    return failure("Protocol", error.what());
  } catch (const nlohmann::json::exception& error) {
    return failure("Protocol", error.what());
  } catch (const std::exception& error) {
    return failure("Unexpected", error.what());
  }
}

int main() {
  std::ios::sync_with_stdio(false);
  for (std::string line; std::getline(std::cin, line);) {
    if (line.find_first_not_of(" \t\r") == std::string::npos) continue;
    std::cout << answer(line).dump() << '\n' << std::flush;
  }
  return 0;
}
