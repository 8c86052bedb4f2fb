// Answering the records of a block, one after the other.  Everything that a record can do wrong ends here
// as a row; numbers of records come from the cutter, so the answers do not depend on who gives them.
#include "block.h"

#include <io/json.h>
#include <io/writer.h>
#include <velstd/exception.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <new>

void Sums::add(double value) {
  if (std::isnan(value)) return;
  least = count == 0 ? value : (std::min)(least, value);
  greatest = count == 0 ? value : (std::max)(greatest, value);
  sum += value;
  ++count;
}

void Sums::add(const Sums& other) {
  if (other.count == 0) return;
  least = count == 0 ? other.least : (std::min)(least, other.least);
  greatest = count == 0 ? other.greatest : (std::max)(greatest, other.greatest);
  sum += other.sum;
  count += other.count;
}

std::string codeOf(const std::string& what) {
  std::string name = what.substr(0, what.find(": "));
  const std::size_t colons = name.rfind("::");
  if (colons != std::string::npos) name = name.substr(colons + 2);
  if (name.starts_with("gx")) name = name.substr(2);
  std::string code;
  for (const char c : name) {
    const bool isUpper = std::isupper(static_cast<unsigned char>(c)) != 0;
    if (isUpper && !code.empty()) code += '_';
    code += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  return code;
}

void Block::clear() {
  constexpr std::size_t kUsual = std::size_t{4} << 20;
  if (text.capacity() > kUsual || out.capacity() > kUsual) {
    *this = Block();
    return;
  }
  raws.clear();
  text.clear();
  out.clear();
  pieces.clear();
  failures.clear();
  sums.clear();
  records = 0;
  isGood = true;
  hadMore = isLast = false;
}

void Worker::run(Block& block) {
  block.sums.resize(plan_.statColumns.size());
  for (const auto& raw : block.raws) {
    one(raw, block);
    if (block.isLast) return;
  }
}

void Worker::one(const Block::Raw& raw, Block& block) {
  ++block.records;
  const gxRawRecord cut{raw.number, raw.byte,
                        std::string_view(block.text).substr(raw.from, raw.to - raw.from),
                        raw.error ? &*raw.error : nullptr};
  const std::size_t before = block.out.size();
  const std::size_t piecesBefore = block.pieces.size();
  const auto failed = [&](const Failure& failure) {
    block.out.resize(before);
    block.pieces.resize(piecesBefore);
    fail(failure, block);
  };
  try {
    reader_.parse(cut, record_);
    block.hadMore = block.hadMore || record_.hadMore;
    answer_.clear();
    if (plan_.command->givesShapes())
      shapes(block);
    else
      answers(block);
    block.isGood = block.isGood && answer_.isGood;
  } catch (const gxReadError& error) {
    failed({raw.number, error.byte(), error.name(), 0, error.cause()});
  } catch (const gxException& error) {
    failed({raw.number, raw.byte, codeOf(error.what()), error.errorNumber(), error.what()});
  } catch (const std::bad_alloc&) {
    failed({raw.number, raw.byte, "out_of_memory", 0, "not enough memory"});
  } catch (const std::exception& error) {
    failed({raw.number, raw.byte, "internal", 0, error.what()});
  }
}

void Worker::answers(Block& block) {
  plan_.command->answer(record_, answer_);
  bool any = false;
  for (std::size_t i = 0; i < answer_.rowCount; ++i) {
    const Row& row = answer_.rows[i];
    if (!plan_.selection.passes(row)) continue;
    any = true;
    plan_.layout->append(idText(), row, block.out);
    for (std::size_t k = 0; k < plan_.statColumns.size(); ++k) {
      const Scalar& scalar = plan_.statColumns[k];
      block.sums[k].add(valueOf(plan_.command->columns()[scalar.column], scalar, row));
    }
  }
  if (any) endPiece(block, false);
}

void Worker::shapes(Block& block) {
  if (!plan_.selection.isEmpty()) {
    measures_.values.resize(measureColumns().size());
    measureInto(record_, false, measures_);
    if (!plan_.selection.passes(measures_)) return;
  }
  plan_.command->answer(record_, answer_);
  for (gxRecord& shape : answer_.shapes) {
    if (!shape.id.isGiven && !plan_.options->lines)
      shape.id = {std::to_string(record_.number), true, true};
    gxRecordWriter::append(plan_.shapeFormat, shape, block.out, shape.hasEdges());
    endPiece(block, shape.hasEdges());
  }
}

std::string Worker::idText() const {
  const gxRecordId& id = record_.id;
  if (!id.isGiven) return plan_.options->lines ? std::string() : std::to_string(record_.number);
  const bool json = plan_.layout == nullptr || plan_.layout->style() == Layout::Style::eJsonl;
  std::string text;
  if (id.isNumber) return id.text;
  if (json)
    gfAppendJsonString(id.text, text);
  else if (plan_.layout->style() == Layout::Style::eCsv)
    gfAppendCsvField(id.text, text);
  else
    text = id.text;
  return text;
}

void Worker::fail(const Failure& failure, Block& block) {
  block.failures.push_back(failure);
  if (plan_.options->onError == OnError::eFail) block.isLast = true;
  if (plan_.options->onError != OnError::eEmit) return;
  if (plan_.layout != nullptr) {
    plan_.layout->appendError(idText(), failure.code, failure.number, failure.message, block.out);
  } else if (plan_.shapeFormat == gxFormat::eJsonl) {
    const Layout layout({}, {}, Layout::Style::eJsonl, false, true);
    layout.appendError(idText(), failure.code, failure.number, failure.message, block.out);
  } else {
    // The place of the answer is kept by an empty shape.
    gxRecord none;
    none.kind =
        plan_.shapeFormat == gxFormat::eGeoJson ? gxRecord::Kind::eEmpty : gxRecord::Kind::eRegion;
    none.id = record_.id;
    if (!none.id.isGiven) none.id = {std::to_string(failure.record), true, true};
    gxRecordWriter::append(plan_.shapeFormat, none, block.out, false);
  }
  endPiece(block, false);
}
