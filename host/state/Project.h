#ifndef MORVANE_HOST_STATE_PROJECT_H_
#define MORVANE_HOST_STATE_PROJECT_H_

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "util/Status.h"

namespace host {

// A folder of scenes with the textures and files that they refer to. Its file workspace.mel says in
// which of its folders files of a kind lie.
struct Project {
  std::string folder;  // absolute; empty: there is no project
  // Folders by kind of file ("sourceImages"), relative to the project's unless absolute.
  std::map<std::string, std::string> rules;

  // The absolute folder for files of the kind; without a rule, the one that the host would make.
  std::string folderOf(std::string_view kind) const;
};

// The nearest folder, from this one up, that has a workspace.mel; empty when there is none.
std::string findProjectFolder(const std::string& folder);

// Reads the rules of a folder's workspace.mel, if there is one. Only its statements
// `workspace -fr KIND FOLDER` count and nothing runs: the text is as little trusted as a scene. A
// failure gives a project without rules.
morvane::Status readProject(const std::string& folder, Project& project);

// The places where a file was looked for, in order; the last is where it is, if it was found.
struct FileSearch {
  std::vector<std::string> places;  // absolute
  bool found = false;               // at the last place
};

// Looks for the file that a scene in `folder` calls `name`. `$VAR` and `${VAR}` are variables of
// the environment. What follows a `//` is looked for in the project's folder; a relative name in
// the project's folder, the scene's folder, then the project's folder for files of that kind.
FileSearch searchFile(const std::string& name, const std::string& folder, const Project& project,
                      std::string_view kind);

}  // namespace host

#endif  // MORVANE_HOST_STATE_PROJECT_H_
