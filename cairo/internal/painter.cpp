// Painting:
//
//   1. A surface of the kind asked for writes into a string.
//   2. Background, picture behind, then the layers from the lowest number on; a translucent layer is painted
//      by itself first and laid on as a whole, so that marks that overlap do not show through each other.
//   3. Lines and rings are cut to a box around the picture: Cairo's coordinates are integers of 32 bits with
//      8 behind the point, and beyond 2^23 pixels they would wrap around.
//   4. Letters are those of the system's sans-serif font, placed by the extent of their ink.
#include <cairo/internal/clip.h>
#include <cairo/internal/painter.h>

#include <cairo-pdf.h>
#include <cairo-svg.h>
#include <cairo.h>

#include <cmath>
#include <cstring>
#include <map>
#include <memory>
#include <numbers>

namespace {

using Surface = std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)>;
using Context = std::unique_ptr<cairo_t, void (*)(cairo_t*)>;

void want(cairo_status_t status) {
  if (status != CAIRO_STATUS_SUCCESS)
    throw gxPictureError::Failed(std::string("drawing failed: ") + cairo_status_to_string(status));
}

// Called from C, which exceptions must not cross.
cairo_status_t appendTo(void* out, const unsigned char* data, unsigned int length) {
  try {
    static_cast<std::string*>(out)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
  } catch (const std::exception&) {
    return CAIRO_STATUS_NO_MEMORY;
  }
}

void setColour(cairo_t* on, const gxColor& colour, double opacity) {
  cairo_set_source_rgba(on, colour.red() / 255.0, colour.green() / 255.0, colour.blue() / 255.0,
                        opacity);
}

// How many bytes from `at` on are one letter of UTF-8; 0 for none.
std::size_t letterLength(const std::string& text, std::size_t at) {
  const auto byte = [&](std::size_t i) {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
  };
  const unsigned first = byte(at);
  if (first < 0x80U) return 1;
  const std::size_t length = first >= 0xf0U ? 4 : first >= 0xe0U ? 3 : 2;
  if (first < 0xc2U || first > 0xf4U) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(at + i) & 0xc0U) != 0x80U) return 0;
  }
  const unsigned second = byte(at + 1);
  const bool tooLong = (first == 0xe0U && second < 0xa0U) || (first == 0xf0U && second < 0x90U);
  const bool isHalf = first == 0xedU && second > 0x9fU;
  const bool isBeyond = first == 0xf4U && second > 0x8fU;
  return tooLong || isHalf || isBeyond ? 0 : length;
}

std::string readable(const std::string& text) {
  std::string out;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = letterLength(text, at);
    if (length == 0)
      out += '?';
    else if (length == 1 && (static_cast<unsigned char>(text[at]) < 0x20U || text[at] == 0x7f))
      out += ' ';
    else
      out.append(text, at, length);
    at += length == 0 ? 1 : length;
  }
  return out;
}

// Cairo numbers surfaces and images over the whole process.  Numbered anew in the order in which they appear,
// the same drawing is the same bytes.
std::string renumbered(const std::string& svg) {
  std::map<std::string, std::string> names;
  std::string out;
  for (std::size_t at = 0; at < svg.size();) {
    const bool begins = svg.compare(at, 4, "id=\"") == 0 || svg.compare(at, 2, "\"#") == 0;
    const std::size_t from = begins ? svg.find_first_of("\"#", at) + (svg[at] == '"' ? 2 : 1) : at;
    const std::size_t letters = svg.compare(from, 7, "surface") == 0 ? 7
                                : svg.compare(from, 5, "image") == 0 ? 5
                                                                     : 0;
    if (!begins || letters == 0) {
      out += svg[at++];
      continue;
    }
    const std::size_t end = svg.find_first_not_of("0123456789", from + letters);
    const std::string next = svg.substr(from, letters) + std::to_string(names.size() + 1);
    out.append(svg, at, from - at);
    out += names.try_emplace(svg.substr(from, end - from), next).first->second;
    at = end;
  }
  return out;
}

