// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The thread on which pictures are read and written.
#include <memory>
#include <string>
#include <thread>

#include "host/disk_thread.h"
#include "imaging/jpeg_maker.h"
#include "imaging/pictures.h"

namespace quillon::imaging {
namespace {

using host::testing::DiskCall;

class ServicesThreadTest : public testing::ServicesTest {
 protected:
  // Saves a prefetched file of that size. Returns whether the calling thread wrote it.
  bool CallerWrites(const std::string& name, std::size_t size) {
    std::thread::id writer;
    world.faults.Before(DiskCall::Write, 1, [&] { writer = std::this_thread::get_id(); });
    std::string content = "\xFF\xD8" + std::string(size - 4, 'x') + "\xFF\xD9";
    const auto shared = std::make_shared<const std::string>(std::move(content));
    EXPECT_TRUE(threaded_.SavePrefetched(shared, Path(name), Encoder::Jpeg));
    EXPECT_EQ(world.folder.Read(name).size(), size);
    return writer == std::this_thread::get_id();
  }

  host::DiskThread thread_{{}};
  Services threaded_{world.files, world.host.programFolder, &thread_};
};

TEST_F(ServicesThreadTest, OnlySmallNewFilesOnALocalDiskAreWrittenByTheCaller) {
  constexpr std::size_t kSmall = std::size_t{256} << 10;
  EXPECT_TRUE(CallerWrites("new.jpg", kSmall));
  EXPECT_FALSE(CallerWrites("new.jpg", kSmall)) << "the old file is synced before it is replaced";
  EXPECT_FALSE(CallerWrites("large.jpg", kSmall + 1));
  world.faults.MakeRemote();
  EXPECT_FALSE(CallerWrites("remote.jpg", kSmall));
}

TEST_F(ServicesThreadTest, PicturesAreReadByTheOtherThread) {
  const testing::MakeOptions options;
  const std::string jpeg = testing::MakeJpeg(testing::TestPicture({20, 10}, options.colours), options);
  const std::string path = world.folder.Write("in.jpg", jpeg);
  std::thread::id reader;
  world.faults.Before(
      DiskCall::Stat, 1, [&] { reader = std::this_thread::get_id(); }, "in.jpg");
  Image image;
  EXPECT_TRUE(threaded_.LoadImageFromFile(path, image));
  EXPECT_NE(reader, std::thread::id());
  EXPECT_NE(reader, std::this_thread::get_id());
}

}  // namespace
}  // namespace quillon::imaging
