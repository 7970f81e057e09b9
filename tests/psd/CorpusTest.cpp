#include <cstdlib>
#include <map>
#include <sstream>

#include "tests/psd/PsdTest.h"
#include "tests/util/Corpus.h"

namespace morvane {
namespace {

namespace fs = std::filesystem;

using Row = std::map<std::string, std::string>;

// Real files of other programs, and tables of what an independent scanner found in them.
class Corpus : public PsdTest {
 protected:
  void SetUp() override {
    corpus_ = corpusFolder();
    if (!fs::exists(corpus_ / "psd.tsv")) GTEST_SKIP() << "no corpus beside the project";
  }

  std::vector<Row> rows(const char* table) const {
    std::istringstream lines(read((corpus_ / table).string()));
    std::vector<Row> all;
    std::vector<std::string> columns;
    for (std::string line; std::getline(lines, line);) {
      std::istringstream cells(line);
      Row row;
      std::size_t column = 0;
      for (std::string cell; std::getline(cells, cell, '\t'); ++column) {
        if (all.empty() && row.size() == columns.size()) columns.push_back(cell);
        row[columns[column]] = cell;
      }
      all.push_back(row);
    }
    all.erase(all.begin());
    return all;
  }

  // Adds a data layer where the document carries one, and looks at everything else. False where it
  // carries none.
  bool leavesTheOthers(PsdDocument& document) const {
    std::vector<std::string> before;
    for (std::int32_t i = 0; i < document.layerCount; ++i)
      before.push_back(channelBytes(document, i));
    const auto merged = [](const PsdDocument& of) {
      return std::string(of.mergedData.get(), of.mergedData.get() + of.mergedLength);
    };
    const std::string mergedBefore = merged(document);
    const std::size_t room = 4 * std::size_t{document.rows} * document.columns;
    const bool carries =
        document.depth == 8 && (!before.empty() || document.channels >= 3) && room > 7;
    const Payload bytes = payload(carries ? std::min<std::size_t>(room - 5, 5000) : 3);
    EXPECT_EQ(addData(document, "GoblinGeometry", bytes), carries);
    if (!carries) return false;
    PsdDocument again = sound(saved(document));
    for (std::size_t i = 0; i < before.size(); ++i)
      EXPECT_TRUE(channelBytes(again, static_cast<std::int32_t>(i)) == before[i]) << i;
    EXPECT_TRUE(merged(again) == mergedBefore);
    EXPECT_EQ(again.mergedAlpha, document.mergedAlpha);
    EXPECT_TRUE(holdsData(again, "GoblinGeometry", bytes));
    return true;
  }

  fs::path corpus_;
};

void expectFound(const PsdDocument& document, const Row& row) {
  EXPECT_EQ(std::to_string(document.depth), row.at("depth"));
  EXPECT_EQ(std::to_string(document.channels), row.at("channels"));
  EXPECT_EQ(std::to_string(document.rows), row.at("rows"));
  EXPECT_EQ(std::to_string(document.columns), row.at("cols"));
  const bool hasLayerInfo = row.at("layers_in") == "info";  // other depths keep theirs in a block
  const int count = hasLayerInfo ? std::stoi(row.at("layers")) : 0;
  EXPECT_EQ(document.layerCount, std::abs(count));
  EXPECT_EQ(document.mergedAlpha, count < 0);
  EXPECT_EQ(document.mergedCompression, row.at("merged_comp") == "raw" ? 0 : 1);
}

TEST_F(Corpus, SoundFilesAreKeptAndDamagedOnesAreNot) {
  int sound = 0, added = 0;
  for (const Row& row : rows("psd.tsv")) {
    SCOPED_TRACE(row.at("path"));
    const std::string bytes = read((corpus_ / "psd" / row.at("path")).string());
    Status status;
    const auto document = loaded(bytes, &status);  // large documents too, under a name that is read
    const bool isSound = row.at("faults") == "-" && row.at("version") == "1";
    if (isSound) {
      ++sound;
      ASSERT_TRUE(document) << status.text();
      expectFound(*document, row);
      EXPECT_EQ(document->mergedFault(), "");
    }
    if (!document) {
      EXPECT_EQ(status.text().find("version 2 is not supported") == 0, row.at("version") == "2")
          << status.text();
      continue;
    }
    if (row.at("version") != "1") EXPECT_EQ(document->addLayer("x"), -1);
    EXPECT_TRUE(saved(*document) == bytes);
    if (isSound) added += leavesTheOthers(*document) ? 1 : 0;
  }
  EXPECT_GT(sound, 20);
  EXPECT_GT(added, 15);
}

TEST_F(Corpus, TgaImagesAreImportedWhereTheirPixelsAreThere) {
  int imported = 0;
  for (const Row& row : rows("tga.tsv")) {
    SCOPED_TRACE(row.at("path"));
    const std::string bytes = read((corpus_ / "tga" / row.at("path")).string());
    const std::size_t width = std::stoul(row.at("cols")), height = std::stoul(row.at("rows"));
    const std::size_t pixel = std::stoul(row.at("depth")) / 8,
                      start = 18 + std::stoul(row.at("id_len"));
    const bool fits =
        pixel >= 3 && width * height != 0 && start + width * height * pixel <= bytes.size();
    Status status;
    const auto document = loaded(bytes, &status, "f.tga");
    ASSERT_EQ(document != nullptr, fits) << status.text();
    imported += fits ? 1 : 0;
  }
  EXPECT_GT(imported, 8);
}

}  // namespace
}  // namespace morvane
