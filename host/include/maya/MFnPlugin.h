#ifndef MORVANE_HOST_INCLUDE_MAYA_MFNPLUGIN_H_
#define MORVANE_HOST_INCLUDE_MAYA_MFNPLUGIN_H_

#include <maya/MObject.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

#include <memory>

// The version of the API that a plug-in was built against. The host looks the symbol up when it
// loads the library, so exactly one source file of a plug-in includes this header. Define
// MNoVersionString before including it to leave the symbol out.
#ifndef MNoVersionString
extern "C" {
#ifdef _WIN32
__declspec(dllexport) char MApiVersion[] = "300";
#else
__attribute__((visibility("default"))) char MApiVersion[] = "300";
#endif
}
#endif

class MSyntax;
using MCreatorFunction = void* (*)();
using MCreateSyntaxFunction = MSyntax (*)();

namespace host {
class Plugin;
}

// What a plug-in calls on the object it was handed at start-up to make its commands and file
// formats known.
class MFnPlugin {
 public:
  explicit MFnPlugin(MObject& object, const char* vendor = "Unknown",
                     const char* version = "Unknown", const char* requiredApiVersion = "Any",
                     MStatus* status = nullptr);

  // A name that is a built-in command, a procedure or another plug-in's command is refused.
  MStatus registerCommand(const MString& name, MCreatorFunction creator,
                          MCreateSyntaxFunction syntax = nullptr);
  MStatus deregisterCommand(const MString& name);

  MStatus registerFileTranslator(const MString& name, const char* pixmapName,
                                 MCreatorFunction creator, const char* optionsScriptName = nullptr,
                                 const char* defaultOptions = nullptr,
                                 bool requiresFullMel = false);
  MStatus deregisterFileTranslator(const MString& name);

  MString name(MStatus* status = nullptr) const;
  MString vendor(MStatus* status = nullptr) const;
  MString version(MStatus* status = nullptr) const;

 private:
  std::shared_ptr<host::Plugin> plugin_;  // null when the object is not a plug-in
};

#endif  // MORVANE_HOST_INCLUDE_MAYA_MFNPLUGIN_H_
