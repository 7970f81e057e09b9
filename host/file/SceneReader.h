#ifndef MORVANE_HOST_FILE_SCENEREADER_H_
#define MORVANE_HOST_FILE_SCENEREADER_H_

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "host/file/ReferenceEdits.h"
#include "host/file/StatementReader.h"
#include "host/mel/Command.h"
#include "host/state/SceneGaps.h"
#include "host/state/SceneProblems.h"
#include "util/Status.h"

namespace host {

class BinaryReader;

// Reads a scene file, Maya ASCII or Maya Binary as its first bytes tell, into the scene that is
// there: every statement runs as a command, and so does what says the same in a binary file. What
// it cannot use is named in a warning with the file's name and line and column, or byte, kept in
// `SceneProblems`, and passed over.
class SceneReader {
 public:
  struct Options {
    std::string nameSpace;     // put before every name, with its colon; empty for none
    bool isReference = false;  // nodes are marked as another file's
    bool keepsInfo = false;    // the file becomes the scene: see SceneInfo
  };

  // Fails when the file cannot be read, does not begin as a scene file (kUnsupported), or refers to
  // itself or to too much (kDamaged, kTooLarge).
  morvane::Status read(const std::string& path, const Options& options);

 private:
  morvane::Status mayRead(const std::string& absolute, bool isReference);
  morvane::Status openScene();
  morvane::Status readStatements();
  morvane::Status readBinary();
  void prepareContext(const Options& options, const std::string& absolute);
  void runStatement(std::string_view statement);
  bool runMeshStatement(std::string_view statement);
  void runFileStatement(const mel::Words& words);
  void loadReference(const std::string& name, const std::string& nameSpace,
                     const std::string& node);
  void addEdits(const mel::Words& words);
  void addEdits(const KeptWords& edits);
  void applyEdits();
  void noteGaps(const std::vector<UnappliedEdit>& unapplied) const;
  void noteEnd();
  bool noteZeroBytes(std::string_view text);  // false when there are none
  void note(SceneProblem::Kind kind, const std::string& text);
  void noteByte(SceneProblem::Kind kind, std::uint64_t place, const std::string& text);
  void addEnd(SceneProblems::End end);

  std::string path_;
  StatementReader statements_;
  mel::CommandContext context_{mel::Interpreter::current()};
  std::string name_;
  mel::Words words_;
  bool isBinary_ = false;
  const BinaryReader* binary_ = nullptr;  // while a binary file is being read
  std::vector<ReferenceEdit> edits_;
  std::set<std::string> loaded_;             // names of reference nodes
  std::set<std::string> deferred_;           // the same
  std::map<std::string, SceneGap> missing_;  // by such names: files that Maya would have loaded
};

// Makes the meshes whose shape their history makes. Those that cannot be made, those with older UVs
// or colours, and stored ones without usable faces are named in warnings.
void evaluateSceneHistories();
// The same for what changed since, without what is stored.
void refreshSceneHistories();

// Whether a file begins as a scene file of either kind does.
bool isSceneFileStart(std::string_view firstBytes);

}  // namespace host

#endif  // MORVANE_HOST_FILE_SCENEREADER_H_
