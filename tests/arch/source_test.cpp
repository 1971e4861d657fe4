// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "arch/source.h"

#include <gtest/gtest.h>

#include "build_paths.h"

namespace quillon::arch {
namespace {

TEST(Lines, CountsALastLineWithAndWithoutItsEnd) {
  EXPECT_EQ(Lines("").size(), 0u);
  EXPECT_EQ(Lines("a").size(), 1u);
  EXPECT_EQ(Lines("a\n").size(), 1u);
  EXPECT_EQ(Lines("a\n\n").size(), 2u);
  EXPECT_EQ(Lines("a\nb")[1], "b");
}

TEST(LineAt, CountsFromOne) {
  EXPECT_EQ(LineAt("a\nb\nc", 0), 1);
  EXPECT_EQ(LineAt("a\nb\nc", 2), 2);
  EXPECT_EQ(LineAt("a\nb\nc", 4), 3);
}

struct CodeCase {
  const char* text;
  const char* literalsKept;
  const char* literalsBlank;
};

TEST(CodeOf, BlanksCommentsAndLiterals) {
  const CodeCase cases[] = {
      {"a // b\nc", "a     \nc", "a     \nc"},
      {"a /* b\n */ c", "a     \n    c", "a     \n    c"},
      {R"(f("x // y");)", R"(f("x // y");)", "f(        );"},
      {R"(f("a\"b", 'c', '\'');)", R"(f("a\"b", 'c', '\'');)", "f(      ,    ,     );"},
      {"1'000'000 + '{'", "1'000'000 + '{'", "1'000'000 +    "},
      {"R\"(a \" // b)\" + c", "R\"(a \" // b)\" + c", "              + c"},
      {"R\"x(a)\")x\" + c", "R\"x(a)\")x\" + c", "           + c"},
      {"a // \"b\nc", "a      \nc", "a      \nc"},
  };
  for (const auto& expected : cases) {
    EXPECT_EQ(CodeOf(expected.text, Literals::Keep), expected.literalsKept);
    EXPECT_EQ(CodeOf(expected.text, Literals::Blank), expected.literalsBlank);
  }
}

TEST(IncludesOf, ReadsBothFormsAndNoComments) {
  const auto includes = IncludesOf("#include \"base/rect.h\"\n// #include \"no.h\"\n  #  include <vector>\n");
  ASSERT_EQ(includes.size(), 2u);
  EXPECT_EQ(includes[0].name, "base/rect.h");
  EXPECT_EQ(includes[0].line, 1);
  EXPECT_TRUE(includes[0].quoted);
  EXPECT_EQ(includes[1].name, "vector");
  EXPECT_EQ(includes[1].line, 3);
  EXPECT_FALSE(includes[1].quoted);
}

struct FunctionCase {
  const char* what;
  const char* text;
  std::vector<std::pair<int, int>> lineAndLength;
};

TEST(FunctionsOf, FindsEveryBody) {
  const FunctionCase cases[] = {
      {"declaration", "int F(int a);\n", {}},
      {"one line", "int F(int a) { return a; }\n", {{1, 1}}},
      {"blocks inside", "int F(int a) {\n  if (a) {\n    a = 1;\n  }\n  return a;\n}\n", {{1, 6}}},
      {"signature of two lines", "int F(int a,\n      int b) {\n  return a;\n}\n", {{1, 4}}},
      {"two functions", "void F() {\n}\n\nvoid G() {\n\n}\n", {{1, 2}, {4, 3}}},
      {"namespace", "namespace a::b {\nnamespace {\nvoid F() {\n}\n}\n}\n", {{3, 2}}},
      {"language linkage", "extern \"C\" {\nvoid F() {\n}\n}\n", {{2, 2}}},
      {"member",
       "class A : public B {\n public:\n  int F() const override {\n    return 1;\n  }\n int x_;\n};\n",
       {{3, 3}}},
      {"template", "template <typename T>\nT F(T t) {\n  return t;\n}\n", {{1, 4}}},
      {"constructor", "A::A(int b)\n    : B(b),\n      c_{1, 2},\n      d_(b) {\n  F();\n}\n", {{1, 6}}},
      {"constructor, braces last", "A::A(int b) : c_{b} {\n  F();\n}\nvoid G() {}\n", {{1, 3}, {4, 1}}},
      {"braces as argument", "void F(A a = {}, B b = {1}) {\n\n}\n", {{1, 3}}},
      {"table", "const int kA[] = {\n  1,\n  2,\n};\nvoid F() {}\n", {{5, 1}}},
      {"table with calls", "const std::vector<A> kA = {\n  {F(1), {2}},\n  {G(3), {4}},\n};\n", {}},
      {"record of controls",
       "struct W {\n  Box a{*this, \"x\", {.p = &q}};\n  Box b{*this};\n  void F() {}\n};\n",
       {{4, 1}}},
      {"enum", "enum class A { B, C };\nvoid F() {}\n", {{2, 1}}},
      {"lambda inside", "void F() {\n  auto g = [](int x) {\n    return x;\n  };\n}\n", {{1, 5}}},
      {"lambda outside", "constexpr auto kG = [](int x) {\n  return x;\n};\n", {{1, 3}}},
      {"braces in text", "void F() {\n  G(\"{{{\", '{');  // }\n}\nvoid H() {\n}\n", {{1, 3}, {4, 2}}},
      {"directives", "#define A(x) { \\\n  {\nvoid F() {\n}\n", {{3, 2}}},
      {"test", "TEST(A, B) {\n  C();\n}\n", {{1, 3}}},
      {"comment before", "// About F.\nvoid F() {\n}\n", {{2, 2}}},
      {"arrow", "auto F() -> int {\n  return 1;\n}\n", {{1, 3}}},
      {"class inside a function", "void F() {\n  struct A {\n    int x;\n  };\n}\nvoid G() {}\n", {{1, 5}, {6, 1}}},
      {"slots", "class A {\n  Q_OBJECT\n\n public slots:\n  void F() {\n  }\n};\n", {{5, 2}}},
  };
  for (const auto& expected : cases) {
    std::vector<std::pair<int, int>> found;
    for (const Function& function : FunctionsOf(expected.text)) found.emplace_back(function.line, function.lines);
    EXPECT_EQ(found, expected.lineAndLength) << expected.what;
  }
}

TEST(ReadTree, ReadsTheTextFilesOfTheHouse) {
  const auto tree = ReadTree(QUILLON_SOURCE_DIR);
  const auto holds = [&](std::string_view path) {
    return std::any_of(tree.begin(), tree.end(), [&](const Source& source) { return source.path == path; });
  };
  EXPECT_TRUE(holds("src/base/rect.h"));
  EXPECT_TRUE(holds("tests/arch/source_test.cpp"));
  EXPECT_TRUE(holds("scripts/run"));
  EXPECT_TRUE(holds(".ci/run"));
  EXPECT_TRUE(holds("CMakeLists.txt"));
  EXPECT_TRUE(holds(".clang-tidy"));
  for (const Source& source : tree) {
    EXPECT_FALSE(source.In("build/") || source.In(".git/")) << source.path;
    EXPECT_FALSE(source.text.empty()) << source.path;
  }
}

}  // namespace
}  // namespace quillon::arch
