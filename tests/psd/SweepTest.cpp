#include <iostream>

#include "tests/psd/PsdTest.h"
#include "tests/util/Corpus.h"

namespace morvane {
namespace {

// Of files of this test's own, and of small real ones of other programs where they are at hand.
// Changed files are for fuzz/PsdFuzz.cpp.
TEST_F(PsdTest, EveryPrefixIsRefusedUntilTheMergedImage) {
  PsdDocument made(3, 2);
  ASSERT_TRUE(addData(made, "d", payload(15)));
  std::vector<std::string> files = {write("layered.psd", layeredFile().file()),
                                    write("made.psd", saved(made))};
  namespace fs = std::filesystem;
  std::error_code error;
  for (const auto& entry : fs::recursive_directory_iterator(corpusFolder() / "psd", error)) {
    const bool small = entry.is_regular_file() && entry.file_size() < 25000;
    if (small && entry.path().extension() != ".md") files.push_back(entry.path().string());
  }
  std::size_t tried = 0;
  for (const std::string& file : files) {
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
      ASSERT_EQ(document.path != nullptr, size >= mergedStart) << size;
      ASSERT_EQ(document.rows, size >= mergedStart ? full->rows : 1u) << size;
    }
    EXPECT_TRUE(saved(document) == saved(PsdDocument(1, 1)));
  }
  std::cout << tried << " prefixes of " << files.size() << " files\n";
}

}  // namespace
}  // namespace morvane
