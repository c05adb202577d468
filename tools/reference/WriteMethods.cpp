// Writes the method reference as a Lua table, in table order, from the method list and the argument
// declarations of the bodies. It calls no body and is linked without them.
//
//   { name = "KGSelect", meaning = "...",
//     field = { stored = "0 to 255", number = 103 },     -- for the field of a record
//     forms = { {
//       program = true,                                    -- a program must be attached
//       results = { "boolean" },
//       arguments = { { name = "KeyGroupIndex", type = "integer", values = "..." },
//                     { name = "SelectFlag", type = "boolean", optional = true } } } } }
//
// An argument can also be `changed` in place, `null` (a null object is allowed), `repeated` (any
// number of times, together with its repeated neighbours) or `late` (read by the method itself).
#include <cstdio>
#include <iostream>
#include <string>

#include "frame/entry/Bodies.h"
#include "frame/entry/MethodList.h"
#include "params/ParameterTable.h"

namespace {

std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

const char* TypeName(int type) {
  switch (type) {
    case kTypeInteger:
      return "integer";
    case kTypeBool:
      return "boolean";
    case kTypeDouble:
      return "number";
    case kTypeString:
      return "string";
    case kTypeArray:
      return "table";
    default:
      return "any";
  }
}

// ---- Arguments ----

std::string ArgumentText(const DeclaredArgument& argument, const char* more = "") {
  std::string text = "{ name = " + Quoted(argument.name) + ", type = ";
  text += Quoted(argument.className != nullptr ? argument.className : TypeName(argument.type));
  std::string values = argument.values;
  if (argument.first <= argument.last) {
    values = std::to_string(argument.first) + " to " + std::to_string(argument.last);
  }
  if (!values.empty()) text += ", values = " + Quoted(values);
  if (argument.presence == Presence::kOptional) text += ", optional = true";
  if (argument.null == NullObject::kAllowed) text += ", null = true";
  if (argument.changed) text += ", changed = true";
  return text + more + " }, ";
}

template <class Kind>
struct ListOf {
  static std::string Text(const char* more = "") { return ArgumentText(Kind::kDeclared, more); }
};
template <>
struct ListOf<LoadedProgram> {
  static std::string Text() { return ""; }
};
template <class A>
struct ListOf<Deferred<A>> {
  static std::string Text() { return ListOf<A>::Text(", late = true"); }
};
template <class... A>
struct ListOf<Repeated<A...>> {
  static std::string Text(const char* more = "") {
    const std::string marks = std::string(", repeated = true") + more;
    return (ArgumentText(A::kDeclared, marks.c_str()) + ...);
  }
};

// ---- Results ----

template <class R>
struct ResultOf {
  static std::string Text() { return Quoted(TypeName(argument::kTypeOf<R>)); }
};
template <>
struct ResultOf<void> {
  static std::string Text() { return ""; }
};
template <>
struct ResultOf<CSample*> {
  static std::string Text() { return R"("CSample", "nil")"; }
};
template <class T>
struct ResultOf<std::optional<T>> : ResultOf<T> {};
template <class... T>
struct ResultOf<std::variant<T...>> {
  static std::string Text() {
    std::string text;
    ((text += (text.empty() ? "" : ", ") + ResultOf<T>::Text()), ...);
    return text;
  }
};

// ---- Bodies ----

template <class Body>
std::string FormText() {
  using Shape = method::Shape<Body>;
  std::string arguments;
  Shape::ForEachKind([&]<class Kind>() { arguments += ListOf<Kind>::Text(); });
  return std::string("{ program = ") + (Shape::kNeedsProgram ? "true" : "false") +
         ", results = { " + ResultOf<typename Shape::Result>::Text() + " }, arguments = { " +
         arguments + "} }, ";
}

template <class Body>
struct FormsOf {
  static std::string Text() { return FormText<Body>(); }
};
template <auto... Bodies>
struct FormsOf<const Forms<Bodies...>*> {
  static std::string Text() { return (FormText<decltype(Bodies)>() + ...); }
};

template <class Body>
void WriteMethod(const char* name, const char* meaning, const std::string& field) {
  std::cout << "  { name = " << Quoted(name) << ", meaning = " << Quoted(meaning) << "," << field
            << "\n    forms = { " << FormsOf<Body>::Text() << "} },\n";
}

// ---- Fields ----

const char* StoredRange(FieldType type) {
  switch (type) {
    case FieldType::kU8:
      return "0 to 255";
    case FieldType::kI8:
      return "-128 to 127";
    case FieldType::kU16:
      return "0 to 65535";
    case FieldType::kI16:
      return "-32768 to 32767";
    default:
      return "32 bits";
  }
}

std::string FieldText(const Parameter& row) {
  std::string text = "\n    field = { stored = " + Quoted(StoredRange(row.type));
  if (row.number != 0) text += ", number = " + std::to_string(row.number);
  return text + " },";
}

}  // namespace

int main() {
  std::cout << "-- Generated by the build from the module's method list.\nreturn {\n";
// NOLINTBEGIN(bugprone-macro-parentheses): names are pasted and quoted here
#define METHOD(name, meaning) WriteMethod<decltype(&name)>(#name, meaning, "");
#define OWN(record, field, number, meaning, ...) \
  NAMED_METHOD(ZYL_METHOD_NAME(record, field), meaning)
#define NAMED_METHOD(name, meaning) METHOD(name, meaning)
#define FIELD(record, field, number, meaning, ...) \
  NAMED_FIELD(ZYL_METHOD_NAME(record, field), meaning)
#define NAMED_FIELD(name, meaning) FIELD_METHOD(name, meaning)
#define FIELD_METHOD(name, meaning)                                               \
  WriteMethod<std::remove_const_t<decltype(kFieldMethod<#name>)>>(#name, meaning, \
                                                                  FieldText(ParameterOf(#name)));
  // NOLINTEND(bugprone-macro-parentheses)
  ZYL_METHOD_LIST(FIELD, OWN, METHOD)
  std::cout << "}\n" << std::flush;
  return std::cout ? 0 : 1;
}
