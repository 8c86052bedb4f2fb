/// The vocabulary of the answers.
#pragma once

#include <string>

/// Returns docs/names.csv: one line a command or measure, with unit, type, the commands that give it, and a
/// sentence.
const char* namesCsv();
