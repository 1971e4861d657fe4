// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/tiff_order.h"

#include "base/utf8.h"
#include "tools/tools_fixture.h"

namespace quillon::tools {
namespace {

class TiffOrderTest : public ToolsFixture {
 protected:
  TiffOrderTest() {
    WriteApp("SavePicsToTiff.dll", "twin");
    WriteApp("BasePdf.dll", "pdf");
    world.folder.Write("out/keep.txt", "x");
  }

  int Order(const std::string& mode, const std::string& image, Finish finish) {
    return orders.TiffOrder(target, first, mode, image, finish);
  }

  TiffOrders orders{tools};
  bool first = true;
  std::string target = world.folder.Path("out/Tiff.tiff");
  std::string made = world.folder.Path("out/Tiff~1.tif");
};

TEST_F(TiffOrderTest, PicturesAreOrderedAsOneNewTiff) {
  std::string order;
  Helper("SavePicsToTiff.exe", 1, [&](const std::string& parameters) {
    EXPECT_EQ(parameters, "");
    order = world.folder.Read("app/Ops.txt");
  });
  EXPECT_EQ(Order("SaveNew", "/in/中文.jpg", Finish::No), 0);
  EXPECT_FALSE(first);
  EXPECT_EQ(Order("SaveNew", "/in/b.jpg", Finish::No), 0);
  EXPECT_TRUE(world.shell.Starts().empty());
  EXPECT_EQ(Order("SaveNew", "", Finish::Yes), 0);
  EXPECT_TRUE(first);
  EXPECT_EQ(orders.NewTiff(), made);
  EXPECT_EQ(order, base::Utf16WithMark(made + "\r\nSaveNew\r\n/in/中文.jpg\r\n/in/b.jpg\r\n"));
  EXPECT_EQ(world.folder.Names("out"), std::vector<std::string>{"keep.txt"});
  EXPECT_FALSE(AppHas("SavePicsToTiff.exe"));
  EXPECT_FALSE(AppHas("Ops.txt"));
}

TEST_F(TiffOrderTest, AnOrderFileThatDoesNotOpenIsTriedOnceMore) {
  using Length = host::testing::Fault::Length;
  for (const Length length : {Length::Once, Length::ForEver}) {
    world.faults.Set(
        {.call = host::testing::DiskCall::OpenNew, .error = EACCES, .length = length, .pathHolds = "Ops.txt"});
    const std::size_t before = world.shell.Starts().size();
    Helper("SavePicsToTiff.exe", 1);
    Order("SaveNew", "/in/a.jpg", Finish::No);
    Order("SaveNew", "", Finish::Yes);
    EXPECT_EQ(world.shell.Starts().size() - before, length == Length::Once ? 1u : 0u);
    world.faults.Clear();
  }
}

// A name without a file has no short name yet, so a file is created for a moment. If that fails, the order is the same.
TEST_F(TiffOrderTest, ANewNameIsTriedOut) {
  for (const bool fails : {false, true}) {
    world.faults.Clear();
    if (fails) {
      world.faults.Set({.call = host::testing::DiskCall::OpenNew, .error = EACCES, .pathHolds = "Tiff.tiff"});
    } else {
      world.faults.Before(host::testing::DiskCall::Remove, 1,
                          [this] { EXPECT_EQ(world.folder.Read("out/Tiff.tiff"), "pdf"); });
    }
    Order("SaveNew", "/in/a.jpg", Finish::No);
    EXPECT_EQ(world.faults.Fired(), fails ? 1 : 0);
    EXPECT_EQ(world.faults.Count(host::testing::DiskCall::Remove), fails ? 0 : 1);
    EXPECT_EQ(world.folder.Names("out"), std::vector<std::string>{"keep.txt"});
    std::string order;
    Helper("SavePicsToTiff.exe", 1, [&](const std::string&) { order = world.folder.Read("app/Ops.txt"); });
    Order("SaveNew", "", Finish::Yes);
    EXPECT_EQ(order, base::Utf16WithMark(made + "\r\nSaveNew\r\n/in/a.jpg\r\n"));
  }
}

TEST_F(TiffOrderTest, AShortNameIsUsedAsItIs) {
  target = world.folder.Write("out/Tiff.tif", "to be replaced");
  Order("SaveNew", "/in/a.jpg", Finish::No);
  EXPECT_EQ(orders.NewTiff(), target);
}

TEST_F(TiffOrderTest, AFileThatHasTheShortNameStays) {
  world.folder.Write("out/Tiff~1.tif", "of the user");
  world.folder.Write("out/Tiff~2.tif", "another result");
  std::string order;
  Helper("SavePicsToTiff.exe", 1, [&](const std::string&) {
    order = world.folder.Read("app/Ops.txt");
    EXPECT_TRUE(world.files.Save(orders.NewTiff(), "made"));
  });
  Order("SaveNew", "/in/a.jpg", Finish::No);
  EXPECT_EQ(orders.NewTiff(), world.folder.Path("out/Tiff~3.tif"));
  Order("SaveNew", "", Finish::Yes);
  EXPECT_EQ(order, base::Utf16WithMark(orders.NewTiff() + "\r\nSaveNew\r\n/in/a.jpg\r\n"));
  EXPECT_EQ(world.folder.Read("out/Tiff~1.tif"), "of the user");
  EXPECT_EQ(world.folder.Read("out/Tiff~2.tif"), "another result");
  EXPECT_EQ(world.folder.Read("out/Tiff~3.tif"), "made");
}

TEST_F(TiffOrderTest, WithoutAFreeShortNameNothingIsOrdered) {
  for (int number = 1; number <= 9; ++number) {
    world.folder.Write("out/Tiff~" + std::to_string(number) + ".tif", "taken");
  }
  Order("SaveNew", "/in/a.jpg", Finish::No);
  EXPECT_EQ(orders.NewTiff(), "");
  EXPECT_EQ(Order("SaveNew", "", Finish::Yes), 0);
  EXPECT_TRUE(world.shell.Starts().empty());
  EXPECT_EQ(world.folder.Read("out/Tiff~9.tif"), "taken");
}

TEST_F(TiffOrderTest, AFileThatGrowsIsWaitedFor) {
  Helper("SavePicsToTiff.exe", 0, [&](const std::string&) { world.folder.Write("out/Tiff~1.tif", "1"); });
  std::string content = "1";
  world.pump.EveryTurn([&] {
    if (world.clock.Seconds() < 1.5) world.folder.Write("out/Tiff~1.tif", content += "1");
  });
  Order("SaveNew", "/in/a.jpg", Finish::No);
  Order("SaveNew", "", Finish::Yes);
  EXPECT_GT(world.clock.Seconds(), 1.5);
  EXPECT_LT(world.clock.Seconds(), 2.1);
  EXPECT_EQ(world.processes.Ended().size(), 1u);
  EXPECT_TRUE(world.folder.Exists("out/Tiff~1.tif"));
}

TEST_F(TiffOrderTest, AnAssemblyThatLastsIsShown) {
  Helper("SavePicsToTiff.exe", 0);
  std::string content;
  world.pump.EveryTurn([&] {
    if (world.clock.Seconds() < 4) world.folder.Write("out/Tiff~1.tif", content += "1");
  });
  Order("SaveNew", "/in/a.jpg", Finish::No);
  Order("SaveNew", "", Finish::Yes);
  EXPECT_EQ(waiting, (std::vector<std::string>{"SavePicsToTiff.exe", ""}));
}

TEST_F(TiffOrderTest, ADraftThatGrowsIsWaitedForAndSweptWhenItStops) {
  Helper("SavePicsToTiff.exe", 0,
         [&](const std::string&) { world.folder.Write("out/.Tiff~1.tif.quillon-aaaaaa", ""); });
  std::string content;
  world.pump.EveryTurn([&] {
    if (world.clock.Seconds() < 1) world.folder.Write("out/.Tiff~1.tif.quillon-aaaaaa", content += "1");
  });
  Order("SaveNew", "/in/a.jpg", Finish::No);
  Order("SaveNew", "", Finish::Yes);
  EXPECT_GT(world.clock.Seconds(), 1);
  EXPECT_EQ(world.folder.Names("out"), std::vector<std::string>{"keep.txt"});
}

TEST_F(TiffOrderTest, AFirstPageThatIsTooSlowIsNotWaitedFor) {
  Helper("SavePicsToTiff.exe", 0);
  Order("SaveNew", "/in/a.jpg", Finish::No);
  const double before = world.clock.Seconds();
  Order("SaveNew", "", Finish::Yes);
  EXPECT_NEAR(world.clock.Seconds() - before, 0.2, 0.05);
  EXPECT_EQ(world.processes.Ended().size(), 1u);
}

TEST_F(TiffOrderTest, PagesAreCountedAtOnce) {
  target = world.folder.Write("out/many pages.tiff", "tiff");
  std::string order;
  Helper("SavePicsToTiff.exe", 0, [&](const std::string&) {
    order = world.folder.Read("app/Ops.txt");
    WriteApp("Ops.txt", "17\r\n");
  });
  const double before = world.clock.Seconds();
  EXPECT_EQ(Order("1", "", Finish::No), 17);
  EXPECT_TRUE(first);
  EXPECT_NEAR(world.clock.Seconds() - before, 0.6, 0.1);
  EXPECT_EQ(world.processes.Ended().size(), 1u);
  EXPECT_EQ(order, base::Utf16WithMark(target + "\r\n1\r\n"));
  EXPECT_EQ(world.folder.Read("out/many pages.tiff"), "tiff");
}

TEST_F(TiffOrderTest, ACountIsReadInEitherCoding) {
  target = world.folder.Write("out/a.tif", "tiff");
  Helper("SavePicsToTiff.exe", 1, [&](const std::string&) { WriteApp("Ops.txt", base::Utf16WithMark("23\r\n1\r\n")); });
  EXPECT_EQ(Order("1", "", Finish::No), 23);
}

TEST_F(TiffOrderTest, ACountThatWasNotMadeIsNone) {
  target = world.folder.Write("out/a1.tif", "tiff");
  Helper("SavePicsToTiff.exe", 1);
  EXPECT_EQ(Order("1", "", Finish::No), 0);
  Helper("SavePicsToTiff.exe", 1, [this](const std::string&) { (void)!world.files.RemoveOwn(App("Ops.txt")); });
  EXPECT_EQ(Order("1", "", Finish::No), 0);
}

TEST_F(TiffOrderTest, AToolThatDoesNotRunLacksItsRuntime) {
  world.shell.SetResult("SavePicsToTiff", host::kStartDenied);
  world.boxes.Answer("Net", host::Reply::No, 1);
  Order("SaveNew", "/in/a.jpg", Finish::No);
  Order("SaveNew", "", Finish::Yes);
  ASSERT_EQ(world.boxes.All().size(), 1u);
  EXPECT_EQ(world.boxes.All()[0].box.text,
            "本机需要先安装Microsoft Net Framework 3.5或以上版本运行环境方能使用本功能！\r\n"
            "要立即下载Net3.5安装包吗？");
  EXPECT_EQ(world.boxes.All()[0].box.type & 0xF, 4);
  EXPECT_TRUE(world.shell.Addresses().empty());
  EXPECT_TRUE(first);
  EXPECT_FALSE(AppHas("Ops.txt"));
  world.boxes.Answer("Net", host::Reply::Yes, 1);
  Order("SaveNew", "/in/a.jpg", Finish::No);
  Order("SaveNew", "", Finish::Yes);
  EXPECT_EQ(world.shell.Addresses().size(), 1u);
}

TEST_F(TiffOrderTest, AMissingToolIsNoLackOfTheRuntime) {
  world.folder.Write("app/SavePicsToTiff.dll", "");
  (void)!world.files.RemoveOwn(App("SavePicsToTiff.dll"));
  world.shell.SetResult("SavePicsToTiff", host::kStartMissing);
  Order("SaveNew", "/in/a.jpg", Finish::No);
  EXPECT_EQ(Order("SaveNew", "", Finish::Yes), 0);
  EXPECT_TRUE(world.boxes.All().empty());
}

TEST_F(TiffOrderTest, NamesThatCannotBeCarriedAreReported) {
  std::string order;
  Helper("SavePicsToTiff.exe", 1, [&](const std::string&) { order = world.folder.Read("app/Ops.txt"); });
  Order("SaveNew", "/in/a\nb.jpg", Finish::No);
  Order("SaveNew", "/in/\xFF.jpg", Finish::No);
  Order("SaveNew", "/in/c.jpg", Finish::Yes);
  EXPECT_EQ(orders.Refused(), (std::vector<std::string>{"/in/a\nb.jpg", "/in/\xFF.jpg"}));
  EXPECT_EQ(order, base::Utf16WithMark(made + "\r\nSaveNew\r\n/in/c.jpg\r\n"));
  target = "/out/a\nb.tif";
  Order("SaveNew", "/in/c.jpg", Finish::No);
  Order("SaveNew", "", Finish::Yes);
  EXPECT_EQ(world.shell.Starts().size(), 1u);
}

TEST_F(TiffOrderTest, AStopEndsTheTool) {
  Helper("SavePicsToTiff.exe", 0);
  std::string content;
  world.pump.EveryTurn([&] { world.folder.Write("out/Tiff~1.tif", content += "1"); });
  world.pump.OnTurn(50, [this] { stop = true; });
  Order("SaveNew", "/in/a.jpg", Finish::No);
  Order("SaveNew", "", Finish::Yes);
  EXPECT_EQ(world.processes.Ended().size(), 1u);
  EXPECT_LT(world.clock.Seconds(), 1);
}

}  // namespace
}  // namespace quillon::tools
