#include "cli/dump/function_body.h"

#include <algorithm>
#include <sstream>

namespace fabscan {

using generator::GeneratedFunction;

namespace {

constexpr std::string_view kErrorMark = "#error ";
constexpr std::string_view kCommentMark = "//";

bool NeedsEdit(const GeneratedFunction& function) { return function.problems[0] != nullptr; }

/// Removes `prefix` from the start of `text`; returns false if `text` does not start with it.
bool ConsumePrefix(std::string_view& text, std::string_view prefix) {
  if (text.substr(0, prefix.size()) != prefix) return false;
  text.remove_prefix(prefix.size());
  return true;
}

}  // namespace

void FirstLine::Clear() {
  text_.clear();
  is_complete_ = false;
}

FirstLine::int_type FirstLine::overflow(int_type next) {
  if (traits_type::eq_int_type(next, traits_type::eof())) return traits_type::not_eof(next);
  const char c = traits_type::to_char_type(next);
  xsputn(&c, 1);
  return next;
}

std::streamsize FirstLine::xsputn(const char* text, std::streamsize size) {
  if (is_complete_) return size;
  const char* const end = std::find(text, text + size, '\n');
  text_.append(text, end);
  is_complete_ = end != text + size;
  return size;
}

BodyQuery::BodyQuery(Fabscan& fabscan) : dump_(fabscan) {
  out_.exceptions(std::ios::badbit);  // otherwise lack of memory would be ignored
}

// Lines that replace a block begin in the first column; lines of a block do not.
Mark BodyQuery::MarkOf(const GeneratedFunction& function, const IBNode& node) {
  first_line_.Clear();
  (dump_.*function.emitter)(out_, node);
  const std::string_view line = first_line_.text();
  if (line.substr(0, 1) == "#") return Mark::kError;
  if (line.substr(0, 1) == "/") return Mark::kComment;
  return NeedsEdit(function) ? Mark::kHand : Mark::kBlock;
}

FunctionBody BodyQuery::Ask(const GeneratedFunction& function, const IBNode& node) {
  FunctionBody body{&function, MarkOf(function, node), {}};
  if (body.mark == Mark::kComment || body.mark == Mark::kError) {
    body.reason = ReasonOfLine(first_line_.text());
  }
  return body;
}

GeneratedNode BodyQuery::Ask(const IBNode& node) {
  GeneratedNode generated{ClassOf(node), {}};
  for (const GeneratedFunction& function : generator::kGeneratedFunctions) {
    generated.functions.push_back(Ask(function, node));
  }
  return generated;
}

std::string BodyText(const SimInfoDumpCPP& dump, const GeneratedFunction& function,
                     const IBNode& node) {
  std::ostringstream out;
  out.exceptions(std::ios::badbit);
  (dump.*function.emitter)(out, node);
  return out.str() + '\n';
}

std::string_view ReasonOfLine(std::string_view line) {
  const bool is_error = ConsumePrefix(line, kErrorMark);
  if (!is_error) ConsumePrefix(line, kCommentMark);
  line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
  if (!is_error) return line;
  // Some messages close their quote and some do not.
  ConsumePrefix(line, "\"");
  if (!line.empty() && line.back() == '"') line.remove_suffix(1);
  return line;
}

std::string WithoutName(std::string_view reason, const std::string& name) {
  std::string text(reason);
  const std::string named = "node=" + name;
  const std::size_t found = text.find(named);
  if (found != std::string::npos) text.erase(found + 4, named.size() - 4);
  return text;
}

std::string ProblemsText(const GeneratedFunction& function) {
  std::string text;
  for (const generator::CompileProblem* problem : function.problems) {
    if (problem == nullptr) break;
    text += (text.empty() ? "" : ", and ") + std::string(problem->problem);
  }
  return text;
}

}  // namespace fabscan
