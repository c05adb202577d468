#include "Repl.h"

#include <unistd.h>

#include <cstdio>
#include <memory>
#include <string_view>

#include "Errors.h"
#include "Interruption.h"
#include "LineEditor.h"
#include "Shipped.h"

namespace zyl {

namespace {

constexpr int kExitInterrupted = 130;

// ---- One chunk ----

// Runs protected: runs the chunk (argument 1), prints its results and sets the global `_` to the
// first.
int RunAndPrint(lua_State* L) {
  lua_call(L, 0, LUA_MULTRET);
  const int count = lua_gettop(L);
  if (count == 0) return 0;
  lua_pushvalue(L, 1);
  lua_setglobal(L, "_");
  luaL_checkstack(L, 4, "too many results");
  if (LuaFolder().empty()) {
    lua_getglobal(L, "tostring");
  } else {
    lua_getglobal(L, "require");
    lua_pushliteral(L, "zyl.inspect");
    lua_call(L, 1, 1);
  }
  const int inspect = count + 1;
  for (int i = 1; i <= count; ++i) {
    lua_pushvalue(L, inspect);
    lua_pushvalue(L, i);
    lua_call(L, 1, 1);
    size_t length = 0;
    const char* text = luaL_tolstring(L, -1, &length);
    std::fwrite(text, 1, length, stdout);
    std::fputs(i < count ? ", " : "\n", stdout);
    lua_settop(L, inspect);
  }
  return 0;
}

// Message handler: converts the error to one line of text.
int ToLine(lua_State* L) {
  std::string line;
  if (lua_isstring(L, 1) != 0 || luaL_getmetafield(L, 1, "__tostring") != LUA_TNIL) {
    line = luaL_tolstring(L, 1, nullptr);
  } else {
    line = std::string("(the error value is a ") + luaL_typename(L, 1) + ")";
  }
  for (char& c : line) {
    if (c == '\n') c = ' ';
  }
  lua_pushlstring(L, line.data(), line.size());
  return 1;
}

enum class Loaded { kReady, kIncomplete, kInvalid };

// Blanks out "local" at the start of the text; empty if the text does not start with it. A local
// variable would end with its chunk, so a following line could not use it.
std::string WithoutLocal(std::string text) {
  constexpr std::string_view kLocal = "local";
  const size_t begin = text.find_first_not_of(" \t");
  if (begin == std::string::npos || text.compare(begin, kLocal.size(), kLocal) != 0) return {};
  const size_t end = begin + kLocal.size();
  if (end < text.size() && text[end] != ' ' && text[end] != '\t' && text[end] != '\n') return {};
  return text.replace(begin, kLocal.size(), kLocal.size(), ' ');
}

// Loads the text as an expression or, if that fails, as statements. Leaves the chunk or the error
// message on the stack. Prepends line breaks so that line numbers match the prompt's.
Loaded Load(lua_State* L, const std::string& text, int firstLine) {
  const std::string lines(static_cast<size_t>(firstLine - 1), '\n');
  const std::string bare = WithoutLocal(text);
  bool incomplete = false;
  for (const std::string& tried : {"return " + text, bare, text}) {
    if (tried.empty() && !text.empty()) continue;
    const std::string chunk = lines + tried;
    lua_settop(L, 0);
    if (luaL_loadbufferx(L, chunk.data(), chunk.size(), "=repl", "t") == LUA_OK) {
      return Loaded::kReady;
    }
    constexpr std::string_view kEnd = "<eof>";
    const char* message = lua_tostring(L, -1);
    incomplete = incomplete || (message != nullptr && std::string_view(message).ends_with(kEnd));
  }
  return incomplete ? Loaded::kIncomplete : Loaded::kInvalid;
}

// Runs the chunk on top of the stack. Prints an error and returns false if it fails.
bool Run(lua_State* L) {
  lua_pushcfunction(L, ToLine);
  lua_insert(L, -2);
  lua_pushcfunction(L, Guarded<RunAndPrint>);
  lua_insert(L, -2);
  const bool done = lua_pcall(L, 1, 0, -3) == LUA_OK;
  std::fflush(stdout);
  if (!done && !ExitWasRequested()) {
    const char* text = lua_tostring(L, -1);
    std::fprintf(stderr, "%s\n", WasInterrupted() ? "interrupted" : text == nullptr ? "?" : text);
  }
  lua_settop(L, 0);
  return done;
}

// Runs protected: if the shipped module zyl is loaded, lets it end transactions that Ctrl-C left
// open.
int EndOpenTransactions(lua_State* L) {
  luaL_getsubtable(L, LUA_REGISTRYINDEX, LUA_LOADED_TABLE);
  if (lua_getfield(L, -1, "zyl") != LUA_TTABLE) return 0;
  if (lua_getfield(L, -1, "afterInterrupt") == LUA_TFUNCTION) lua_call(L, 0, 0);
  return 0;
}

// Resets the state after Ctrl-C so that the next chunk can run.
void Recover(lua_State* L) {
  ClearInterrupt(L);
  lua_pushcfunction(L, Guarded<EndOpenTransactions>);
  if (lua_pcall(L, 0, 0, 0) != LUA_OK) std::fprintf(stderr, "%s\n", lua_tostring(L, -1));
  lua_settop(L, 0);
}

// ---- The input ----

enum class Input { kLine, kEnd, kInterrupted };

Input ReadPlain(std::string& line) {
  line.clear();
  for (int c; (c = std::getc(stdin)) != '\n';) {
    if (c == EOF) {
      if (WasInterrupted()) return Input::kInterrupted;
      return line.empty() ? Input::kEnd : Input::kLine;
    }
    line += static_cast<char>(c);
  }
  return Input::kLine;
}

Input ReadEdited(LineEditor& editor, const std::string& prompt, std::string& line) {
  switch (editor.Read(prompt, line)) {
    case LineEditor::Outcome::kLine:
      return Input::kLine;
    case LineEditor::Outcome::kEnd:
      return Input::kEnd;
    default:
      return Input::kInterrupted;
  }
}

}  // namespace

int RunRepl(ScriptHost& script) {
  lua_State* L = script.State();
  std::unique_ptr<LineEditor> editor;
  if (isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0) {
    editor =
        std::make_unique<LineEditor>([L](std::string_view line) { return CompleteName(L, line); });
    std::puts("zyl " ZYL_VERSION ": help() shows help, Tab completes names, Ctrl-D exits");
  }
  bool failed = false;
  std::string chunk;
  int firstLine = 1;
  for (int line = 1;; ++line) {
    const std::string prompt = "repl:" + std::to_string(line) + (chunk.empty() ? "> " : ">> ");
    std::string text;
    const Input input = editor ? ReadEdited(*editor, prompt, text) : ReadPlain(text);
    if (input == Input::kInterrupted) {
      if (!editor) {
        std::fputs("zyl: interrupted\n", stderr);
        return kExitInterrupted;
      }
      chunk.clear();
      --line;
      continue;
    }
    if (input == Input::kEnd) {
      if (!chunk.empty()) {
        // The last chunk is incomplete: load it again for the message.
        Load(L, chunk, firstLine);
        std::fprintf(stderr, "%s\n", lua_tostring(L, -1));
        failed = true;
      }
      break;
    }
    if (chunk.empty()) firstLine = line;
    chunk += (chunk.empty() ? "" : "\n") + text;
    const Loaded loaded = Load(L, chunk, firstLine);
    if (loaded == Loaded::kIncomplete) {
      lua_settop(L, 0);
      continue;
    }
    chunk.clear();
    if (loaded == Loaded::kInvalid) {
      std::fprintf(stderr, "%s\n", lua_tostring(L, -1));
      lua_settop(L, 0);
      failed = true;
      continue;
    }
    failed = !Run(L) || failed;
    if (ExitWasRequested()) return RequestedExitStatus();
    if (WasInterrupted() && !editor) return kExitInterrupted;
    if (WasInterrupted()) Recover(L);
  }
  if (editor) std::puts("");
  return failed && !editor ? 1 : 0;
}

}  // namespace zyl
