#ifndef MORVANE_TESTS_IMPORT_TRANSLATORFIXTURE_H_
#define MORVANE_TESTS_IMPORT_TRANSLATORFIXTURE_H_

#include <cstdint>
#include <string>
#include <vector>

#include "geometry/GoblinGeometry.h"
#include "psd/PsdDocument.h"
#include "tests/plugin/HostFixture.h"

namespace morvane {

// Drives the translator through the host's `file` command.
class TranslatorFixture : public HostFixture {
 protected:
  // Output, and "ok" or "failed".
  static std::string exportTo(const std::string& file) {
    return attempt("file -force -exportSelected -type \"psd\" \"" + file + "\"");
  }
  static std::string importFrom(const std::string& file) {
    return attempt("file -import -type \"psd\" \"" + file + "\"");
  }

  std::string writeBlob(const std::string& name, const Blob& blob) const {
    PsdDocument document(256, 256);
    EXPECT_TRUE(document.addDataLayer(kGoblinLayerName, static_cast<std::uint32_t>(blob.size()),
                                      blob.data()));
    EXPECT_TRUE(document.save(path(name).c_str()));
    return path(name);
  }

  static std::string goblinText(const std::string& name, const std::string& attributes = "",
                                const MeshShape& shape = triangleShape()) {
    return transformText(name, "tile", attributes) + meshText(name + "Shape", name, shape) +
           "\taddAttr -ln \"goblinName\" -dt \"string\";\n\tsetAttr \".goblinName\" -type "
           "\"string\" \"" +
           name + "\";\n";
  }

  // A tile without a material whose shape has the attribute that the reader sets.
  static std::string bareTileText(const MeshShape& shape = tileShape()) {
    return transformText("tile") + meshText("tileShape", "tile", shape) +
           "\taddAttr -ln \"psdFileName\" -dt \"string\";\n";
  }
};

}  // namespace morvane

#endif  // MORVANE_TESTS_IMPORT_TRANSLATORFIXTURE_H_
