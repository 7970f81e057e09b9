#include "tools/cli/Usage.h"

#include <algorithm>
#include <vector>

#include "host/text/NearestName.h"
#include "tools/terminal/Text.h"

namespace tools {
namespace {

// "; did you mean ...?" where something is near, else all that there is.
std::string suggestion(const std::string& word, const std::vector<std::string>& known) {
  const std::string nearest = host::nearestName(word, known);
  if (!nearest.empty()) return "; did you mean " + nearest + "?";
  std::string all;
  for (const std::string& each : known) all += (all.empty() ? "" : ", ") + each;
  return "; there are " + all;
}

std::vector<std::string> optionsOf(const CLI::App& command) {
  std::vector<std::string> names;
  for (const CLI::Option* option : command.get_options())
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  return names;
}

std::vector<std::string> subcommandsOf(const CLI::App& program) {
  std::vector<std::string> names;
  for (const CLI::App* command : program.get_subcommands([](const CLI::App*) { return true; }))
    names.push_back(command->get_name());
  return names;
}

// Of the words that nothing took, an option tells most.
std::string unexpected(const CLI::App& command, const std::vector<std::string>& words) {
  const auto isOption = [](const std::string& word) { return word.size() > 1 && word[0] == '-'; };
  const auto option = std::find_if(words.begin(), words.end(), isOption);
  if (option != words.end()) {
    const std::string name = option->substr(0, option->find('='));
    return "there is no option " + printable(name) + suggestion(name, optionsOf(command));
  }
  const std::string& word = words.front();
  if (command.get_parent()) return printable(word) + " is one argument too many";
  return "there is no subcommand " + printable(word) + suggestion(word, subcommandsOf(command));
}

}  // namespace

std::string wrongUsage(const CLI::App* program, const CLI::Error& error) {
  const auto chosen = program->get_subcommands();
  const CLI::App& command = chosen.empty() ? *program : *chosen.front();
  const std::vector<std::string> words = command.remaining();
  const std::vector<std::string> before = program->remaining();
  if (!chosen.empty() && words.empty() && !before.empty()) {
    return "morvane: " + printable(before.front()) + " belongs behind the subcommand: morvane " +
           command.get_name() + " " + printable(before.front()) + "\n";
  }
  const std::string name = "morvane" + (chosen.empty() ? "" : " " + command.get_name());
  const std::string what = words.empty() ? printable(error.what()) : unexpected(command, words);
  return "morvane: " + what + (what.back() == '?' ? " " : "; ") + name +
         " --help shows how it is used\n";
}

}  // namespace tools