// Far enough outside that no border of what is cut off shows.
gx_CutBox boxOf(int width, int height, double size) {
  const double more = 64.0 + 2.0 * size;
  return {{-more, -more}, {width + more, height + more}};
}

}  // namespace

std::string gx_Painter::png() const {
  const Surface surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, tablet_.width_, tablet_.height_),
                        cairo_surface_destroy);
  paint(surface.get());
  std::string out;
  want(cairo_surface_write_to_png_stream(surface.get(), appendTo, &out));
  return out;
}

std::string gx_Painter::svg() const {
  std::string out;
  const Surface surface(
      cairo_svg_surface_create_for_stream(appendTo, &out, tablet_.width_, tablet_.height_),
      cairo_surface_destroy);
  cairo_svg_surface_set_document_unit(surface.get(), CAIRO_SVG_UNIT_PX);
  paint(surface.get());
  cairo_surface_finish(surface.get());
  want(cairo_surface_status(surface.get()));
  return renumbered(out);
}

std::string gx_Painter::pdf() const {
  std::string out;
  const Surface surface(
      cairo_pdf_surface_create_for_stream(appendTo, &out, tablet_.width_, tablet_.height_),
      cairo_surface_destroy);
  if (!tablet_.title_.empty())
    cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_TITLE,
                                   readable(tablet_.title_).c_str());
  paint(surface.get());
  cairo_surface_finish(surface.get());
  want(cairo_surface_status(surface.get()));
  return out;
}

void gx_Painter::paint(cairo_surface_t* surface) const {
  want(cairo_surface_status(surface));
  const Context context(cairo_create(surface), cairo_destroy);
  cairo_t* const on = context.get();
  cairo_set_line_cap(on, CAIRO_LINE_CAP_ROUND);
  cairo_set_line_join(on, CAIRO_LINE_JOIN_ROUND);
  cairo_set_fill_rule(on, CAIRO_FILL_RULE_EVEN_ODD);
  cairo_select_font_face(on, "sans-serif", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
  if (tablet_.background_) {
    setColour(on, *tablet_.background_, 1.0);
    cairo_paint(on);
  }
  paintBehind(on);
  for (const auto& [number, layer] : tablet_.layers_) {
    if (!layer.visible || layer.marks.empty()) continue;
    const bool asOne = layer.opacity < 1.0;
    if (asOne) cairo_push_group(on);
    for (const auto& mark : layer.marks) paintMark(on, mark);
    if (!asOne) continue;
    cairo_pop_group_to_source(on);
    cairo_paint_with_alpha(on, layer.opacity);
  }
  want(cairo_status(on));
}

void gx_Painter::paintBehind(cairo_t* on) const {
  if (!tablet_.behind_) return;
  const auto& [picture, from, to, opacity] = *tablet_.behind_;
  const auto width = static_cast<int>(picture.width);
  const auto height = static_cast<int>(picture.height);
  const Surface image(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height),
                      cairo_surface_destroy);
  want(cairo_surface_status(image.get()));
  unsigned char* const data = cairo_image_surface_get_data(image.get());
  const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(image.get()));
  for (std::size_t i = 0; i < picture.width * picture.height; ++i) {
    const std::uint8_t* const rgb = &picture.rgb[3 * i];
    const std::uint32_t pixel = (std::uint32_t{rgb[0]} << 16U) | (std::uint32_t{rgb[1]} << 8U) | rgb[2];
    std::memcpy(data + i / picture.width * stride + 4 * (i % picture.width), &pixel, 4);
  }
  cairo_surface_mark_dirty(image.get());
  cairo_save(on);
  cairo_translate(on, from.x(), from.y());
  cairo_scale(on, (to.x() - from.x()) / width, (to.y() - from.y()) / height);
  cairo_set_source_surface(on, image.get(), 0.0, 0.0);
  // Enlarged, pixels stay squares: one sees what the camera saw.
  const bool enlarges = std::abs(to.x() - from.x()) >= width;
  cairo_pattern_set_filter(cairo_get_source(on), enlarges ? CAIRO_FILTER_NEAREST : CAIRO_FILTER_GOOD);
  cairo_rectangle(on, 0.0, 0.0, width, height);
  cairo_clip(on);
  cairo_paint_with_alpha(on, opacity);
  cairo_restore(on);
}

