/// The persistent classes of velstd itself, as the registry starts with them.
#pragma once

#include <velstd/registry.h>

#include <typeinfo>
#include <vector>

struct gx_ShapeClass {
  const std::type_info* type;
  gx_Instantiator::Factory make;
};

/// Returns the classes of velstd that archives know, in the order of their registration.
std::vector<gx_ShapeClass> gf_ShapeClasses();
