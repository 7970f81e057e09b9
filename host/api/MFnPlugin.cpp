#define MNoVersionString
#include <maya/MFnPlugin.h>

#include "host/api/Status.h"
#include "host/plugin/PluginRegistry.h"

namespace {

MStatus statusOf(bool ok) {
  return ok ? MStatus::kSuccess : MStatus::kFailure;
}

std::string orUnknown(const char* text) {
  return text == nullptr ? "Unknown" : text;
}

MString given(const std::string* text, MStatus* status) {
  host::report(status, text != nullptr);
  return text == nullptr ? MString() : MString(text->c_str());
}

}  // namespace

MFnPlugin::MFnPlugin(MObject& object, const char* vendor, const char* version, const char*,
                     MStatus* status)
    : plugin_(std::dynamic_pointer_cast<host::Plugin>(object.hostObject())) {
  host::report(status, plugin_ != nullptr);
  if (plugin_ != nullptr) {
    plugin_->vendor = orUnknown(vendor);
    plugin_->version = orUnknown(version);
  }
}

MStatus MFnPlugin::registerCommand(const MString& name, MCreatorFunction creator,
                                   MCreateSyntaxFunction) {
  return statusOf(plugin_ != nullptr &&
                  host::PluginRegistry::current().addCommand(plugin_, name.asChar(), creator));
}

MStatus MFnPlugin::deregisterCommand(const MString& name) {
  return statusOf(plugin_ != nullptr &&
                  host::PluginRegistry::current().removeCommand(plugin_, name.asChar()));
}

MStatus MFnPlugin::registerFileTranslator(const MString& name, const char*,
                                          MCreatorFunction creator, const char*, const char*,
                                          bool) {
  return statusOf(plugin_ != nullptr &&
                  host::PluginRegistry::current().addTranslator({name.asChar(), creator, plugin_}));
}

MStatus MFnPlugin::deregisterFileTranslator(const MString& name) {
  return statusOf(plugin_ != nullptr &&
                  host::PluginRegistry::current().removeTranslator(plugin_, name.asChar()));
}

MString MFnPlugin::name(MStatus* status) const {
  return given(plugin_ ? &plugin_->name : nullptr, status);
}
MString MFnPlugin::vendor(MStatus* status) const {
  return given(plugin_ ? &plugin_->vendor : nullptr, status);
}
MString MFnPlugin::version(MStatus* status) const {
  return given(plugin_ ? &plugin_->version : nullptr, status);
}
