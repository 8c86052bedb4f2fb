/// All of this folder: every public header of gauge.  `make format` keeps the list.
#pragma once

#include <gauge/arc.h>
#include <gauge/borders.h>
#include <gauge/clean.h>
#include <gauge/curvature.h>
#include <gauge/defects.h>
#include <gauge/descriptors.h>
#include <gauge/deviation.h>
#include <gauge/distance.h>
#include <gauge/enclosing.h>
#include <gauge/feret.h>
#include <gauge/hausdorff.h>
#include <gauge/locate.h>
#include <gauge/moments.h>
#include <gauge/places.h>
#include <gauge/resample.h>
#include <gauge/simplify.h>
#include <gauge/smooth.h>
#include <gauge/uncertainty.h>
