// How values look: in JSON, in CSV, in a table.  Names are snake_case everywhere; points and boxes become
// several columns where columns are flat.
#include "row.h"

#include "options.h"

#include <io/csv.h>
#include <io/json.h>
#include <io/number_writer.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <numbers>

namespace {

using Names = std::vector<std::string>;

Names partsOf(Type type) {
  switch (type) {
    case Type::ePoint: return {"_x", "_y"};
    case Type::eBox: return {"_x_min", "_y_min", "_x_max", "_y_max"};
    case Type::ePlace: return {"_ring", "_edge", "_t", "_x", "_y"};
    default: return {""};
  }
}

void appendJsonNumber(double number, std::string& out) {
  if (std::isnan(number))
    out += "null";
  else if (std::isinf(number))
    out += number > 0 ? "\"Infinity\"" : "\"-Infinity\"";
  else
    gfAppendNumber(number == 0.0 ? 0.0 : number, out);
}

void appendJsonPoint(double x, double y, std::string& out) {
  if (std::isnan(x) && std::isnan(y)) {
    out += "null";
    return;
  }
  out += '[';
  appendJsonNumber(x, out);
  out += ',';
  appendJsonNumber(y, out);
  out += ']';
}

void appendJsonPlace(const gxPlace& place, std::string& out) {
  if (!place.valid()) {
    out += "null";
    return;
  }
  out +=
      "{\"ring\":" + std::to_string(place.ring) + ",\"edge\":" + std::to_string(place.edge) + ",\"t\":";
  appendJsonNumber(place.t, out);
  out += ",\"point\":";
  appendJsonPoint(place.point.x(), place.point.y(), out);
  out += '}';
}

int distanceBetween(std::string_view a, std::string_view b) {
  std::vector<int> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = static_cast<int>(j);
  for (std::size_t i = 1; i <= a.size(); ++i) {
    int diagonal = row[0];
    row[0] = static_cast<int>(i);
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const int above = row[j];
      row[j] = (std::min)({above + 1, row[j - 1] + 1, diagonal + (a[i - 1] == b[j - 1] ? 0 : 1)});
      diagonal = above;
    }
  }
  return row[b.size()];
}

}  // namespace

std::string nearest(std::string_view name, const Names& names) {
  std::string best;
  int least = static_cast<int>(name.size()) / 2 + 2;
  for (const auto& known : names) {
    const int distance = distanceBetween(name, known);
    if (distance >= least) continue;
    least = distance;
    best = known;
  }
  return best;
}

Layout::Layout(const std::vector<Column>& columns, const Names& only, Style style, bool degrees,
               bool withId, bool withExtras)
    : columns_(columns), shown_(columns.size()), style_(style), degrees_(degrees), withId_(withId) {
  Names names;
  for (const auto& column : columns) names.emplace_back(column.name);
  for (std::size_t i = 0; only.empty() && i < columns.size(); ++i) {
    shown_[i] = withExtras || !columns[i].isExtra;
    if (shown_[i]) order_.push_back(i);
  }
  for (const auto& name : only) {
    if (name == "id") continue;
    const auto found = std::find(names.begin(), names.end(), name);
    if (found == names.end()) {
      const std::string near = nearest(name, names);
      throw UsageError{"--only: no column '" + name + "' here" +
                       (near.empty() ? "" : "; did you mean '" + near + "'?")};
    }
    order_.push_back(static_cast<std::size_t>(found - names.begin()));
    shown_[order_.back()] = true;
  }
}

void Layout::appendHeads(const Column& column, Names& heads) const {
  for (const auto& part : partsOf(column.type)) {
    heads.push_back(column.name + part + (degrees_ && column.type == Type::eAngle ? "_degrees" : ""));
  }
}

std::string Layout::head() const {
  Names heads;
  if (withId_) heads.emplace_back("id");
  for (const std::size_t i : order_) appendHeads(columns_[i], heads);
  if (style_ == Style::eCsv) heads.emplace_back("status");
  std::string out;
  for (const auto& head : heads) {
    if (!out.empty()) out += style_ == Style::eCsv ? ',' : '\t';
    out += head;
  }
  return out + '\n';
}

void Layout::appendJson(const Column& column, const Value& value, std::string& out) const {
  const double* const v = value.number;
  switch (column.type) {
    case Type::eNumber: return appendJsonNumber(v[0], out);
    case Type::eAngle: return appendJsonNumber(degrees_ ? v[0] * (180.0 / std::numbers::pi) : v[0], out);
    case Type::eInteger: out += std::to_string(static_cast<long long>(v[0])); return;
    case Type::eText: return gfAppendJsonString(value.text, out);
    case Type::eBool: out += v[0] != 0.0 ? "true" : "false"; return;
    case Type::ePoint: return appendJsonPoint(v[0], v[1], out);
    case Type::eBox:
      if (std::isnan(v[0])) {
        out += "null";
        return;
      }
      out += '[';
      for (int i = 0; i < 4; ++i) {
        if (i > 0) out += ',';
        appendJsonNumber(v[i], out);
      }
      out += ']';
      return;
    case Type::ePlace: return appendJsonPlace(value.place, out);
    case Type::eJson: out += value.text; return;
  }
}

