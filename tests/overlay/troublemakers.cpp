#include <overlay/troublemakers.h>

#include <support/shape_text.h>
#include <support/source_folder.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <stdexcept>

namespace {

std::string folder() {
  return sourceFolder() + "/tests/corpus/overlay";
}

double numberOf(const std::string& text) {
  const std::size_t slash = text.find('/');
  const double top = std::strtod(text.c_str(), nullptr);
  return slash == std::string::npos ? top : top / std::strtod(text.c_str() + slash + 1, nullptr);
}

class Reader {
 public:
  Trouble read(const std::string& name) {
    std::ifstream file(folder() + "/" + name + ".txt");
    if (!file) throw std::runtime_error("no corpus file " + name);
    std::string line;
    while (std::getline(file, line)) {
      if (line.empty() || line[0] == '#') continue;
      const std::size_t colon = line.find(": ");
      if (colon == std::string::npos) throw std::runtime_error(name + ": no key in " + line);
      take_(line.substr(0, colon), line.substr(colon + 2));
    }
    if (trouble_.questions.empty()) throw std::runtime_error(name + " asks nothing");
    return trouble_;
  }

 private:
  judge::Ring points_(const std::string& text) const {
    judge::Ring points = pointsOf(text);
    for (gxVector<2>& p : points)
      p = gxVector<2>(p.x() * scale_ + move_.x(), p.y() * scale_ + move_.y());
    return points;
  }

  slow::Set& operand_() {
    if (trouble_.operands.empty()) trouble_.operands.emplace_back();
    return trouble_.operands.back();
  }

  void take_(const std::string& key, const std::string& value) {
    if (key == "name") {
      trouble_.name = value;
    } else if (key == "map") {
      std::istringstream in(value);
      std::string s, x, y;
      in >> s >> x >> y;
      scale_ = numberOf(s);
      move_ = gxVector<2>(numberOf(x), numberOf(y));
    } else if (key == "shape") {
      trouble_.operands.emplace_back();
    } else if (key == "outline") {
      operand_().push_back({points_(value), {}});
    } else if (key == "hole") {
      operand_().back().holes.push_back({points_(value), {}});
    } else if (key == "path") {
      trouble_.path = points_(value);
    } else if (key == "ask") {
      trouble_.questions.emplace_back().ask = value;
    } else {
      answer_(trouble_.questions.at(trouble_.questions.size() - 1), key, value);
    }
  }

  static void answer_(Trouble::Question& q, const std::string& key, const std::string& value) {
    if (key == "area") {
      q.area = numberOf(value);
    } else if (key == "rounded") {
      q.rounded = numberOf(value);
    } else if (key == "within") {
      q.within = numberOf(value);
    } else if (key == "regions") {
      q.regions = std::atoi(value.c_str());
    } else if (key == "holes") {
      q.holes = std::atoi(value.c_str());
    } else if (key == "points") {
      q.points = std::atoi(value.c_str());
    } else if (key == "keeps" && value == "vertices") {
      q.keepsVertices = true;
    } else if (key == "tells") {
      q.tells = value;
    } else {
      throw std::runtime_error("a corpus file cannot have \"" + key + "\" there");
    }
  }

  Trouble trouble_;
  double scale_ = 1.0;
  gxVector<2> move_{0, 0};
};

}  // namespace

std::vector<std::string> troubleNames() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder())) {
    names.push_back(entry.path().stem().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

Trouble troubleNamed(const std::string& name) {
  return Reader().read(name);
}
