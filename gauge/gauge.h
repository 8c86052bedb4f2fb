/// All of this folder: every public header of gauge.  `make format` keeps the list.
#pragma once

#include <gauge/places.h>
