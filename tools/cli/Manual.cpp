#include "tools/cli/Manual.h"

#include <vector>

namespace tools {
namespace {

// What is hidden has no group.
std::vector<const CLI::App*> subcommandsOf(const CLI::App& program) {
  return program.get_subcommands([](const CLI::App* app) { return !app->get_group().empty(); });
}

std::vector<const CLI::Option*> optionsOf(const CLI::App& command) {
  return command.get_options([](const CLI::Option* option) {
    return !option->get_group().empty() && !option->get_positional();
  });
}

// A hyphen of roff may be printed as a dash that no shell takes, and a line break of the help text
// would begin a new line of roff.
std::string roff(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '-' || c == '\\') escaped += '\\';
    escaped += c == '\n' ? ' ' : c;
  }
  return escaped;
}

std::string bold(const std::string& text) {
  return "\\fB" + roff(text) + "\\fP";
}

std::string italic(const std::string& text) {
  return "\\fI" + roff(text) + "\\fP";
}

// "-o, --output SCENE"
std::string optionTerm(const CLI::Option& option) {
  std::string term;
  for (const std::string& name : option.get_snames()) term += bold("-" + name) + ", ";
  for (const std::string& name : option.get_lnames()) term += bold("--" + name) + ", ";
  term.erase(term.size() - 2);
  const std::string value = option.get_type_name();
  return value.empty() ? term : term + " " + italic(value);
}

std::string synopsisOf(const CLI::App& command) {
  std::string line = bold("morvane " + command.get_name()) + " [options]";
  for (const CLI::Option* option : command.get_options()) {
    if (!option->get_positional()) continue;
    const bool many = option->get_items_expected_max() > 1;
    const std::string operand = italic(option->get_name()) + (many ? " ..." : "");
    line += option->get_required() ? " " + operand : " [" + operand + "]";
  }
  return line;
}

std::string synopsis(const CLI::App& program) {
  std::string text;
  for (const CLI::App* command : subcommandsOf(program))
    text += (text.empty() ? "" : "\n.br\n") + synopsisOf(*command);
  return text;
}

std::string commands(const CLI::App& program) {
  std::string text;
  for (const CLI::App* command : subcommandsOf(program)) {
    text += (text.empty() ? ".SS " : "\n.SS ") + roff(command->get_name()) + "\n" +
            roff(command->get_description()) + ".";
    for (const CLI::Option* option : command->get_options())
      if (option->get_positional())
        text += "\n.TP\n" + italic(option->get_name()) + "\n" + roff(option->get_description());
    for (const CLI::Option* option : optionsOf(*command))
      text += "\n.TP\n" + optionTerm(*option) + "\n" + roff(option->get_description());
  }
  return text;
}

std::string longOptions(const CLI::App& command) {
  std::string words;
  for (const CLI::Option* option : optionsOf(command))
    for (const std::string& name : option->get_lnames())
      words += (words.empty() ? "--" : " --") + name;
  return words;
}

std::string optionCases(const CLI::App& program) {
  std::string text;
  for (const CLI::App* command : subcommandsOf(program))
    text += "    " + command->get_name() + ") echo \"" + longOptions(*command) + "\" ;;\n";
  return text + "    *) echo \"" + longOptions(program) + "\" ;;";
}

std::string subcommandNames(const CLI::App& program) {
  std::string names;
  for (const CLI::App* command : subcommandsOf(program))
    names += (names.empty() ? "" : " ") + command->get_name();
  return names;
}

void fill(std::string& text, const std::string& word, const std::string& value) {
  for (std::size_t at = 0; (at = text.find(word, at)) != std::string::npos; at += value.size())
    text.replace(at, word.size(), value);
}

}  // namespace

std::string filledTemplate(std::string text, const CLI::App& program) {
  fill(text, "@VERSION@", program.version());
  fill(text, "@SYNOPSIS@", synopsis(program));
  fill(text, "@COMMANDS@", commands(program));
  fill(text, "@SUBCOMMANDS@", subcommandNames(program));
  fill(text, "@OPTION_CASES@", optionCases(program));
  return text;
}

}  // namespace tools
