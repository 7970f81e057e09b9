#include <algorithm>
#include <string>
#include <vector>

#include "tools/cli/Commands.h"
#include "tools/cli/Options.h"
#include "tools/model/DocumentReport.h"
#include "tools/scene/SceneDamage.h"
#include "tools/scene/SceneOpener.h"
#include "tools/scene/SceneTiles.h"
#include "tools/scene/Session.h"
#include "tools/terminal/ExitStatus.h"
#include "tools/terminal/OutputFile.h"
#include "tools/terminal/Text.h"
#include "tools/view/ViewPage.h"
#include "util/FileFacts.h"
#include "util/Path.h"

namespace tools {
namespace {

struct Options {
  std::vector<std::string> files;
  std::string output;
  OpeningOptions opening;
};

// Fills in what a file holds, its goblins included. Fails for a file that cannot be loaded.
morvane::Status readDocument(const std::string& path, morvane::PsdDocument& document,
                             ViewItem& item) {
  morvane::Status status;
  if (!document.load(path.c_str(), &status)) return status;
  item.goblins = readGoblins(document);
  item.report = documentJson(item.file, morvane::factsOf(path).size, document, item.goblins);
  Picture picture;
  if (readPicture(document, ViewPage::kMaxPicture, picture, item.pictureFault))
    item.picture = std::move(picture);
  return status;
}

class Viewer {
 public:
  explicit Viewer(const Options& options) : options_(options) {}

  ExitStatus run() {
    if (viewPageHead() == nullptr) {
      complain(
          "this program was built without the page of `view`; build it with Node.js and npm "
          "installed and -DMORVANE_VIEW=ON");
      return kFailed;
    }
    if (wouldReplaceInput(options_.output, options_.files)) return kUsage;
    std::vector<std::string> paths;
    for (const std::string& file : options_.files) paths.push_back(absoluteName(file));
    for (std::size_t i = 0; i < paths.size(); ++i)
      if (isScene(paths[i]))
        addScene(paths[i], options_.files[i]);
      else
        addFile(paths[i], options_.files[i]);
    if (replacesTexture_) return kUsage;
    if (!page_.showsSomething()) {
      complain("there is nothing to show; no page was written");
      return status_ == kDone ? kFailed : status_;
    }
    if (!writeOutput(output_, page_.html())) return kFailed;
    reportWritten(options_.output, (files_ > 0 ? counted(files_, "file") + ", " : "") +
                                       (tiles_ > 0 ? counted(tiles_, "tile") + ", " : "") +
                                       counted(goblins_, "goblin"));
    reportUnusedMaps();
    return status_;
  }

 private:
  void fail(const std::string& message, ExitStatus status = kFailed) {
    complain(message);
    status_ = std::max(status_, status);
  }

  void add(const ViewItem& item, std::size_t& kind) {
    if (page_.add(item)) {
      ++kind;
      goblins_ += item.goblins.goblins.size();
      return;
    }
    fail(printable(item.file) + ": left out, since the page would be over " +
         std::to_string(ViewPage::kMaxBytes >> 20) + " MiB; show fewer files on one page");
  }

  void addFile(const std::string& path, const std::string& shown) {
    ViewItem item;
    item.name = morvane::nameOf(morvane::pathOf(path).filename());
    item.file = shown;
    morvane::PsdDocument document(1, 1);
    const morvane::Status loaded = readDocument(path, document, item);
    item.fault = loaded.text();
    if (!loaded.ok())
      fail(unreadable(path, loaded, shown));
    else if (!reportFaults(shown, document, item.goblins))
      status_ = std::max(status_, kFailed);
    add(item, files_);
  }

  void addScene(const std::string& path, const std::string& shown) {
    const bool opened = scenes_.open(path);
    replacesTexture_ = (opened && wouldReplaceTexture(output_)) || replacesTexture_;
    const std::vector<SceneTile> tiles = opened ? sceneTiles() : std::vector<SceneTile>();
    if (!tiles.empty()) {
      for (const SceneTile& tile : tiles) addTile(tile, shown);
      status_ = std::max(status_, reportDamage(shown, scenes_.problems()));
      return;
    }
    ViewItem item;
    item.name = morvane::nameOf(morvane::pathOf(path).filename());
    item.file = shown;
    item.fault = opened ? kNoTile + likelyLoss(scenes_.problems()) : scenes_.status().text();
    fail(printable(shown) + ": " + (opened ? item.fault : "the scene cannot be loaded"),
         opened ? kFailed : kNotLoaded);
    add(item, files_);
  }

  void addTile(const SceneTile& tile, const std::string& scene) {
    ViewItem item;
    item.name = tile.name;
    item.file = tile.texture;
    item.fault = tile.fault;
    item.missing = tile.missing;
    const std::string shown = printable(scene) + ": " + printable(tile.name) + ": ";
    for (const std::string& text : {tile.missing, tile.fault})
      if (!text.empty()) fail(shown + printable(text));
    if (tile.texture.empty() && !tile.missing.empty())
      item.pictureFault = "the tile's texture is not known";
    else if (tile.fault.empty())
      addTexture(tile.texture, shown, item);
    item.goblins = tile.goblins;
    if (!tile.mesh.triangles.empty()) item.tile = tile.mesh;
    add(item, tiles_);
  }

  // The scene's folder is the working folder now, so that the texture's name is good as it stands.
  void addTexture(const std::string& texture, const std::string& shown, ViewItem& item) {
    morvane::PsdDocument document(1, 1);
    const morvane::Status loaded = readDocument(texture, document, item);
    if (loaded.ok()) {
      if (!reportFaults(shown + "texture " + texture, document, {}))
        status_ = std::max(status_, kFailed);
      return;
    }
    item.pictureFault = loaded.text();
    fail(shown + "texture " +
         (morvane::factsOf(texture).exists() ? unreadable(texture, loaded, texture)
                                             : printable(texture) + kMissingTexture));
  }

  const Options& options_;
  const std::string output_ = absoluteName(options_.output);  // before a scene moves the folder
  bool replacesTexture_ = false;
  ViewPage page_;
  SceneOpener scenes_{options_.opening};
  ExitStatus status_ = kDone;
  std::size_t files_ = 0;  // on the page
  std::size_t tiles_ = 0;
  std::size_t goblins_ = 0;
};

}  // namespace

void addView(CLI::App& program, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App* command =
      program.add_subcommand("view", "Show files, or a scene's tiles, in a web page with 3D");
  command->add_option("FILE", options->files, "PSD or TGA files, or scenes (*.ma, *.mb)")
      ->type_name("")
      ->required();
  checkOutput(*command
                   ->add_option("-o,--output", options->output,
                                "The page; it needs no network and no server")
                   ->type_name("PAGE")
                   ->required(),
              {"a web page", {".html", ".htm"}});
  addFolderOptions(*command, options->opening);
  addFrameOption(*command, options->opening);
  command->footer(
      "A damaged file is named, and shown as such among the others.\n"
      "Examples:\n"
      "  morvane view textures/*.psd -o tiles.html  what an export left in the files\n"
      "  morvane view meadow.ma -o meadow.html      the scene; nothing is exported");
  command->callback([options, &status] { status = Viewer(*options).run(); });
}

}  // namespace tools
