// The registry.
//
//   1. It is a local static of one function, so it exists before the first instantiator of any
//      library asks for it, however the loader orders their static objects.
//   2. It is born with velstd's own classes in it.  Instantiators of their own could run after
//      those of a library that is linked statically, and their place in the order would be luck.
//   3. It is never destroyed: instantiators and archives of other libraries may still use it while
//      the process ends.
#include <velstd/internal/shape_records.h>
#include <velstd/registry.h>

#include <cstdlib>
#include <map>
#include <memory>
#include <mutex>

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

  void add(const std::type_info& type, gx_Instantiator::Factory make) {
    std::string name = gf_ClassName(type);
    const std::lock_guard<std::mutex> lock(mutex_);
    if (factories_.emplace(name, make).second) names_.push_back(std::move(name));
  }

  gx_Instantiator::Factory find(const std::string& name) {
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = factories_.find(name);
    return found == factories_.end() ? nullptr : found->second;
  }

  std::vector<std::string> names() {
    const std::lock_guard<std::mutex> lock(mutex_);
    return names_;
  }

 private:
  Registry() {
    for (const gx_ShapeClass& shape : gf_ShapeClasses()) add(*shape.type, shape.make);
  }

  std::mutex mutex_;
  std::map<std::string, gx_Instantiator::Factory> factories_;
  std::vector<std::string> names_;
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

gx_Instantiator::gx_Instantiator(const std::type_info& type, Factory maker) {
  Registry::instance().add(type, maker);
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
