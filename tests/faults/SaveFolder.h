#ifndef MORVANE_TESTS_FAULTS_SAVEFOLDER_H_
#define MORVANE_TESTS_FAULTS_SAVEFOLDER_H_

#include <map>
#include <string>

#include "tests/end_to_end/Program.h"

// The content of every file, by its path within the folder "work".
using Files = std::map<std::string, std::string>;

// A folder "work" of scenes and textures, in which the program saves. In memory where there is such
// a place.
class SaveFolder : public ProgramTest {
 protected:
  SaveFolder();

  // scene.ma with one tile for each of a.psd, tex/b.tga and c.psd, bare.ma and pebbled.ma with
  // a.psd's alone, and those textures, too noisy to be packed and large enough for several writes.
  static Files scenesAndTextures();

  // Makes the folder's content these files.
  void reset(const Files& files);
  // Runs a shell command line in it; `shell` may use $morvane.
  Outcome inWork(const std::string& line) { return shell("cd work\n" + line); }
  // All files, but for temporary ones, of which the number is kept.
  Files look();

  int leftovers_ = 0;
};

#endif  // MORVANE_TESTS_FAULTS_SAVEFOLDER_H_
