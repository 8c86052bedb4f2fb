/// What the tests of files share: records at random, from the data files, and through a format.
#pragma once

#include <io/reader.h>
#include <io/record.h>

#include <cstdint>
#include <string>
#include <vector>

/// Every format, in the order of the numbers.
const std::vector<gxFormat>& everyFormat();

/// Returns a record of any kind, with any finite coordinates, ids of any kind, edge points now and then.
gxRecord randomRecord(std::uint64_t seed);

/// Returns the shapes of the data files as records: coins, countries, glyphs, and coins with their edges.
std::vector<gxRecord> filedRecords();

/// Writes records, and reads all of a text.
std::string written(const std::vector<gxRecord>& records, gxFormat format);
std::vector<gxRecord> allOf(const std::string& text, const gxReadOptions& options = {});

/// Returns what is left of a record in a format: without id, edges or kind where it has no place for them.
gxRecord asHeldBy(gxFormat format, const gxRecord& record);

/// Reads a text to the end and tells the outcome of each record: "ok", or the word of the error; an error
/// that ends the reading is the last, with "!" behind it.
std::vector<std::string> outcomes(const std::string& text, const gxReadOptions& options = {});
