#ifndef MORVANE_TESTS_FILE_BINARYTWIN_H_
#define MORVANE_TESTS_FILE_BINARYTWIN_H_

#include <cstdint>
#include <string>

#include "host/mesh/MeshData.h"

// A small writer of Maya Binary, for tests, benchmarks and fuzzing: enough of it to say what the
// scenes of the tests say.
namespace host::twin {

// Big-endian bytes.
std::string word(std::uint32_t value);
std::string longWord(std::uint64_t value);
std::string real(double value);
std::string single(double value);
// With its zero byte.
std::string text(const std::string& value);

// Files of FOR8, and of FOR4.
struct Layout {
  bool isWide = true;

  std::string chunk(const std::string& tag, const std::string& content) const;
  std::string container(const std::string& form, const std::string& content) const;
  std::string list(const std::string& form, const std::string& content) const;
  // The one container that a file is.
  std::string file(const std::string& content) const { return container("Maya", content); }

 private:
  std::string header(const std::string& tag, std::uint64_t length) const;
};

// How every value begins: the attribute's name and its flags.
std::string head(const std::string& attribute, std::uint8_t flags = 0x20);

// The content of CREA for a node at the top, or below a parent.
std::string creation(const std::string& name, const std::string& parent = "");

// The content of MESH behind its head.
std::string meshTables(const MeshData& mesh);

// The scene that is open: its nodes, numbers, texts, component lists, meshes, instances and
// connections. Points must be such that a float holds them.
std::string sceneFile(const Layout& layout);

}  // namespace host::twin

#endif  // MORVANE_TESTS_FILE_BINARYTWIN_H_
