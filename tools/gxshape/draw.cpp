// draw: all records in one picture, so it takes them all before it begins.
#include "command.h"

#if defined(GXSHAPE_HAS_CAIRO)

#  include "sketch.h"

#  include <algorithm>
#  include <mutex>

namespace {

std::vector<std::string> layersOf(const Options& options) {
  std::vector<std::string> layers;
  const std::string text = !options.layers.empty()   ? options.layers
                           : !options.golden.empty() ? "deviation"
                                                     : "fill,outline";
  for (std::size_t at = 0; at <= text.size();) {
    const std::size_t comma = (std::min)(text.find(',', at), text.size());
    const std::string word = text.substr(at, comma - at);
    const auto& names = layerNames();
    if (std::find(names.begin(), names.end(), word) == names.end()) {
      const std::string near = nearest(word, names);
      throw UsageError{"--layers: no layer '" + word + "'" +
                       (near.empty() ? "" : "; did you mean '" + near + "'?")};
    }
    layers.push_back(word);
    at = comma + 1;
  }
  return layers;
}

class Draw final : public Command {
 public:
  explicit Draw(const Options& options)
      : options_(options), layers_(layersOf(options)), kind_(kindOf(options)) {
    if (options.y != "down" && options.y != "up")
      throw UsageError{"--y: down or up, not '" + options.y + "'"};
    const bool compares = std::find(layers_.begin(), layers_.end(), "deviation") != layers_.end();
    if (compares && options.golden.empty())
      throw UsageError{"draw: deviation from which outline? --golden FILE"};
    if (!options.golden.empty()) golden_ = firstRecordOf(options.golden, options);
  }

  bool joinsAll() const override { return true; }
  bool draws() const override { return true; }

  void answer(const gxRecord& record, Answer&) const override {
    const std::scoped_lock lock(mutex_);
    taken_.push_back(record);
  }

  void finish(Answer& answer) const override {
    std::sort(taken_.begin(), taken_.end(),
              [](const gxRecord& a, const gxRecord& b) { return a.number < b.number; });
    try {
      const gxCairoTablet tablet = Sketch(options_, layers_, taken_, golden_).picture();
      answer.document = kind_ == "png" ? tablet.png() : kind_ == "pdf" ? tablet.pdf() : tablet.svg();
    } catch (const gxPictureError::Failed& error) {
      throw FileError{error.what()};
    } catch (const gxPictureError::Errors& error) {
      throw UsageError{std::string("draw: ") + error.what()};
    }
  }

 private:
  // What was asked for, else what the name of the output says.
  static std::string kindOf(const Options& options) {
    const std::string& to = options.to;
    const std::string ending = to.substr((std::min)(to.rfind('.') + 1, to.size()));
    std::string kind = !options.output.empty()              ? options.output
                       : ending == "png" || ending == "pdf" ? ending
                                                            : "svg";
    if (kind == "svg" || kind == "png" || kind == "pdf") return kind;
    throw UsageError{"--output: draw gives svg, png or pdf, not " + kind};
  }

  const Options& options_;
  std::vector<std::string> layers_;
  std::string kind_;
  gxRecord golden_;
  mutable std::mutex mutex_;
  mutable std::vector<gxRecord> taken_;
};

}  // namespace

std::unique_ptr<Command> makeDraw(const Options& options) {
  if (options.command != "draw") return nullptr;
  return std::make_unique<Draw>(options);
}

#else

std::unique_ptr<Command> makeDraw(const Options& options) {
  if (options.command != "draw") return nullptr;
  throw UsageError{"draw: this build makes no pictures, for Cairo was not there when it was made"};
}

#endif
