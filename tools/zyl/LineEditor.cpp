#include "LineEditor.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <fstream>
#include <new>
#include <vector>

namespace zyl {

namespace {

namespace fs = std::filesystem;

constexpr int kMaxLines = 1000;

volatile std::sig_atomic_t interrupted = 0;
void OnInterrupt(int) { interrupted = 1; }

// Makes Ctrl-C cancel only the current line, in a scope.
class InterruptsLine {
 public:
  InterruptsLine() {
    interrupted = 0;
    struct sigaction action = {};
    action.sa_handler = OnInterrupt;
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, &before_);
  }
  ~InterruptsLine() { sigaction(SIGINT, &before_, nullptr); }
  InterruptsLine(const InterruptsLine&) = delete;
  InterruptsLine& operator=(const InterruptsLine&) = delete;

 private:
  struct sigaction before_ = {};
};

// Returns the path of the history file; empty if neither XDG_STATE_HOME nor HOME is usable.
fs::path HistoryFile() {
  const char* state = std::getenv("XDG_STATE_HOME");
  const char* home = std::getenv("HOME");
  if (state != nullptr && state[0] == '/') return fs::path(state) / "zyl" / "history";
  if (home != nullptr && home[0] != 0) {
    return fs::path(home) / ".local" / "state" / "zyl" / "history";
  }
  return {};
}

int TerminalColumns() {
  winsize size = {};
  constexpr int kUsual = 80;
  return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : kUsual;
}

// Prints the names in columns, sorted downwards.
void PrintNames(const std::vector<std::string>& names) {
  size_t width = 1;
  for (const std::string& name : names) width = std::max(width, name.size() + 2);
  const size_t columns = std::max<size_t>(1, static_cast<size_t>(TerminalColumns()) / width);
  const size_t rows = (names.size() + columns - 1) / columns;
  std::string text = "\n";
  for (size_t row = 0; row < rows; ++row) {
    for (size_t i = row; i < names.size(); i += rows) {
      text += names[i];
      if (i + rows < names.size()) text.append(width - names[i].size(), ' ');
    }
    text += '\n';
  }
  std::fputs(text.c_str(), stdout);
}

LineEditor& EditorOf(EditLine* editor) {
  void* data = nullptr;
  el_get(editor, EL_CLIENTDATA, &data);
  return *static_cast<LineEditor*>(data);
}

}  // namespace

LineEditor::LineEditor(Completer completer)
    : completer_(std::move(completer)), historyFile_(HistoryFile()) {
  // Allow letters beyond ASCII. LC_NUMERIC is unchanged, so numbers keep the decimal point.
  if (std::setlocale(LC_CTYPE, "") == nullptr || MB_CUR_MAX == 1) {
    std::setlocale(LC_CTYPE, "C.UTF-8");
  }
  editor_ = el_init("zyl", stdin, stdout, stderr);
  if (editor_ == nullptr) throw std::bad_alloc();
  history_ = history_init();
  if (history_ == nullptr) {
    el_end(editor_);
    throw std::bad_alloc();
  }
  HistEvent event;
  history(history_, &event, H_SETSIZE, kMaxLines);
  history(history_, &event, H_SETUNIQUE, 1);
  el_set(editor_, EL_CLIENTDATA, this);
  el_set(editor_, EL_PROMPT, Prompt);
  el_set(editor_, EL_EDITOR, "emacs");
  el_set(editor_, EL_SIGNAL, 0);
  el_set(editor_, EL_HIST, history, history_);
  el_set(editor_, EL_GETCFN, ReadCharacter);
  el_set(editor_, EL_ADDFN, "zyl-complete", "complete the name", Complete);
  el_set(editor_, EL_BIND, "^I", "zyl-complete", nullptr);
  el_set(editor_, EL_BIND, "^R", "em-inc-search-prev", nullptr);
  el_set(editor_, EL_BIND, "^W", "ed-delete-prev-word", nullptr);
  el_source(editor_, nullptr);
  LoadHistory();
}

LineEditor::~LineEditor() {
  history_end(history_);
  el_end(editor_);
}

