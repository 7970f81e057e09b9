#include "host/mel/Functions.h"

#include <algorithm>
#include <cctype>
#include <cmath>

#include "host/mel/Interpreter.h"
#include "host/text/Messages.h"

namespace host::mel {
namespace {

using Arguments = std::vector<Argument>;

const Value& valueOf(const Argument& argument) {
  return argument.variable != nullptr ? *argument.variable : argument.value;
}
std::string textOf(const Arguments& arguments, std::size_t index) {
  return index < arguments.size() ? valueOf(arguments[index]).toString() : std::string();
}
double numberOf(const Arguments& arguments, std::size_t index) {
  return valueOf(arguments[index]).toFloat();
}

CommandResult give(Value value) {
  return CommandResult::success(std::move(value));
}

bool fitsArray(std::size_t size) {
  return size <= Interpreter::current().limits().arraySize;
}

// --- Texts and arrays

CommandResult size(Arguments& arguments) {
  const Value& value = valueOf(arguments[0]);
  const std::size_t count = value.isArray()                        ? value.arraySize()
                            : value.type() == Value::Type::kString ? value.toString().size()
                                                                   : 1;
  return give(static_cast<int>(count));
}

CommandResult clear(Arguments& arguments) {
  if (arguments[0].variable == nullptr) {
    return CommandResult::failure("needs an array variable");
  }
  *arguments[0].variable = Value::initial(arguments[0].variable->type());
  return give(Value());
}

std::string mapText(std::string text, int (*change)(int)) {
  for (char& c : text) {
    if (static_cast<unsigned char>(c) < 0x80) {
      c = static_cast<char>(change(static_cast<unsigned char>(c)));
    }
  }
  return text;
}
int lower(int c) {
  return c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c;
}
int upper(int c) {
  return c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c;
}

CommandResult toLower(Arguments& arguments) {
  return give(mapText(textOf(arguments, 0), lower));
}
CommandResult toUpper(Arguments& arguments) {
  return give(mapText(textOf(arguments, 0), upper));
}

// Positions count from 1, both ends included; a range that is not inside gives the empty text.
CommandResult substring(Arguments& arguments) {
  const std::string text = textOf(arguments, 0);
  const int first = valueOf(arguments[1]).toInt();
  const int last = valueOf(arguments[2]).toInt();
  if (first < 1 || last < first || static_cast<std::size_t>(last) > text.size()) {
    return give("");
  }
  return give(
      text.substr(static_cast<std::size_t>(first - 1), static_cast<std::size_t>(last - first + 1)));
}

CommandResult startsWith(Arguments& arguments) {
  const std::string prefix = textOf(arguments, 1);
  return give(Value::ofTruth(textOf(arguments, 0).compare(0, prefix.size(), prefix) == 0));
}

CommandResult endsWith(Arguments& arguments) {
  const std::string text = textOf(arguments, 0);
  const std::string suffix = textOf(arguments, 1);
  return give(
      Value::ofTruth(text.size() >= suffix.size() &&
                     text.compare(text.size() - suffix.size(), suffix.size(), suffix) == 0));
}

// Pieces between any of the separator characters, without empty ones.
CommandResult tokenize(Arguments& arguments) {
  const std::string text = textOf(arguments, 0);
  const bool hasSeparators = arguments.size() == 3;
  const std::string separators = hasSeparators ? textOf(arguments, 1) : " \t\n\r";
  const Variable& out = arguments.back().variable;
  if (out == nullptr || out->type() != Value::Type::kStringArray) {
    return CommandResult::failure("the last argument must be a string array variable");
  }
  Value::Strings pieces;
  std::size_t at = 0;
  while ((at = text.find_first_not_of(separators, at)) != std::string::npos) {
    const std::size_t end = std::min(text.find_first_of(separators, at), text.size());
    pieces.push_back(text.substr(at, end - at));
    at = end;
  }
  if (!fitsArray(pieces.size())) {
    return CommandResult::failure("the array becomes too large");
  }
  const int count = static_cast<int>(pieces.size());
  *out = Value(std::move(pieces));
  return give(count);
}

CommandResult join(Arguments& arguments) {
  const std::string separator = textOf(arguments, 1);
  std::string text;
  bool first = true;
  for (const std::string& piece : valueOf(arguments[0]).toWords()) {
    text += (first ? "" : separator) + piece;
    first = false;
  }
  return give(std::move(text));
}

CommandResult contains(Arguments& arguments) {
  const Value::Strings texts = valueOf(arguments[1]).toWords();
  return give(
      Value::ofTruth(std::find(texts.begin(), texts.end(), textOf(arguments, 0)) != texts.end()));
}

CommandResult appendArray(Arguments& arguments) {
  const Variable& out = arguments[0].variable;
  if (out == nullptr || out->strings() == nullptr) {
    return CommandResult::failure("the first argument must be a string array variable");
  }
  Value::Strings more = valueOf(arguments[1]).toWords();
  if (arguments.size() == 3) {
    const int count = valueOf(arguments[2]).toInt();
    more.resize(std::min(more.size(), static_cast<std::size_t>(std::max(count, 0))));
  }
  if (!fitsArray(out->arraySize() + more.size())) {
    return CommandResult::failure("the array becomes too large");
  }
  out->strings()->insert(out->strings()->end(), more.begin(), more.end());
  return give(Value());
}

CommandResult sortArray(Arguments& arguments) {
  Value value = valueOf(arguments[0]);
  const auto sorted = [](auto* array) {
    if (array != nullptr) {
      std::sort(array->begin(), array->end());
    }
  };
  sorted(value.strings());
  sorted(value.ints());
  if (value.floats() != nullptr) {
    // NaN has no place in an order; all of them go last.
    std::sort(value.floats()->begin(), value.floats()->end(),
              [](double a, double b) { return std::isnan(b) ? !std::isnan(a) : a < b; });
  }
  return give(std::move(value));
}

CommandResult print(Arguments& arguments) {
  printText(valueOf(arguments[0]).toPrinted());
  return give(Value());
}

CommandResult toIntNumber(Arguments& arguments) {
  return give(valueOf(arguments[0]).toInt());
}
CommandResult toFloatNumber(Arguments& arguments) {
  return give(numberOf(arguments, 0));
}
CommandResult toText(Arguments& arguments) {
  return give(textOf(arguments, 0));
}

// --- Mathematics

template <double (*Of)(double)>
CommandResult ofOne(Arguments& arguments) {
  return give(Of(numberOf(arguments, 0)));
}
template <double (*Of)(double, double)>
CommandResult ofTwo(Arguments& arguments) {
  return give(Of(numberOf(arguments, 0), numberOf(arguments, 1)));
}
double absolute(double x) {
  return std::fabs(x);
}
double squareRoot(double x) {
  return std::sqrt(x);
}
double roundDown(double x) {
  return std::floor(x);
}
double roundUp(double x) {
  return std::ceil(x);
}
double sine(double x) {
  return std::sin(x);
}
double cosine(double x) {
  return std::cos(x);
}
double tangent(double x) {
  return std::tan(x);
}
double arcTangent(double y, double x) {
  return std::atan2(y, x);
}
double power(double x, double y) {
  return std::pow(x, y);
}
double remainder(double x, double y) {
  return std::fmod(x, y);
}

bool bothInts(const Arguments& arguments) {
  return valueOf(arguments[0]).type() == Value::Type::kInt &&
         valueOf(arguments[1]).type() == Value::Type::kInt;
}
CommandResult smaller(Arguments& arguments) {
  const double least = std::min(numberOf(arguments, 0), numberOf(arguments, 1));
  return give(bothInts(arguments) ? Value(static_cast<int>(least)) : Value(least));
}
CommandResult larger(Arguments& arguments) {
  const double most = std::max(numberOf(arguments, 0), numberOf(arguments, 1));
  return give(bothInts(arguments) ? Value(static_cast<int>(most)) : Value(most));
}
CommandResult clamp(Arguments& arguments) {
  return give(
      std::min(std::max(numberOf(arguments, 2), numberOf(arguments, 0)), numberOf(arguments, 1)));
}

// --- Text as a script

CommandResult eval(Arguments& arguments) {
  std::string text;
  for (const Argument& argument : arguments) {
    text += (text.empty() ? "" : " ") + valueOf(argument).toString();
  }
  Outcome outcome = Interpreter::current().execute(text, "eval");
  CommandResult result = CommandResult::success(std::move(outcome.value));
  result.ok = outcome.ok;
  if (!outcome.ok) {
    result.inner = std::move(outcome.failure);
  }
  return result;
}

constexpr std::size_t kAny = 1000000;

constexpr FunctionSpec kFunctions[] = {
    {"abs", 1, 1, ofOne<absolute>},
    {"appendStringArray", 2, 3, appendArray},
    {"atan2", 2, 2, ofTwo<arcTangent>},
    {"ceil", 1, 1, ofOne<roundUp>},
    {"clamp", 3, 3, clamp},
    {"clear", 1, 1, clear},
    {"cos", 1, 1, ofOne<cosine>},
    {"endsWith", 2, 2, endsWith},
    {"eval", 1, kAny, eval},
    {"float", 1, 1, toFloatNumber},
    {"floor", 1, 1, ofOne<roundDown>},
    {"fmod", 2, 2, ofTwo<remainder>},
    {"int", 1, 1, toIntNumber},
    {"max", 2, 2, larger},
    {"min", 2, 2, smaller},
    {"pow", 2, 2, ofTwo<power>},
    {"print", 1, 1, print},
    {"sin", 1, 1, ofOne<sine>},
    {"size", 1, 1, size},
    {"sort", 1, 1, sortArray},
    {"sqrt", 1, 1, ofOne<squareRoot>},
    {"startsWith", 2, 2, startsWith},
    {"string", 1, 1, toText},
    {"stringArrayContains", 2, 2, contains},
    {"stringArrayToString", 2, 2, join},
    {"substring", 3, 3, substring},
    {"tan", 1, 1, ofOne<tangent>},
    {"tokenize", 2, 3, tokenize},
    {"tolower", 1, 1, toLower},
    {"toupper", 1, 1, toUpper},
};

}  // namespace

const FunctionSpec* findFunction(std::string_view name) {
  const auto found = std::lower_bound(
      std::begin(kFunctions), std::end(kFunctions), name,
      [](const FunctionSpec& function, std::string_view wanted) { return function.name < wanted; });
  return found != std::end(kFunctions) && found->name == name ? &*found : nullptr;
}

}  // namespace host::mel
