// Writes the inputs that fuzzing starts from where the examples have none: fuzz-seeds FOLDER puts
// them into a folder for each target there.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "export/GoblinGeometry.h"
#include "psd/PackBits.h"
#include "psd/PsdDocument.h"

using namespace morvane;

namespace {

std::filesystem::path folder;

std::string pathOf(const char* target, const std::string& name) {
  std::filesystem::create_directories(folder / target);
  return (folder / target / name).string();
}

void write(const char* target, const std::string& name, const std::string& bytes) {
  std::ofstream(pathOf(target, name), std::ios::binary) << bytes;
}

std::vector<std::uint8_t> pattern(std::size_t size) {
  std::vector<std::uint8_t> bytes(size);
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<std::uint8_t>(i * i / 7);
  return bytes;
}

// Documents, from a blank one to one with everything that a document of this system can have.
bool writeDocuments() {
  PsdDocument document(7, 5);
  bool ok = document.save(pathOf("PsdFuzz", "blank.psd").c_str());
  ok = ok && document.addLayer("a layer") == 1;
  ok = ok && document.setLayerPixels(1, 0, 0, 7, 5, pattern(4 * 7 * 5).data());
  ok = ok && document.decompressChannel(1, 2);
  ok = ok && document.save(pathOf("PsdFuzz", "layer.psd").c_str());
  ok = ok && document.addDataLayer(kGoblinLayerName, 99, pattern(99).data());
  return ok && document.save(pathOf("PsdFuzz", "data.psd").c_str());
}

std::string be(std::uint32_t value, int bytes) {
  std::string text;
  for (int i = bytes; i-- > 0;) text += static_cast<char>(value >> 8 * i);
  return text;
}
std::string sized(const std::string& bytes) {
  return be(static_cast<std::uint32_t>(bytes.size()), 4) + bytes;
}

// What only other programs write: masks, blocks, names of all kinds, resources with names, a
// negative count, padding, blocks behind the global mask.
void writeForeignDocument() {
  const auto block = [](const char* key, const std::string& data) {
    return std::string("8BIM") + key + sized(data);
  };
  const auto layer = [&](const std::string& name) {
    const std::string extra = sized(std::string(20, 'm')) + sized(std::string(16, 'r')) + name +
                              block("luni", be(1, 4) + "AB") + block("lyid", be(3, 4)) +
                              block("lsct", be(1, 4));
    return std::string(8, '\0') + be(2, 4) + be(2, 4) + be(2, 2) + be(0, 2) + be(6, 4) +
           be(0xFFFE, 2) + be(10, 4) + "8BIMnorm" + "\xFF" + std::string(3, '\0') + sized(extra);
  };
  const std::string channels =
      be(0, 2) + "wxyz" + be(1, 2) + be(2, 2) + be(2, 2) + "\xFF" + "a" + "\xFF" + "b";
  const std::string info = be(0xFFFE, 2) + layer("\3abc") + layer("\4abcd" + std::string(3, '\0')) +
                           channels + channels + "pp";
  const std::string resources = "8BIM" + be(1044, 2) + be(0, 2) + sized(be(9, 4)) + "8BIM" +
                                be(1026, 2) + "\2ab" + be(0, 1) + sized("1234");
  write("PsdFuzz", "foreign.psd",
        "8BPS" + be(1, 2) + std::string(6, '\0') + be(4, 2) + be(2, 4) + be(2, 4) + be(8, 2) +
            be(3, 2) + sized("") + sized(resources) +
            sized(sized(info) + sized(std::string(14, 'g')) + block("Patt", "1234")) + be(0, 2) +
            "rrrrggggbbbbaaaa");
}

void writeImages() {
  for (const int bits : {24, 32}) {
    const auto pixels = pattern(static_cast<std::size_t>(6 * 4 * bits / 8));
    std::string header(18, '\0');
    header[0] = 2;
    header[2] = 2;
    header[12] = 6;
    header[14] = 4;
    header[16] = static_cast<char>(bits);
    write("TgaFuzz", std::to_string(bits) + ".tga",
          header + "id" + std::string(pixels.begin(), pixels.end()));
  }
}

void writePlanes() {
  std::vector<std::uint8_t> plane(40 * 3, 9);
  const auto mixed = pattern(60);
  std::copy(mixed.begin(), mixed.end(), plane.begin());
  std::uint32_t length = 0;
  const auto packed = packBitsEncodePlane(40, 3, plane.data(), length);
  const std::string head = be(40, 2) + be(3, 2) + "f";
  write("PackBitsFuzz", "packed", head + std::string(packed.get(), packed.get() + length));
  write("PackBitsFuzz", "plane", head + std::string(plane.begin(), plane.end()));
}

void writeBlobs() {
  for (const GoblinLayout layout : {GoblinLayout::kNamed, GoblinLayout::kTagged}) {
    WeldedMesh mesh;
    mesh.vertices.resize(4);
    for (std::size_t i = 0; i < 4; ++i) mesh.vertices[i].position.x = static_cast<float>(i);
    mesh.triangles = {{0, 1, 2}, {0, 2, 3}};
    GoblinGeometryBuilder builder;
    for (const char* name : {"rock", "tuft"}) {
      appendGoblin(mesh, Matrix44(), layout, name, "", builder);
      const std::uint64_t size = encodedGoblinGeometrySize(builder, layout);
      std::string bytes(size, '\0');
      encodeGoblinGeometry(builder, layout, reinterpret_cast<std::uint8_t*>(bytes.data()), size);
      const char* const kind = layout == GoblinLayout::kNamed ? "named-" : "tagged-";
      write("BlobFuzz", kind + std::string(name), bytes);
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: fuzz-seeds FOLDER\n", stderr);
    return 2;
  }
  folder = argv[1];
  writeForeignDocument();
  writeImages();
  writePlanes();
  writeBlobs();
  return writeDocuments() ? 0 : 1;
}
