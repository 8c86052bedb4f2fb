/// All of this folder: every public header of gauge.  `make format` keeps the list.
#pragma once

#include <gauge/enclosing.h>
#include <gauge/feret.h>
#include <gauge/places.h>
