#ifndef MORVANE_TOOLS_MODEL_TILEFILE_H_
#define MORVANE_TOOLS_MODEL_TILEFILE_H_

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "geometry/GoblinGeometry.h"
#include "psd/PsdDocument.h"
#include "util/Status.h"

// A tile's file as the report subcommands see it: the document, and the goblins in its
// "GoblinGeometry" layer.
namespace tools {

struct Goblin {
  std::string name;            // bytes as stored; empty in the tagged layout, which has no names
  std::string texture;         // likewise
  std::uint32_t vertices = 0;  // pool entries that its triangles use
  std::vector<std::vector<std::int32_t>> faces;  // pool indices of each face's corners, as stored
};

struct Goblins {
  bool present = false;  // the layer is there
  morvane::GoblinBlobKind kind = morvane::GoblinBlobKind::kDamaged;
  std::uint32_t bytes = 0;  // of the blob
  std::vector<morvane::GoblinPoolVertex> pool;
  std::vector<Goblin> goblins;
  // What is wrong with a damaged blob, and at which byte; the goblins before it are in the members
  // above.
  std::string fault;

  const char* layoutName() const;
  std::size_t faceCount() const;
};

// The report on a file that PsdDocument::load() refused with `status`: the file (by the name
// `shown`), the reason, and what to do.
std::string unreadable(const std::string& path, const morvane::Status& status,
                       const std::string& shown);

// Whether a texture of that name can be loaded at all: it ends in .psd or .tga, in any case.
bool isTileFileName(const std::string& name);

// Loads `path`. Null when that fails; standard error then says what is wrong, by the name `shown`.
std::unique_ptr<morvane::PsdDocument> loadDocument(const std::string& path,
                                                   const std::string& shown);

// What is wrong with a document that could be loaded all the same: its header, or its merged image.
// Empty when nothing is.
std::string documentFault(const morvane::PsdDocument& document);

// Decodes the document's goblins.
Goblins readGoblins(const morvane::PsdDocument& document);

// Reports on standard error, by the name `shown`, what is wrong with a loaded document or with its
// goblins, and what to do. True when nothing is.
bool reportFaults(const std::string& shown, const morvane::PsdDocument& document,
                  const Goblins& goblins);

}  // namespace tools

#endif  // MORVANE_TOOLS_MODEL_TILEFILE_H_