char* LineEditor::Prompt(EditLine* editor) { return EditorOf(editor).prompt_.data(); }

// Reads one multibyte character. Returns 1, 0 at the end of the input, or -1 after Ctrl-C or an
// error.
int LineEditor::ReadCharacter(EditLine*, wchar_t* character) {
  std::mbstate_t state = {};
  for (;;) {
    if (interrupted != 0) return -1;
    char byte = 0;
    const ssize_t count = read(STDIN_FILENO, &byte, 1);
    if (count == 0) return 0;
    // A terminal sends 0 for a Ctrl-D typed before the editor has set it up. Skip it: the editor
    // would treat it as the key that quotes the next one.
    if (count == 1 && byte == 0) continue;
    if (count < 0) {
      if (errno == EINTR) continue;
      return -1;
    }
    const size_t used = std::mbrtowc(character, &byte, 1, &state);
    if (used == static_cast<size_t>(-2)) continue;  // more bytes belong to it
    if (used == static_cast<size_t>(-1)) {
      state = {};
      continue;
    }
    return 1;
  }
}

unsigned char LineEditor::Complete(EditLine* editor, int) {
  const LineInfo* info = el_line(editor);
  const std::string_view line(info->buffer, static_cast<size_t>(info->cursor - info->buffer));
  const Completion completion = EditorOf(editor).completer_(line);
  if (completion.names.empty()) return CC_ERROR;
  // Insert the common prefix of all names; list the names if it is already typed.
  std::string common = completion.names.front();
  for (const std::string& name : completion.names) {
    const auto end = std::mismatch(common.begin(), common.end(), name.begin(), name.end()).first;
    common.erase(end, common.end());
  }
  if (common.size() > completion.typed) {
    return el_insertstr(editor, common.c_str() + completion.typed) == 0 ? CC_REFRESH : CC_ERROR;
  }
  if (completion.names.size() == 1) return CC_NORM;
  PrintNames(completion.names);
  return CC_REDISPLAY;
}

void LineEditor::LoadHistory() {
  std::vector<std::string> lines;
  std::ifstream file(historyFile_);
  for (std::string line; std::getline(file, line);) lines.push_back(std::move(line));
  const size_t surplus = lines.size() > kMaxLines ? lines.size() - kMaxLines : 0;
  lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(surplus));
  HistEvent event;
  for (const std::string& line : lines) history(history_, &event, H_ENTER, line.c_str());
  if (surplus < kMaxLines) return;
  // The file has at least twice the maximum: replace it by the last kMaxLines lines.
  const fs::path fresh = historyFile_.string() + ".new";
  std::ofstream output(fresh, std::ios::trunc);
  for (const std::string& line : lines) output << line << '\n';
  output.close();
  std::error_code failure;
  if (output) fs::rename(fresh, historyFile_, failure);
}

void LineEditor::AddToHistory(const std::string& line) {
  if (line.find_first_not_of(" \t") == std::string::npos) return;
  HistEvent event;
  const bool same = history(history_, &event, H_FIRST) == 0 && line == event.str;
  if (same) return;
  history(history_, &event, H_ENTER, line.c_str());
  if (historyFile_.empty()) return;
  // The history is optional: ignore write errors.
  std::error_code failure;
  fs::create_directories(historyFile_.parent_path(), failure);
  std::ofstream(historyFile_, std::ios::app) << line << '\n';
  // Other users must not read the history.
  fs::permissions(historyFile_, fs::perms::owner_read | fs::perms::owner_write, failure);
}

LineEditor::Outcome LineEditor::Read(const std::string& prompt, std::string& line) {
  prompt_ = prompt;
  const InterruptsLine guard;
  el_resize(editor_);
  int count = 0;
  const char* text = el_gets(editor_, &count);
  if (interrupted != 0) {
    el_reset(editor_);
    std::fputs("^C\n", stdout);
    return Outcome::kInterrupted;
  }
  if (text == nullptr || count <= 0) return Outcome::kEnd;
  line = text;
  while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.pop_back();
  AddToHistory(line);
  return Outcome::kLine;
}

}  // namespace zyl
