#ifndef MORVANE_HOST_BINARY_MESHCHUNK_H_
#define MORVANE_HOST_BINARY_MESHCHUNK_H_

#include <cstdint>
#include <string>

#include "host/binary/ByteWindow.h"
#include "host/mesh/MeshData.h"

namespace host {

// What went wrong in a chunk, and where in the file; `text` is empty when nothing did.
struct ChunkProblem {
  std::string text;
  std::uint64_t place = 0;
};

// Reads the content of a MESH chunk behind the attribute's name and flags, which is the `length`
// bytes from `start` on, into a mesh that has no faces yet. Every table goes straight from the file
// into the mesh, a block at a time, and takes what it needs there at once; a table that promises
// more than is left costs nothing. What was read before a problem stays in the mesh.
//
// In this order: points; edges as pairs, the first with bit 31 when the edge is hard; face corners
// (bit 31: the edge runs backwards; bits 30 and 29: the last corner of a face; one of them alone:
// the last of a loop, the next loop being a hole of the same face; the rest: the edge); normals;
// UV sets and colour sets with their ids for each corner. Component tags behind them are not read.
ChunkProblem readMeshChunk(ByteWindow& bytes, std::uint64_t start, std::uint64_t length,
                           MeshData& mesh);

}  // namespace host

#endif  // MORVANE_HOST_BINARY_MESHCHUNK_H_
