#ifndef MORVANE_MAYA_MSTRING_H_
#define MORVANE_MAYA_MSTRING_H_

#include <ostream>
#include <string>

class MStatus;
class MStringArray;

// A text of bytes (UTF-8 where it matters). A null pointer reads as the empty text. Positions count
// bytes from 0.
class MString {
 public:
  MString() = default;
  MString(const char* text) : text_(text ? text : "") {}
  MString(const char* text, int length);

  const char* asChar() const { return text_.c_str(); }
  const char* asUTF8() const { return text_.c_str(); }
  unsigned int length() const { return static_cast<unsigned int>(text_.size()); }
  unsigned int numChars() const { return length(); }
  void clear() { text_.clear(); }

  MString& operator=(const char* text);
  MString& operator+=(const MString& other);
  MString& operator+=(const char* other);
  MString& operator+=(int number);
  MString& operator+=(unsigned int number);
  MString& operator+=(double number);  // in the shortest form that reads back the same
  MString& operator+=(float number);

  MString operator+(const MString& other) const { return MString(*this) += other; }
  MString operator+(const char* other) const { return MString(*this) += other; }
  MString operator+(int number) const { return MString(*this) += number; }
  MString operator+(unsigned int number) const { return MString(*this) += number; }
  MString operator+(double number) const { return MString(*this) += number; }
  MString operator+(float number) const { return MString(*this) += number; }

  bool operator==(const MString& other) const { return text_ == other.text_; }
  bool operator!=(const MString& other) const { return text_ != other.text_; }
  bool operator==(const char* other) const { return text_ == (other ? other : ""); }
  bool operator!=(const char* other) const { return !(*this == other); }

  // First and last position of a byte; -1 when it does not occur.
  int index(char character) const;
  int rindex(char character) const;
  int indexW(const MString& text) const;

  // The bytes from `start` to `end`, both included; a range that is not inside gives what is.
  MString substring(int start, int end) const;

  // Change this text (ASCII letters only) and return it.
  MString& toLowerCase();
  MString& toUpperCase();

  // The pieces between separators; empty pieces are left out.
  MStatus split(char separator, MStringArray& pieces) const;

  bool isInt() const;
  int asInt() const;  // 0 when the text does not begin with a number
  bool isDouble() const;
  double asDouble() const;

 private:
  std::string text_;
};

inline MString operator+(const char* left, const MString& right) {
  return MString(left) += right;
}
inline bool operator==(const char* left, const MString& right) {
  return right == left;
}
inline bool operator!=(const char* left, const MString& right) {
  return right != left;
}
std::ostream& operator<<(std::ostream& out, const MString& text);

#endif  // MORVANE_MAYA_MSTRING_H_
