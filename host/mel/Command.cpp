#include "host/mel/Command.h"

#include <algorithm>
#include <utility>

#include "host/text/Messages.h"
#include "host/text/Numbers.h"
#include "host/text/Text.h"
#include "host/text/UniqueNames.h"

namespace host::mel {

bool isFlag(const Word& word) {
  if (word.quoted || word.text.size() < 2 || word.text.front() != '-') return false;
  const char next = word.text[1];
  const bool letter = (next >= 'a' && next <= 'z') || (next >= 'A' && next <= 'Z');
  return letter && !parseNumber(word.text);
}

namespace {

bool fits(char kind, const std::string& text) {
  switch (kind) {
    case 'n':
      return parseNumber(text).has_value();
    case 'i':
      return parseInteger(text).has_value();
    case 'b':
      return parseTruth(text).has_value();
    default:
      return true;
  }
}

const char* kindName(char kind) {
  return kind == 'n' ? "a number" : kind == 'i' ? "a whole number" : "a truth value";
}

const FlagSpec* findFlag(const std::vector<FlagSpec>& flags, std::string_view name) {
  for (const FlagSpec& flag : flags)
    if (flag.shortName == name || flag.longName == name) return &flag;
  return nullptr;
}

}  // namespace

std::string asStatement(std::string name, const Words& words) {
  for (const Word& word : words) name += " " + (word.quoted ? quoted(word.text) : word.text);
  return name;
}

CommandResult CommandResult::success(Value value) {
  CommandResult result;
  result.value = std::move(value);
  return result;
}

CommandResult CommandResult::failure(std::string error) {
  CommandResult result;
  result.ok = false;
  result.error = std::move(error);
  return result;
}

CommandResult CommandResult::malformed(std::string error) {
  CommandResult result = failure(std::move(error));
  result.isMalformed = true;
  return result;
}

void CommandContext::warn(const std::string& text) const {
  onWarning ? onWarning(text) : showWarning(text);
}

const Arguments::Use* Arguments::lastUse(std::string_view shortName) const {
  const auto use = std::find_if(uses_.rbegin(), uses_.rend(), [&](const Use& candidate) {
    return candidate.shortName == shortName;
  });
  return use == uses_.rend() ? nullptr : &*use;
}

bool Arguments::has(std::string_view shortName) const {
  return lastUse(shortName) != nullptr;
}

std::string Arguments::text(std::string_view shortName, std::size_t index) const {
  const Use* use = lastUse(shortName);
  return use == nullptr || index >= use->arguments.size() ? std::string() : use->arguments[index];
}

double Arguments::number(std::string_view shortName, std::size_t index) const {
  return parseNumber(text(shortName, index)).value_or(0.0);
}

bool Arguments::truth(std::string_view shortName, bool fallback) const {
  return parseTruth(text(shortName)).value_or(fallback);
}

std::vector<std::string> Arguments::texts(std::string_view shortName) const {
  std::vector<std::string> texts;
  for (const Use& use : uses_)
    if (use.shortName == shortName && !use.arguments.empty())
      texts.push_back(use.arguments.front());
  return texts;
}

std::vector<std::vector<std::string>> Arguments::allTexts(std::string_view shortName) const {
  std::vector<std::vector<std::string>> all;
  for (const Use& use : uses_)
    if (use.shortName == shortName) all.push_back(use.arguments);
  return all;
}

std::vector<std::string> Arguments::flagsAsWritten() const {
  std::vector<std::string> words;
  for (const Use& use : uses_) {
    words.push_back("-" + std::string(use.shortName));
    for (std::size_t i = 0; i < use.arguments.size(); ++i)
      words.push_back(use.kinds[i] == 's' ? quoted(use.arguments[i]) : use.arguments[i]);
  }
  return words;
}

std::vector<std::vector<double>> Arguments::allNumbers(std::string_view shortName) const {
  std::vector<std::vector<double>> all;
  for (const Use& use : uses_) {
    if (use.shortName == shortName) {
      std::vector<double>& numbers = all.emplace_back();
      for (const std::string& text : use.arguments)
        numbers.push_back(parseNumber(text).value_or(0.0));
    }
  }
  return all;
}

class ArgumentParser {
 public:
  ArgumentParser(std::string_view command, const std::vector<FlagSpec>& flags, const Words& words)
      : command_(command), flags_(flags), words_(words) {
    query_ = std::any_of(words.begin(), words.end(), [](const Word& word) {
      return !word.quoted && (word.text == "-q" || word.text == "-query");
    });
  }

