#include <string>

#include "host/Host.h"
#include "tools/Commands.h"
#include "tools/ExitStatus.h"
#include "tools/Session.h"
#include "tools/Text.h"
#include "tools/TileFile.h"

namespace tools {
namespace {

struct Options {
  std::string scene;
  std::string node;
  std::string file;
  std::string output;
  FolderMaps maps;
};

// The translator's reader notes the file's path in an attribute that it does not create, on the
// node at the end of the tile's chain of only children: its mesh or, where goblins stand below the
// tile already, the tile itself.
std::string importScript(const std::string& node, const std::string& file) {
  return "{ select -replace " + melString(node) + ";\n" +
         "string $tiles[] = `ls -selection -long`;\n"
         "string $noted[] = $tiles;\n"
         "string $below[] = $tiles;\n"
         "while (size($below) == 1) { $noted = $below; $below = `listRelatives -children -fullPath "
         "$noted[0]`; }\n"
         "if (!`attributeQuery -node $noted[0] -exists \"psdFileName\"`)\n"
         "  addAttr -longName \"psdFileName\" -dataType \"string\" $noted[0];\n"
         "select -replace $tiles;\n"
         "file -import -type \"psd\" " +
         melString(file) + "; }";
}

ExitStatus importTile(const Options& options) {
  const std::string file = absoluteName(options.file);
  const std::string output = options.output.empty() ? "" : absoluteName(options.output);
  if (!loadDocument(file)) return kFailed;
  const ExitStatus started = startSession(options.scene, options.maps);
  if (started != kDone) return started;
  if (!host::execute(importScript(options.node, file), "import")) {
    complain("the import of " + printable(options.file) + " to " + printable(options.node) +
             " failed" + (output.empty() ? "" : "; the scene was not saved"));
    return kFailed;
  }
  return output.empty() || host::saveScene(output) ? kDone : kFailed;
}

}  // namespace

void addImport(CLI::App& program, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App* command =
      program.add_subcommand("import", "Give a tile a PSD file's texture and the goblins in it");
  command->add_option("SCENE", options->scene, "The scene")->required();
  command->add_option("NODE", options->node, "The tile")->required();
  command->add_option("FILE", options->file, "The PSD (or TGA) file")->required();
  command->add_option("-o,--output", options->output,
                      "Save the scene here when the import succeeded");
  addMapOption(*command, options->maps);
  command->callback([options, &status] { status = importTile(*options); });
}

}  // namespace tools
