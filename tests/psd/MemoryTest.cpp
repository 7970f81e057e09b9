#include <new>

#include "tests/psd/PsdTest.h"

namespace morvane {
namespace {

int allocationsLeft = -1;  // until one fails; negative: none does

std::size_t largest = 0;  // that was asked for

bool fails(std::size_t size) {
  if (size > largest) largest = size;
  return allocationsLeft >= 0 && allocationsLeft-- == 0;
}

}  // namespace
}  // namespace morvane

// Only what can report missing memory is made to fail; the rest of the program allocates as ever.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return morvane::fails(size) ? nullptr : ::operator new(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return morvane::fails(size) ? nullptr : ::operator new[](size);
}

namespace morvane {
namespace {

// Runs `operation` with its first allocation failing, then its second, until it gets through, and
// `check` after each failure. Returns how many failures there were.
template <typename Operation, typename Check>
int failEachAllocation(Operation operation, Check check) {
  for (int failures = 0;; ++failures) {
    allocationsLeft = failures;
    const bool done = operation();
    const bool failed = allocationsLeft < 0;
    allocationsLeft = -1;
    EXPECT_NE(done, failed) << "allocation " << failures;
    if (!failed || done || failures == 1000) return failures;
    check();
  }
}

TEST_F(PsdTest, LoadingWithoutMemoryFailsAndChangesNothing) {
  const std::string tga =
      zeros(2) + "\2" + zeros(9) + "\1" + zeros(1) + "\1" + zeros(1) + "\x18" + zeros(1) + "bgr";
  for (const std::string& file : {write("f.psd", layeredFile().file()), write("f.tga", tga)}) {
    PsdDocument document(3, 3);
    const std::string before = saved(document);
    Status status;
    const int failures = failEachAllocation([&] { return document.load(file.c_str(), &status); },
                                            [&] {
                                              EXPECT_EQ(status.code(), StatusCode::kOutOfMemory);
                                              EXPECT_TRUE(saved(document) == before);
                                            });
    EXPECT_GT(failures, 10);  // the file, its records, their parts, and three vectors
  }
}

TEST_F(PsdTest, ChangingWithoutMemoryFailsAndChangesNothing) {
  HandMade blank;
  blank.hasLayers = false;
  for (const HandMade& hand : {layeredFile(), blank}) {
    const auto document = loaded(hand.file());
    ASSERT_TRUE(document);
    std::string before = hand.file();
    const auto unchanged = [&] { EXPECT_TRUE(saved(*document) == before); };
    failEachAllocation([&] { return addData(*document, "new", payload(9)); }, unchanged);
    before = saved(*document);
    std::uint32_t size = 0;
    failEachAllocation([&] { return document->readDataLayer("new", size) != nullptr; }, unchanged);
    const std::uint8_t rgba[4] = {1, 2, 3, 4};
    const std::int32_t top = document->layerCount - 1;
    failEachAllocation([&] { return document->setLayerPixels(top, 0, 0, 1, 1, rgba); }, unchanged);
    before = saved(*document);
    failEachAllocation([&] { return document->decompressChannel(top, 0); }, unchanged);
    before = saved(*document);
    failEachAllocation([&] { return document->compressChannel(top, 0); }, unchanged);
  }
}

TEST_F(PsdTest, AnEmptyLayerNeverTakesTheMemoryOfAPlane) {
  constexpr std::uint32_t kSide = 2000;
  PsdDocument document(kSide, kSide);  // without layers, so that it gets a base layer too
  largest = 0;
  ASSERT_TRUE(addData(document, "d", {}));
  EXPECT_LT(largest, kSide * kSide / 4);
}

TEST_F(PsdTest, PeekingUnpacksNoMoreThanItReturns) {
  constexpr std::uint32_t kSide = 2000;
  PsdDocument document(kSide, kSide);
  const Payload bytes = payload(300);
  ASSERT_TRUE(addData(document, "d", bytes));
  const std::string before = saved(document);
  largest = 0;
  std::uint32_t size = 0;
  const auto peeked = document.peekDataLayer("d", size);
  ASSERT_TRUE(peeked);
  EXPECT_TRUE(Payload(peeked.get(), peeked.get() + size) == bytes);
  EXPECT_LT(largest, 1000u);
  EXPECT_TRUE(saved(document) == before);
}

// Nothing is made for pixels that the file cannot have.
TEST_F(PsdTest, AHeaderThatClaimsMoreThanTheFileHoldsTakesNoLayer) {
  HandMade hand;

  hand.header =
      "8BPS" + be16(1) + zeros(6) + be16(3) + be32(65535) + be32(65535) + be16(8) + be16(3);
  for (const bool hasLayers : {true, false}) {
    hand.hasLayers = hasLayers;
    const auto document = loaded(hand.file());
    ASSERT_TRUE(document);
    largest = 0;
    Status status;
    EXPECT_EQ(document->addLayer("new", &status), -1);
    EXPECT_EQ(status.code(), StatusCode::kDamaged);
    EXPECT_NE(status.text().find("cut off: 12 bytes for 65535 x 65535 pixels"), std::string::npos)
        << status.text();
    EXPECT_LT(largest, 100'000u);
  }
}

}  // namespace
}  // namespace morvane
