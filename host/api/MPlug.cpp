#include <maya/MPlug.h>
#include <maya/MPlugArray.h>

#include "host/api/Handles.h"
#include "host/api/Status.h"
#include "host/scene/Connections.h"
#include "host/scene/Values.h"

namespace {

bool isUsable(const std::shared_ptr<const host::Plug>& plug, MStatus* status) {
  const bool usable = plug && !plug->isNull() && plug->node()->isAlive();
  host::report(status, usable);
  return usable;
}

template <typename Number>
MStatus getNumber(const std::shared_ptr<const host::Plug>& plug, Number& value) {
  if (!isUsable(plug, nullptr)) return MStatus::kFailure;
  const auto number = host::readNumber(*plug);
  if (!number) return MStatus::kInvalidParameter;
  value = static_cast<Number>(*number);
  return MStatus::kSuccess;
}

}  // namespace

MPlug::MPlug(const host::Plug& plug) : plug_(std::make_shared<const host::Plug>(plug)) {}

MPlug::MPlug(const MObject& node, const MObject& attribute) {
  const host::NodePtr hostNode = host::nodeOf(node);
  const auto hostAttribute = std::dynamic_pointer_cast<host::Attribute>(attribute.hostObject());
  if (!hostNode || !hostAttribute) return;
  if (hostNode->findAttribute(hostAttribute->longName()) != hostAttribute) return;
  plug_ = std::make_shared<const host::Plug>(host::Plug::ofAttribute(hostNode, hostAttribute));
}

bool MPlug::isNull(MStatus* status) const {
  host::report(status, true);
  return !isUsable(plug_, nullptr);
}

MString MPlug::name(MStatus* status) const {
  return isUsable(plug_, status) ? MString(plug_->name().c_str()) : MString();
}

MObject MPlug::node(MStatus* status) const {
  return isUsable(plug_, status) ? MObject(plug_->node()) : MObject();
}

MObject MPlug::attribute(MStatus* status) const {
  return isUsable(plug_, status) ? MObject(plug_->attribute()) : MObject();
}

bool MPlug::isArray(MStatus* status) const {
  return isUsable(plug_, status) && plug_->isArray();
}

bool MPlug::isConnected(MStatus* status) const {
  return isUsable(plug_, status) && host::isConnected(*plug_);
}

bool MPlug::connectedTo(MPlugArray& plugs, bool asDestination, bool asSource,
                        MStatus* status) const {
  plugs.clear();
  if (!isUsable(plug_, status)) return false;
  const auto source = asDestination ? host::sourceOf(*plug_) : std::nullopt;
  if (source) plugs.append(MPlug(*source));
  if (asSource)
    for (const host::Plug& destination : host::destinationsOf(*plug_))
      plugs.append(MPlug(destination));
  return plugs.length() > 0;
}

MStatus MPlug::getValue(MString& value) const {
  if (!isUsable(plug_, nullptr)) return MStatus::kFailure;
  const auto text = host::readText(*plug_);
  if (!text) return MStatus::kInvalidParameter;
  value = MString(text->c_str());
  return MStatus::kSuccess;
}

MStatus MPlug::getValue(int& value) const {
  double number = 0.0;
  const MStatus status = getNumber(plug_, number);
  if (status.error()) return status;
  if (!(number > -2147483649.0 && number < 2147483648.0)) return MStatus::kFailure;
  value = static_cast<int>(number);
  return status;
}

MStatus MPlug::getValue(bool& value) const {
  double number = 0.0;
  const MStatus status = getNumber(plug_, number);
  if (!status.error()) value = number != 0.0;
  return status;
}

MStatus MPlug::getValue(float& value) const {
  return getNumber(plug_, value);
}
MStatus MPlug::getValue(double& value) const {
  return getNumber(plug_, value);
}

bool MPlug::operator==(const MPlug& other) const {
  if (!plug_ || !other.plug_) return plug_ == other.plug_;
  return *plug_ == *other.plug_;
}
