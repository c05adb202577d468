// Reads lines from a terminal: editing, history and completion by Tab. It owns the history file's
// content in memory; every line that is entered is appended to the file at once.
#pragma once

#include <histedit.h>

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

#include "Completion.h"

namespace zyl {

class LineEditor {
 public:
  using Completer = std::function<Completion(std::string_view line)>;
  enum class Outcome { kLine, kEnd, kInterrupted };

  explicit LineEditor(Completer completer);
  ~LineEditor();
  LineEditor(const LineEditor&) = delete;
  LineEditor& operator=(const LineEditor&) = delete;

  // `line` is without the line break. Ctrl-C while the line is typed gives kInterrupted, the end of
  // the input (Ctrl-D in an empty line) kEnd.
  Outcome Read(const std::string& prompt, std::string& line);

 private:
  static char* Prompt(EditLine* editor);
  static int ReadCharacter(EditLine* editor, wchar_t* character);
  static unsigned char Complete(EditLine* editor, int key);
  void LoadHistory();
  void Remember(const std::string& line);

  Completer completer_;
  std::string prompt_;
  EditLine* editor_;
  History* history_;
  std::filesystem::path historyFile_;
};

}  // namespace zyl
