/// The registry of persistent classes: class names and the factories that make their objects.
#pragma once

#include <velstd/export.h>
#include <velstd/persistent.h>

#include <string>
#include <typeinfo>
#include <vector>

/// Returns the name of a class as it is written in source text ("gxContourT<gxEdgelet>").
VELSTD_API std::string gf_ClassName(const std::type_info& type);

/// Registers a persistent class at load time: a static object of the class's own library,
/// constructed from the class's `type_info` and a function that makes a new default object.
class VELSTD_API gx_Instantiator {
 public:
  gx_Instantiator(const std::type_info& type, gxPersistent* (*make)());

  /// Makes a new default-constructed object of the class of that name, null for an unknown name.
  static gxPersistent* make(const std::string& className);
  /// Returns the names of the registered classes in the order of their registration.
  static std::vector<std::string> registeredClasses();
};
