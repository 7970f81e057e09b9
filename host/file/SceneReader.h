#ifndef MORVANE_HOST_FILE_SCENEREADER_H_
#define MORVANE_HOST_FILE_SCENEREADER_H_

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "host/file/CurveUnits.h"
#include "host/file/RecordedFile.h"
#include "host/file/ReferenceEdits.h"
#include "host/file/StatementReader.h"
#include "host/mel/Command.h"
#include "host/state/HostState.h"
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

  explicit SceneReader(HostState& state) : state_(state), context_(state.interpreter) {}

  // Fails when the file cannot be read, does not begin as a scene file (kUnsupported), or refers to
  // itself or to too much (kDamaged, kTooLarge).
  morvane::Status read(const std::string& path, const Options& options);

 private:
  static std::string absolutePath(const std::string& path);
  morvane::Status mayRead(const std::string& absolute, bool isReference);
  morvane::Status openScene();
  morvane::Status readContent(const RecordedFile* recorded);
  morvane::Status readStatements();
  morvane::Status readBinary(const RecordedFile* recorded);
  void replay(const RecordedFile& recorded);
  void runNext(std::string_view statement);
  void prepareContext(const Options& options, const std::string& absolute);
  // What a recording of the file must keep of a statement that ran.
  enum class Effect { kStatement, kMeshNumbers, kNone };
  Effect runStatement(std::string_view statement);
  bool runMeshStatement(std::string_view statement);
  void runFileStatement(const mel::Words& words);
  void loadReference(const std::string& name, const std::string& nameSpace,
                     const std::string& node);
  void announceReference(const std::string& name);
  void addEdits(const mel::Words& words);
  void addEdits(const KeptWords& edits);
  void applyEdits();
  void gatherCurves();
  void noteGaps(const std::vector<UnappliedEdit>& unapplied) const;
  void noteEnd();
  bool noteZeroBytes(std::string_view text);  // false when there are none
  void note(SceneProblem::Kind kind, const std::string& text);
  void noteByte(SceneProblem::Kind kind, std::uint64_t place, const std::string& text);
  void addEnd(SceneProblems::End end);

  HostState& state_;
  std::string path_;
  StatementReader statements_;
  int line_ = 1;  // of the statement that runs
  int column_ = 1;
  mel::CommandContext context_;
  std::string name_;
  mel::Words words_;
  bool isBinary_ = false;
  const BinaryReader* binary_ = nullptr;  // while a binary file is being read
  std::vector<ReferenceEdit> edits_;
  std::set<std::string> loaded_;               // names of reference nodes
  std::set<std::string> deferred_;             // the same
  std::map<std::string, SceneGap> missing_;    // by such names: files that Maya would have loaded
  std::vector<ForeignCurve> curves_;           // of this file and those that it refers to
  std::shared_ptr<RecordedFiles> recordings_;  // of the outermost file's reader, while it reads
  std::unique_ptr<FileRecorder> recorder_;     // when this file is being recorded
};

// Makes the meshes whose shape their history makes. Those that cannot be made, those with older UVs
// or colours, and stored ones without usable faces are named in warnings.
void evaluateSceneHistories(HostState& state);
// The same for meshes that changed since; stored ones are not checked again.
void refreshSceneHistories(HostState& state);

// Whether a file begins as a scene file of either kind does.
bool isSceneFileStart(std::string_view firstBytes);

}  // namespace host

#endif  // MORVANE_HOST_FILE_SCENEREADER_H_
