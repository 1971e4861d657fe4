// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/share.h"

#include <gtest/gtest.h>

#include <array>

namespace quillon::job {
namespace {

TEST(Share, TheWholeTakesEverything) {
  EXPECT_TRUE(Share().Takes("a/b.jpg"));
  EXPECT_TRUE(Share().TakesNamed("/x/a.jpg"));
}

TEST(Share, EachFileBelongsToOnePart) {
  for (const std::uint64_t count : {2u, 3u, 7u, 64u}) {
    std::vector<int> taken(count);
    for (int i = 0; i < 5000; ++i) {
      const std::string path = "folder/p" + std::to_string(i) + ".jpg";
      int takers = 0;
      for (std::uint64_t index = 0; index < count; ++index) {
        if (!Share{index, count, ""}.Takes(path)) continue;
        ++takers;
        ++taken[index];
      }
      ASSERT_EQ(takers, 1) << path;
    }
    for (const int files : taken) EXPECT_NEAR(files, 5000.0 / static_cast<double>(count), 130) << count;
  }
}

// Machines with other versions have to agree: these never change.
TEST(Share, IsTheSameEverywhere) {
  const auto shareOf = [](const std::string& path) {
    for (std::uint64_t index = 0; index < 16; ++index) {
      if (Share{index, 16, ""}.Takes(path)) return static_cast<int>(index);
    }
    return -1;
  };
  const std::array<std::pair<const char*, int>, 4> known{
      {{"", 2}, {"a.jpg", 12}, {"x/照片.jpg", 14}, {"\xFF.png", 14}}};
  for (const auto& [path, share] : known) EXPECT_EQ(shareOf(path), share) << path;
}

TEST(Share, NamedFilesAreSeenFromTheBase) {
  for (int i = 0; i < 50; ++i) {
    const std::string name = "d/" + std::to_string(i) + ".jpg";
    const Share share{1, 2, "/mnt/one"};
    EXPECT_EQ(share.TakesNamed("/mnt/one/" + name), share.Takes(name));
    EXPECT_EQ(share.TakesNamed("/mnt/one/" + name), (Share{1, 2, "/other"}.TakesNamed("/other/" + name)));
    EXPECT_EQ(share.TakesNamed("/mnt/onetwo/" + name), share.Takes("/mnt/onetwo/" + name));
    EXPECT_EQ((Share{1, 2, ""}.TakesNamed("/" + name)), share.Takes(name)) << "the root";
  }
}

// Told by what they take.
TEST(Share, MeetWhereAFileCanBelongToBoth) {
  for (std::uint64_t count = 1; count <= 6; ++count) {
    for (std::uint64_t other = 1; other <= 6; ++other) {
      for (std::uint64_t index = 0; index < count * other; ++index) {
        const Share one{index % count, count, ""};
        const Share two{index / count, other, ""};
        bool meet = false;
        for (int i = 0; i < 2000 && !meet; ++i) {
          const std::string path = std::to_string(i);
          meet = one.Takes(path) && two.Takes(path);
        }
        EXPECT_EQ(one.Meets(two), meet) << one.index << "/" << count << " " << two.index << "/" << other;
      }
    }
  }
}

TEST(Share, PartsOfAPartAddUpToIt) {
  const Share share{2, 3, ""};
  for (int i = 0; i < 500; ++i) {
    const std::string path = std::to_string(i);
    int takers = 0;
    for (std::uint64_t number = 0; number < 4; ++number) takers += share.Part(number, 4).Takes(path) ? 1 : 0;
    EXPECT_EQ(takers, share.Takes(path) ? 1 : 0) << path;
  }
  for (std::uint64_t number = 0; number < 4; ++number) {
    const Share call = share.Part(number, 4).OfCall();
    EXPECT_EQ(call.index, 2u);
    EXPECT_EQ(call.count, 3u);
  }
  EXPECT_EQ(share.OfCall().index, 2u);
  EXPECT_EQ(share.OfCall().count, 3u);
}

}  // namespace
}  // namespace quillon::job
