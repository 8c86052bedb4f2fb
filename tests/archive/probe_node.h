/// A small persistent class of the tests: one field of every kind, and a handle to another one.
#pragma once

#include <velstd/archive.h>
#include <velstd/handle.h>
#include <velstd/persistent.h>
#include <velstd/registry.h>

#include <functional>
#include <vector>

namespace archive_test {

/// The handle makes chains and cycles of nodes; `onSerialize` lets a test look into a running pass.
class ProbeNode : public gxPersistent, public gxRepBase {
 public:
  bool flag = false;
  long number = 0;
  unsigned long label = 0;
  unsigned short magnitude = 0;
  double value = 0.0;
  gxVector<2> position;
  std::vector<gxVector<2>> points;
  gxPtrHandle_const<ProbeNode> next;
  std::function<void(gxArchive&)> onSerialize;

  static gxPersistent* make() { return new ProbeNode; }
  static int alive() { return alive_; }

  ProbeNode() { ++alive_; }
  ProbeNode(const ProbeNode&) = delete;
  ProbeNode& operator=(const ProbeNode&) = delete;
  ~ProbeNode() override { --alive_; }

 protected:
  void dispatchSerialize(gxArchive& archive) override {
    const std::uint64_t key = archive.passAndLevel(0x100);
    if (haveVisited(this, key)) return;
    unsigned char version = 7;
    archive || version;
    if (version != 7) throw gxArchive::UnknownVersion("tests/probe", 12);
    if (onSerialize) onSerialize(archive);
    archive || flag;
    archive.field("number of a probe") || number;
    archive.field("label of a probe") || label;
    archive || magnitude || value || position || points || next;
    setVisited(this, key);
  }

 private:
  static inline int alive_ = 0;
};

inline constexpr const char* kProbeName = "archive_test::ProbeNode";
inline const gx_Instantiator kProbeIsKnown(typeid(ProbeNode), &ProbeNode::make);

}  // namespace archive_test
