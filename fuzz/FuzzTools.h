#ifndef MORVANE_FUZZ_FUZZTOOLS_H_
#define MORVANE_FUZZ_FUZZTOOLS_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// What all fuzz targets share. A target is a function that libFuzzer calls with one input after
// another in one process; whatever it finds wrong ends the process, and the input is kept.
namespace morvane::fuzz {

// Ends the process, with `what` on standard error, when something that must hold does not.
void require(bool holds, const char* what);

// The most memory that the process held since the watch was made, over what it held then.
class MemoryWatch {
 public:
  MemoryWatch();
  std::size_t peak() const;  // bytes

  // No input of n bytes may take more than `multiple` x n bytes, and `constant` for what is no
  // larger for a larger input.
  void requireAtMost(std::size_t multiple, std::size_t inputSize, std::size_t constant) const;

 private:
  std::int64_t start_;
};

// What takes the same memory for every input: messages, streams' buffers, the default scene.
constexpr std::size_t kSmallConstant = 64 << 10;

// Files of this process, in a folder of its own below TMPDIR (which is in memory, and removed
// afterwards, where scripts/fuzz runs it).
std::string scratchFolder();
std::string scratchPath(const std::string& name);
std::string writeScratch(const std::string& name, std::string_view bytes);  // gives the path
std::string readScratch(const std::string& name);

// The input from its front.
class InputBytes {
 public:
  InputBytes(const std::uint8_t* bytes, std::size_t size) : bytes_(bytes), left_(size) {}

  std::uint8_t takeByte() {
    if (left_ == 0) return 0;
    --left_;
    return *bytes_++;
  }
  std::uint32_t takeWord() {
    const std::uint32_t high = takeByte();
    return high << 8 | takeByte();
  }
  const std::uint8_t* bytes() const { return bytes_; }
  std::size_t left() const { return left_; }

 private:
  const std::uint8_t* bytes_;
  std::size_t left_;
};

}  // namespace morvane::fuzz

#endif  // MORVANE_FUZZ_FUZZTOOLS_H_
