#ifndef MORVANE_TESTS_END_TO_END_PROGRAM_H_
#define MORVANE_TESTS_END_TO_END_PROGRAM_H_

#include <string>
#include <vector>

#include "tests/util/ScratchFolder.h"

// Runs the built program as a shell would, in a folder of the test's own.

// One word of a shell's command line, whatever it holds.
std::string shellWord(const std::string& text);

struct Outcome {
  int status = -1;
  std::string out;
  std::string err;
};

class ProgramTest : public morvane::ScratchFolder {
 protected:
  ProgramTest() : ScratchFolder(std::filesystem::temp_directory_path()) {}

  // Runs a shell command line in the folder; `shell` may use $morvane.
  Outcome shell(const std::string& line);
  // Runs the program with these arguments.
  Outcome morvane(const std::vector<std::string>& arguments);

  bool exists(const std::string& name) const { return std::filesystem::exists(path(name)); }
  std::vector<std::string> names(const std::string& folder = ".") const;

  std::string program_ = MORVANE_BINARY_DIR "/bin/morvane";
};

// A scene with one tile for each texture named, called tile1, tile2, ... Each is a quad from (-2,
// 0, -4) to (2, 1, 4). Unless they are to be bare, it has one goblin, the triangle "pebble" in the
// middle: a blob of 128 bytes in the tagged layout and of 138 in the named one.
std::string sceneOfTiles(const std::vector<std::string>& textures, bool bare = false);

// Such a scene with other points, three times three numbers, for the corners of its goblins.
std::string withGoblinsAt(std::string scene, const std::string& points);

// An uncompressed 24-bit image of one colour, and a flat 8-bit RGB file without layers.
std::string tgaBytes(int width, int height);
std::string psdBytes(int width, int height);

// Whether a command is there to be run; a test that needs it is skipped otherwise.
bool hasCommand(const std::string& name);

#endif  // MORVANE_TESTS_END_TO_END_PROGRAM_H_
