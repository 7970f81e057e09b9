#ifndef MORVANE_LIBRARY_GOBLINS_H_
#define MORVANE_LIBRARY_GOBLINS_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "geometry/GoblinFormat.h"
#include "library/ArrayView.h"
#include "psd/PsdDocument.h"
#include "util/Status.h"

// The goblins of a tile, as they are stored and as a mesh.
//
// As a mesh, whichever layout the tile is stored in, is: positions in tile space (the tile lies
// from (0, 0, 0) to (1, y, 1), y up, z down the picture's rows), normals in the same axes, texture
// coordinates as the host has them (u to the right, v up: the picture's top row is v = 0 and its
// bottom row v = -1), corners counter-clockwise seen from outside. As stored differs from that by
//
//   named:  corners of a face in reverse order; v is -v.
//   tagged: z is 1 - z; v is v + 1.
//
// Everything else, normals too, is stored as it is. Numbers of the named layout come back bit for
// bit. In the tagged one 1 - z rounds to a multiple of 2^-24 at most once.

namespace morvane {

// One goblin as a mesh of its own. The arrays belong together: a vertex has the same index in all
// three, and a triangle is three such indices.
struct Goblin {
  std::string name;     // any bytes but zero; empty in the tagged layout
  std::string texture;  // file name; likewise
  std::vector<std::array<float, 3>> positions;
  std::vector<std::array<float, 3>> normals;
  std::vector<std::array<float, 2>> uvs;
  std::vector<std::array<std::int32_t, 3>> triangles;
};

// One goblin as it is stored. A view into its GoblinTile, which has to outlive it.
class StoredGoblin {
 public:
  std::string_view name() const { return name_; }        // as stored; empty in the tagged layout
  std::string_view texture() const { return texture_; }  // likewise
  std::uint32_t faceCount() const { return faceCount_; }

  // The faces' bytes: for each a corner count and so many indices into the tile's vertices, 32-bit
  // little-endian words at any address.
  ArrayView<std::uint8_t> faces() const { return faces_; }

  // The faces as triangles over the tile's vertices, in the stored order of corners. A polygon of
  // more corners is cut into a fan around its first; one of fewer than three gives none.
  std::vector<std::array<std::int32_t, 3>> triangles() const;

  // The tile's vertices that the faces use, ascending, each once.
  std::vector<std::int32_t> vertices() const;

 private:
  friend class GoblinTile;
  std::string_view name_;
  std::string_view texture_;
  std::uint32_t faceCount_ = 0;
  ArrayView<std::uint8_t> faces_;
};

// All goblins of one tile, over the one buffer that their blob lies in. Reading one of n bytes
// takes those n and at most 45 n for the table of goblins (reached by goblins without faces).
class GoblinTile {
 public:
  // Each reads a tile into `tile`; a failure leaves `tile` as it was. kNotFound: the document has
  // no layer "GoblinGeometry" (or there is no file). kDamaged: what the layer holds is not goblin
  // geometry; the text says up to which byte it is sound. kOutOfMemory.
  static Status read(const PsdDocument& document, GoblinTile& tile);
  static Status read(std::string_view path, GoblinTile& tile);  // fails as loadDocument() does, too
  static Status parse(std::unique_ptr<std::uint8_t[]> blob, std::size_t size, GoblinTile& tile);

  GoblinLayout layout() const { return layout_; }
  std::size_t size() const { return goblins_.size(); }  // goblins

  // All vertices, as stored, in the machine's own byte order. Good as long as the tile.
  ArrayView<GoblinPoolVertex> vertices() const;

  // The goblin at `index` < size() as stored, and as a mesh: the vertices that it uses, in the
  // tile's order.
  const StoredGoblin& operator[](std::size_t index) const { return goblins_[index]; }
  Goblin goblin(std::size_t index) const;

  // The first goblin of that name; -1 when there is none.
  std::ptrdiff_t find(std::string_view name) const;

 private:
  bool locate(GoblinLayout layout, std::size_t size, std::size_t& consumed);

  std::unique_ptr<std::uint8_t[]> blob_;
  std::size_t poolStart_ = 0;
  std::uint32_t poolSize_ = 0;
  GoblinLayout layout_ = GoblinLayout::kNamed;
  std::vector<StoredGoblin> goblins_;
};

// Replaces what `blob` holds with the goblins as a blob in that layout. The tagged layout has no
// names and no textures: they are left out. The text of a failure names the goblin and its fault.
// kBadArgument: arrays of different lengths, a number that is not finite, an index outside the
// positions, a zero byte in a text; kNoRoom: over 4 GiB; kUnsupported: tagged bytes that would be
// read as named ones.
Status encodeGoblins(const std::vector<Goblin>& goblins, GoblinLayout layout,
                     std::vector<std::uint8_t>& blob);

// Puts the goblins into a new hidden layer "GoblinGeometry" on top of the document, in place of the
// first of that name. The translator imports the named layout only. Fails as encodeGoblins() does,
// and: kNoRoom when the blob has more than 4 x rows x columns - 5 bytes; kUnsupported when the
// bottom layer is the one to be replaced; as PsdDocument::addDataLayer() does when the document
// takes no layer. A failure leaves the document as it was.
Status setGoblins(PsdDocument& document, const std::vector<Goblin>& goblins,
                  GoblinLayout layout = GoblinLayout::kNamed);

}  // namespace morvane

#endif  // MORVANE_LIBRARY_GOBLINS_H_
