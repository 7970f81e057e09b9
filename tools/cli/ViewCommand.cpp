#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "tools/cli/Commands.h"
#include "tools/cli/Options.h"
#include "tools/cli/ViewItems.h"
#include "tools/model/FilePairs.h"
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
  std::string before;
  std::string scene;
  unsigned maxMebibytes = 256;
  ViewSettings settings;
  OpeningOptions opening;
};

// A scene's tile whose texture a file of the command line is.
struct Surface {
  std::string texture;  // absolute
  SceneTile tile;
};

class Viewer {
 public:
  explicit Viewer(const Options& options) : options_(options), page_(options.settings) {}

  ExitStatus run() {
    if (viewPageHead() == nullptr) {
      complain(
          "this program was built without the page of `view`; build it with Node.js and npm "
          "installed and -DMORVANE_VIEW=ON");
      return kFailed;
    }
    std::vector<FilePair> files;
    const ExitStatus listed = listFiles(files);
    if (listed != kDone) return listed;
    std::vector<std::string> inputs = {options_.scene};
    for (FilePair& pair : files) {
      inputs.push_back(pair.before);
      inputs.push_back(pair.after);
    }
    if (wouldReplaceInput(options_.output, inputs)) return kUsage;
    std::vector<std::pair<std::string, FilePair>>
        paths;  // absolute, before a scene moves the folder
    for (const FilePair& pair : files) paths.emplace_back(absolute(pair.after), absolute(pair));
    if (!options_.scene.empty()) readSurfaces();
    for (std::size_t i = 0; i < files.size(); ++i)
      if (isScene(paths[i].first))
        addScene(paths[i].first, files[i].after);
      else
        addFile(paths[i].second, files[i]);
    if (replacesTexture_) return kUsage;
    return write();
  }

 private:
  static std::string absolute(const std::string& name) {
    return name.empty() ? name : absoluteName(name);
  }
  static FilePair absolute(const FilePair& pair) {
    return {absolute(pair.before), absolute(pair.after)};
  }
  bool compares() const { return !options_.before.empty(); }

  ExitStatus listFiles(std::vector<FilePair>& files) {
    if (!compares()) {
      for (const std::string& file : options_.files) files.push_back({"", file});
      return kDone;
    }
    if (options_.files.size() > 1 || isScene(options_.files[0]) || isScene(options_.before)) {
      complain("--before OLD takes one FILE: two PSD files, or two folders of them");
      return kUsage;
    }
    std::string fault;
    const Pairing pairing = pairFiles(options_.before, options_.files[0], files, fault);
    if (pairing == Pairing::kPaired) return kDone;
    complain(fault);
    return pairing == Pairing::kMixed ? kUsage : kFailed;
  }

