#ifndef MORVANE_HOST_BINARY_CHUNKWALKER_H_
#define MORVANE_HOST_BINARY_CHUNKWALKER_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/binary/ByteWindow.h"

namespace host {

// The four letters of a chunk's tag as the number that stands in the file.
constexpr std::uint32_t tagOf(const char (&letters)[5]) {
  std::uint32_t tag = 0;
  for (int i = 0; i < 4; ++i) tag = tag << 8 | static_cast<unsigned char>(letters[i]);
  return tag;
}

// The letters, where all are printable; else eight hexadecimal digits.
std::string tagText(std::uint32_t tag);

// Whether a file begins as a Maya Binary scene does: a container of the form "Maya".
bool isBinarySceneStart(std::string_view firstBytes);

struct Chunk {
  std::uint32_t tag = 0;
  std::uint32_t form = 0;    // the form type of a container; 0 for any other chunk
  std::uint64_t start = 0;   // where its tag stands in the file
  std::uint64_t data = 0;    // where its content begins, a container's behind the form type
  std::uint64_t length = 0;  // of the content
};

// Goes through the chunks of a Maya Binary file: a chunk is a tag, a length and as many bytes,
// padded to 8 in files that begin with FOR8, to 4 in those that begin with FOR4. Containers hold a
// form type and chunks. (The layout was read off files of 2009 to 2026.)
//
// No length is believed: a chunk that would reach beyond its container is damage, and the walk goes
// on behind the container, whose end is known.
class ChunkWalker {
 public:
  enum class Step {
    kOpen,    // a container begins; its chunks follow
    kChunk,   // a chunk that is none
    kClose,   // the innermost open container ends
    kDamage,  // `damage` says what is wrong; what stood there is passed over
    kEnd,     // of the file, or of what can be read of it
  };

  // Containers inside one another; Maya's own are three deep.
  static constexpr std::size_t kMaxDepth = 16;

  // `bytes` stays the caller's and outlives the walker.
  explicit ChunkWalker(ByteWindow& bytes);

  Step next();

  const Chunk& chunk() const { return chunk_; }  // the one of the last step that was not a close
  std::size_t depth() const { return open_.size(); }  // how many containers are open
  bool isWide() const { return isWide_; }             // a file of FOR8
  void skipContainer();                               // the next step is the innermost one's close

  const std::string& damage() const { return damage_; }
  bool isCut() const { return isCut_; }  // the file ends before a chunk does

 private:
  struct Container {
    std::uint64_t end;
    bool isCut;  // would reach beyond the end of the file
  };

  Step report(std::string damage, std::uint64_t next);
  bool readHeader(std::uint64_t end);
  bool isContainer() const;
  Step openContainer(std::uint64_t left);
  Step tooLong(std::uint64_t left, std::uint64_t end);

  ByteWindow& bytes_;
  bool isWide_ = true;
  std::uint64_t position_ = 0;
  Chunk chunk_;
  std::vector<Container> open_;
  std::string damage_;
  bool isCut_ = false;
};

}  // namespace host

#endif  // MORVANE_HOST_BINARY_CHUNKWALKER_H_
