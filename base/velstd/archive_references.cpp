// Objects that refer to objects.
//
// A reference is a number: 0 for null, the number of an object that came earlier, or the next number,
// after which the object follows.  The object begins with its class, again a number: of a class that
// came earlier, or the next number, after which the name follows.
//
// Storing and loading keep the same numbers in step, so that none of them needs to be written apart from
// its use.  An object is complete when its record has been handled to the end; a reference to one that is
// not would close a cycle, which handles could never let go of, and which no record can describe, since
// an object's own number stands before its record.
#include <velstd/archive.h>
#include <velstd/internal/archive_number.h>
#include <velstd/internal/archive_pass.h>
#include <velstd/internal/class_names.h>

#include <algorithm>
#include <memory>

namespace {

constexpr std::size_t kLongestName = 255;

/// Returns what the pass has to hold: null where the object has no count, or where no handle holds it,
/// so that whoever made it destroys it.
const gxRepBase* heldByHandles(const gxPersistent& object) {
  const auto* const counted = dynamic_cast<const gxRepBase*>(&object);
  return counted != nullptr && counted->refCount() > 0 ? counted : nullptr;
}

}  // namespace

/// One level of nesting, while it lasts.
class gxArchive::Level {
 public:
  explicit Level(const gxArchive& archive) : pass_(*archive.pass_) {
    const std::uint32_t most = archive.limits_.nesting;
    if (pass_.depth >= most) {
      throw LimitExceeded(L"objects nest deeper than " + std::to_wstring(most) + L" levels");
    }
    ++pass_.depth;
  }
  Level(const Level&) = delete;
  Level& operator=(const Level&) = delete;
  ~Level() { --pass_.depth; }

 private:
  gx_ArchivePass& pass_;
};

void gxArchive::reference_(gxPersistent* pointer, gxPersistent*& pointerOut) {
  if (pass_ == nullptr) noPass_();
  if (isStoring()) {
    storeReference_(pointer);
    pointerOut = pointer;
  } else {
    pointerOut = nullptr;
    pointerOut = loadReference_(nullptr);
  }
}

void gxArchive::tooManyObjects_() const {
  throw LimitExceeded(L"the frame holds more than " + std::to_wstring(limits_.objects) + L" objects");
}

void gxArchive::storeReference_(gxPersistent* pointer) {
  std::uint32_t number = 0;
  if (pointer == nullptr) {
    gf_TransferLittle(*this, number);
    return;
  }
  // Two bases of one object may be reached through different addresses; the whole object has one.
  gx_StoredObjects& stored = pass_->stored;
  const void* const whole = dynamic_cast<const void*>(pointer);
  number = stored.find(whole);
  const bool isNew = number == 0;
  if (isNew) {
    number = stored.add(whole);
    if (number > limits_.objects) tooManyObjects_();
    // The first is the caller's, who has it for as long as the pass runs.
    if (number > 1) stored.hold(number, heldByHandles(*pointer));
  } else if (!stored.isComplete(number)) {
    throw BadReference(L"an object reaches itself and cannot be stored");
  }
  gf_TransferLittle(*this, number);
  if (!isNew) return;
  const Level level(*this);
  storeClass_(*pointer);
  pointer->dispatchSerialize(*this);
  stored.complete(number);
}

void gxArchive::storeClass_(const gxPersistent& object) {
  std::vector<gx_ArchivePass::StoredClass>& classes = pass_->storedClasses;
  for (const auto& known : classes) {
    if (*known.type != typeid(object)) continue;
    std::uint32_t number = known.number;
    gf_TransferLittle(*this, number);
    return;
  }
  const gx_NamedClass named = gf_NamedClass(typeid(object));
  const std::string& name = named.name;
  if (!named.isRegistered || name.size() > kLongestName) {
    throw UnknownClass(gf_Printable(name) + L" is not a registered class");
  }
  // Types of two libraries may be one class by their name.
  const auto same = std::find_if(classes.begin(), classes.end(),
                                 [&](const auto& known) { return known.name == name; });
  const bool isNew = same == classes.end();
  std::uint32_t number = isNew ? ++pass_->storedNames : same->number;
  classes.push_back({&typeid(object), name, number});
  gf_TransferLittle(*this, number);
  if (!isNew) return;
  auto length = static_cast<unsigned char>(name.size());
  *this || length;
  store_(reinterpret_cast<const unsigned char*>(name.data()), name.size());
}

/// Loads a reference.  The first of a pass is the frame's own object: it goes into `root` where that
/// is not null, and no handle can refer to it, because it is still being read until the pass ends.
gxPersistent* gxArchive::loadReference_(gxPersistent* root) {
  std::vector<gx_LoadedObject>& loaded = pass_->loaded;
  const bool isFirst = loaded.empty();
  std::uint32_t number = 0;
  gf_TransferLittle(*this, number);
  if (number == 0 && isFirst) throw BadFormat(L"the frame holds no object");
  if (number == 0) return nullptr;
  if (number <= loaded.size()) {
    const gx_LoadedObject& earlier = loaded[number - 1];
    if (!earlier.complete) throw BadReference(L"a reference to an object that is still being read");
    if (pass_->simple) throw BadReference(L"a reference where none are kept");
    return earlier.object;
  }
  if (number != loaded.size() + 1) throw BadReference(L"a reference to an object that was not read yet");
  if (number > limits_.objects) tooManyObjects_();

  const Level level(*this);
  gxPersistent* const object = loadClass_(root);
  loaded[number - 1].complete = false;
  object->dispatchSerialize(*this);
  loaded[number - 1].complete = true;
  return object;
}

/// Loads the class that an object begins with, and enters the object, `root` or a new one.
gxPersistent* gxArchive::loadClass_(gxPersistent* root) {
  std::vector<gx_ArchivePass::LoadedClass>& classes = pass_->loadedClasses;
  std::uint32_t number = 0;
  gf_TransferLittle(*this, number);
  if (number == 0 || number > classes.size() + 1) throw BadFormat(L"a class that was not named");
  if (number == classes.size() + 1) {
    unsigned char length = 0;
    *this || length;
    std::string name(length, '\0');
    take_(reinterpret_cast<unsigned char*>(name.data()), name.size());
    const gx_Instantiator::Factory make = gx_Instantiator::factory(name);
    if (make == nullptr)
      throw UnknownClass(L"the archive names an unknown class, \"" + gf_Printable(name) + L'"');
    classes.push_back({std::move(name), make});
  }
  const gx_ArchivePass::LoadedClass& named = classes[number - 1];
  if (root != nullptr) {
    const std::string wanted = gf_NamedClass(typeid(*root)).name;
    if (named.name != wanted) {
      throw BadFormat(L"the archive holds a " + gf_Printable(named.name) + L", not a " +
                      gf_Printable(wanted));
    }
    pass_->loaded.push_back({root, nullptr, false, false});
    return root;
  }
  std::unique_ptr<gxPersistent> object(named.make());
  const bool isFirst = pass_->loaded.empty();
  const gxRepBase* const counted = isFirst ? nullptr : dynamic_cast<const gxRepBase*>(object.get());
  pass_->loaded.push_back({object.get(), counted, false, true});
  gx_PtrHandleBase_RepAccessor::acquire(counted);
  return object.release();
}
