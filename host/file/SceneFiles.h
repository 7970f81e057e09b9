#ifndef MORVANE_HOST_FILE_SCENEFILES_H_
#define MORVANE_HOST_FILE_SCENEFILES_H_

#include <string>

#include "util/Status.h"

namespace host {

struct HostState;

// The file operations of the command `file` and of the embedding program: they choose the reader or
// writer, and run it. Paths are absolute. The text of a failure names the file and says what to do.

// Replaces the scene by an empty one with the default nodes. The working folder becomes that from
// which the program was started.
void startNewScene(HostState& state);

// A request to read or write a file. The host reads and writes scene files itself; a plug-in's
// translator, by its registered name, does all others.
struct FileRequest {
  std::string path;
  std::string type;     // "mayaAscii", "mayaBinary", a translator's name; empty: the file's content
                        // tells (a scene file when it is written)
  std::string options;  // handed to the translator
  std::string nameSpace;  // for the names of an imported scene, without its colon; may be empty
};

// In place of the scene; the working folder becomes the file's.
morvane::Status openFile(HostState& state, const FileRequest& request);
// Into the scene.
morvane::Status importFile(HostState& state, const FileRequest& request);
// Into the scene as a file that it refers to, by a reference node of that name, which the scene
// then has; only scene files.
morvane::Status referenceFile(HostState& state, const FileRequest& request,
                              const std::string& node);
// The active selection, or everything.
morvane::Status exportFile(HostState& state, const FileRequest& request, bool selectionOnly);
// The scene to its own file.
morvane::Status saveFile(HostState& state);

// "mayaAscii", "mayaBinary" or the name of the translator that says it is its file; empty when none
// does.
std::string identifyFile(HostState& state, const std::string& path);

}  // namespace host

#endif  // MORVANE_HOST_FILE_SCENEFILES_H_
