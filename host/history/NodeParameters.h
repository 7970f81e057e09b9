#ifndef MORVANE_HOST_HISTORY_NODEPARAMETERS_H_
#define MORVANE_HOST_HISTORY_NODEPARAMETERS_H_

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "host/mesh/history/HistoryNode.h"
#include "host/scene/MeshHistory.h"
#include "host/scene/Node.h"

namespace host {

// What a history node is set to, whether the host knows its type or keeps its statements as
// written.
class NodeParameters : public HistoryParameters {
 public:
  // Makes the mesh that a plug hands out; null when it cannot.
  using MakeMesh = std::function<const MeshData*(const Plug& source)>;

  // Parameters for making what `output` hands out. The node's notes go to `history`, which must
  // live longer.
  NodeParameters(const Plug& output, MakeMesh makeMesh, MeshHistory& history);

  using HistoryParameters::number;
  std::optional<double> number(const ParameterName& name) const override;
  std::vector<double> numbers(const ParameterName& name) const override;
  std::map<int, std::vector<double>> elements(const ParameterName& name) const override;
  std::string text(const ParameterName& name) const override;
  std::optional<std::vector<int>> components(const ParameterName& name, ElementKind kind,
                                             int count) const override;
  void forEach(const ParameterName& name, const Visitor& visit) const override;
  std::vector<int> componentsBeside(const ParameterPath& path, const ParameterName& name,
                                    ElementKind kind, int count) const override;
  bool forEachMesh(const ParameterName& name, const MeshVisitor& visit) override;
  std::optional<std::vector<int>> affectedVertices(int count) const override;
  int outputIndex() const override;
  void note(const std::string& text) override;
  void noteOlderUvs() override;
  bool hasOlderUvs() const override { return history_.hasOlderUvs; }
  void dropUvNumbers() override { history_.hasUvNumbers = false; }
  bool hasUvNumbers() const override { return history_.hasUvNumbers; }
  void keepNumbersOf(int faces, int points, int edges) override;
  void dropNumbers() override;
  int knownPoints() const override { return history_.knownPoints; }

 private:
  void checkNumbers(ElementKind kind, const std::vector<int>& elements) const;
  const AttributeValue* find(const ParameterName& name) const;
  std::vector<double> numbersInto(const Plug& destination, const Plug& source) const;
  void noteInput(const NodePtr& node) const;

  Plug output_;
  NodePtr node_;
  MakeMesh makeMesh_;
  MeshHistory& history_;
  mutable std::unordered_set<const Node*> noted_;  // in history_.inputs already
};

// The plug that is connected into an attribute of the node; `path` and `longPath` spell it.
std::optional<Plug> historySource(const NodePtr& node, std::string_view path,
                                  std::string_view longPath);

}  // namespace host

#endif  // MORVANE_HOST_HISTORY_NODEPARAMETERS_H_
