#ifndef MORVANE_TILE_TILEEXPORT_H_
#define MORVANE_TILE_TILEEXPORT_H_

#include <maya/MDagPath.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "psd/PsdDocument.h"
#include "tile/TileMessages.h"
#include "util/FileIdentity.h"

namespace morvane {

// An export of a tile up to its save.
struct TileExport {
  static constexpr std::uint32_t kBlankSide = 256;

  std::string texture;    // as the scene names it
  std::string file;       // that is to be written
  FileIdentity existing;  // of `file`, unless it is the texture; not known when it does not exist
  PsdDocument document{kBlankSide, kBlankSide};  // the texture with the goblins in it
  std::size_t goblins = 0;
};

// Writes nothing. False after any failure, each of which is reported; `result` must not be used
// then.
bool prepareTileExport(const MDagPath& tile, TileMessages& messages, TileExport& result);

}  // namespace morvane

#endif  // MORVANE_TILE_TILEEXPORT_H_
