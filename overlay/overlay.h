/// All of this folder: every public header of overlay.  `make format` keeps the list.
#pragma once

#include <overlay/boolean.h>
#include <overlay/check.h>
#include <overlay/edge_points.h>
#include <overlay/limits.h>
#include <overlay/offset.h>
#include <overlay/options.h>
#include <overlay/relate.h>
#include <overlay/repair.h>
#include <overlay/shapes.h>
