#ifndef MORVANE_TOOLS_BATCH_EXPORTMESSAGES_H_
#define MORVANE_TOOLS_BATCH_EXPORTMESSAGES_H_

#include <set>
#include <string>

#include "tools/batch/ExportJob.h"
#include "tools/batch/SceneExport.h"
#include "tools/batch/SharedTextures.h"
#include "tools/jobs/Channel.h"

// What a job's processes tell one another. Each pair of functions is the inverse of the other; what
// a message lacks is an exception of the library that holds it, as only this program sends them.
namespace tools {

Message messageOf(const OpeningOptions& opening);
OpeningOptions openingOf(const Message& message);

// `scenes` and how they are shared out are left out.
Message messageOf(const ExportJob& job);
ExportJob jobOf(const Message& message);

Message messageOf(const SceneResult& result);
SceneResult resultOf(const Message& message);

Message messageOf(const SceneProgress& progress);
SceneProgress progressOf(const Message& message);

Message messageOf(const SharedTextures::Known& known);
SharedTextures::Known knownOf(const Message& message);

}  // namespace tools

#endif  // MORVANE_TOOLS_BATCH_EXPORTMESSAGES_H_
