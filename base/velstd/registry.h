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
///
/// The registry comes alive on first use, whichever library's static objects run first, and holds
/// the persistent classes of velstd itself before any other.  A name that is registered again keeps
/// its first factory and its place.  Registering and looking up are safe on any thread.
///
/// A registration lasts as long as its object, so that a library which is unloaded takes its factories
/// along: the name is then unknown, or that of the next registration of it that still stands.  (An
/// object of an unloaded class has no code any more: destroy all of them first.)
class VELSTD_API gx_Instantiator {
 public:
  /// A function that makes a new default-constructed object, which the caller owns.
  using Factory = gxPersistent* (*)();

  gx_Instantiator(const std::type_info& type, Factory maker);
  gx_Instantiator(const gx_Instantiator&) = delete;
  gx_Instantiator& operator=(const gx_Instantiator&) = delete;
  ~gx_Instantiator();

  /// Returns the factory of the class of that name, null for an unknown name.
  static Factory factory(const std::string& className);
  /// Makes a new default-constructed object of the class of that name, null for an unknown name.
  static gxPersistent* make(const std::string& className);
  /// Returns the names of the registered classes in the order of their registration.
  static std::vector<std::string> registeredClasses();
};
