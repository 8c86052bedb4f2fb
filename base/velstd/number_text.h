/// Numbers as text.
#pragma once

#include <velstd/export.h>

#include <string>

/// Returns the shortest digits that read back as the same double, in the layout of ECMAScript (and so of
/// canonical JSON, RFC 8785): plain from 1e-6 up to below 1e21, otherwise `1e-7`, `1.5e+300`.
///  - `1100`, never `1100.0`; −0 is `-0`
///  - `NaN`, `Infinity`, `-Infinity`
/// Knows no locale.
VELSTD_API std::string gfNumberText(double value);
