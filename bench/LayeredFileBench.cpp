#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include "bench/Comparison.h"
#include "bench/FileBytes.h"
#include "bench/LayeredFiles.h"
#include "bench/Scratch.h"
#include "psd/PackBits.h"
#include "psd/PsdDocument.h"
#include "psd/PsdReader.h"

// Layered files beside what cannot be avoided: reading their bytes, and writing them.
namespace bench {
namespace {

constexpr std::uint32_t kSides[] = {256, 1024, 4096};
constexpr std::uint32_t kLargest = 4096;

// Lays out `it` for a file; false when the file could not be made.
bool setFile(Comparison& it, const std::string& path) {
  if (path.empty()) it.problem = "the file could not be made";
  it.bytes = static_cast<double>(sizeOf(path));
  return !path.empty();
}

Comparison openBesideRead(std::uint32_t side) {
  const std::string path = layeredFile(side);
  Comparison it;
  it.peerName = "read into a fresh buffer";
  it.target = atMost(1.3);
  it.rounds = 31;
  it.prepare = [] { ::malloc_trim(0); };  // so that memory is as fresh as in a new process
  if (!setFile(it, path)) return it;
  it.ours = [path] {
    morvane::PsdDocument document(1, 1);
    if (!document.load(path.c_str())) std::abort();
  };
  it.peer = [path, size = sizeOf(path)] {
    const std::unique_ptr<std::uint8_t[]> buffer(new std::uint8_t[size]);
    if (!readInto(path, buffer.get(), size)) std::abort();
    benchmark::DoNotOptimize(buffer.get());
  };
  return it;
}

// The sections are parsed again and again from the same bytes.
double parseTime(const std::string& path) {
  const std::size_t size = sizeOf(path);
  std::unique_ptr<std::uint8_t[]> bytes(new std::uint8_t[size]);
  readInto(path, bytes.get(), size);
  morvane::PsdDocument document(1, 1);
  document.fileBytes = std::move(bytes);
  Comparison it;
  it.ours = [&] {
    std::unique_ptr<std::uint8_t[]> file = std::move(document.fileBytes);
    document.reset(1, 1);
    if (!morvane::parsePsd(std::move(file), size, document).ok()) std::abort();
  };
  return medianTime(it);
}

void parseBesideRead(benchmark::State& state, const std::string& name, std::uint32_t side) {
  Comparison read = openBesideRead(side);
  if (!read.problem.empty()) return state.SkipWithError(read.problem.c_str());
  read.ours = read.peer;
  double ours = 0, peer = 0;
  for (auto _ : state) {
    ours = parseTime(layeredFile(side));
    peer = medianTime(read);
  }
  addRow({name, read.peerName, "s", ours, peer, 0, ours / peer, atMost(0.02)});
}

Comparison exportBesideCopy() {
  const std::string path = layeredFile(kLargest);
  Comparison it;
  it.peerName = "read, write, flush and rename";
  it.target = atMost(1.5);
  it.waits = true;
  if (!setFile(it, path)) return it;
  it.ours = [path] {
    if (!replaceDataLayer(path)) std::abort();
  };
  it.peer = [path, buffer = std::make_shared<Bytes>(sizeOf(path))] {
    if (!readInto(path, buffer->data(), buffer->size())) std::abort();
    replaceFile(path, buffer->data(), buffer->size());
  };
  return it;
}

// Runs a program and waits for it; what it prints, or "" when it fails.
std::string outputOf(const std::string& command) {
  std::FILE* const pipe = ::popen(command.c_str(), "r");
  std::string text;
  char part[256];
  while (pipe && std::fgets(part, sizeof part, pipe)) text += part;
  return pipe && ::pclose(pipe) == 0 ? text : std::string();
}

std::string exportCommand() {
  const std::string program = std::filesystem::read_symlink("/proc/self/exe").string();
  return program + " --replace-data-layer=" + layeredFile(kLargest);
}

Comparison exportBesideImageMagick() {
  Comparison it;
  it.peerName = "ImageMagick reads and writes";
  it.target = atLeast(20);
  it.waits = true;
  it.rounds = 3;
  if (!setFile(it, layeredFile(kLargest))) return it;
  const std::string output = scratchFolder() + "/converted.psd";
  it.ours = [] {
    if (outputOf(exportCommand()).empty()) std::abort();
  };
  it.peer = [command = "convert " + layeredFile(kLargest) + " " + output] {
    if (std::system(command.c_str()) != 0) std::abort();
  };
  return it;
}

void exportMemory(benchmark::State& state, const std::string& name) {
  constexpr double kMebibyte = 1 << 20;
  std::string printed;
  for (auto _ : state) printed = outputOf(exportCommand());
  const double peak = std::strtod(printed.c_str(), nullptr) * 1024 / kMebibyte;
  const double allowed = 1.3 * static_cast<double>(sizeOf(layeredFile(kLargest))) / kMebibyte + 32;
  if (peak <= 0) return state.SkipWithError("the program failed");
  addRow({name, "1.3 × the file + 32 MiB", "MiB", peak, allowed, 0, peak / allowed, atMost(1)});
}

// Adding to a document that has no layers makes its base layer as well.
void emptyDataLayer(benchmark::State& state, const std::string& name) {
  constexpr double kAllowed = 5e-3;
  morvane::PsdDocument document(kLargest, kLargest);
  Comparison it;
  it.ours = [&] { document.addDataLayer("data", 0, nullptr); };
  it.prepare = [&] { document.reset(kLargest, kLargest); };
  double time = 0;
  for (auto _ : state) time = medianTime(it);
  addRow({name, "the limit", "s", time, kAllowed, 0, time / kAllowed, atMost(1)});
}

Comparison importBesidePacking(unsigned bits) {
  const std::string path = tgaFile(kLargest, bits);
  const std::string saved = scratchFolder() + "/imported.psd";
  Comparison it;
  it.peerName = "pack its four planes";
  it.target = atMost(3);
  if (!setFile(it, path)) return it;
  it.ours = [path, saved] {
    morvane::PsdDocument document(1, 1);
    if (!document.load(path.c_str()) || !document.save(saved.c_str())) std::abort();
  };
  morvane::PsdDocument imported(1, 1);
  auto planes = std::make_shared<std::vector<Bytes>>();
  imported.load(path.c_str());
  for (std::uint32_t c = 0; c < 4; ++c) {
    imported.decompressChannel(1, c);
    const std::uint8_t* const plane = imported.layerChannels(1)[c].data.get();
    planes->emplace_back(plane, plane + std::size_t{kLargest} * kLargest);
  }
  it.peer = [planes] {
    for (const Bytes& plane : *planes) {
      std::uint32_t length = 0;
      benchmark::DoNotOptimize(
          morvane::packBitsEncodePlane(kLargest, kLargest, plane.data(), length));
    }
  };
  return it;
}

template <typename Measure>
void declareMeasured(const std::string& name, Measure measure) {
  benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) { measure(state, name); })
      ->Iterations(1)
      ->Unit(benchmark::kMillisecond);
}

bool declareAll() {
  for (std::uint32_t side : kSides)
    declare("open a layered file, " + squareOf(side), [=] { return openBesideRead(side); });
  for (std::uint32_t side : kSides)
    declareMeasured("parse a layered file, " + squareOf(side),
                    [=](benchmark::State& state, const std::string& name) {
                      parseBesideRead(state, name, side);
                    });
  const std::string texture = "exportTile on a texture of four layers, " + squareOf(kLargest);
  declare(texture, exportBesideCopy);
  declare(texture + ", as a process", exportBesideImageMagick);
  declareMeasured(texture + ", peak memory", exportMemory);
  declareMeasured("empty data layer, " + squareOf(kLargest), emptyDataLayer);
  for (unsigned bits : {24u, 32u}) {
    declare(
        "TGA import to a saved PSD, " + squareOf(kLargest) + " " + std::to_string(bits) + " bit",
        [=] { return importBesidePacking(bits); });
  }
  return true;
}

const bool kDeclared = declareAll();

}  // namespace
}  // namespace bench
