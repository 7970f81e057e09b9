#ifndef MORVANE_HOST_FILE_BINARYREADER_H_
#define MORVANE_HOST_FILE_BINARYREADER_H_

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "host/attribute/AttributeValue.h"
#include "host/binary/ByteCursor.h"
#include "host/binary/ByteWindow.h"
#include "host/binary/ChunkWalker.h"
#include "host/binary/NodeTags.h"
#include "host/file/RecordedFile.h"
#include "host/mel/Command.h"
#include "host/state/SceneProblems.h"

namespace host {

// Reads a Maya Binary scene into the scene that is there: chunks that name nodes and connections
// run the commands that a Maya ASCII scene has in their place, and numbers go from the file into
// attributes and meshes. The scene's reader deals with what is the same for both kinds of files.
class BinaryReader {
 public:
  using Note =
      std::function<void(SceneProblem::Kind kind, std::uint64_t place, const std::string& text)>;
  using RunFile = std::function<void(const mel::Words&)>;
  using TakeEdits = std::function<void(const KeptWords&)>;

  // The functions are called during `read`: for something in the file that cannot be used, with its
  // position; for the words of a `file` statement that refers to another file; and for edits of
  // references.
  BinaryReader(mel::CommandContext& context, Note note, RunFile runFile, TakeEdits takeEdits);

  // Fails when the file cannot be read, which the text names. `recorder` may be null.
  morvane::Status read(const std::string& path, FileRecorder* recorder);
  // Reads what was recorded of a file in its stead.
  void replay(const RecordedFile& file);

  bool isCut() const { return isCut_; }  // the file ended too early
  // Where what is being read now begins in the file.
  std::uint64_t place() const { return place_; }

 private:
  using Chunks = ChunkWalker;
  using ReadChunk = void (BinaryReader::*)(ByteCursor in);
  struct ChunkRow;
  static const ChunkRow kRows[];

  void start(bool isWide);
  void step(Chunks& chunks, Chunks::Step step);
  void enterContainer(std::uint32_t form);
  void readChunk(const Chunk& chunk);
  void readContent(std::uint32_t tag, ByteCursor in);
  void record(RecordedFile::Kind kind, std::uint32_t tag, std::string_view bytes);
  void readMesh(const Chunk& chunk);
  void readAttributeValue(std::uint32_t tag, ByteCursor in);
  void noteUnknown(std::uint32_t tag);
  void noteHere(SceneProblem::Kind kind, const std::string& text);
  void run(const char* command, const mel::Words& words);

  void readVersion(ByteCursor in);
  void readTimeUnit(ByteCursor in);
  void readTicks(ByteCursor in);
  void readInfo(ByteCursor in);
  void readPlugin(ByteCursor in);
  void readDeclaredReference(ByteCursor in);
  void readReference(ByteCursor in);
  void readNode(ByteCursor in);
  void readSelection(ByteCursor in);
  void readDynamicAttribute(ByteCursor in);
  void readInstance(ByteCursor in);
  void readConnection(ByteCursor in);
  void readRelationship(ByteCursor in);
  void passOver(ByteCursor in);

  void runReference(ByteCursor& in, mel::Words words);
  void createNode(std::string_view name, std::string_view parent, bool isShared);
  bool isWhole(const ByteCursor& in);

  mel::CommandContext& context_;
  Note note_;
  RunFile runFile_;
  TakeEdits takeEdits_;
  FileRecorder* recorder_ = nullptr;
  ByteWindow bytes_;
  NodeTags tags_;
  bool isWide_ = true;
  bool isCut_ = false;
  std::uint32_t form_ = 0;                // of the innermost container
  std::uint64_t place_ = 0;               // of the chunk that is being read
  std::optional<double> ticksPerSecond_;  // as the file says, if it does
  double framesPerSecond_;
  std::set<std::uint32_t> unknown_;  // tags that were told of
};

}  // namespace host

#endif  // MORVANE_HOST_FILE_BINARYREADER_H_
