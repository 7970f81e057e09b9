#include <algorithm>
#include <iostream>

#include "tests/psd/PsdTest.h"
#include "tests/util/Corpus.h"

namespace morvane {
namespace {

// Two layers, one of them a data layer, resources, a mask, padding and blocks.
std::string layeredFile() {
  HandMade hand;
  hand.resources = "8BIM" + be16(1044) + zeros(2) + sized(be32(9)) + "8BIM" + be16(1026) + "\2ab" +
                   zeros(1) + sized("12");
  hand.extras = {sized(std::string(28, 'm')) + sized(std::string(16, 'r')) + "\4name" + zeros(3) +
                     block("luni", be32(1) + "AB") + block("lyid", be32(3)),
                 zeros(8) + shortName("d")};
  hand.infoPadding = "p";
  hand.afterInfo = sized(std::string(14, 'g')) + block("Patt", "1234");
  return hand.file();
}

class PsdSweep : public PsdTest {
 protected:
  // Does everything that can be done to a loaded document; what comes out must be a sound file.
  void exercise(PsdDocument& document) {
    std::uint32_t size = 0;
    for (const char* name : {"name", "d"}) document.readDataLayer(name, size);
    for (std::int32_t layer = 0; layer < document.layerCount; ++layer) {
      document.decompressChannel(layer, 0);
      if (layer % 2) document.compressChannel(layer, 0);
    }
    const Payload pixels = payload(64);
    document.setLayerPixels(0, 0, 0, 4, 4, pixels.data());
    document.removeLayer(1);
    const bool added = addData(document, "new", payload(5));
    if (added) document.setLayerPixels(document.layerCount - 1, 3, 3, 4, 4, pixels.data());
    const auto again = loaded(saved(document));
    ASSERT_TRUE(again);
    EXPECT_EQ(again->layerCount, document.layerCount);
    EXPECT_EQ(again->findLayer("new") >= 0, added);
  }
};

TEST_F(PsdSweep, EveryPrefixIsRefusedUntilTheMergedImage) {
  PsdDocument made(3, 2);
  ASSERT_TRUE(addData(made, "d", payload(15)));
  for (const std::string& whole : {layeredFile(), saved(made)}) {
    const auto full = loaded(whole);
    ASSERT_TRUE(full);
    const std::size_t mergedStart = whole.size() - full->mergedLength;
    PsdDocument document(1, 1);
    for (std::size_t size = 0; size < whole.size(); ++size) {
      const bool complete = size >= mergedStart;
      ASSERT_EQ(document.load(write("f.psd", whole.substr(0, size)).c_str()), complete) << size;
      ASSERT_EQ(document.path != nullptr, complete) << size;
      ASSERT_EQ(document.rows, complete ? full->rows : 1u) << size;
    }
  }
}

TEST_F(PsdSweep, ChangedBytesAreRefusedOrHandled) {
  const std::string whole = layeredFile();
  int survived = 0;
  for (std::size_t at = 0; at < whole.size(); ++at) {
    for (int change : {0x01, 0x80, 0xFF}) {
      std::string changed = whole;
      changed[at] = static_cast<char>(changed[at] ^ change);
      const auto document = loaded(changed);
      if (!document) continue;
      SCOPED_TRACE(std::to_string(at) + " ^ " + std::to_string(change));
      ASSERT_TRUE(saved(*document) == changed);
      exercise(*document);
      ++survived;
    }
  }
  EXPECT_GT(survived, 100);
}

// Small real files of other programs.
class RealSweep : public PsdSweep {
 protected:
  void SetUp() override {
    namespace fs = std::filesystem;
    std::error_code error;
    for (const auto& entry : fs::recursive_directory_iterator(corpusFolder() / "psd", error)) {
      const bool small = entry.is_regular_file() && entry.file_size() < 25000;
      if (small && entry.path().extension() != ".md") files_.push_back(entry.path().string());
    }
    std::sort(files_.begin(), files_.end());
    if (files_.empty()) GTEST_SKIP() << "no corpus beside the project";
  }

  std::vector<std::string> files_;
};

TEST_F(RealSweep, EveryPrefixIsRefusedUntilTheMergedImage) {
  std::size_t tried = 0;
  for (const std::string& file : files_) {
    SCOPED_TRACE(file);
    const std::string whole = read(file);
    const auto full = loaded(whole);
    const std::size_t mergedStart = full ? whole.size() - full->mergedLength : whole.size() + 1;
    const std::string prefix = write("f.psd", whole);
    PsdDocument document(1, 1);
    for (std::size_t size = whole.size() + 1; size-- > 0; ++tried) {
      std::filesystem::resize_file(prefix, size);
      if (size == mergedStart - 1) document.reset(1, 1);
      ASSERT_EQ(document.load(prefix.c_str()), size >= mergedStart) << size;
      ASSERT_EQ(document.rows, size >= mergedStart ? full->rows : 1u) << size;
    }
    EXPECT_TRUE(saved(document) == saved(PsdDocument(1, 1)));
  }
  std::cout << tried << " prefixes of " << files_.size() << " real files\n";
}

TEST_F(RealSweep, ChangedBytesAreRefusedOrHandled) {
  std::size_t tried = 0;
  std::size_t survived = 0;
  for (const std::string& file : files_) {
    const std::string whole = read(file);
    const std::size_t step = 1 + whole.size() / 1200;  // files differ in where it steps
    for (std::size_t at = 0; at < whole.size(); at += step) {
      const char flipped = static_cast<char>(~whole[at]);
      for (const char value : {'\0', '\xFF', flipped}) {
        std::string changed = whole;
        changed[at] = value;
        ++tried;
        const auto document = loaded(changed);
        if (!document) continue;
        SCOPED_TRACE(file + " at " + std::to_string(at));
        ASSERT_TRUE(saved(*document) == changed);
        if (++survived % 8 == 0) exercise(*document);
      }
    }
  }
  std::cout << tried << " changed files, " << survived << " of them read\n";
}

}  // namespace
}  // namespace morvane