void Layout::appendCell(double number, std::string& out) const {
  const bool table = style_ == Style::eTable;
  if (std::isnan(number)) {
    if (table) out += '-';
  } else if (std::isinf(number)) {
    out += number > 0 ? "inf" : "-inf";
  } else if (table) {
    std::array<char, 40> text{};
    const int size = std::snprintf(text.data(), text.size(), "%.6g", number == 0.0 ? 0.0 : number);
    out.append(text.data(), static_cast<std::size_t>(size));
  } else {
    gfAppendNumber(number == 0.0 ? 0.0 : number, out);
  }
}

void Layout::appendCells(const Column& column, const Value& value, std::string& out) const {
  const char separator = style_ == Style::eCsv ? ',' : '\t';
  const auto several = [&](std::initializer_list<double> numbers) {
    bool first = true;
    for (const double number : numbers) {
      if (!first) out += separator;
      first = false;
      appendCell(number, out);
    }
  };
  const double* const v = value.number;
  const gxPlace& p = value.place;
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  switch (column.type) {
    case Type::eNumber: return several({v[0]});
    case Type::eAngle: return several({degrees_ ? v[0] * (180.0 / std::numbers::pi) : v[0]});
    case Type::eInteger: out += std::to_string(static_cast<long long>(v[0])); return;
    case Type::eBool: out += v[0] != 0.0 ? "true" : "false"; return;
    case Type::ePoint: return several({v[0], v[1]});
    case Type::eBox: return several({v[0], v[1], v[2], v[3]});
    case Type::ePlace:
      if (!p.valid()) return several({kNaN, kNaN, kNaN, kNaN, kNaN});
      return several(
          {static_cast<double>(p.ring), static_cast<double>(p.edge), p.t, p.point.x(), p.point.y()});
    case Type::eText:
    case Type::eJson:
      if (style_ == Style::eCsv)
        gfAppendCsvField(value.text, out);
      else
        out += value.text.empty() ? "-" : value.text;
      return;
  }
}

void Layout::append(std::string_view idText, const Row& row, std::string& out) const {
  if (style_ == Style::eJsonl) {
    out += '{';
    bool first = true;
    if (!idText.empty()) {
      out += "\"id\":";
      out += idText;
      first = false;
    }
    for (const std::size_t i : order_) {
      if (!first) out += ',';
      first = false;
      out += '"';
      out += columns_[i].name;
      out += degrees_ && columns_[i].type == Type::eAngle ? "_degrees\":" : "\":";
      appendJson(columns_[i], row.values[i], out);
    }
    if (row.status != gxStatus::eOk) {
      out += first ? "\"status\":\"" : ",\"status\":\"";
      out += gfStatusName(row.status);
      out += '"';
    }
    out += "}\n";
    return;
  }
  const char separator = style_ == Style::eCsv ? ',' : '\t';
  if (withId_) {
    out += idText;
    if (!order_.empty()) out += separator;
  }
  for (std::size_t k = 0; k < order_.size(); ++k) {
    if (k > 0) out += separator;
    appendCells(columns_[order_[k]], row.values[order_[k]], out);
  }
  if (style_ == Style::eCsv) {
    out += ',';
    if (row.status != gxStatus::eOk) out += gfStatusName(row.status);
  }
  out += '\n';
}

void Layout::appendError(std::string_view idText, const std::string& code, long number,
                         const std::string& message, std::string& out) const {
  if (style_ == Style::eJsonl) {
    out += '{';
    if (!idText.empty()) {
      out += "\"id\":";
      out += idText;
      out += ',';
    }
    out += "\"error\":{\"code\":\"" + code + "\",\"number\":" + std::to_string(number) + ",\"message\":";
    gfAppendJsonString(message, out);
    out += "}}\n";
    return;
  }
  std::size_t cells = 0;
  for (const std::size_t i : order_) cells += partsOf(columns_[i].type).size();
  out += idText;
  const bool csv = style_ == Style::eCsv;
  for (std::size_t i = 0; i < cells; ++i) out += csv ? "," : "\t-";
  if (csv) out += ',' + code;
  out += '\n';
}

Scalar findScalar(const std::vector<Column>& columns, std::string_view name) {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const auto parts = partsOf(columns[i].type);
    for (std::size_t p = 0; p < parts.size(); ++p) {
      if (columns[i].name + parts[p] == name)
        return {i, p, columns[i].type != Type::eText && columns[i].type != Type::eJson};
    }
  }
  return {};
}

double valueOf(const Column& column, const Scalar& scalar, const Row& row) {
  const Value& value = row.values[scalar.column];
  if (column.type != Type::ePlace) return value.number[scalar.part];
  const gxPlace& p = value.place;
  const std::array<double, 5> all = {static_cast<double>(p.ring), static_cast<double>(p.edge), p.t,
                                     p.point.x(), p.point.y()};
  return all[scalar.part];
}
