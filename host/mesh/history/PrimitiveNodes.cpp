#include "host/mesh/MeshPrimitives.h"
#include "host/mesh/history/HistoryNodes.h"

namespace host {

std::string makePrimitiveNamed(const char* typeName, HistoryParameters& node, MeshData& mesh) {
  return evaluatePrimitive(
      typeName,
      [&node](std::string_view shortName, std::string_view longName) {
        // Both come from literals.
        return node.number(ParameterName{shortName.data(), longName.data()});
      },
      mesh);
}

}  // namespace host
