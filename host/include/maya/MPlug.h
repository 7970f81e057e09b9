#ifndef MORVANE_MAYA_MPLUG_H_
#define MORVANE_MAYA_MPLUG_H_

#include <maya/MObject.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

#include <memory>

namespace host {
class Plug;
}
class MPlugArray;

// An attribute of one node, or one element or child of it: what connections join.
class MPlug {
 public:
  MPlug() = default;
  MPlug(const MObject& node, const MObject& attribute);

  bool isNull(MStatus* status = nullptr) const;
  MString name(MStatus* status = nullptr) const;  // "lambert1.color"
  MObject node(MStatus* status = nullptr) const;
  MObject attribute(MStatus* status = nullptr) const;

  bool isArray(MStatus* status = nullptr) const;
  bool isConnected(MStatus* status = nullptr) const;  // as a source or as a destination

  // The plugs at the other ends, in connection order: sources when `asDestination`, destinations
  // when `asSource`. True when there is one.
  bool connectedTo(MPlugArray& plugs, bool asDestination, bool asSource,
                   MStatus* status = nullptr) const;

  // The value, which is that of the source when there is one. An attribute of another kind is a
  // failure that leaves `value` alone; an attribute that was never set gives its default.
  MStatus getValue(MString& value) const;
  MStatus getValue(int& value) const;
  MStatus getValue(bool& value) const;
  MStatus getValue(float& value) const;
  MStatus getValue(double& value) const;

  bool operator==(const MPlug& other) const;
  bool operator!=(const MPlug& other) const { return !(*this == other); }

  // For the host itself.
  explicit MPlug(const host::Plug& plug);
  const host::Plug* hostPlug() const { return plug_.get(); }

 private:
  std::shared_ptr<const host::Plug> plug_;
};

#endif  // MORVANE_MAYA_MPLUG_H_
