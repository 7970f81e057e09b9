#include "tests/end_to_end/Program.h"

#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace fs = std::filesystem;

std::string shellWord(const std::string& text) {
  std::string word = "'";
  for (const char c : text) word += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return word + "'";
}

bool hasCommand(const std::string& name) {
  return std::system(("command -v " + name + " >/dev/null 2>&1").c_str()) == 0;
}

Outcome ProgramTest::shell(const std::string& line) {
  const std::string log = folder_.string() + ".log";
  const std::string command = "cd " + shellWord(folder_.string()) +
                              " && morvane=" + shellWord(program_) + " && { " + line +
                              "\n} </dev/null >" + log + ".out 2>" + log + ".err";
  Outcome outcome;
  const int status = std::system(command.c_str());
  outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  outcome.out = read(log + ".out");
  outcome.err = read(log + ".err");
  fs::remove(log + ".out");
  fs::remove(log + ".err");
  return outcome;
}

Outcome ProgramTest::morvane(const std::vector<std::string>& arguments) {
  std::string line = "\"$morvane\"";
  for (const std::string& argument : arguments) line += ' ' + shellWord(argument);
  return shell(line);
}

std::vector<std::string> ProgramTest::names(const std::string& folder) const {
  std::vector<std::string> result;
  for (const auto& entry : fs::directory_iterator(path(folder)))
    result.push_back(entry.path().filename().string());
  std::sort(result.begin(), result.end());
  return result;
}

namespace {

constexpr char kGoblinPoints[] = "0 0 0 1 0 0 0 0 -1";

std::string meshText(const std::string& name, const std::string& parent, const std::string& points,
                     int corners) {
  std::string edges;
  std::string loop;
  for (int i = 0; i < corners; ++i) {
    edges += ' ' + std::to_string(i) + ' ' + std::to_string((i + 1) % corners) + " 0";
    loop += ' ' + std::to_string(i);
  }
  const std::string last = std::to_string(corners - 1);
  const std::string count = std::to_string(corners);
  return "createNode mesh -n \"" + name + "\" -p \"" + parent + "\";\n" + "\tsetAttr -s " + count +
         " \".vt[0:" + last + "]\" " + points + ";\n" + "\tsetAttr -s " + count +
         " \".ed[0:" + last + "]\" " + edges + ";\n" + "\tsetAttr -ch " + count +
         " \".fc[0]\" -type \"polyFaces\" f " + count + loop + ";\n";
}

}  // namespace

std::string sceneOfTiles(const std::vector<std::string>& textures, bool bare) {
  std::string nodes =
      "//Maya ASCII 2018 scene\nrequires maya \"2018\";\ncurrentUnit -l centimeter -a degree -t "
      "film;\n";
  std::string links;
  for (std::size_t i = 1; i <= textures.size(); ++i) {
    const std::string n = std::to_string(i);
    nodes += "createNode transform -n \"tile" + n + "\";\n";
    nodes += meshText("tileShape" + n, "tile" + n, "-2 0 4 2 0.5 4 2 1 -4 -2 0.5 -4", 4);
    if (!bare) {
      nodes += "createNode transform -n \"pebble" + n + "\" -p \"tile" + n + "\";\n";
      nodes += meshText("pebbleShape" + n, "pebble" + n, kGoblinPoints, 3);
      nodes +=
          "\taddAttr -ci true -sn \"goblinName\" -ln \"goblinName\" -dt \"string\";\n"
          "\tsetAttr \".goblinName\" -type \"string\" \"pebble\";\n";
    }
    nodes += "createNode lambert -n \"ground" + n + "\";\ncreateNode shadingEngine -n \"group" + n +
             "\";\ncreateNode file -n \"picture" + n +
             "\";\n\tsetAttr \".ftn\" -type \"string\" \"" + textures[i - 1] + "\";\n";
    links += "connectAttr \"picture" + n + ".oc\" \"ground" + n + ".c\";\nconnectAttr \"ground" +
             n + ".oc\" \"group" + n + ".ss\";\nconnectAttr \"tileShape" + n + ".iog\" \"group" +
             n + ".dsm\" -na;\nconnectAttr \"group" + n + ".pa\" \":renderPartition.st\" -na;\n";
  }
  return nodes + links;
}

std::string withGoblinsAt(std::string scene, const std::string& points) {
  const std::string before = kGoblinPoints;
  for (std::size_t at = 0; (at = scene.find(before, at)) != scene.npos; at += points.size())
    scene.replace(at, before.size(), points);
  return scene;
}

std::string tgaBytes(int width, int height) {
  std::string bytes(18, '\0');
  bytes[2] = 2;
  bytes[12] = static_cast<char>(width & 0xFF);
  bytes[13] = static_cast<char>(width >> 8);
  bytes[14] = static_cast<char>(height & 0xFF);
  bytes[15] = static_cast<char>(height >> 8);
  bytes[16] = 24;
  for (int i = 0; i < width * height; ++i) bytes += "\x20\x60\x40";
  return bytes;
}

std::string psdBytes(int width, int height) {
  auto number = [](std::uint32_t value, int size) {
    std::string text;
    for (int i = size - 1; i >= 0; --i) text += static_cast<char>(value >> 8 * i & 0xFF);
    return text;
  };
  return "8BPS" + number(1, 2) + std::string(6, '\0') + number(3, 2) +
         number(static_cast<std::uint32_t>(height), 4) +
         number(static_cast<std::uint32_t>(width), 4) + number(8, 2) + number(3, 2) +
         std::string(12, '\0') + number(0, 2) +
         std::string(static_cast<std::size_t>(3 * width * height), '\x55');
}
