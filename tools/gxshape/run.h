/// A run of the tool: input through a command to output.
#pragma once

#include "options.h"

/// Runs the command of the options.  Returns the exit status: 0, 1 where a record failed or was found
/// wanting, 3 for input or output, 130 after an interrupt.  Throws: UsageError.
int runCommand(const Options& options);
/// The command `info`: one line a file.
int runInfo(const Options& options);
