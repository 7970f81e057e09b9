#include "host/file/RecordedFile.h"

#include <utility>

#include "host/scene/Scene.h"

namespace host {
namespace {

constexpr std::size_t kMostBytes = std::size_t{512} << 20;

template <typename T>
std::size_t bytesIn(const std::vector<T>& list) {
  return list.size() * sizeof(T);
}

std::size_t bytesIn(const MeshData& mesh) {
  std::size_t sum = bytesIn(mesh.storedPoints()) + bytesIn(mesh.tweaks()) + bytesIn(mesh.edges()) +
                    bytesIn(mesh.storedNormals()) + bytesIn(mesh.storedFaceStarts()) +
                    bytesIn(mesh.storedLoopEdges()) + bytesIn(mesh.holes());
  for (const MeshUvSet& set : mesh.uvSets()) sum += bytesIn(set.uvs) + bytesIn(set.ids);
  for (const MeshColourSet& set : mesh.colourSets()) sum += bytesIn(set.colours) + bytesIn(set.ids);
  return sum;
}

}  // namespace

void RecordedFile::giveMesh(const Step& step, const NodePtr& node) const {
  if (node != nullptr && node->mesh != nullptr) *node->mesh = meshes[step.start].clone();
}

FileRecorder::FileRecorder(std::size_t firstSerial, std::size_t& used)
    : firstSerial_(firstSerial), used_(used) {}

void FileRecorder::setForm(bool isBinary, bool isWide) {
  file_.isBinary = isBinary;
  file_.isWide = isWide;
}

void FileRecorder::take(std::size_t bytes) {
  if (!isUsable_) return;
  size_ += bytes;
  used_ += bytes;
  if (used_ > kMostBytes) giveUp();
}

void FileRecorder::giveUp() {
  isUsable_ = false;
  used_ -= std::exchange(size_, 0);
  file_ = RecordedFile();
}

void FileRecorder::add(RecordedFile::Step step, std::string_view bytes, const NodePtr& current) {
  if (meshNode_ != nullptr && meshNode_ != current) endMesh();
  take(sizeof step + bytes.size());
  if (!isUsable_) return;
  step.start = file_.bytes.size();
  step.size = bytes.size();
  file_.bytes += bytes;
  file_.steps.push_back(step);
}

void FileRecorder::addMeshNumbers(const NodePtr& node) {
  if (meshNode_ != nullptr && meshNode_ != node) endMesh();
  if (node->serial() < firstSerial_) giveUp();
  meshNode_ = node;
}

void FileRecorder::endMesh() {
  const NodePtr node = std::exchange(meshNode_, nullptr);
  take(bytesIn(*node->mesh));
  if (!isUsable_) return;
  RecordedFile::Step step;
  step.kind = RecordedFile::Kind::kMesh;
  step.start = file_.meshes.size();
  file_.meshes.push_back(node->mesh->clone());
  file_.steps.push_back(step);
}

RecordedFile* FileRecorder::finish() {
  if (meshNode_ != nullptr) endMesh();
  return isUsable_ ? &file_ : nullptr;
}

void RecordedFiles::announce(const std::string& path) {
  ++announced_[path];
}

const RecordedFile* RecordedFiles::find(const std::string& path) const {
  const auto found = files_.find(path);
  return found == files_.end() ? nullptr : &found->second;
}

std::unique_ptr<FileRecorder> RecordedFiles::recorderFor(const std::string& path,
                                                         const Scene& scene) {
  const auto listed = announced_.find(path);
  const bool mayRepeat = announced_.empty() || (listed != announced_.end() && listed->second > 1);
  const bool isRepeated = read_[path]++ > 0;
  if (!mayRepeat && !isRepeated) return nullptr;
  const auto& nodes = scene.nodes();
  const std::size_t firstNew = nodes.empty() ? 0 : nodes.rbegin()->first + 1;
  return std::make_unique<FileRecorder>(firstNew, used_);
}

void RecordedFiles::keep(const std::string& path, FileRecorder& recorder) {
  RecordedFile* const file = recorder.finish();
  if (file != nullptr) files_[path] = std::move(*file);
}

}  // namespace host
