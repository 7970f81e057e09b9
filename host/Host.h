#ifndef MORVANE_HOST_HOST_H_
#define MORVANE_HOST_HOST_H_

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "host/state/Project.h"
#include "host/state/SceneProblems.h"
#include "util/Status.h"

// What a program that embeds the stand-in host calls. There is one host a process, as there is one
// scene. Unless a call says otherwise, every failure is explained on standard error ("Error: ...",
// with file, line and column where there are any) before the call returns; nothing here writes to
// standard output but what scripts and plug-ins print.
namespace host {

// Starts the host with an empty scene. `callerFolder` is the absolute folder against which relative
// names in scripts and on the command line resolve. Call once, first.
void start(const std::string& callerFolder);

// Replaces the scene by an empty one with the default nodes; the working folder is the caller's
// again.
void newScene();

// Reads a scene file in place of the scene. The process's working folder becomes the file's folder,
// so that plug-ins, which open names as the scene gives them, find what lies beside the scene.
// Fails when the file cannot be read or is not a scene file (kUnsupported); the scene is then
// empty. What the reader cannot use is warned of, and handed out by takeSceneProblems.
//
// Files are not trusted: opening n bytes takes at most 400 n of memory, most of all for many empty
// nodes. A file that others refer to counts each time it is read. Beside that, primitives with
// construction history have at most four million points together, a gigabyte.
morvane::Status openScene(const std::string& path);

// What was found in all scene files that were read since the last call.
SceneProblems takeSceneProblems();

// Writes the scene as a scene file, replacing `path` only once every byte is on disk. Fails as
// morvane::FileReplacer does, and with kBadArgument for the name of a binary scene.
morvane::Status saveScene(const std::string& path);

// Runs command-language text; `origin` names it in messages ("-c 1", a file name). False at the
// first command that fails.
bool execute(const std::string& text, const std::string& origin);

// What a text of commands results in: the result of its last command, a single value as an array of
// one. Only the array of the kind is filled.
struct Answer {
  enum class Kind { kNothing, kInts, kFloats, kStrings };

  Kind kind = Kind::kNothing;
  bool isArray = false;  // the result is an array
  std::vector<int> ints;
  std::vector<double> floats;
  std::vector<std::string> strings;
};

// The same, and gives the result. Shows no failure, but says in `reason` why, without a place.
bool evaluate(const std::string& text, Answer& answer, std::string& reason);

bool executeFile(const std::string& path);

// Folders searched by loadPlugin and by source, before MAYA_PLUG_IN_PATH and MAYA_SCRIPT_PATH.
void addPlugInFolder(const std::string& folder);
void addScriptFolder(const std::string& folder);

// Texture and reference names of scenes opened from now on that are at or below the folder `from`
// of another machine mean the same name below `to`. False when one is empty.
bool mapFolder(const std::string& from, const std::string& to);
// Folders that were mapped, but in which nothing lies that a scene has named so far.
std::vector<std::string> unusedFolders();
// Whether the name is one that the mapping has given.
bool isMapped(const std::string& name);

// Textures and references of scenes opened from now on are looked for in this project's folders,
// not in those of the nearest folder above the scene that has a workspace.mel.
void useProject(const std::string& folder);
// Lets scripts read files: fopen and what goes with it.
void allowFiles();

// Scenes that are opened from now on stand at this frame, not at the one at which they were saved.
void openAtFrame(double frame);
// Where the texture that the open scene's nodes name so was looked for.
FileSearch searchOfTexture(const std::string& name);

// Loads a plug-in by name ("morvane") or path. False when it is not found, is not a plug-in, or its
// start-up fails.
bool loadPlugin(const std::string& nameOrPath);

// `listener` is called with each line that the host, or the plug-in through it, will write to
// standard error next; none: nothing is.
void beforeMessages(std::function<void(std::string_view line)> listener);

// What the file textures of the open scene name, as they name it.
std::vector<std::string> textureNames();

// Adds to what is selected the objects that a name, path or pattern names; of them only transforms
// when `onlyTransforms`. kNotFound when there are none. Nothing is shown of a failure.
morvane::Status select(const std::string& name, bool onlyTransforms);

}  // namespace host

#endif  // MORVANE_HOST_HOST_H_