  ExitStatus write() {
    if (!page_.showsSomething()) {
      complain("there is nothing to show; no page was written");
      return status_ == kDone ? kFailed : status_;
    }
    if (!writeOutput(output_, page_.html())) return kFailed;
    if (page_.withoutLayers() > 0)
      complain("the layers of " + counted(page_.withoutLayers(), "picture") +
               " cannot be switched: their pixels would take more than half of --max-size");
    reportWritten(options_.output, (files_ > 0 ? counted(files_, "file") + ", " : "") +
                                       (tiles_ > 0 ? counted(tiles_, "tile") + ", " : "") +
                                       counted(goblins_, "goblin"));
    reportUnusedMaps();
    return status_;
  }

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
         std::to_string(options_.maxMebibytes) +
         " MiB; show fewer files on one page, or say --max-size");
  }

  // Fails for a file that is there and cannot be read, which then stands on standard error.
  morvane::Status read(const std::string& path, const std::string& shown, ViewItem& item) {
    morvane::PsdDocument document(1, 1);
    const morvane::Status loaded = readDocument(path, document, item);
    if (!loaded.ok())
      fail(unreadable(path, loaded, shown));
    else if (!reportFaults(shown, document, item.goblins))
      status_ = std::max(status_, kFailed);
    return loaded;
  }

  void addFile(const FilePair& path, const FilePair& shown) {
    ViewItem item = fileItem(shown.after.empty() ? shown.before : shown.after);
    if (!path.after.empty()) item.fault = read(path.after, shown.after, item).text();
    if (compares()) {
      ViewItem old = fileItem(shown.before);
      if (path.before.empty() || read(path.before, shown.before, old).ok())
        item.before = ViewBefore{shown.before, std::move(old.goblins)};
      if (path.after.empty()) {
        item.goblins.present = true;
        item.missing = "the file is gone; its goblins were these";
      }
    }
    for (const Surface& surface : surfaces_) {
      if (!samePlace(surface.texture, path.after)) continue;
      addSurface(surface.tile, item);
      break;
    }
    add(item, files_);
  }

  static bool samePlace(const std::string& a, const std::string& b) {
    std::error_code error;
    return std::filesystem::equivalent(morvane::systemPath(a), morvane::systemPath(b), error) &&
           !error;
  }

  void readSurfaces() {
    if (!scenes_.open(absoluteName(options_.scene)))
      return fail(printable(options_.scene) + ": the scene cannot be loaded", kNotLoaded);
    replacesTexture_ = wouldReplaceTexture(output_);
    for (SceneTile& tile : sceneTiles()) {
      const std::string texture = absolute(tile.texture);
      surfaces_.push_back({texture, std::move(tile)});
    }
    status_ = std::max(status_, reportDamage(options_.scene, scenes_.problems()));
    if (surfaces_.empty()) fail(printable(options_.scene) + ": " + kNoTile);
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
    ViewItem item = fileItem(shown);
    item.fault = opened ? kNoTile + likelyLoss(scenes_.problems()) : scenes_.status().text();
    fail(printable(shown) + ": " + (opened ? item.fault : "the scene cannot be loaded"),
         opened ? kFailed : kNotLoaded);
    add(item, files_);
  }

  void addTile(const SceneTile& tile, const std::string& scene) {
    ViewItem item = tileItem(tile, scene);
    const std::string shown = printable(scene) + ": " + printable(tile.name) + ": ";
    for (const std::string& text : {tile.missing, tile.fault})
      if (!text.empty()) fail(shown + printable(text));
    if (tile.texture.empty() && !tile.missing.empty())
      item.pictureFault = "the tile's texture is not known";
    else if (tile.fault.empty())
      addTexture(tile.texture, shown, item);
    item.goblins = tile.goblins;
    addSurface(tile, item);
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
  std::vector<Surface> surfaces_;  // of --scene
  ExitStatus status_ = kDone;
  std::size_t files_ = 0;  // on the page
  std::size_t tiles_ = 0;
  std::size_t goblins_ = 0;
};

void addLimitOptions(CLI::App& command, Options& options) {
  command.add_option("--budget", options.settings.triangles, "Mark tiles with more triangles")
      ->type_name("TRIANGLES");
  command
      .add_option("--texture-budget", options.settings.pixels,
                  "Mark textures with more pixels on a side")
      ->type_name("PIXELS");
  command
      .add_option("--max-size", options.maxMebibytes,
                  "The page's largest size in MiB (256); single layers\n"
                  "get half of it at most, and are left out beyond that")
      ->type_name("MIB")
      ->check(CLI::Range(1, 1024).description(""));
}

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
  command
      ->add_option("--before", options->before,
                   "FILE as it was, or the folder FILE: colours goblins\n"
                   "that were added, moved, changed or are gone")
      ->type_name("OLD");
  command
      ->add_option("--scene", options->scene,
                   "The scene whose tiles have the files as textures;\n"
                   "shows them in place, on its surfaces")
      ->type_name("SCENE");
  addLimitOptions(*command, *options);
  addFolderOptions(*command, options->opening);
  addFrameOption(*command, options->opening);
  command->footer(
      "A damaged file is named, and shown as such among the others.\n"
      "Examples:\n"
      "  morvane view textures/*.psd -o tiles.html       what an export left in files\n"
      "  morvane view meadow.ma -o meadow.html           the scene; nothing is exported\n"
      "  morvane view --before old textures -o now.html  what has changed");
  command->callback([options, &status] {
    options->settings.maxBytes = std::size_t{options->maxMebibytes} << 20;
    status = Viewer(*options).run();
  });
}

}  // namespace tools
