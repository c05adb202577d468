// Reads lines from a terminal with editing, history and completion by Tab. Owns the history in
// memory and appends each entered line to the history file at once.
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

  // Reads one line without its line break. Returns kInterrupted after Ctrl-C and kEnd at the end of
  // the input (Ctrl-D on an empty line).
  Outcome Read(const std::string& prompt, std::string& line);

 private:
  static char* Prompt(EditLine* editor);
  static int ReadCharacter(EditLine* editor, wchar_t* character);
  static unsigned char Complete(EditLine* editor, int key);
  void LoadHistory();
  void AddToHistory(const std::string& line);

  Completer completer_;
  std::string prompt_;
  EditLine* editor_;
  History* history_;
  std::filesystem::path historyFile_;
};

}  // namespace zyl
