/// All of overlay: what is computed from the crossings of edges.
#pragma once

#include <overlay/limits.h>
