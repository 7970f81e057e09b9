#ifndef MORVANE_FUZZ_MUTATOR_H_
#define MORVANE_FUZZ_MUTATOR_H_

#include <cstddef>
#include <cstdint>
#include <random>

// What the mutators that know a format share. libFuzzer calls LLVMFuzzerCustomMutator() in place of
// its own mutation, and offers that as LLVMFuzzerMutate(): both change `size` bytes in place, of
// which there is room for `room`, and give the new number of them.
extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t room);

namespace morvane::fuzz {

class Dice {
 public:
  explicit Dice(unsigned seed) : engine_(seed) {}

  // A number below `count`, which is not 0.
  std::size_t below(std::size_t count) { return engine_() % count; }
  bool oneIn(std::size_t count) { return below(count) == 0; }
  template <typename Element, std::size_t kCount>
  const Element& oneOf(const Element (&elements)[kCount]) {
    return elements[below(kCount)];
  }

 private:
  std::mt19937 engine_;
};

}  // namespace morvane::fuzz

#endif  // MORVANE_FUZZ_MUTATOR_H_
