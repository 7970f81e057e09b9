// A TGA file of any bytes: it is refused and the document stays what it was, or the document has
// its picture, and saves as a PSD file that loads again. tests/psd looks at the pixels.
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
  require(again.layerCount == 2 && again.findLayer("$diffuse") == 1,
          "the picture's layer is not over the base layer");
  for (std::uint32_t channel = 0; channel < 4; ++channel)
    require(again.decompressChannel(1, channel), "a plane of the picture is damaged");
  return 0;
}
