// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Holds the whole tree to the rules.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <cstdlib>

#include "arch/rules.h"
#include "build_paths.h"

namespace quillon::arch {
namespace {

const std::vector<Source>& Tree() {
  static const std::vector<Source> kTree = ReadTree(QUILLON_SOURCE_DIR);
  return kTree;
}

struct NamedRule {
  const char* name;
  Breaches (*check)(const Source&);
};

class WholeTree : public testing::TestWithParam<NamedRule> {};

TEST_P(WholeTree, KeepsTheRule) {
  ASSERT_GT(Tree().size(), 50u);
  for (const Source& source : Tree()) {
    for (const Breach& breach : GetParam().check(source)) ADD_FAILURE() << breach;
  }
}

INSTANTIATE_TEST_SUITE_P(Rules, WholeTree,
                         testing::Values(NamedRule{"Layers", CheckLayers}, NamedRule{"Rooms", CheckRooms},
                                         NamedRule{"Libraries", CheckLibraries}, NamedRule{"Platform", CheckPlatform},
                                         NamedRule{"Wiring", CheckWiring}, NamedRule{"Writes", CheckWrites},
                                         NamedRule{"WorkFiles", CheckWorkFiles}, NamedRule{"Sizes", CheckSizes},
                                         NamedRule{"Licence", CheckLicence}, NamedRule{"Text", CheckText},
                                         NamedRule{"Names", CheckNames}),
                         [](const auto& rule) { return rule.param.name; });

TEST(Tree, KeepsHeavyHeadersPrivate) {
  for (const Breach& breach : CheckHeavyHeaders(Tree())) ADD_FAILURE() << breach;
}

TEST(Tree, HasFewTinyFiles) {
  for (const Breach& breach : CheckTinyFiles(Tree())) ADD_FAILURE() << breach;
}

TEST(Tree, HasNoCrowdedFolder) {
  for (const Breach& breach : CheckFolders(Tree())) ADD_FAILURE() << breach;
}

struct Outcome {
  int exit = -1;
  std::string output;
};

// Runs a shell line in the root of the tree.
Outcome Shell(const std::string& arguments) {
  const std::string command = "cd '" QUILLON_SOURCE_DIR "' && " + arguments + " 2>&1";
  Outcome outcome;
  std::FILE* pipe = popen(command.c_str(), "r");
  if (!pipe) return outcome;
  std::array<char, 4096> block{};
  while (const std::size_t count = std::fread(block.data(), 1, block.size(), pipe)) {
    outcome.output.append(block.data(), count);
  }
  outcome.exit = WEXITSTATUS(pclose(pipe));
  return outcome;
}

class Formatting : public testing::Test {
 protected:
  void SetUp() override {
    if (Shell("clang-format --version").exit != 0) GTEST_SKIP() << "clang-format is not installed";
  }
};

TEST_F(Formatting, OfEverySourceIsTheHouseStyle) {
  std::string files;
  for (const Source& source : Tree()) {
    if (source.IsCode()) files += " '" + source.path + "'";
  }
  const Outcome outcome = Shell("clang-format --dry-run -Werror" + files);
  EXPECT_EQ(outcome.exit, 0) << outcome.output;
}

TEST_F(Formatting, IsSeenToBeWrong) {
  EXPECT_NE(Shell("echo 'int  a;' | clang-format --dry-run -Werror --assume-filename=src/base/a.cpp").exit, 0);
  EXPECT_EQ(Shell("echo 'int a;' | clang-format --dry-run -Werror --assume-filename=src/base/a.cpp").exit, 0);
}

}  // namespace
}  // namespace quillon::arch
