#ifndef MORVANE_HOST_FILE_STATEMENTREADER_H_
#define MORVANE_HOST_FILE_STATEMENTREADER_H_

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "host/mel/Command.h"
#include "util/Status.h"

namespace host {

// Reads a scene file statement by statement. Holds one block of the file, or the longest statement
// when that is longer.
class StatementReader {
 public:
  // Fails when the file cannot be opened or read; the text names it.
  morvane::Status open(const std::string& path);

  // The first bytes of the file, before the first statement is read.
  std::string_view firstBytes() const { return std::string_view(buffer_).substr(begin_); }

  // The next statement, from its first word on and without its semicolon; good until the next call.
  // False at the end of the file.
  bool next(std::string_view& statement);

  // The file's first line, once opened.
  std::string firstLine();

  // Of the statement that `next` gave.
  int line() const { return line_; }
  int column() const { return column_; }

  // True when the file ended inside a statement, a text or a comment. That part is not given.
  bool endedEarly() const { return endedEarly_; }
  // From the place of the statement that the file ended in, good until this object goes.
  std::string_view unfinished() const { return std::string_view(buffer_).substr(begin_); }
  // Maya begins a file with a comment of its name, and ends it with one.
  bool isNamed() const { return isNamed_; }
  bool hasEnd() const { return hasEnd_; }
  bool failed() const { return failed_; }

 private:
  bool fill();
  bool findEnd();
  bool skipToStatement();
  void stepOver(std::size_t end);
  void noteComment();

  struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  std::unique_ptr<std::FILE, Close> file_;
  std::string buffer_;
  std::size_t begin_ = 0;  // of what was not given yet
  std::size_t scan_ = 0;   // how far its end was looked for
  std::size_t end_ = 0;    // where the semicolon stands
  bool inText_ = false;    // at `scan_`
  int line_ = 1;
  int column_ = 1;
  int nextLine_ = 1;  // at `begin_`
  int nextColumn_ = 1;
  bool endedEarly_ = false;
  bool isNamed_ = false;
  bool hasEnd_ = false;
  bool failed_ = false;
};

// Cuts a statement into its command's name and words; ( "a" + "b" ) is one word. False with the
// reason in `error` for anything that needs the language as a whole: variables, back quotes,
// blocks.
bool splitStatement(std::string_view statement, std::string& name, mel::Words& words,
                    std::string& error);

}  // namespace host

#endif  // MORVANE_HOST_FILE_STATEMENTREADER_H_
