#ifndef MORVANE_TESTS_PLUGIN_HOSTFIXTURE_H_
#define MORVANE_TESTS_PLUGIN_HOSTFIXTURE_H_

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/util/ScratchFolder.h"

namespace morvane {

using Blob = std::vector<std::uint8_t>;

// A test inside the stand-in host, with the plug-in loaded from its shared library and an empty
// scene.
class HostFixture : public ScratchFolder {
 protected:
  HostFixture();
  ~HostFixture() override;

  // Opens a scene of these statements; names in it resolve against the scratch folder.
  void open(const std::string& statements) const;

  // Runs commands, which must succeed, and gives what came on standard output meanwhile.
  static std::string run(const std::string& commands);

  // Runs commands that may fail; whether they succeeded is in the last line, "ok" or "failed".
  static std::string attempt(const std::string& commands);

  // What a command that asks answers.
  static std::string ask(const std::string& command);

  // Writes a blank PSD document.
  std::string writePsd(const std::string& name, std::uint32_t side = 256) const;
  // The goblins that a document carries.
  static Blob blobOf(const std::string& file);
  // Writes a grey uncompressed 24-bit TGA image of 256 x 256 pixels.
  std::string writeTga(const std::string& name) const;
};

struct MeshShape {
  std::vector<std::array<double, 3>> points;
  std::vector<std::vector<int>> faces;
};

// Scene-file statements. Without a parent a node is at the top.
std::string transformText(const std::string& name, const std::string& parent = "",
                          const std::string& attributes = "");
std::string meshText(const std::string& name, const std::string& parent, const MeshShape& shape);
// A lambert NAME coloured by the file texture NAMEFile, and its shading group NAMESG.
std::string materialText(const std::string& name, const std::string& texture);
std::string assignText(const std::string& shape, const std::string& group);

// A rectangle whose bounding box runs from (-2, 0, -4) to (2, 1, 4).
MeshShape tileShape();
// (0, 0, 0), (1, 0, 0), (0, 0, 1), whose normal is (0, -1, 0).
MeshShape triangleShape();

// The tile "tile" with its shape "tileShape" and the material "grass", textured by a file.
std::string tileText(const std::string& texture);

}  // namespace morvane

#endif  // MORVANE_TESTS_PLUGIN_HOSTFIXTURE_H_
