#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include "library/DocumentFile.h"
#include "library/Goblins.h"
#include "python/Native.h"

namespace morvane_python {
namespace {

using morvane::Goblin;
using morvane::GoblinLayout;
using morvane::GoblinPoolVertex;
using morvane::GoblinTile;
using SharedTile = std::shared_ptr<GoblinTile>;
using Floats = py::array_t<float, py::array::c_style>;
using Indices = py::array_t<std::int32_t, py::array::c_style>;

template <typename T, std::size_t N>
py::array_t<T> toArray(const std::vector<std::array<T, N>>& values) {
  const py::ssize_t count = static_cast<py::ssize_t>(values.size());
  py::array_t<T> array(std::vector<py::ssize_t>{count, static_cast<py::ssize_t>(N)});
  if (count != 0)
    std::memcpy(array.mutable_data(), values.data(), values.size() * sizeof values[0]);
  return array;
}

// The package has seen to the shape: n rows of N.
template <typename T, std::size_t N>
std::vector<std::array<T, N>> fromArray(const py::array_t<T, py::array::c_style>& array) {
  if (array.ndim() != 2 || array.shape(1) != static_cast<py::ssize_t>(N))
    throw py::value_error("an array has another shape than (n, " + std::to_string(N) + ")");
  std::vector<std::array<T, N>> values(static_cast<std::size_t>(array.shape(0)));
  if (!values.empty()) std::memcpy(values.data(), array.data(), values.size() * sizeof values[0]);
  return values;
}

GoblinLayout layoutNamed(const std::string& name) {
  if (name == "named") return GoblinLayout::kNamed;
  if (name == "tagged") return GoblinLayout::kTagged;
  throw py::value_error("layout is neither \"named\" nor \"tagged\"");
}

std::size_t indexIn(const GoblinTile& tile, std::size_t index) {
  if (index >= tile.size()) throw py::index_error("there is no such goblin");
  return index;
}

py::object readTile(SharedDocument& shared) {
  DocumentUse use(shared);
  auto tile = std::make_shared<GoblinTile>();
  morvane::Status status;
  {
    const py::gil_scoped_release unlocked;
    status = GoblinTile::read(*use, *tile);
  }
  if (status.code() == morvane::StatusCode::kNotFound) return py::none();
  check(status);
  return py::cast(tile);
}

SharedTile parseTile(const py::object& blob) {
  const BytesArgument content(blob, "blob");
  auto tile = std::make_shared<GoblinTile>();
  std::unique_ptr<std::uint8_t[]> copy(new std::uint8_t[content.size()]);
  if (content.size() != 0) std::memcpy(copy.get(), content.data(), content.size());
  check(GoblinTile::parse(std::move(copy), content.size(), *tile));
  return tile;
}

// The pool where it lies; the array keeps the tile.
py::array poolOf(const SharedTile& tile, const py::dtype& type) {
  const morvane::ArrayView<GoblinPoolVertex> pool = tile->vertices();
  const py::array array(type, {static_cast<py::ssize_t>(pool.size())},
                        {static_cast<py::ssize_t>(sizeof(GoblinPoolVertex))}, pool.data(),
                        py::cast(tile));
  array.attr("flags").attr("writeable") = false;
  return array;
}

// name, texture, positions, normals, uvs, triangles: the arguments of morvane.Goblin.
py::tuple meshOf(const GoblinTile& tile, std::size_t index) {
  const Goblin goblin = tile.goblin(indexIn(tile, index));
  return py::make_tuple(shownText(goblin.name.data(), goblin.name.size()),
                        shownText(goblin.texture.data(), goblin.texture.size()),
                        toArray(goblin.positions), toArray(goblin.normals), toArray(goblin.uvs),
                        toArray(goblin.triangles));
}

Indices indicesOf(const GoblinTile& tile, std::size_t index) {
  const std::vector<std::int32_t> used = tile[indexIn(tile, index)].vertices();
  return Indices(static_cast<py::ssize_t>(used.size()), used.data());
}

py::object findGoblin(const GoblinTile& tile, const py::str& name) {
  const std::ptrdiff_t found = tile.find(storedText(name, "name"));
  return found < 0 ? py::object(py::none()) : py::int_(found);
}

// Each goblin is a tuple as meshOf() gives it.
std::vector<Goblin> fromTuples(const py::list& tuples) {
  std::vector<Goblin> goblins;
  for (const py::handle item : tuples) {
    const auto fields = item.cast<py::tuple>();
    Goblin goblin;
    goblin.name = storedText(fields[0].cast<py::str>(), "name");
    goblin.texture = storedText(fields[1].cast<py::str>(), "texture");
    goblin.positions = fromArray<float, 3>(fields[2].cast<Floats>());
    goblin.normals = fromArray<float, 3>(fields[3].cast<Floats>());
    goblin.uvs = fromArray<float, 2>(fields[4].cast<Floats>());
    goblin.triangles = fromArray<std::int32_t, 3>(fields[5].cast<Indices>());
    goblins.push_back(std::move(goblin));
  }
  return goblins;
}

void setGoblins(SharedDocument& shared, const py::list& tuples, const std::string& layout) {
  const std::vector<Goblin> goblins = fromTuples(tuples);
  const GoblinLayout wanted = layoutNamed(layout);
  DocumentUse use(shared);
  morvane::Status status;
  {
    const py::gil_scoped_release unlocked;
    status = morvane::setGoblins(*use, goblins, wanted);
  }
  check(status);
  ++shared.generation;
}

py::bytes encode(const py::list& tuples, const std::string& layout) {
  std::vector<std::uint8_t> blob;
  check(morvane::encodeGoblins(fromTuples(tuples), layoutNamed(layout), blob));
  return py::bytes(reinterpret_cast<const char*>(blob.data()), blob.size());
}

}  // namespace

void bindGoblins(py::module_& module) {
  py::class_<GoblinTile, SharedTile>(module, "Tile")
      .def("__len__", &GoblinTile::size)
      .def_property_readonly("layout",
                             [](const GoblinTile& tile) {
                               return tile.layout() == GoblinLayout::kNamed ? "named" : "tagged";
                             })
      .def("pool", &poolOf)
      .def("mesh", &meshOf)
      .def("indices", &indicesOf)
      .def("stored_triangles",
           [](const GoblinTile& tile, std::size_t index) {
             return toArray(tile[indexIn(tile, index)].triangles());
           })
      .def("find", &findGoblin);
  module.def("read_tile", &readTile);
  module.def("parse_tile", &parseTile);
  module.def("set_goblins", &setGoblins);
  module.def("encode", &encode);
}

}  // namespace morvane_python
