/// A piece of input with its answers: what one worker takes at a time.
#pragma once

#include "command.h"
#include "row.h"
#include "select.h"

#include <io/reader.h>
#include <io/record.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// What went wrong with a record.
struct Failure {
  std::uint64_t record = 0;
  std::uint64_t byte = 0;
  std::string code;
  long number = 0;
  std::string message;
};

/// Count, sum, least and greatest of a column, for --stats.
struct Sums {
  std::uint64_t count = 0;
  double sum = 0.0;
  double least = 0.0;
  double greatest = 0.0;
  void add(double value);
  void add(const Sums& other);
};

struct Block {
  struct Raw {
    std::uint64_t number, byte;
    std::size_t from, to;  // in text
    std::optional<gxReadError> error;
  };
  /// The text of one answer: a row, several rows of a record, or a shape.
  struct Piece {
    std::size_t end;  // in out
    bool hasEdges;
  };

  std::vector<Raw> raws;
  std::string text;

  std::string out;
  std::vector<Piece> pieces;
  std::vector<Failure> failures;
  std::vector<Sums> sums;
  std::uint64_t records = 0;
  bool isGood = true;    ///< no record was found wanting
  bool hadMore = false;  ///< coordinates beyond x and y were dropped
  bool isLast = false;   ///< a failure ends the run, here

  /// Drops everything but the memory; that too where a long record has made it large.
  void clear();
};

/// How blocks are answered; the same for all of a run.
struct Plan {
  const Options* options = nullptr;
  const Command* command = nullptr;
  const Layout* layout = nullptr;  ///< of a command that answers
  Selection selection;
  gxFormat shapeFormat = gxFormat::eUnknown;  ///< of a command that makes shapes
  std::vector<Scalar> statColumns;
};

/// Answers all records of a block.  Keeps what it needs from block to block, so one worker has one.
class Worker {
 public:
  Worker(const Plan& plan, const gxRecordReader& reader) : plan_(plan), reader_(reader) {}
  void run(Block& block);

 private:
  void one(const Block::Raw& raw, Block& block);
  void answers(Block& block);
  void shapes(Block& block);
  void fail(const Failure& failure, Block& block);
  std::string idText() const;
  void endPiece(Block& block, bool hasEdges) { block.pieces.push_back({block.out.size(), hasEdges}); }

  const Plan& plan_;
  const gxRecordReader& reader_;
  gxRecord record_;
  Answer answer_;
  Row measures_;
};

/// Returns the code of an exception of the library: its class in snake_case.
std::string codeOf(const std::string& what);
