/// All of this folder: every public header of gauge.  `make format` keeps the list.
#pragma once

#include <gauge/align.h>
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
#include <gauge/form.h>
#include <gauge/frechet.h>
#include <gauge/hausdorff.h>
#include <gauge/inscribed.h>
#include <gauge/locate.h>
#include <gauge/measure.h>
#include <gauge/moments.h>
#include <gauge/places.h>
#include <gauge/resample.h>
#include <gauge/robust_fit.h>
#include <gauge/simplify.h>
#include <gauge/smooth.h>
#include <gauge/uncertainty.h>
#include <gauge/wall.h>
