#include <algorithm>
#include <string>

#include "host/Host.h"
#include "host/text/Text.h"
#include "tools/cli/Commands.h"
#include "tools/cli/Options.h"
#include "tools/model/TileFile.h"
#include "tools/scene/SceneDamage.h"
#include "tools/scene/Session.h"
#include "tools/scene/TileSelection.h"
#include "tools/terminal/Activity.h"
#include "tools/terminal/ExitStatus.h"
#include "tools/terminal/OutputFile.h"
#include "tools/terminal/Text.h"

namespace tools {
namespace {

struct Options {
  std::string scene;
  std::string node;
  std::string file;
  std::string output;
  OpeningOptions opening;
};

// The translator's reader notes the file's path in an attribute that it does not create, on the
// node at the end of the tile's chain of only children: its mesh or, where goblins stand below the
// tile already, the tile itself.
std::string importScript(const std::string& file) {
  return "{ string $tiles[] = `ls -selection -long`;\n"
         "string $noted[] = $tiles;\n"
         "string $below[] = $tiles;\n"
         "while (size($below) == 1) { $noted = $below; $below = `listRelatives -children -fullPath "
         "$noted[0]`; }\n"
         "if (!`attributeQuery -node $noted[0] -exists \"psdFileName\"`)\n"
         "  addAttr -longName \"psdFileName\" -dataType \"string\" $noted[0];\n"
         "select -replace $tiles;\n"
         "file -import -type \"psd\" " +
         host::mel::quoted(file) + "; }";
}

// What the plug-in has printed says the rest.
const char* advice(bool isTagged) {
  return isTagged ? "give it the file that `morvane export SCENE TILE --to FILE` writes: a texture "
                    "that was exported into has no names of goblins"
                  : "what is printed above says why";
}

ExitStatus importTile(const Options& options) {
  const std::string file = absoluteName(options.file);
  const std::string output = options.output.empty() ? "" : absoluteName(options.output);
  if (!output.empty() && wouldReplaceInput(output, {file})) return kUsage;
  auto document = loadDocument(file, options.file);
  if (!document) return kFailed;
  const bool isTagged = readGoblins(*document).kind == morvane::GoblinBlobKind::kTagged;
  document.reset();  // the plug-in has one of its own
  const ExitStatus started = startSession(options.scene, options.opening);
  if (started != kDone) return started;
  if (!output.empty() && wouldReplaceTexture(output)) return kUsage;
  const host::SceneProblems problems = host::takeSceneProblems();
  const morvane::Status selected = host::select(options.node, false);
  if (!selected.ok()) {
    complain(printable(options.scene) + ": cannot select " + printable(options.node) +
             whyNotSelected(options.node, selected) +
             (problems.list.empty() ? "" : likelyLoss(problems)));
    return kFailed;
  }
  nowDoing("importing", options.file);
  if (!host::execute(importScript(file), "import")) {
    complain("the import of " + printable(options.file) + " to " + printable(options.node) +
             " failed" + (output.empty() ? "; " : " and the scene was not saved; ") +
             advice(isTagged));
    return kFailed;
  }
  const ExitStatus saved = saveScene(output);
  if (output.empty())
    complain("the import succeeded, but nothing was saved: name with -o where to save the scene");
  else if (saved == kDone)
    reportWritten(options.output);
  reportUnusedMaps();
  return std::max(saved, reportDamage(options.scene, problems));
}

}  // namespace

void addImport(CLI::App& program, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App* command =
      program.add_subcommand("import", "Give a tile a PSD file's texture and the goblins in it");
  command->add_option("SCENE", options->scene, "The scene (*.ma, *.mb)")->type_name("")->required();
  command->add_option("NODE", options->node, "The tile that gets texture and goblins")
      ->type_name("")
      ->required();
  command
      ->add_option("FILE", options->file, "A PSD file from `export --to`; a TGA has only a texture")
      ->type_name("")
      ->required();
  checkOutput(*command
                   ->add_option("-o,--output", options->output,
                                "Save the scene here (*.ma) when the import succeeded")
                   ->type_name("SCENE"),
              kSceneOutput);
  addFolderOptions(*command, options->opening);
  command->footer(
      "What stands below the tile already stays there. A damaged scene is used as far\n"
      "as it can be read, and the status is 1.\n"
      "Examples:\n"
      "  morvane export level.ma pond --to pond.psd\n"
      "  morvane import bare.ma pond pond.psd -o dressed.ma");
  command->callback([options, &status] { status = importTile(*options); });
}

}  // namespace tools
