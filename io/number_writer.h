/// Numbers at the end of a text that is being written.
#pragma once

#include <io/export.h>

#include <string>

/// Appends what `gfNumberText` gives, in less time: no string is made.
GXSHAPE_IO_API void gfAppendNumber(double value, std::string& out);
