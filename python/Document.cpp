#include <memory>
#include <utility>
#include <vector>

#include "library/DocumentFile.h"
#include "library/Pixels.h"
#include "psd/PsdFormat.h"
#include "python/Native.h"

namespace morvane_python {
namespace {

using morvane::PsdDocument;
using morvane::PsdLayer;
using Shared = std::shared_ptr<SharedDocument>;

constexpr std::size_t kMaxName = 255;  // bytes of a layer's name

// A layer as it was when Document.layers was asked for.
struct LayerEntry {
  Shared shared;
  std::uint64_t generation;
  std::int32_t index;
  py::str name;
  bool hidden;
  int opacity;
  py::str blend;
  py::tuple rect;
  py::tuple channels;
};

std::string filePath(const py::object& path) {
  const py::object encoded = py::module_::import("os").attr("fsencode")(path);
  return encoded.cast<std::string>();
}

Shared openFile(const py::object& path) {
  auto shared = std::make_shared<SharedDocument>();
  const std::string name = filePath(path);
  morvane::Status status;
  {
    const py::gil_scoped_release unlocked;
    status = morvane::loadDocument(name, shared->document);
  }
  check(status, name);
  return shared;
}

Shared openBytes(const py::object& bytes) {
  auto shared = std::make_shared<SharedDocument>();
  const BytesArgument content(bytes, "source");
  morvane::Status status;
  {
    const py::gil_scoped_release unlocked;
    status = morvane::parseDocument(content.data(), content.size(), shared->document);
  }
  check(status);
  return shared;
}

Shared makeBlank(std::int64_t width, std::int64_t height) {
  for (const auto& [side, name] : {std::pair{width, "width"}, std::pair{height, "height"}})
    if (side < 1 || side > std::int64_t{PsdDocument::kMaxSide})
      throw py::value_error(std::string(name) + " is not from 1 to 65535");
  auto shared = std::make_shared<SharedDocument>();
  shared->document.reset(static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height));
  if (shared->document.rows == 0) throw std::bad_alloc();
  return shared;
}

// Whether the Unicode name only repeats the bytes of the other, as names that are made here do.
bool repeatsName(const PsdLayer& layer, const std::string& name) {
  if (layer.unicodeCount != name.size()) return false;
  for (std::size_t i = 0; i < name.size(); ++i)
    if (layer.unicodeChars[i] != static_cast<unsigned char>(name[i])) return false;
  return true;
}

py::str nameOf(const PsdLayer& layer) {
  const std::string name = layer.name ? layer.name.get() : "";
  if (layer.unicodeCount == 0 || layer.unicodeChars == nullptr || repeatsName(layer, name))
    return shownText(name.data(), name.size());
  int order = 0;
  std::uint32_t count = layer.unicodeCount;
  while (count > 0 && layer.unicodeChars[count - 1] == 0) --count;
  PyObject* const text =
      PyUnicode_DecodeUTF16(reinterpret_cast<const char*>(layer.unicodeChars.get()),
                            2 * static_cast<Py_ssize_t>(count), "surrogatepass", &order);
  if (text == nullptr) throw py::error_already_set();
  return py::reinterpret_steal<py::str>(text);
}

py::tuple channelsOf(const PsdLayer& layer) {
  py::tuple ids(layer.channelCount);
  for (std::uint32_t c = 0; c < layer.channelCount; ++c)
    ids[c] = static_cast<std::int16_t>(layer.channelInfos[c].id);
  return ids;
}

py::list layersOf(const Shared& shared) {
  DocumentUse use(*shared);
  py::list layers;
  for (std::int32_t i = 0; i < use->layerCount; ++i) {
    const PsdLayer& layer = use->layers[i];
    layers.append(LayerEntry{
        shared, shared->generation, i, nameOf(layer), (layer.flags & morvane::kLayerHidden) != 0,
        layer.opacity, shownText(layer.blendKey, 4),
        py::make_tuple(layer.left, layer.top, layer.right, layer.bottom), channelsOf(layer)});
  }
  return layers;
}

py::array toArray(morvane::Pixels pixels) {
  const std::vector<py::ssize_t> shape = {pixels.rows, pixels.columns,
                                          static_cast<py::ssize_t>(pixels.channels.size())};
  std::uint8_t* const bytes = pixels.bytes.release();
  const py::capsule owner(bytes, [](void* owned) { delete[] static_cast<std::uint8_t*>(owned); });
  return py::array_t<std::uint8_t>(shape, bytes, owner);
}

py::array layerPixels(const LayerEntry& layer) {
  morvane::Pixels pixels;
  morvane::Status status;
  DocumentUse use(*layer.shared);
  if (layer.generation != layer.shared->generation)
    throwError("stale", "layers came or went since Document.layers was asked for: ask again");
  {
    const py::gil_scoped_release unlocked;
    status = morvane::readLayerPixels(*use, layer.index, pixels);
  }
  check(status);
  return toArray(std::move(pixels));
}

py::array mergedPixels(SharedDocument& shared) {
  morvane::Pixels pixels;
  morvane::Status status;
  DocumentUse use(shared);
  {
    const py::gil_scoped_release unlocked;
    status = morvane::readMergedPixels(*use, pixels);
  }
  check(status);
  return toArray(std::move(pixels));
}

// By the bytes of the name, else by the name that Layer.name shows; -1.
std::int32_t findLayer(const PsdDocument& document, const std::string& stored,
                       const py::str& name) {
  const std::int32_t found = document.findLayer(stored.c_str());
  for (std::int32_t i = 0; found < 0 && i < document.layerCount; ++i)
    if (nameOf(document.layers[i]).equal(name)) return i;
  return found;
}

void addDataLayer(SharedDocument& shared, const py::str& name, const py::object& data) {
  const std::string stored = storedText(name, "name");
  const BytesArgument content(data, "data");
  if (stored.size() > kMaxName) throw py::value_error("name has over 255 bytes");
  DocumentUse use(shared);
  const std::uint64_t room = 4 * std::uint64_t{use->rows} * use->columns;
  if (content.size() + 4 >= room || content.size() > UINT32_MAX) {
    throwError("no-room", std::to_string(content.size()) + " bytes do not fit a layer of " +
                              std::to_string(use->columns) + " x " + std::to_string(use->rows) +
                              " pixels");
  }
  morvane::Status status;
  {
    const py::gil_scoped_release unlocked;
    use->addDataLayer(stored.c_str(), static_cast<std::uint32_t>(content.size()), content.data(),
                      &status);
  }
  check({status.code(), "the document takes no layer: " + status.text()});
  ++shared.generation;
}

py::object readDataLayer(SharedDocument& shared, const py::str& name) {
  const std::string stored = storedText(name, "name");
  DocumentUse use(shared);
  const std::int32_t layer = findLayer(*use, stored, name);
  if (layer < 0 || !use->layers[layer].name) return py::none();
  std::uint32_t size = 0;
  std::unique_ptr<std::uint8_t[]> bytes;
  {
    const py::gil_scoped_release unlocked;
    bytes = use->peekDataLayer(use->layers[layer].name.get(), size);
  }
  if (bytes == nullptr) return py::none();
  return py::bytes(reinterpret_cast<const char*>(bytes.get()), size);
}

void removeLayer(SharedDocument& shared, const py::str& name) {
  const std::string stored = storedText(name, "name");
  DocumentUse use(shared);
  const std::int32_t layer = findLayer(*use, stored, name);
  if (layer < 0) {
    PyErr_SetObject(PyExc_KeyError, name.ptr());
    throw py::error_already_set();
  }
  if (layer == 0) throw py::value_error("name is the bottom layer, which stays");
  use->removeLayer(layer);
  ++shared.generation;
}

void saveFile(SharedDocument& shared, const py::object& path) {
  const std::string name = filePath(path);
  DocumentUse use(shared);
  morvane::Status status;
  {
    const py::gil_scoped_release unlocked;
    status = morvane::saveDocument(*use, name);
  }
  check(status, name);
}

py::bytes toBytes(SharedDocument& shared) {
  DocumentUse use(shared);
  std::vector<std::uint8_t> bytes;
  morvane::Status status;
  {
    const py::gil_scoped_release unlocked;
    status = morvane::writeDocument(*use, bytes);
  }
  check(status);
  return py::bytes(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

py::object faultOf(SharedDocument& shared) {
  DocumentUse use(shared);
  const std::string header = use->headerFault();
  const std::string fault = header.empty() ? use->mergedFault() : header;
  return fault.empty() ? py::object(py::none()) : shownText(fault.data(), fault.size());
}

}  // namespace

void bindDocument(py::module_& module) {
  py::class_<LayerEntry>(module, "Layer")
      .def_readonly("name", &LayerEntry::name)
      .def_readonly("hidden", &LayerEntry::hidden)
      .def_readonly("opacity", &LayerEntry::opacity)
      .def_readonly("blend", &LayerEntry::blend)
      .def_readonly("rect", &LayerEntry::rect)
      .def_readonly("channels", &LayerEntry::channels)
      .def("pixels", &layerPixels);
  const auto number = [](auto member) {
    return [member](SharedDocument& shared) { return (*DocumentUse(shared)).*member; };
  };
  py::class_<SharedDocument, Shared>(module, "Document")
      .def_property_readonly("width", number(&PsdDocument::columns))
      .def_property_readonly("height", number(&PsdDocument::rows))
      .def_property_readonly("depth", number(&PsdDocument::depth))
      .def_property_readonly("mode", number(&PsdDocument::colourMode))
      .def_property_readonly("fault", &faultOf)
      .def_property_readonly("layers", &layersOf)
      .def("merged", &mergedPixels)
      .def("add_data_layer", &addDataLayer)
      .def("read_data_layer", &readDataLayer)
      .def("remove_layer", &removeLayer)
      .def("save", &saveFile)
      .def("to_bytes", &toBytes);
  module.def("open_file", &openFile);
  module.def("open_bytes", &openBytes);
  module.def("make_blank", &makeBlank);
}

}  // namespace morvane_python
