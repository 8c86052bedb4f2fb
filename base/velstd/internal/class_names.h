/// The names of classes as the registry knows them, without spelling them anew.
#pragma once

#include <string>
#include <typeinfo>

/// What is known of a class.
struct gx_NamedClass {
  std::string name;           ///< as `gf_ClassName` gives it
  bool isRegistered = false;  ///< whether a factory makes objects of that name
};

/// Returns the name of a class and whether it is registered.  Of a registered one the name was spelled
/// when it registered: spelling takes longer than storing a small shape.
gx_NamedClass gf_NamedClass(const std::type_info& type);
