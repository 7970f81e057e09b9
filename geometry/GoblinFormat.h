#ifndef MORVANE_GEOMETRY_GOBLINFORMAT_H_
#define MORVANE_GEOMETRY_GOBLINFORMAT_H_

#include <cstdint>

// The parts of the goblin geometry blob that its users see as they are stored. The blob is all
// goblins of one tile as bytes, the content of a tile file's "GoblinGeometry" layer.
//
// Words are 32-bit little-endian, reals IEEE single floats, a text is a byte count and that many
// bytes; nothing is padded. A face is a corner count and that many indices into the pool, which all
// goblins share.
//
//   named:  pool size, pool, goblin count, then for each goblin name, texture file name, face
//   count, faces tagged: the word 1, pool size, pool, goblin count, then for each goblin face
//   count, faces
namespace morvane {

inline constexpr const char* kGoblinLayerName = "GoblinGeometry";

enum class GoblinLayout { kNamed, kTagged };

inline constexpr std::uint32_t kTaggedLayoutTag = 1;

// Tile-space position, normal, and texture coordinates that repeat the position's x and z. The
// tagged layout holds 1 - z for z.
struct GoblinPoolVertex {
  float x = 0;
  float y = 0;
  float z = 0;
  float nx = 0;
  float ny = 0;
  float nz = 0;
  float u = 0;
  float v = 0;
};
static_assert(sizeof(GoblinPoolVertex) == 32, "the blob's pool record has 32 bytes");

}  // namespace morvane

#endif  // MORVANE_GEOMETRY_GOBLINFORMAT_H_
