#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MStringArray.h>

#include <algorithm>
#include <charconv>

namespace {

template <typename Number>
void appendNumber(std::string& text, Number number) {
  char digits[64];
  const auto end = std::to_chars(digits, digits + sizeof digits, number);
  text.append(digits, end.ptr);
}

// Reads the number at the front of the text, blanks before it included. True when it is all there
// is.
template <typename Number>
bool readNumber(const std::string& text, Number& number) {
  const std::size_t start = std::min(text.find_first_not_of(" \t\r\n"), text.size());
  const bool hasPlus = start < text.size() && text[start] == '+';
  const char* begin = text.data() + start + (hasPlus ? 1 : 0);
  const char* end = text.data() + text.size();
  const auto [stop, problem] = std::from_chars(begin, end, number);
  const std::string_view rest(stop, static_cast<std::size_t>(end - stop));
  return problem == std::errc() && rest.find_first_not_of(" \t\r\n") == rest.npos;
}

}  // namespace

MString::MString(const char* text, int length) {
  if (text && length > 0) text_.assign(text, static_cast<std::size_t>(length));
}

MString& MString::operator=(const char* text) {
  text_ = text ? text : "";
  return *this;
}

MString& MString::operator+=(const MString& other) {
  text_ += other.text_;
  return *this;
}

MString& MString::operator+=(const char* other) {
  if (other) text_ += other;
  return *this;
}

MString& MString::operator+=(int number) {
  appendNumber(text_, number);
  return *this;
}

MString& MString::operator+=(unsigned int number) {
  appendNumber(text_, number);
  return *this;
}

MString& MString::operator+=(double number) {
  appendNumber(text_, number);
  return *this;
}

MString& MString::operator+=(float number) {
  appendNumber(text_, number);
  return *this;
}

int MString::index(char character) const {
  const std::size_t found = text_.find(character);
  return found == text_.npos ? -1 : static_cast<int>(found);
}

int MString::rindex(char character) const {
  const std::size_t found = text_.rfind(character);
  return found == text_.npos ? -1 : static_cast<int>(found);
}

int MString::indexW(const MString& text) const {
  const std::size_t found = text_.find(text.text_);
  return found == text_.npos ? -1 : static_cast<int>(found);
}

MString MString::substring(int start, int end) const {
  const int first = std::max(start, 0);
  const int last = std::min(end, static_cast<int>(length()) - 1);
  return first <= last ? MString(text_.data() + first, last - first + 1) : MString();
}

MString& MString::toLowerCase() {
  for (char& c : text_)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return *this;
}

MString& MString::toUpperCase() {
  for (char& c : text_)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return *this;
}

MStatus MString::split(char separator, MStringArray& pieces) const {
  pieces.clear();
  std::size_t start = 0;
  while (start < text_.size()) {
    const std::size_t end = std::min(text_.find(separator, start), text_.size());
    if (end > start) pieces.append(MString(text_.data() + start, static_cast<int>(end - start)));
    start = end + 1;
  }
  return MStatus::kSuccess;
}

bool MString::isInt() const {
  int number = 0;
  return readNumber(text_, number);
}

int MString::asInt() const {
  int number = 0;
  readNumber(text_, number);
  return number;
}

bool MString::isDouble() const {
  double number = 0.0;
  return readNumber(text_, number);
}

double MString::asDouble() const {
  double number = 0.0;
  readNumber(text_, number);
  return number;
}

std::ostream& operator<<(std::ostream& out, const MString& text) {
  return out << text.asChar();
}
