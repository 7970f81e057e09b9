// The header defines a symbol that the host looks for, and not every devkit exports it itself.
#if defined(__GNUC__)
#pragma GCC visibility push(default)
#endif
#include <maya/MFnPlugin.h>
#if defined(__GNUC__)
#pragma GCC visibility pop
#endif
#include <maya/MGlobal.h>
#include <maya/MObject.h>
#include <maya/MStatus.h>

#include "export/ExportTileCmd.h"
#include "goblin/GoblinNameCmd.h"
#include "goblin/GoblinUvCmd.h"
#include "import/PsdTranslator.h"
#include "util/Platform.h"

// Start-up and removal: what the host calls when it loads and unloads the plug-in.
namespace morvane {
namespace {

constexpr const char* kVendor = "Torva";
constexpr const char* kVersion = "1.10";
constexpr const char* kBlindDataScript = "omrblindData.mel";

struct Command {
  const char* name;
  MCreatorFunction creator;
  const char* registerFailure;
  const char* deregisterFailure;
};

// In the order of registration.
constexpr Command kCommands[] = {
    {"goblin_uv", GoblinUvCmd::creator, "registerCommand goblin_uv", "deregisterCommand goblin_uv"},
    {"goblin_name", GoblinNameCmd::creator, "registerCommand goblin_name",
     "deregisterCommand goblin_name"},
    {"exportTile", ExportTileCmd::creator, "registerCommand exportTile",
     "deregisterCommand exportTile"},
};

constexpr const char* kTranslatorName = "psd";
constexpr const char* kTranslatorIcon = "omrTranslator.rgb";

bool succeeded(const MStatus& status, const char* failure) {
  if (status == MStatus::kSuccess) return true;
  status.perror(failure);
  return false;
}

MStatus initialiseBlindData() {
  return MGlobal::sourceFile(kBlindDataScript);
}

}  // namespace
}  // namespace morvane

MORVANE_EXPORT MStatus initializePlugin(MObject object) {
  using namespace morvane;
  MStatus status = initialiseBlindData();
  if (!succeeded(status, "Could not initialise blind data.")) return status;
  MFnPlugin plugin(object, kVendor, kVersion, "Any");
  for (const Command& command : kCommands) {
    status = plugin.registerCommand(command.name, command.creator);
    if (!succeeded(status, command.registerFailure)) return status;
  }
  status = plugin.registerFileTranslator(kTranslatorName, kTranslatorIcon, PsdTranslator::creator,
                                         "", "", true);
  succeeded(status, "registerFileTranslator");
  return status;
}

MORVANE_EXPORT MStatus uninitializePlugin(MObject object) {
  using namespace morvane;
  MFnPlugin plugin(object, "Unknown", "Unknown", "Any");
  for (const Command& command : kCommands)
    succeeded(plugin.deregisterCommand(command.name), command.deregisterFailure);
  const MStatus status = plugin.deregisterFileTranslator(kTranslatorName);
  succeeded(status, "deregisterFileTranslator");
  return status;
}
