// A plug-in for the tests of plug-in loading. Built three times: whole, with a start-up that fails
// half-way (PROBE_FAILS), and without its removal (PROBE_LACKS_REMOVAL).
#include <maya/MFnPlugin.h>
#include <maya/MPxCommand.h>
#include <maya/MPxFileTranslator.h>

#include <cstring>

#include "util/Platform.h"

#ifdef __clang__
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif

namespace {

// Gives its words back, a bar between them; fails when the first is "fail".
class ProbeCommand : public MPxCommand {
 public:
  static void* creator() { return static_cast<MPxCommand*>(new ProbeCommand); }
  MStatus doIt(const MArgList& arguments) override {
    MString joined;
    for (unsigned i = 0; i < arguments.length(); ++i)
      joined += (i == 0 ? "" : "|") + arguments.asString(i);
    setResult(joined);
    return arguments.asString(0) == "fail" ? MStatus::kFailure : MStatus::kSuccess;
  }
};

// Reads files that begin with "PROB".
class ProbeTranslator : public MPxFileTranslator {
 public:
  static void* creator() { return static_cast<MPxFileTranslator*>(new ProbeTranslator); }
  bool haveReadMethod() const override { return true; }
  MStatus reader(const MFileObject& file, const MString& options, FileAccessMode mode) override {
    const bool asked = file.name() == "probe.bin" && options == "o=1";
    return asked && mode == kImportAccessMode ? MStatus::kSuccess : MStatus::kFailure;
  }
  MFileKind identifyFile(const MFileObject&, const char* bytes, short size) const override {
    return size >= 4 && std::memcmp(bytes, "PROB", 4) == 0 ? kIsMyFileType : kNotMyFileType;
  }
};

}  // namespace

MORVANE_EXPORT MStatus initializePlugin(MObject object) {
  MFnPlugin plugin(object, "Probe", "4.2");
#ifdef PROBE_FAILS
  const MStatus status = plugin.registerCommand("probeLeft", ProbeCommand::creator);
  return status == MStatus::kSuccess ? plugin.registerCommand("select", ProbeCommand::creator)
                                     : status;
#else
  plugin.registerCommand("probe", ProbeCommand::creator);
  return plugin.registerFileTranslator("probeFile", "", ProbeTranslator::creator);
#endif
}

#ifndef PROBE_LACKS_REMOVAL
// Leaves its translator to the host.
MORVANE_EXPORT MStatus uninitializePlugin(MObject object) {
  return MFnPlugin(object).deregisterCommand("probe");
}
#endif