void gx_Painter::paintMark(cairo_t* on, const gx_Mark& mark) const {
  setColour(on, mark.colour, mark.opacity);
  cairo_new_path(on);
  switch (mark.kind) {
    case gx_Mark::Kind::eLine: return paintLine(on, mark);
    case gx_Mark::Kind::eFill: return paintFill(on, mark);
    case gx_Mark::Kind::eText: return paintText(on, mark);
    case gx_Mark::Kind::eDot:
      if (!boxOf(tablet_.width_, tablet_.height_, mark.size).contains(mark.points[0])) return;
      cairo_arc(on, mark.points[0].x(), mark.points[0].y(), mark.size, 0.0, 2.0 * std::numbers::pi);
      cairo_fill(on);
      return;
  }
}

void gx_Painter::paintLine(cairo_t* on, const gx_Mark& mark) const {
  const gx_CutBox box = boxOf(tablet_.width_, tablet_.height_, mark.size);
  bool isWhole = true;
  bool goesOn = false;
  for (std::size_t i = 1; i < mark.points.size(); ++i) {
    gxPair<double> from = mark.points[i - 1];
    gxPair<double> to = mark.points[i];
    isWhole = isWhole && box.contains(from) && box.contains(to);
    if (!gf_ClipSegment(box, from, to)) {
      goesOn = false;
      continue;
    }
    if (!goesOn || !(from == mark.points[i - 1])) cairo_move_to(on, from.x(), from.y());
    cairo_line_to(on, to.x(), to.y());
    goesOn = to == mark.points[i];
  }
  if (isWhole && mark.points.size() > 2 && mark.first == mark.last) cairo_close_path(on);
  cairo_set_line_width(on, mark.size);
  cairo_set_dash(on, &mark.dashes, mark.dashes > 0.0 ? 1 : 0, 0.0);
  cairo_stroke(on);
}

void gx_Painter::paintFill(cairo_t* on, const gx_Mark& mark) const {
  const gx_CutBox box = boxOf(tablet_.width_, tablet_.height_, 1.0);
  std::size_t first = 0;
  for (const std::size_t end : mark.ringEnds) {
    const auto from = mark.points.begin() + static_cast<std::ptrdiff_t>(first);
    const auto to = mark.points.begin() + static_cast<std::ptrdiff_t>(end);
    cairo_new_sub_path(on);
    for (const auto& p : gf_ClipRing(box, {from, to})) cairo_line_to(on, p.x(), p.y());
    cairo_close_path(on);
    first = end;
  }
  cairo_fill(on);
}

void gx_Painter::paintText(cairo_t* on, const gx_Mark& mark) {
  constexpr double kMostLetters = 1000.0;
  const std::string text = readable(mark.text);
  cairo_set_font_size(on, (std::min)(mark.size, kMostLetters));
  cairo_text_extents_t extents;
  cairo_text_extents(on, text.c_str(), &extents);
  double x = mark.points[0].x();
  if (mark.anchor == gxCairoTablet::eCentred) x -= extents.x_bearing + extents.width / 2.0;
  if (mark.anchor == gxCairoTablet::eLeft) x -= extents.x_advance;
  // Half of the height of a digit below the middle, for all texts alike, so that a row of them stands on one line.
  const double y = mark.points[0].y() + 0.36 * mark.size;
  if (mark.halo) {
    cairo_move_to(on, x, y);
    cairo_text_path(on, text.c_str());
    setColour(on, *mark.halo, mark.opacity);
    cairo_set_line_width(on, (std::max)(2.0, mark.size / 4.0));
    cairo_set_dash(on, nullptr, 0, 0.0);
    cairo_stroke(on);
    setColour(on, mark.colour, mark.opacity);
  }
  cairo_move_to(on, x, y);
  cairo_show_text(on, text.c_str());
}
