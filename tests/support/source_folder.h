/// Where the data files of the tests lie.
#pragma once

#include <string>

/// Returns the folder of the checkout that the tests were built from, without a slash at its end.
std::string sourceFolder();