  bool parse(Arguments& arguments, std::string& error) {
    arguments.words_ = &words_;
    while (at_ < words_.size()) {
      const Word& word = words_[at_++];
      if (!isFlag(word))
        arguments.objects_.push_back(word.text);
      else if (!parseFlag(word.text, arguments, error))
        return false;
    }
    return true;
  }

  bool metUnknown() const { return metUnknown_; }

 private:
  bool parseFlag(const std::string& name, Arguments& arguments, std::string& error) {
    const FlagSpec* flag = findFlag(flags_, std::string_view(name).substr(1));
    if (flag == nullptr) {
      error = std::string(command_) + ": unknown flag " + name;
      metUnknown_ = true;
      return false;
    }
    const std::string_view kinds = query_ ? std::string_view() : flag->arguments;
    Arguments::Use use{flag->shortName, kinds, {}};
    for (const char kind : kinds) {
      if (at_ >= words_.size()) {
        error = std::string(command_) + ": flag " + name + " lacks an argument";
        return false;
      }
      const std::string& text = words_[at_++].text;
      if (!fits(kind, text)) {
        error = std::string(command_) + ": flag " + name + " needs " + kindName(kind) + ", not '" +
                text + "'";
        return false;
      }
      use.arguments.push_back(text);
    }
    arguments.uses_.push_back(std::move(use));
    return true;
  }

  std::string_view command_;
  const std::vector<FlagSpec>& flags_;
  const Words& words_;
  std::size_t at_ = 0;
  bool query_ = false;
  bool metUnknown_ = false;
};

bool parseArguments(std::string_view command, const std::vector<FlagSpec>& flags,
                    const Words& words, Arguments& arguments, std::string& error, bool* isUnknown) {
  ArgumentParser parser(command, flags, words);
  const bool ok = parser.parse(arguments, error);
  if (isUnknown != nullptr) *isUnknown = parser.metUnknown();
  return ok;
}

void CommandTable::add(std::string_view name, std::vector<FlagSpec> flags,
                       CommandFunction function) {
  Command& command = commands_[std::string(name)];
  command.flags = std::move(flags);
  command.function = function;
}

bool CommandTable::addFromPlugin(const std::string& name, WordsFunction function) {
  Command command;
  command.words = std::move(function);
  return commands_.emplace(name, std::move(command)).second;
}

void CommandTable::remove(const std::string& name) {
  commands_.erase(name);
}

const Command* CommandTable::find(std::string_view name) const {
  const auto found = commands_.find(name);
  return found == commands_.end() ? nullptr : &found->second;
}

namespace {

// Whether a plug-in or another version of the host may know the command. A scene file has texts in
// quotes; a second statement among the words shows that the semicolon between them is missing.
bool couldBeCommand(std::string_view name, const Words& words) {
  const bool hasArguments = std::any_of(
      words.begin(), words.end(), [](const Word& word) { return word.quoted || isFlag(word); });
  const bool swallows = std::any_of(words.begin(), words.end(), [](const Word& word) {
    return !word.quoted && (word.text == "createNode" || word.text == "setAttr" ||
                            word.text == "connectAttr" || word.text == "addAttr");
  });
  return hasArguments && !swallows && isLegalName(name);
}

CommandResult dispatch(std::string_view name, const Words& words, CommandContext& context) {
  const Command* command = context.interpreter->commands().find(name);
  if (command == nullptr) {
    const std::string error = "unknown command '" + std::string(name) + "'";
    return couldBeCommand(name, words) ? CommandResult::failure(error)
                                       : CommandResult::malformed(error);
  }
  if (command->words) {
    if (context.inSceneFile)
      return CommandResult::failure("a scene file may not run '" + std::string(name) + "'");
    // A copy: the command may unload the plug-in that registered it.
    const WordsFunction function = command->words;
    return function(words);
  }
  Arguments arguments;
  std::string error;
  bool isUnknown = false;
  if (!parseArguments(name, command->flags, words, arguments, error, &isUnknown)) {
    return isUnknown ? CommandResult::failure(std::move(error))
                     : CommandResult::malformed(std::move(error));
  }
  return command->function(arguments, context);
}

}  // namespace

CommandResult runCommand(std::string_view name, const Words& words, CommandContext& context) {
  CommandResult result = dispatch(name, words, context);
  const auto afterCommand = context.interpreter->commands().afterCommand();
  if (!context.inSceneFile && afterCommand != nullptr) afterCommand(context.host());
  return result;
}

}  // namespace host::mel
