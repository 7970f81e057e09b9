#include "tests/mel/Script.h"

namespace host::mel {
namespace {

TEST(Select, TellsByItsCodeWhatIsNotThere) {
  using morvane::StatusCode;
  newScene();
  run("createNode transform -n pond; createNode mesh -n pondShape -p pond; createNode lambert -n "
      "pondPaint");
  const struct {
    const char* name;
    bool onlyTransforms;
    StatusCode code;
    const char* selected;
  } kCases[] = {
      {"pond", false, StatusCode::kOk, "pond"},
      {"|pond|pondShape", false, StatusCode::kOk, "pondShape"},
      {"pond*", false, StatusCode::kOk, "pond pondShape pondPaint"},
      {"pond*", true, StatusCode::kOk, "pond"},
      {"*Shape", true, StatusCode::kNotFound, ""},
      {"gone", false, StatusCode::kNotFound, ""},
      {"pond\"; delete \"pond", false, StatusCode::kNotFound, ""},
  };
  for (const auto& c : kCases) {
    run("select -clear");
    const morvane::Status status = select(c.name, c.onlyTransforms);
    EXPECT_EQ(status.code(), c.code) << c.name << ": " << status.text();
    EXPECT_EQ(status.text().empty(), status.ok()) << c.name;
    EXPECT_EQ(run("ls -sl"), c.selected) << c.name;
  }
}

}  // namespace
}  // namespace host::mel
