#ifndef MORVANE_HOST_FILE_RECORDEDFILE_H_
#define MORVANE_HOST_FILE_RECORDEDFILE_H_

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/mesh/MeshData.h"
#include "host/scene/Node.h"

namespace host {

// The content of a scene file for a scene that refers to it many times. It has the statements or
// chunks in order, and finished meshes in place of the numbers that make them. Damaged parts are
// left out, so that they are reported once.
struct RecordedFile {
  // A container is entered, or left to the form type 0.
  enum class Kind { kStatement, kContainer, kChunk, kMesh };
  struct Step {
    Kind kind = Kind::kStatement;
    std::uint32_t tag = 0;    // of a chunk; the form type of a container
    int column = 0;           // of a statement
    std::uint64_t place = 0;  // a statement's line, else the byte
    std::size_t start = 0;    // in `bytes`; of a mesh, its index
    std::size_t size = 0;
  };

  bool isBinary = false;
  bool isWide = false;  // a binary file of FOR8
  std::vector<Step> steps;
  std::string bytes;
  std::vector<MeshData> meshes;

  std::string_view bytesOf(const Step& step) const {
    return std::string_view(bytes).substr(step.start, step.size);
  }
  // Makes the mesh of a kMesh step the node's own; nothing for a node that has none.
  void giveMesh(const Step& step, const NodePtr& node) const;
};

// Makes a RecordedFile while the file is read for the first time.
class FileRecorder {
 public:
  // Of nodes, those from `firstSerial` on are the file's own. `used` is how many bytes all
  // recordings of the scene take; it outlives the recorder.
  FileRecorder(std::size_t firstSerial, std::size_t& used);

  void setForm(bool isBinary, bool isWide);
  // Called after the step was carried out, with the node that is then current.
  void add(RecordedFile::Step step, std::string_view bytes, const NodePtr& current);
  // The last step gave the node numbers of its mesh. It is not added: the finished mesh is.
  void addMeshNumbers(const NodePtr& node);

  // Ends the recording. Null when it became too large, or the file changed meshes of other files.
  RecordedFile* finish();

 private:
  void endMesh();
  void take(std::size_t bytes);
  void giveUp();

  RecordedFile file_;
  std::size_t firstSerial_;
  std::size_t& used_;
  std::size_t size_ = 0;  // of this one
  bool isUsable_ = true;
  NodePtr meshNode_;  // whose mesh is being set
};

// The recorded files of one scene. All of them together are kept small enough that a scene costs
// little more memory than it does without them.
class RecordedFiles {
 public:
  // The scene lists the file among those that it refers to, once for each time.
  void announce(const std::string& path);

  // Null when the file was not recorded.
  const RecordedFile* find(const std::string& path) const;
  // For a file that is about to be read; null when it is not worth recording, because the scene
  // lists it once.
  std::unique_ptr<FileRecorder> recorderFor(const std::string& path, const Scene& scene);
  // Once the file was read whole.
  void keep(const std::string& path, FileRecorder& recorder);

 private:
  std::map<std::string, RecordedFile> files_;  // by absolute path, as all names here
  std::map<std::string, int> announced_;
  std::map<std::string, int> read_;
  std::size_t used_ = 0;
};

}  // namespace host

#endif  // MORVANE_HOST_FILE_RECORDEDFILE_H_
