#include <filesystem>
#include <nlohmann/json.hpp>

#include "tests/end_to_end/Program.h"

// Programs that other people wrote read the files that an export makes.

namespace {

using Json = nlohmann::json;

#define NEEDS(command) \
  if (!hasCommand(command)) GTEST_SKIP() << command << " is not installed; scripts/test does that"

class Judges : public ProgramTest {
 protected:
  void SetUp() override {
    std::filesystem::copy(MORVANE_SOURCE_DIR "/examples/meadow", folder_,
                          std::filesystem::copy_options::recursive);
    shell("cp -r textures before");
    const Outcome exported = morvane({"export", "meadow.ma"});
    ASSERT_EQ(exported.status, 0) << exported.err;
  }

  std::string output(const std::string& line) {
    const Outcome outcome = shell(line);
    EXPECT_EQ(outcome.status, 0) << line << '\n' << outcome.err;
    EXPECT_EQ(outcome.err, "") << line;
    return outcome.out;
  }

  // The pixels of one picture of a file, as ImageMagick reads it.
  std::string pixels(const std::string& picture) {
    return output("convert-im6.q16 '" + picture + "' -auto-orient -depth 8 rgba:- | sha256sum");
  }
};

TEST_F(Judges, ImageMagickSeesThePicturesUnchangedAndOneLayerMore) {
  NEEDS("convert-im6.q16");
  for (const std::string name : {"hill", "path"}) {
    const std::string file = "textures/" + name + ".psd";
    const std::string old = "before/" + name + ".psd";
    const std::string format = "identify-im6.q16 -format '%w %h %l\\n' ";
    const std::string before = output(format + old);
    const std::string after = output(format + file);
    const std::string size = before.substr(0, before.find(' ', before.find(' ') + 1));
    EXPECT_EQ(after.substr(after.size() - size.size() - 16), size + " GoblinGeometry\n");
    EXPECT_EQ(pixels(file + "[0]"), pixels(old + "[0]"));
  }
  for (const char* layer : {"[1]", "[2]", "[3]", "[4]"}) {
    EXPECT_EQ(pixels(std::string("textures/path.psd") + layer),
              pixels(std::string("before/path.psd") + layer));
  }
}

TEST_F(Judges, ImageMagickSeesTheImportedImageInItsLayer) {
  NEEDS("convert-im6.q16");
  EXPECT_EQ(pixels("textures/pond.psd[2]"), pixels("before/pond.tga"));
  EXPECT_EQ(pixels("textures/field.psd[2]"), pixels("before/field.tga"));
}

TEST_F(Judges, OpenImageIoSeesTheSameMergedImage) {
  NEEDS("oiiotool");
  for (const std::string name : {"hill", "path"}) {
    output("oiiotool --diff before/" + name + ".psd textures/" + name + ".psd");
  }
  const std::string pond = output("oiiotool --info textures/pond.psd");
  EXPECT_NE(pond.find("320 x  320, 3 channel, uint8 psd"), std::string::npos) << pond;
}

TEST_F(Judges, AgPsdSeesAHiddenLayerOnTop) {
  NEEDS("node");
  const std::string judges = MORVANE_SOURCE_DIR "/tests/judges";
  if (!std::filesystem::exists(judges + "/node_modules/ag-psd"))
    GTEST_SKIP() << "run npm ci in tests/judges first";
  const Json before =
      Json::parse(output("node " + judges + "/describe-psd.mjs before/path.psd"), nullptr, false);
  const Json after =
      Json::parse(output("node " + judges + "/describe-psd.mjs textures/path.psd"), nullptr, false);
  Json expected = before;
  expected["layers"].push_back({{"name", "GoblinGeometry"}, {"hidden", true}});
  EXPECT_EQ(after, expected);
  const Json pond =
      Json::parse(output("node " + judges + "/describe-psd.mjs textures/pond.psd"), nullptr, false);
  EXPECT_EQ(pond["layers"],
            Json::parse(R"([{"name":"","hidden":false},{"name":"$diffuse","hidden":false},
                                            {"name":"GoblinGeometry","hidden":true}])"));
}

}  // namespace
