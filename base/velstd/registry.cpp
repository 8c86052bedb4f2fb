// The registry.
//
//   1. It is a local static of one function, so it exists before the first instantiator of any
//      library asks for it, however the loader orders their static objects.
//   2. It is born with velstd's own classes in it.  Instantiators of their own could run after
//      those of a library that is linked statically, and their place in the order would be luck.
//   3. It is never destroyed: instantiators and archives of other libraries may still use it while
//      the process ends.
//   4. It remembers who registered what, in order, also names that are there already: when a library is
//      unloaded its factories point to nothing, and the next one of the name, if any, takes over.
//   5. It keeps the type beside the name: an archive asks for the name of every class that it writes, and
//      spelling it from the compiler's form takes a microsecond.
#include <velstd/internal/class_names.h>
#include <velstd/internal/shape_records.h>
#include <velstd/registry.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <utility>

#if defined(__GNUG__)
#  include <cxxabi.h>
#endif

namespace {

class Registry {
 public:
  static Registry& instance() {
    static Registry* const registry = new Registry;
    return *registry;
  }

  void add(const std::type_info& type, gx_Instantiator::Factory make, const gx_Instantiator* owner) {
    const std::string name = gf_ClassName(type);
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = find_(name);
    if (found == classes_.end()) {
      classes_.push_back({name, {{make, owner, &type}}});
    } else {
      found->registrations.push_back({make, owner, &type});
    }
  }

  void remove(const gx_Instantiator* owner) noexcept {
    const std::lock_guard<std::mutex> lock(mutex_);
    for (Class& one : classes_) {
      std::erase_if(one.registrations, [=](const Registration& r) { return r.owner == owner; });
    }
    std::erase_if(classes_, [](const Class& one) { return one.registrations.empty(); });
  }

  gx_Instantiator::Factory find(const std::string& name) {
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = find_(name);
    return found == classes_.end() ? nullptr : found->registrations.front().make;
  }

  // Returns the name under which the type is registered, empty where it is not.
  std::string nameOf(const std::type_info& type) {
    const std::lock_guard<std::mutex> lock(mutex_);
    for (const Class& one : classes_) {
      for (const Registration& registration : one.registrations) {
        if (*registration.type == type) return one.name;
      }
    }
    return {};
  }

  std::vector<std::string> names() {
    const std::lock_guard<std::mutex> lock(mutex_);
    std::vector<std::string> names;
    for (const Class& one : classes_) names.push_back(one.name);
    return names;
  }

 private:
  Registry() {
    for (const gx_ShapeClass& shape : gf_ShapeClasses()) add(*shape.type, shape.make, nullptr);
  }

  struct Registration {
    gx_Instantiator::Factory make;
    const gx_Instantiator* owner;  // null for velstd's own, which stay
    const std::type_info* type;    // of the owner's library, and so there as long as the owner
  };
  struct Class {
    std::string name;
    std::vector<Registration> registrations;  // never empty while the lock is free
  };

  // A search from front to end: programs have some dozen classes, and a pass asks once for each.
  std::vector<Class>::iterator find_(const std::string& name) {
    return std::find_if(classes_.begin(), classes_.end(),
                        [&](const Class& one) { return one.name == name; });
  }

  std::mutex mutex_;
  std::vector<Class> classes_;  // in the order of their first registration
};

}  // namespace

std::string gf_ClassName(const std::type_info& type) {
#if defined(__GNUG__)
  int status = 0;
  const std::unique_ptr<char, void (*)(void*)> name(
      abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), &std::free);
  return status == 0 && name ? std::string(name.get()) : std::string(type.name());
#else
  // Such compilers spell names with the kind of class in front: "class gxContourT<class gxEdgelet>".
  std::string name = type.name();
  for (const std::string kind : {"class ", "struct ", "enum "}) {
    for (auto at = name.find(kind); at != std::string::npos; at = name.find(kind))
      name.erase(at, kind.size());
  }
  return name;
#endif
}

gx_NamedClass gf_NamedClass(const std::type_info& type) {
  std::string name = Registry::instance().nameOf(type);
  if (!name.empty()) return {std::move(name), true};
  name = gf_ClassName(type);
  const bool isRegistered = Registry::instance().find(name) != nullptr;
  return {std::move(name), isRegistered};
}

gx_Instantiator::gx_Instantiator(const std::type_info& type, Factory maker) {
  Registry::instance().add(type, maker, this);
}

gx_Instantiator::~gx_Instantiator() {
  Registry::instance().remove(this);
}

gx_Instantiator::Factory gx_Instantiator::factory(const std::string& className) {
  return Registry::instance().find(className);
}

gxPersistent* gx_Instantiator::make(const std::string& className) {
  const Factory made = factory(className);
  return made == nullptr ? nullptr : made();
}

std::vector<std::string> gx_Instantiator::registeredClasses() {
  return Registry::instance().names();
}
