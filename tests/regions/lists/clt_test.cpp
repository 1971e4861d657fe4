// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The file of a region list, byte by byte.
#include "regions/lists/clt.h"

#include <gtest/gtest.h>

namespace quillon::regions {
namespace {

using Lines = std::vector<std::string>;

TEST(Clt, IsWrittenWithTabsAndBothLineEnds) {
  EXPECT_EQ(WriteClt(Unit::Pixels, {{"10", "20", "30", "40"}, {"0", "0", "100", "100"}}),
            "R\r\n10\t20\t30\t40\r\n0\t0\t100\t100\r\n");
  EXPECT_EQ(WriteClt(Unit::Percent, {{"1.5", "", "x", "2"}}), "D\r\n1.5\t\tx\t2\r\n");
  EXPECT_EQ(WriteClt(Unit::Percent, {}), "D\r\n");
}

TEST(Clt, TheFirstLineIsTheUnitAndNoRegion) {
  EXPECT_EQ(ReadClt("R\r\n1\t2\t3\t4\r\n").unit, Unit::Pixels);
  for (const char* first : {"r", "D", "R ", " R", "", "1\t2\t3\t4", "RR"}) {
    const CltFile file = ReadClt(std::string(first) + "\r\n5\t6\t7\t8\r\n");
    EXPECT_EQ(file.unit, Unit::Percent) << first;
    EXPECT_EQ(file.lines, (Lines{"5\t6\t7\t8"})) << first;
  }
  EXPECT_EQ(ReadClt("R").unit, Unit::Pixels);
  EXPECT_EQ(ReadClt("").unit, Unit::Percent);
  EXPECT_TRUE(ReadClt("").lines.empty());
}

TEST(Clt, AcceptsEveryEndOfALine) {
  for (const char* text : {"R\r\na\r\nb\r\n", "R\r\na\r\nb", "R\na\nb\n", "R\na\nb", "R\ra\rb", "R\na\r\nb\r"}) {
    const CltFile file = ReadClt(text);
    EXPECT_EQ(file.unit, Unit::Pixels) << text;
    EXPECT_EQ(file.lines, (Lines{"a", "b"})) << text;
  }
  EXPECT_EQ(ReadClt("R\r\n\r\na\r\n").lines, (Lines{"", "a"}));
}

TEST(Clt, AMarkOfUtf8IsNoPartOfTheFirstLine) {
  const CltFile file = ReadClt("\xEF\xBB\xBFR\r\n1\t2\t3\t4\r\n");
  EXPECT_EQ(file.unit, Unit::Pixels);
  EXPECT_EQ(file.lines, (Lines{"1\t2\t3\t4"}));
}

TEST(Clt, BytesOfOtherCodePagesStayWhatTheyAre) {
  const std::string gbk = "\xD7\xA2\xCA\xCD\t\xD2\xBB";
  const CltFile file = ReadClt("R\r\n" + gbk + "\r\n1\t2\t3\t4");
  EXPECT_EQ(file.lines, (Lines{gbk, "1\t2\t3\t4"}));
  EXPECT_EQ(WriteClt(Unit::Pixels, {FieldsOf(file.lines[0])}), "R\r\n" + gbk + "\t\t\r\n");
}

TEST(Clt, AcceptsManyAndLongLines) {
  std::string text = "R\r\n";
  for (int i = 0; i < 500; ++i) text += std::to_string(i) + "\t1\t2\t3\r\n";
  EXPECT_EQ(ReadClt(text).lines.size(), 500u);
  const std::string longLine(1 << 20, '7');
  EXPECT_EQ(ReadClt("D\n" + longLine + "\n1\t2\t3\t4").lines, (Lines{longLine, "1\t2\t3\t4"}));
}

}  // namespace
}  // namespace quillon::regions
