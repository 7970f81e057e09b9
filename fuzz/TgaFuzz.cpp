// A TGA file of any bytes: it is refused and the document stays what it was, or its pixels are in
// the document, which saves as a PSD file that loads again.
#include <string>

#include "fuzz/FuzzTools.h"
#include "psd/PsdDocument.h"

using morvane::PsdDocument;
using namespace morvane::fuzz;

namespace {

constexpr std::size_t kImportMultiple = 20;                  // psd/TgaImport.h
constexpr std::size_t kImportConstant = 2 * kSmallConstant;  // and what packing starts with

std::string saved(const PsdDocument& document) {
  require(document.save(scratchPath("out.psd").c_str()), "a document cannot be saved");
  return readScratch("out.psd");
}

// The picture's planes against the pixels of the file, which is stored bottom row first.
void requirePixels(PsdDocument& document, const std::uint8_t* file) {
  const std::size_t width = file[12] + 256u * file[13];
  const std::size_t height = file[14] + 256u * file[15];
  const std::size_t pixelSize = file[16] / 8u;
  const std::uint8_t* const pixels = file + 18 + file[0];
  require(document.columns == width && document.rows == height, "an image of another size");
  const std::int32_t layer = document.findLayer("$diffuse");
  require(layer == 1 && document.layerCount == 2, "the picture's layer is not over the base layer");
  for (std::uint32_t channel = 0; channel < 4; ++channel) {
    require(document.decompressChannel(layer, channel), "a plane of the picture is damaged");
    const std::uint8_t* const plane = document.layerChannels(layer)[channel].data.get();
    const std::size_t byteInPixel = channel == 0 ? 3 : 3 - channel;
    for (std::size_t i = 0; i < width * height; ++i) {
      const std::size_t mirrored = (height - 1 - i / width) * width + i % width;
      const unsigned wanted =
          byteInPixel < pixelSize ? pixels[mirrored * pixelSize + byteInPixel] : 255u;
      require(plane[i] == wanted, "a pixel has another value");
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string path = writeScratch("in.tga", {reinterpret_cast<const char*>(data), size});
  PsdDocument document(3, 2);
  static const std::string before = saved(document);
  const MemoryWatch watch;
  const bool loaded = document.load(path.c_str());
  watch.requireAtMost(kImportMultiple, size, kImportConstant);
  if (!loaded) {
    require(saved(document) == before, "an import that failed changed the document");
    return 0;
  }
  const std::string bytes = saved(document);
  PsdDocument again(1, 1);
  require(again.load(writeScratch("again.psd", bytes).c_str()), "what was saved does not load");
  require(saved(again) == bytes, "what was saved and loaded saves as other bytes");
  requirePixels(again, data);
  return 0;
}
