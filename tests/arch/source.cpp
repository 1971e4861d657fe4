// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "arch/source.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <utility>

namespace quillon::arch {
namespace {

namespace fs = std::filesystem;

std::string ReadText(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

bool IsText(const fs::path& path) {
  static const std::array<std::string_view, 14> kEnds = {".cpp", ".h",   ".cmake", ".txt", ".md", ".json",    ".sh",
                                                         ".qss", ".svg", ".qrc",   ".1",   ".py", ".desktop", ".xml"};
  const std::string name = path.filename().string();
  return name.find('.') == std::string::npos || name.front() == '.' ||
         std::any_of(kEnds.begin(), kEnds.end(), [&](std::string_view end) { return name.ends_with(end); });
}

// Classifies each character of a C++ text as code, comment or literal.
class Scanner {
 public:
  enum class Part { Code, Comment, Literal };

  explicit Scanner(std::string_view text) : text_(text) {}

  template <typename Visit>
  void Run(Visit visit) {
    while (at_ < text_.size()) {
      const std::size_t begin = at_;
      const Part part = Next();
      for (std::size_t i = begin; i < at_; ++i) visit(i, part);
    }
  }

 private:
  bool Starts(std::string_view what) const { return text_.substr(at_, what.size()) == what; }

  void SkipTo(std::string_view end, std::size_t from) {
    const std::size_t found = text_.find(end, from);
    at_ = found == std::string_view::npos ? text_.size() : found + end.size();
  }

  Part Next() {
    if (Starts("//")) {
      at_ = std::min(text_.find('\n', at_), text_.size());
      return Part::Comment;
    }
    if (Starts("/*")) {
      SkipTo("*/", at_ + 2);
      return Part::Comment;
    }
    if (Starts("R\"") && !IsWord(at_ - 1)) {
      const std::size_t open = text_.find('(', at_);
      if (open == std::string_view::npos) return Skip(1);
      SkipTo(")" + std::string(text_.substr(at_ + 2, open - at_ - 2)) + "\"", open);
      return Part::Literal;
    }
    if (text_[at_] == '"') return Quoted('"');
    // Between digits the sign is a separator.
    if (text_[at_] == '\'' && !IsWord(at_ - 1)) return Quoted('\'');
    return Skip(1);
  }

  Part Skip(std::size_t count) {
    at_ += count;
    return Part::Code;
  }

  Part Quoted(char quote) {
    ++at_;
    while (at_ < text_.size() && text_[at_] != quote && text_[at_] != '\n') at_ += text_[at_] == '\\' ? 2 : 1;
    at_ = std::min(at_ + 1, text_.size());
    return Part::Literal;
  }

  bool IsWord(std::size_t at) const {
    return at < text_.size() && (std::isalnum(static_cast<unsigned char>(text_[at])) || text_[at] == '_');
  }

  std::string_view text_;
  std::size_t at_ = 0;
};

// Finds function bodies by the braces of code whose comments, literals and directives are blank.
class FunctionScanner {
 public:
  explicit FunctionScanner(std::string code) : code_(std::move(code)) { BlankDirectives(); }

  std::vector<Function> Run() {
    for (std::size_t i = 0; i < code_.size(); ++i) Visit(i);
    return std::move(found_);
  }

 private:
  enum class Scope { Space, Type, Function, Block, Initialiser };
  struct Open {
    Scope scope;
    std::size_t head;  // where the text before the brace began
  };

  // A directive continues on the next line if its line ends in a backslash.
  void BlankDirectives() {
    bool inside = false;
    for (std::size_t begin = 0; begin < code_.size();) {
      const std::size_t end = std::min(code_.find('\n', begin), code_.size());
      const std::size_t first = std::min(code_.find_first_not_of(' ', begin), end);
      const bool goesOn = end > begin && code_[end - 1] == '\\';
      inside = inside || (first < end && code_[first] == '#');
      if (inside) std::fill(code_.begin() + static_cast<long>(begin), code_.begin() + static_cast<long>(end), ' ');
      inside = inside && goesOn;
      begin = end + 1;
    }
  }

  void Visit(std::size_t i) {
    switch (code_[i]) {
      case '(':
        ++depth_;
        break;
      case ')':
        --depth_;
        break;
      case ';':
        if (depth_ == 0) head_ = i + 1;
        break;
      case ':':
        if (IsAccessLabel(i)) head_ = i + 1;
        break;
      case '{':
        opens_.push_back({ScopeAt(i), head_});
        outerDepths_.push_back(std::exchange(depth_, 0));
        head_ = i + 1;
        break;
      case '}':
        Close(i);
        break;
      default:
        break;
    }
  }

  std::string_view HeadAt(std::size_t brace) const {
    std::string_view head = std::string_view(code_).substr(head_, brace - head_);
    const std::size_t first = head.find_first_not_of(" \n\t");
    if (first == std::string_view::npos) return {};
    return head.substr(first, head.find_last_not_of(" \n\t") - first + 1);
  }

  bool IsAccessLabel(std::size_t colon) const {
    static const std::regex kLabel(R"((^|\s)(public|private|protected|signals|Q_SIGNALS)( slots| Q_SLOTS)?$)");
    const bool lone = colon + 1 < code_.size() && code_[colon + 1] != ':';
    return lone && depth_ == 0 && std::regex_search(std::string(HeadAt(colon)), kLabel);
  }

  bool InsideFunction() const {
    return std::any_of(opens_.begin(), opens_.end(), [](const Open& open) { return open.scope == Scope::Function; });
  }

  Scope ScopeAt(std::size_t brace) const {
    static const std::regex kSpace(R"(^((inline\s+)?namespace\b|extern$))");
    static const std::regex kType(R"(^(template\s*<[^{}]*>\s*)?(typedef\s+)?(class|struct|union|enum)\b)");
    if (InsideFunction()) return Scope::Block;
    if (depth_ > 0 || (!opens_.empty() && opens_.back().scope == Scope::Initialiser)) return Scope::Initialiser;
    const std::string head(HeadAt(brace));
    if (std::regex_search(head, kSpace)) return Scope::Space;
    if (std::regex_search(head, kType) && head.back() != ')') return Scope::Type;
    return HasParameters(head) && !IsMemberInitialiser(head) ? Scope::Function : Scope::Initialiser;
  }

  static bool HasParameters(const std::string& head) {
    return head.find(')') != std::string::npos || (!head.empty() && head.back() == ']');
  }

  // "Name(int x) : a_(1), b_" before the brace of b_{2}: a brace right after a name in the list of a constructor.
  static bool IsMemberInitialiser(const std::string& head) {
    static const std::regex kList(R"(\)\s*(noexcept\s*)?:[^:])");
    const char last = head.back();
    const bool afterName = std::isalnum(static_cast<unsigned char>(last)) || last == '_' || last == '>';
    return afterName && std::regex_search(head, kList);
  }

  void Close(std::size_t i) {
    if (opens_.empty()) return;
    const Open open = opens_.back();
    opens_.pop_back();
    depth_ = outerDepths_.back();
    outerDepths_.pop_back();
    // The text after an initialiser still belongs to the same head.
    head_ = open.scope == Scope::Initialiser ? open.head : i + 1;
    if (open.scope != Scope::Function) return;
    const std::size_t begin = code_.find_first_not_of(" \n\t", open.head);
    const int first = LineAt(code_, begin);
    found_.push_back({first, LineAt(code_, i) - first + 1});
  }

  std::string code_;
  std::size_t head_ = 0;
  int depth_ = 0;
  std::vector<Open> opens_;
  std::vector<int> outerDepths_;
  std::vector<Function> found_;
};

}  // namespace

std::vector<Source> ReadTree(const std::string& root) {
  std::vector<fs::path> paths;
  for (const char* folder : {"src", "tests", "bench", "fuzz", "cmake", "scripts", ".ci", "docs", "packaging"}) {
    if (!fs::exists(fs::path(root) / folder)) continue;
    for (const auto& entry : fs::recursive_directory_iterator(fs::path(root) / folder)) paths.push_back(entry.path());
  }
  for (const auto& entry : fs::directory_iterator(root)) paths.push_back(entry.path());
  std::vector<Source> sources;
  for (const fs::path& path : paths) {
    if (!fs::is_regular_file(path) || !IsText(path)) continue;
    sources.push_back({path.lexically_relative(root).string(), ReadText(path)});
  }
  std::sort(sources.begin(), sources.end(), [](const Source& a, const Source& b) { return a.path < b.path; });
  return sources;
}

std::vector<std::string_view> Lines(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    lines.push_back(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
  return lines;
}

int LineAt(std::string_view text, std::size_t position) {
  const std::string_view before = text.substr(0, position);
  return 1 + static_cast<int>(std::count(before.begin(), before.end(), '\n'));
}

std::string CodeOf(std::string_view text, Literals literals) {
  std::string code(text);
  Scanner(text).Run([&](std::size_t at, Scanner::Part part) {
    const bool blank =
        part == Scanner::Part::Comment || (part == Scanner::Part::Literal && literals == Literals::Blank);
    if (blank && text[at] != '\n') code[at] = ' ';
  });
  return code;
}

std::vector<Include> IncludesOf(std::string_view text) {
  static const std::regex kInclude(R"(^\s*#\s*include\s*([<"])([^>"]+)[>"])");
  const std::string code = CodeOf(text, Literals::Keep);
  std::vector<Include> includes;
  int number = 0;
  for (const std::string_view line : Lines(code)) {
    ++number;
    std::match_results<std::string_view::const_iterator> match;
    if (!std::regex_search(line.begin(), line.end(), match, kInclude)) continue;
    includes.push_back({number, match[2].str(), match[1].str() == "\""});
  }
  return includes;
}

std::vector<Function> FunctionsOf(std::string_view text) {
  return FunctionScanner(CodeOf(text, Literals::Blank)).Run();
}

}  // namespace quillon::arch
