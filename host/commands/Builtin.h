#ifndef MORVANE_HOST_COMMANDS_BUILTIN_H_
#define MORVANE_HOST_COMMANDS_BUILTIN_H_

#include "host/mel/Command.h"

namespace host::mel {

// Adds every command that the host has without plug-ins.
void addBuiltinCommands(CommandTable& table);

// One for each family, in the file named after it.
void addAttributeCommands(CommandTable& table);
void addDynamicAttributeCommands(CommandTable& table);
void addConnectionCommands(CommandTable& table);
void addNodeCommands(CommandTable& table);
void addDagCommands(CommandTable& table);
void addSetCommands(CommandTable& table);
void addSelectionCommands(CommandTable& table);
void addFileCommands(CommandTable& table);
void addFileReadingCommands(CommandTable& table);
void addFreezeCommand(CommandTable& table);
void addNamespaceCommands(CommandTable& table);
void addDirectoryMapCommand(CommandTable& table);
void addPluginCommands(CommandTable& table);
void addOutputCommands(CommandTable& table);
void addMeshCommands(CommandTable& table);
void addAttributeQuery(CommandTable& table);
void addDuplicateCommand(CommandTable& table);
void addScriptCommands(CommandTable& table);
void addFolderCommands(CommandTable& table);
void addNodeQuestions(CommandTable& table);
void addPlacementCommands(CommandTable& table);
void addPolygonCommands(CommandTable& table);
void addTimeCommands(CommandTable& table);
// What scene files say beside nodes (requires, fileInfo, currentUnit, relationship...): see
// SceneInfo.
void addHeaderCommands(CommandTable& table);

}  // namespace host::mel

#endif  // MORVANE_HOST_COMMANDS_BUILTIN_H_
