#include "tools/batch/ExportScenes.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <vector>

#include "host/Host.h"
#include "tools/batch/BatchSummary.h"
#include "tools/batch/ExportMessages.h"
#include "tools/batch/ExportRecords.h"
#include "tools/batch/SceneExport.h"
#include "tools/batch/SharedTextures.h"
#include "tools/batch/UnusedMaps.h"
#include "tools/jobs/JobPool.h"
#include "tools/jobs/Turns.h"
#include "tools/terminal/InterruptNotice.h"
#include "tools/terminal/OutputAside.h"
#include "tools/terminal/Platform.h"
#include "tools/terminal/ProgressBar.h"
#include "tools/terminal/Text.h"

namespace tools {
namespace {

class Batch {
 public:
  explicit Batch(const ExportJob& job) : job_(job), bar_(standardErrorIsTerminal()), summary_(job) {
    if (job.json) records_.emplace();
    for (const std::string& scene : job.scenes) paths_.push_back(absoluteName(scene));
  }

  ExitStatus run() {
    morvane::Status started;
    const ExitStatus status = startSession("", job_.opening, &started);
    if (status != kDone) return failAll(started.text(), status);
    InterruptNotice notice(paths_.size());
    notice_ = &notice;
    const bool printed = job_.processes > 1 ? runPool() : runHere();
    bar_.hide();
    unusedMaps_.report();
    summary_.tell();
    if (printed && (!records_ || records_->ok())) return summary_.worst();
    complain(records_ ? "standard output could not be written: records of tiles are missing; is "
                        "the disk full?"
                      : "the output of the scenes could not be passed on; is the disk full?");
    return std::max(summary_.worst(), kFailed);
  }

  ExitStatus exportOpened() {
    SceneExport scenes(job_, textures_, bar_,
                       {[this](const SceneProgress& progress) { show(0, progress); }, {}});
    finish(0, scenes.exportOpened(job_.scenes[0], {}));
    return summary_.worst();
  }

 private:
  bool runHere() {
    std::size_t scene = 0;
    SceneExport scenes(job_, textures_, bar_,
                       {[&](const SceneProgress& progress) { show(scene, progress); }, {}});
    for (; scene < paths_.size(); ++scene)
      finish(scene, scenes.exportScene(job_.scenes[scene], paths_[scene]));
    return true;
  }

  bool runPool() {
    Turns turns(paths_.size());
    JobCalls calls;
    calls.order = [&](std::size_t scene) { return orderOf(scene); };
    calls.answer = [&](std::size_t scene, const Message& question) {
      const auto files = question.get<std::set<std::string>>();
      turns.await(scene, files);
      const std::lock_guard<std::mutex> lock(texturesMutex_);
      return messageOf(textures_.knownOf(files));
    };
    calls.hear = [&](std::size_t scene, const Message& news) { hear(scene, news); };
    calls.leave = [&](std::size_t scene) { turns.end(scene); };
    calls.lose = [&](std::size_t scene, const std::string& why) { return lostMessage(scene, why); };
    calls.finish = [&](std::size_t scene, const Message& result) {
      finish(scene, resultOf(result));
    };
    calls.makeRoom = [&](const std::function<void()>& print) { bar_.makeRoom(print); };
    return runJobs({"--worker"}, {paths_.size(), job_.processes, job_.ordered}, calls);
  }

  Message orderOf(std::size_t scene) const {
    Message order = messageOf(job_);
    order["do"] = "export";
    const auto done = job_.doneTiles.find(job_.scenes[scene]);
    if (done != job_.doneTiles.end()) order["doneTiles"] = done->second;
    order["scene"] = job_.scenes[scene];
    order["path"] = paths_[scene];
    return order;
  }

  void hear(std::size_t scene, const Message& news) {
    if (news.contains("show")) return show(scene, progressOf(news["show"]));
    unusedMaps_.add(news.at("unusedMaps"));
    const std::lock_guard<std::mutex> lock(texturesMutex_);
    textures_.learn(news.at("files"), knownOf(news.at("known")));
  }

