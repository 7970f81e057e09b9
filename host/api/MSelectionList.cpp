#include <maya/MSelectionList.h>

#include "host/api/Handles.h"
#include "host/api/Status.h"
#include "host/scene/Scene.h"

namespace {

MStatus addItem(host::Selection& items, host::SelectionItem item, bool merge) {
  if (merge)
    items.addIfMissing(std::move(item));
  else
    items.add(std::move(item));
  return MStatus::kSuccess;
}

const host::SelectionItem* livingItem(const host::Selection& items, unsigned int index) {
  if (index >= items.size()) return nullptr;
  const host::SelectionItem& item = items.items()[index];
  return item.node->isAlive() ? &item : nullptr;
}

host::ComponentPtr componentOf(const MObject& object) {
  return std::dynamic_pointer_cast<host::Component>(object.hostObject());
}

}  // namespace

MSelectionList::MSelectionList() : items_(std::make_unique<host::Selection>()) {}

MSelectionList::MSelectionList(const MSelectionList& other)
    : items_(std::make_unique<host::Selection>(*other.items_)) {}

MSelectionList& MSelectionList::operator=(const MSelectionList& other) {
  *items_ = *other.items_;
  return *this;
}

MSelectionList::~MSelectionList() = default;

MStatus MSelectionList::add(const MObject& object, bool mergeWithExisting) {
  const host::NodePtr node = host::nodeOf(object);
  if (!node || node == host::Scene::current().world()) return MStatus::kInvalidParameter;
  return addItem(*items_, host::SelectionItem::of(node), mergeWithExisting);
}

MStatus MSelectionList::add(const MDagPath& path, const MObject& component,
                            bool mergeWithExisting) {
  const host::DagPath* hostPath = host::pathOf(path);
  const host::ComponentPtr hostComponent = componentOf(component);
  const bool isWrong = !component.isNull() && !hostComponent;
  if (!hostPath || hostPath->isEmpty() || isWrong) return MStatus::kInvalidParameter;
  return addItem(*items_, host::SelectionItem::of(*hostPath, hostComponent), mergeWithExisting);
}

MStatus MSelectionList::add(const MString& pattern, bool searchChildNamespaces) {
  const auto found = host::Scene::current().match(pattern.asChar(), searchChildNamespaces);
  for (const host::SelectionItem& item : found) items_->add(item);
  return found.empty() ? MStatus::kInvalidParameter : MStatus::kSuccess;
}

unsigned int MSelectionList::length(MStatus* status) const {
  host::report(status, true);
  return static_cast<unsigned int>(items_->size());
}

MStatus MSelectionList::clear() {
  items_->clear();
  return MStatus::kSuccess;
}

MStatus MSelectionList::remove(unsigned int index) {
  if (index >= items_->size()) return MStatus::kInvalidParameter;
  items_->removeAt(index);
  return MStatus::kSuccess;
}

MStatus MSelectionList::getDependNode(unsigned int index, MObject& node) const {
  const host::SelectionItem* item = livingItem(*items_, index);
  if (!item) return MStatus::kInvalidParameter;
  node = MObject(item->node);
  return MStatus::kSuccess;
}

MStatus MSelectionList::getDagPath(unsigned int index, MDagPath& path) const {
  MObject component;
  return getDagPath(index, path, component);
}

MStatus MSelectionList::getDagPath(unsigned int index, MDagPath& path, MObject& component) const {
  const host::SelectionItem* item = livingItem(*items_, index);
  if (!item || item->path.isEmpty() || !item->path.isAlive()) return MStatus::kInvalidParameter;
  path = MDagPath(item->path);
  component = MObject(item->component);
  return MStatus::kSuccess;
}

MStatus MSelectionList::getSelectionStrings(MStringArray& names) const {
  names.clear();
  for (const host::SelectionItem& item : items_->items())
    for (const std::string& name : item.names()) names.append(MString(name.c_str()));
  return MStatus::kSuccess;
}

bool MSelectionList::hasItem(const MObject& object, MStatus* status) const {
  const host::NodePtr node = host::nodeOf(object);
  host::report(status, node != nullptr);
  return node && items_->contains(host::SelectionItem::of(node));
}

bool MSelectionList::hasItem(const MDagPath& path, const MObject& component,
                             MStatus* status) const {
  const host::DagPath* hostPath = host::pathOf(path);
  host::report(status, hostPath != nullptr);
  if (!hostPath || hostPath->isEmpty()) return false;
  return items_->contains(host::SelectionItem::of(*hostPath, componentOf(component)));
}
