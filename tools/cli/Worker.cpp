#include "tools/cli/Worker.h"

#include <utility>

#include "tools/batch/ExportScenes.h"
#include "tools/cli/InfoReport.h"
#include "tools/jobs/JobWorker.h"
#include "tools/terminal/Text.h"

namespace tools {

ExitStatus runWorker(const std::string& channel) {
  JobWorker worker(channel);
  if (!worker.ok()) {
    complain("--worker is what the program starts itself with; use --jobs");
    return kUsage;
  }
  Message order = worker.nextOrder();
  if (order.at("do") == "export") exportOrdered(worker, std::move(order));
  reportOrdered(worker, std::move(order));
}

}  // namespace tools
