// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/boxes.h"

#include <gtest/gtest.h>

namespace quillon::host {
namespace {

using Replies = std::vector<Reply>;

// Scripts read a type as its number.
TEST(Boxes, TypesKeepTheirNumbers) {
  EXPECT_EQ(kOkCancelQuestion, 33);
  EXPECT_EQ(kYesNoCancelQuestion, 35);
  EXPECT_EQ(kYesNoQuestion, 36);
  EXPECT_EQ(kOkCancelDefaultCancel, 305);
  EXPECT_EQ(kOkCancelButtons + kStopIcon, 17);
  EXPECT_EQ(kOkCancelButtons + kInformationIcon, 65);
  EXPECT_EQ(kRetryCancelButtons + kStopIcon, 21);
  EXPECT_EQ(kYesNoQuestion + kSecondIsDefault, 292);
  EXPECT_EQ(kYesNoCancelButtons + kExclamationIcon + kThirdIsDefault, 563);
}

TEST(Boxes, ButtonsFollowTheType) {
  EXPECT_EQ(ButtonsOf(0), (Replies{Reply::Ok}));
  EXPECT_EQ(ButtonsOf(1), (Replies{Reply::Ok, Reply::Cancel}));
  EXPECT_EQ(ButtonsOf(2), (Replies{Reply::Abort, Reply::Retry, Reply::Ignore}));
  EXPECT_EQ(ButtonsOf(3), (Replies{Reply::Yes, Reply::No, Reply::Cancel}));
  EXPECT_EQ(ButtonsOf(4), (Replies{Reply::Yes, Reply::No}));
  EXPECT_EQ(ButtonsOf(5), (Replies{Reply::Retry, Reply::Cancel}));
}

TEST(Boxes, IconAndDefaultDoNotChangeTheButtons) {
  EXPECT_EQ(ButtonsOf(21), (Replies{Reply::Retry, Reply::Cancel}));
  EXPECT_EQ(ButtonsOf(32 + 4 + 256), (Replies{Reply::Yes, Reply::No}));
  EXPECT_EQ(ButtonsOf(64), (Replies{Reply::Ok}));
}

TEST(Boxes, EnterPressesTheDefaultButton) {
  struct Row {
    int type;
    Reply reply;
  };
  const Row rows[] = {{0, Reply::Ok},       {1, Reply::Ok},           {1 + 256, Reply::Cancel}, {3 + 32, Reply::Yes},
                      {3 + 256, Reply::No}, {3 + 512, Reply::Cancel}, {2 + 512, Reply::Ignore}, {4 + 512, Reply::Yes},
                      {0 + 256, Reply::Ok}, {21, Reply::Retry},       {21 + 256, Reply::Cancel}};
  for (const Row& row : rows) EXPECT_EQ(DefaultOf(row.type), row.reply) << row.type;
}

}  // namespace
}  // namespace quillon::host