  Message lostMessage(std::size_t scene, const std::string& why) const {
    const std::string error = "its export " + why;
    complain(printable(job_.scenes[scene]) + ": " + error +
             "; its textures are as they were or whole; the other scenes go on");
    SceneResult result;
    result.status = kFailed;
    result.failedScenes = {job_.scenes[scene]};
    if (job_.json) result.records = {sceneRecord(job_.scenes[scene], {}, error, kFailed)};
    return messageOf(result);
  }

  void show(std::size_t scene, const SceneProgress& progress) {
    shares_[scene] = static_cast<double>(progress.number) /
                     static_cast<double>(std::max<std::size_t>(progress.tiles, 1));
    std::string what = "opening " + printable(job_.scenes[scene]);
    if (!progress.tile.empty()) {
      what = std::to_string(progress.number + 1) + "/" + std::to_string(progress.tiles) + " " +
             printable(progress.tile);
      if (paths_.size() > 1) {
        what = "scene " + std::to_string(scene + 1) + "/" + std::to_string(paths_.size()) +
               " tile " + what;
      }
    }
    double done = static_cast<double>(finished_);
    for (const auto& share : shares_) done += share.second;
    bar_.show(done / static_cast<double>(paths_.size()), what);
  }

  void finish(std::size_t scene, const SceneResult& result) {
    shares_.erase(scene);
    ++finished_;
    for (const std::string& record : result.records) records_->writeLine(record);
    bar_.hide();
    summary_.add(scene, job_.scenes[scene], result);
    if (notice_) notice_->finishScene();
  }

  ExitStatus failAll(const std::string& error, ExitStatus status) {
    for (const std::string& scene : job_.scenes)
      if (records_) records_->writeLine(sceneRecord(scene, {}, error, status));
    return status;
  }

  const ExportJob& job_;
  std::vector<std::string> paths_;  // absolute, before a scene moves the working folder
  std::optional<OutputAside> records_;
  SharedTextures textures_;
  std::mutex texturesMutex_;
  ProgressBar bar_;
  BatchSummary summary_;
  std::map<std::size_t, double> shares_;  // of the scenes at work, what is done of each
  std::size_t finished_ = 0;
  UnusedMaps unusedMaps_;
  InterruptNotice* notice_ = nullptr;
};

}  // namespace

ExitStatus exportScenes(const ExportJob& job) {
  return Batch(job).run();
}

ExitStatus exportOpenScene(const ExportJob& job) {
  return Batch(job).exportOpened();
}

void exportOrdered(JobWorker& worker, Message order) {
  ExportJob job = jobOf(order);
  std::optional<OutputAside> aside;
  if (job.json) aside.emplace();
  SharedTextures textures;
  ProgressBar bar(false);
  std::set<std::string> files;
  const auto begin = [&](const std::vector<TileCandidate>& tiles) {
    files = SharedTextures::filesOf(tiles);
    worker.tell({{"question", files}});
    textures.learn(files, knownOf(worker.nextOrder()));
  };
  const auto show = [&](const SceneProgress& progress) {
    worker.tell({{"news", {{"show", messageOf(progress)}}}});
  };
  startSession("", job.opening);
  SceneExport scenes(job, textures, bar, {show, begin});
  for (;; order = worker.nextOrder()) {
    files.clear();
    job.doneTiles.clear();
    if (order.contains("doneTiles"))
      order["doneTiles"].get_to(job.doneTiles[order.at("scene").get<std::string>()]);
    const SceneResult result = scenes.exportScene(order.at("scene"), order.at("path"));
    worker.tell({{"news",
                  {{"unusedMaps", host::unusedFolders()},
                   {"files", files},
                   {"known", messageOf(textures.knownOf(files))}}}});
    worker.finish(messageOf(result));
  }
}

}  // namespace tools
