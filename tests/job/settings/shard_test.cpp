// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/settings/shard.h"

#include <gtest/gtest.h>

#include <array>

namespace quillon::job {
namespace {

TEST(Shard, TheWholeOwnsEverything) {
  EXPECT_TRUE(Shard().Owns("a/b.jpg"));
  EXPECT_TRUE(Shard().OwnsNamed("/x/a.jpg"));
}

TEST(Shard, EachFileBelongsToOnePart) {
  for (const std::uint64_t count : {2u, 3u, 7u, 64u}) {
    std::vector<int> owned(count);
    for (int i = 0; i < 5000; ++i) {
      const std::string path = "folder/p" + std::to_string(i) + ".jpg";
      int owners = 0;
      for (std::uint64_t index = 0; index < count; ++index) {
        if (!Shard{index, count, ""}.Owns(path)) continue;
        ++owners;
        ++owned[index];
      }
      ASSERT_EQ(owners, 1) << path;
    }
    for (const int files : owned) EXPECT_NEAR(files, 5000.0 / static_cast<double>(count), 130) << count;
  }
}

// Machines with other versions have to agree: these never change.
TEST(Shard, IsTheSameEverywhere) {
  const auto shardOf = [](const std::string& path) {
    for (std::uint64_t index = 0; index < 16; ++index) {
      if (Shard{index, 16, ""}.Owns(path)) return static_cast<int>(index);
    }
    return -1;
  };
  const std::array<std::pair<const char*, int>, 4> known{
      {{"", 2}, {"a.jpg", 12}, {"x/照片.jpg", 14}, {"\xFF.png", 14}}};
  for (const auto& [path, shard] : known) EXPECT_EQ(shardOf(path), shard) << path;
}

TEST(Shard, NamedFilesAreSeenFromTheBase) {
  for (int i = 0; i < 50; ++i) {
    const std::string name = "d/" + std::to_string(i) + ".jpg";
    const Shard shard{1, 2, "/mnt/one"};
    EXPECT_EQ(shard.OwnsNamed("/mnt/one/" + name), shard.Owns(name));
    EXPECT_EQ(shard.OwnsNamed("/mnt/one/" + name), (Shard{1, 2, "/other"}.OwnsNamed("/other/" + name)));
    EXPECT_EQ(shard.OwnsNamed("/mnt/onetwo/" + name), shard.Owns("/mnt/onetwo/" + name));
    EXPECT_EQ((Shard{1, 2, ""}.OwnsNamed("/" + name)), shard.Owns(name)) << "the root";
  }
}

// Overlaps is compared with the files that both own.
TEST(Shard, OverlapIfAFileCanBelongToBoth) {
  for (std::uint64_t count = 1; count <= 6; ++count) {
    for (std::uint64_t other = 1; other <= 6; ++other) {
      for (std::uint64_t index = 0; index < count * other; ++index) {
        const Shard one{index % count, count, ""};
        const Shard two{index / count, other, ""};
        bool overlap = false;
        for (int i = 0; i < 2000 && !overlap; ++i) {
          const std::string path = std::to_string(i);
          overlap = one.Owns(path) && two.Owns(path);
        }
        EXPECT_EQ(one.Overlaps(two), overlap) << one.index << "/" << count << " " << two.index << "/" << other;
      }
    }
  }
}

TEST(Shard, PartsOfAPartAddUpToIt) {
  const Shard shard{2, 3, ""};
  for (int i = 0; i < 500; ++i) {
    const std::string path = std::to_string(i);
    int owners = 0;
    for (std::uint64_t number = 0; number < 4; ++number) owners += shard.Part(number, 4).Owns(path) ? 1 : 0;
    EXPECT_EQ(owners, shard.Owns(path) ? 1 : 0) << path;
  }
  for (std::uint64_t number = 0; number < 4; ++number) {
    const Shard call = shard.Part(number, 4).OfCall();
    EXPECT_EQ(call.index, 2u);
    EXPECT_EQ(call.count, 3u);
  }
  EXPECT_EQ(shard.OfCall().index, 2u);
  EXPECT_EQ(shard.OfCall().count, 3u);
}

}  // namespace
}  // namespace quillon::job
