#include "host/commands/Builtin.h"

#include "host/file/SceneReader.h"

namespace host::mel {

void addBuiltinCommands(CommandTable& table) {
  addAttributeCommands(table);
  addConnectionCommands(table);
  addNodeCommands(table);
  addDagCommands(table);
  addSetCommands(table);
  addSelectionCommands(table);
  addFileCommands(table);
  addFileReadingCommands(table);
  addFreezeCommand(table);
  addNamespaceCommands(table);
  addDirectoryMapCommand(table);
  addPluginCommands(table);
  addOutputCommands(table);
  addMeshCommands(table);
  addAttributeQuery(table);
  addDuplicateCommand(table);
  addScriptCommands(table);
  addFolderCommands(table);
  addNodeQuestions(table);
  addPlacementCommands(table);
  addPolygonCommands(table);
  addTimeCommands(table);
  addHeaderCommands(table);
  table.setAfterCommand(refreshSceneHistories);
}

}  // namespace host::mel
