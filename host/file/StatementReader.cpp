#include "host/file/StatementReader.h"

#include <algorithm>
#include <array>
#include <cerrno>

#include "host/text/Blank.h"
#include "host/text/Text.h"
#include "util/FileFacts.h"
#include "util/SystemStatus.h"

namespace host {
namespace {

constexpr std::size_t kBlock = 1 << 20;

// Characters that may end a statement, begin a text or begin a comment.
constexpr std::array<bool, 256> stops() {
  std::array<bool, 256> table{};
  table[';'] = table['"'] = table['/'] = true;
  return table;
}
constexpr std::array<bool, 256> kStops = stops();

// Where a comment ends: at the line's end, which is a carriage return alone in the oldest files, or
// at the star.
std::size_t commentEnd(const std::string& text, bool isLine, std::size_t from) {
  return isLine ? text.find_first_of("\r\n", from) : text.find("*/", from);
}

}  // namespace

morvane::Status StatementReader::open(const std::string& path) {
  file_.reset(morvane::openToRead(path));
  if (file_ == nullptr || (!fill() && failed_)) {
    const auto reason = morvane::errnoStatus(errno, morvane::StatusCode::kCannotRead);
    const bool forbidden = reason.code() == morvane::StatusCode::kNotAllowed;
    return {reason.code(), "cannot read " + path + ": " + reason.text() +
                               (forbidden ? "; make it readable for the user that runs this" : "")};
  }
  if (buffer_.compare(0, 3, "\xEF\xBB\xBF") == 0) begin_ = scan_ = 3;
  return {};
}

// Reads one more block behind the unread bytes. False at the end of the file.
bool StatementReader::fill() {
  if (begin_ > 0) {
    buffer_.erase(0, begin_);
    scan_ -= begin_;
    begin_ = 0;
  }
  const std::size_t old = buffer_.size();
  buffer_.resize(old + kBlock);
  const std::size_t read = std::fread(buffer_.data() + old, 1, kBlock, file_.get());
  buffer_.resize(old + read);
  failed_ = failed_ || std::ferror(file_.get()) != 0;
  return read > 0;
}

std::string StatementReader::firstLine() {
  const std::size_t end = std::min(buffer_.find_first_of("\r\n", begin_), buffer_.size());
  return buffer_.substr(begin_, std::min<std::size_t>(end - begin_, 200));
}

void StatementReader::stepOver(std::size_t end) {
  const auto first = buffer_.begin() + static_cast<std::ptrdiff_t>(begin_);
  const auto last = buffer_.begin() + static_cast<std::ptrdiff_t>(end);
  const auto lines = std::count(first, last, '\n');
  if (lines > 0) {
    nextLine_ += static_cast<int>(lines);
    nextColumn_ = static_cast<int>(end - buffer_.rfind('\n', end - 1));
  } else {
    nextColumn_ += static_cast<int>(end - begin_);
  }
  begin_ = end;
}

// Handles the line comment at `begin_`, whose first words are in the buffer.
void StatementReader::noteComment() {
  isNamed_ = isNamed_ || buffer_.compare(begin_, 7, "//Name:") == 0;
  hasEnd_ = buffer_.compare(begin_, 9, "// End of") == 0;
}

// Skips blanks, comments and empty statements. False at the end of the file.
bool StatementReader::skipToStatement() {
  while (true) {
    std::size_t at = begin_;
    while (at < buffer_.size() && (isBlank(buffer_[at]) || buffer_[at] == ';')) ++at;
    stepOver(at);
    if (buffer_.size() - at < 2 && fill()) continue;
    if (begin_ >= buffer_.size()) return false;
    const bool line = buffer_.compare(begin_, 2, "//") == 0;
    if (!line && buffer_.compare(begin_, 2, "/*") != 0) return true;
    std::size_t close = commentEnd(buffer_, line, begin_ + 2);
    while (close == std::string::npos) {
      const std::size_t searched = buffer_.size() - begin_;
      if (!fill()) {
        endedEarly_ = !line;
        if (line) noteComment();
        stepOver(buffer_.size());
        return false;
      }
      close = commentEnd(buffer_, line, begin_ + std::max<std::size_t>(searched - 1, 2));
    }
    if (line) noteComment();
    stepOver(close + (line ? 1 : 2));
  }
}

// Searches from `scan_` for the semicolon. False when the buffer ends first.
bool StatementReader::findEnd() {
  while (scan_ < buffer_.size()) {
    if (inText_) {
      const std::size_t stop = buffer_.find_first_of("\"\\", scan_);
      if (stop == std::string::npos || (buffer_[stop] == '\\' && stop + 1 >= buffer_.size())) {
        scan_ = std::min(stop, buffer_.size());
        return false;
      }
      inText_ = buffer_[stop] == '\\';
      scan_ = stop + (inText_ ? 2 : 1);
      continue;
    }
    while (scan_ < buffer_.size() && !kStops[static_cast<unsigned char>(buffer_[scan_])]) ++scan_;
    if (scan_ >= buffer_.size()) return false;
    if (buffer_[scan_] == ';') {
      end_ = scan_;
      return true;
    }
    if (buffer_[scan_] == '"') {
      inText_ = true;
    } else if (scan_ + 1 >= buffer_.size()) {
      return false;
    } else if (buffer_[scan_ + 1] == '/' || buffer_[scan_ + 1] == '*') {
      const bool line = buffer_[scan_ + 1] == '/';
      const std::size_t close = commentEnd(buffer_, line, scan_ + 2);
      if (close == std::string::npos) return false;
      // Comments are removed from the statement, so that its readers need not know them.
      std::replace_if(
          buffer_.begin() + static_cast<std::ptrdiff_t>(scan_),
          buffer_.begin() + static_cast<std::ptrdiff_t>(close + (line ? 0 : 2)),
          [](char c) { return c != '\n'; }, ' ');
      scan_ = close;
      continue;
    }
    ++scan_;
  }
  return false;
}

bool StatementReader::next(std::string_view& statement) {
  const bool found = skipToStatement();
  line_ = nextLine_;
  column_ = nextColumn_;
  if (!found) return false;
  hasEnd_ = false;
  scan_ = begin_;
  inText_ = false;
  while (!findEnd()) {
    if (!fill()) {
      endedEarly_ = true;
      return false;
    }
  }
  const std::size_t start = begin_;
  stepOver(end_ + 1);
  statement = std::string_view(buffer_).substr(start, end_ - start);
  return true;
}

namespace {

// ( "a" + "b" ): the texts and words between the brackets, one after the other.
bool takeJoined(std::string_view text, std::size_t& at, mel::Word& word, std::string& error) {
  int depth = 0;
  word.quoted = true;
  do {
    const char c = text[at];
    if (c == '"') {
      const std::size_t close = mel::findClosingQuote(text, at);
      if (close == std::string_view::npos) {
        error = "text without a closing quote";
        return false;
      }
      mel::appendUnescaped(word.text, text.substr(at + 1, close - at - 1));
      at = close + 1;
      continue;
    }
    depth += c == '(' ? 1 : c == ')' ? -1 : 0;
    if (c != '(' && c != ')' && c != '+' && !isBlank(c)) word.text += c;
    ++at;
  } while (depth > 0 && at < text.size());
  error = "'(' without ')'";
  return depth == 0;
}

bool isPlain(char c) {
  constexpr std::string_view kOthers = "._-+:[]|,";
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
         kOthers.find(c) != kOthers.npos;
}

// {"a","b"}: one word, its texts quoted anew.
bool takeBraced(std::string_view text, std::size_t& at, mel::Word& word, std::string& error) {
  word.text = "{";
  for (++at; at < text.size() && text[at] != '}';) {
    if (text[at] == '"') {
      const std::size_t close = mel::findClosingQuote(text, at);
      if (close == std::string_view::npos) {
        error = "text without a closing quote";
        return false;
      }
      std::string inner;
      mel::appendUnescaped(inner, text.substr(at + 1, close - at - 1));
      word.text += mel::quoted(inner);
      at = close + 1;
      continue;
    }
    if (!isBlank(text[at]) && !isPlain(text[at])) {
      error = std::string("'") + text[at] + "' has no place between braces";
      return false;
    }
    word.text += isBlank(text[at]) ? "" : std::string(1, text[at]);
    ++at;
  }
  word.text += '}';
  error = "'{' without '}'";
  return at++ < text.size();
}

bool takeWord(std::string_view text, std::size_t& at, mel::Word& word, std::string& error) {
  if (text[at] == '{') return takeBraced(text, at, word, error);
  if (text[at] == '"') {
    const std::size_t close = mel::findClosingQuote(text, at);
    if (close == std::string_view::npos) {
      error = "text without a closing quote";
      return false;
    }
    word.quoted = true;
    mel::appendUnescaped(word.text, text.substr(at + 1, close - at - 1));
    at = close + 1;
    return true;
  }
  if (text[at] == '(') return takeJoined(text, at, word, error);
  const std::size_t start = at;
  while (at < text.size() && !isBlank(text[at]) &&
         std::string_view("\"()`${}").find(text[at]) == std::string_view::npos) {
    ++at;
  }
  if (at == start) {
    error = std::string("'") + text[at] + "' has no place in a scene file";
    return false;
  }
  word.text = std::string(text.substr(start, at - start));
  return true;
}

}  // namespace

bool splitStatement(std::string_view text, std::string& name, mel::Words& words,
                    std::string& error) {
  std::size_t at = 0;
  name.clear();
  words.clear();
  while (at < text.size()) {
    if (isBlank(text[at])) {
      ++at;
      continue;
    }
    mel::Word word;
    if (!takeWord(text, at, word, error)) return false;
    if (name.empty())
      name = std::move(word.text);
    else
      words.push_back(std::move(word));
  }
  return true;
}

}  // namespace host
