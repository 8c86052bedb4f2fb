// Cutting GeoJSON: from brace to brace, strings passed over.  In a collection, the objects in its
// "features" are cut and the rest is skipped; any other object is a record itself.
#include <io/internal/cutter.h>

#include <array>

using Code = gxReadError::Code;

namespace {

// The bytes that say nothing of where an object ends.
constexpr auto kPlain = [] {
  std::array<bool, 256> plain{};
  plain.fill(true);
  for (const char c : {'"', '{', '}', '[', ']'}) plain[static_cast<unsigned char>(c)] = false;
  return plain;
}();

class Objects final : public gx_Cutter {
 public:
  using gx_Cutter::gx_Cutter;

 protected:
  bool cutNext(gxRawRecord& raw) override {
    while (true) {
      if (!inFeatures_ && !enter(raw)) return raw.text.data() != nullptr || error_.has_value();
      if (!inFeatures_) continue;
      if (cutFeature(raw)) return true;
    }
  }

 private:
  // The next byte that is no space (nor a mark that begins a record in JSON text sequences); 0 at the end.
  char nextByte() {
    while (true) {
      const std::string_view text = in_->text();
      const std::size_t found = text.find_first_not_of(" \t\r\n\x1e");
      in_->drop(found == std::string_view::npos ? text.size() : found);
      if (found != std::string_view::npos) return in_->text()[0];
      if (!in_->fill()) return '\0';
    }
  }

  // Finds the end of the object at the beginning of the window: its length, 0 where it does not end.
  // Stops with `features` at the bracket of a member of that name of the outermost object.
  struct End {
    std::size_t length = 0;
    bool isFeatures = false;
    bool tooLong = false;
  };
  End scan(bool outermost) {
    std::size_t at = 0;
    int depth = 0;
    std::size_t nameFrom = 0;
    std::size_t nameTo = 0;
    while (have(at + 1)) {
      const std::string_view text = in_->text();
      while (at < text.size() && kPlain[static_cast<unsigned char>(text[at])]) ++at;
      if (at > limits_.recordBytes) return {at, false, true};
      if (at >= text.size()) continue;
      const char c = text[at];
      if (c == '"') {
        nameFrom = at + 1;
        at = endOfString(at + 1);
        if (at == 0) return {};
        nameTo = at - 1;
        continue;
      }
      depth += c == '{' || c == '[' ? 1 : -1;
      ++at;
      const bool entersSecond = outermost && c == '[' && depth == 2;
      if (entersSecond && text.substr(nameFrom, nameTo - nameFrom) == "features")
        return {at, true, false};
      if (depth == 0) return {at, false, false};
    }
    return {};
  }

  // The place behind the quote that ends a string; 0 where none does.
  std::size_t endOfString(std::size_t at) {
    while (have(at + 1)) {
      const char c = in_->text()[at++];
      if (c == '"') return at;
      if (c == '\\') ++at;
      if (at > limits_.recordBytes + 2) return at;
    }
    return 0;
  }

  // An object of the outermost level: a collection is entered, another one is the record.
  bool enter(gxRawRecord& raw) {
    const char c = nextByte();
    if (c == '\0') return false;
    if (c != '{') cannotGoOn("an object expected");
    const End end = scan(true);
    if (end.tooLong) {
      throw gxReadError(Code::eTooLong, in_->byte(),
                        "an object of more than " + std::to_string(limits_.recordBytes) + " bytes");
    }
    if (end.length == 0) cannotGoOn("braces that do not balance");
    if (end.isFeatures) {
      in_->drop(end.length);
      inFeatures_ = true;
      return true;
    }
    take(raw, end.length);
    return false;
  }

  void take(gxRawRecord& raw, std::size_t length) {
    raw.text = in_->text().substr(0, length);
    raw.byte = in_->byte();
    used_ = length;
  }

  [[noreturn]] void cannotGoOn(const std::string& cause) const {
    throw gxReadError(Code::eTruncated, in_->byte(), cause);
  }

  bool cutFeature(gxRawRecord& raw) {
    char c = nextByte();
    if (c == ',') {
      in_->drop(1);
      c = nextByte();
    }
    if (c == ']') {
      // Behind the features the rest of the collection is skipped.
      in_->drop(1);
      inFeatures_ = false;
      passOver(1, "the collection ends in the middle");
      return false;
    }
    if (c != '{') cannotGoOn(c == '\0' ? "the collection ends in the middle" : "a feature expected");
    const End end = scan(false);
    if (end.tooLong) {
      failTooLong(raw, in_->byte());
      passOver(0, "braces that do not balance");
      return true;
    }
    if (end.length == 0) cannotGoOn("braces that do not balance");
    take(raw, end.length);
    return true;
  }

  // Drops bytes until as many brackets are closed as are open here, strings passed over; `depth` are open
  // already.
  void passOver(int depth, const char* cause) {
    bool inString = false;
    do {
      if (!have(1)) cannotGoOn(cause);
      const char c = in_->text()[0];
      if (inString && c == '\\' && have(2))
        in_->drop(1);
      else if (c == '"')
        inString = !inString;
      else if (!inString && (c == '{' || c == '['))
        ++depth;
      else if (!inString && (c == '}' || c == ']'))
        --depth;
      in_->drop(1);
    } while (depth > 0);
  }

  bool inFeatures_ = false;
};

}  // namespace

std::unique_ptr<gx_Cutter> gf_ObjectCutter(std::unique_ptr<gx_InputBlock> input,
                                           const gxReadOptions& options) {
  return std::make_unique<Objects>(std::move(input), options);
}
