// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QScreen>
#include <QTimer>

#include "host/testing/test_host.h"
#include "ui/desktop/desktop_shell.h"
#include "ui/desktop/hand_over.h"
#include "ui/desktop/qt_boxes.h"
#include "ui/desktop/qt_host.h"
#include "ui/kit/text.h"
#include "ui/user_hand.h"

namespace quillon::ui {
namespace {

using host::Reply;

struct BoxFacts {
  QStringList buttons;
  QString standard, text, title;
  QMessageBox::Icon icon = QMessageBox::NoIcon;
};

// Shows a box of the type and clicks a button, or closes the box if button is empty.
Reply Press(int type, const QString& button, BoxFacts* facts = nullptr) {
  QTimer::singleShot(0, qApp, [&] {
    auto* box = dynamic_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    QAbstractButton* wanted = nullptr;
    for (QAbstractButton* one : box->buttons()) {
      if (facts) facts->buttons << one->text();
      if (one->text() == button) wanted = one;
    }
    if (facts) {
      facts->buttons.sort();
      facts->standard = box->defaultButton()->text();
      facts->text = box->text();
      facts->title = box->windowTitle();
      facts->icon = box->icon();
    }
    if (button.isEmpty()) {
      box->close();
    } else {
      ASSERT_NE(wanted, nullptr) << button.toStdString();
      wanted->click();
    }
  });
  QtBoxes boxes;
  return boxes.Show({.text = "要打开输出目录吗？\r\n<b>第二行</b>", .type = type});
}

struct BoxCase {
  int type;
  const char* button;
  Reply reply;
};

class BoxButtons : public ::testing::TestWithParam<BoxCase> {};

TEST_P(BoxButtons, GiveTheirReply) {
  EXPECT_EQ(Press(GetParam().type, QString::fromUtf8(GetParam().button)), GetParam().reply);
}

INSTANTIATE_TEST_SUITE_P(
    Types, BoxButtons,
    ::testing::Values(BoxCase{0, "确定", Reply::Ok}, BoxCase{65, "确定", Reply::Ok}, BoxCase{65, "取消", Reply::Cancel},
                      BoxCase{2, "中止", Reply::Abort}, BoxCase{2, "重试", Reply::Retry},
                      BoxCase{2, "忽略", Reply::Ignore}, BoxCase{563, "是", Reply::Yes}, BoxCase{563, "否", Reply::No},
                      BoxCase{563, "取消", Reply::Cancel}, BoxCase{4, "是", Reply::Yes}, BoxCase{4, "否", Reply::No},
                      BoxCase{5, "重试", Reply::Retry}, BoxCase{5, "取消", Reply::Cancel},
                      // A closed box replies Cancel, or the default if it has no such button.
                      BoxCase{0, "", Reply::Ok}, BoxCase{1, "", Reply::Cancel}, BoxCase{563, "", Reply::Cancel},
                      BoxCase{5, "", Reply::Cancel}, BoxCase{4, "", Reply::Yes}, BoxCase{260, "", Reply::No},
                      BoxCase{2, "", Reply::Abort}));

TEST(Boxes, ShowTextTitleIconAndDefault) {
  BoxFacts facts;
  Press(563, QStringLiteral("否"), &facts);
  EXPECT_EQ(facts.buttons, (QStringList{QStringLiteral("取消"), QStringLiteral("否"), QStringLiteral("是")}));
  EXPECT_EQ(facts.standard, QStringLiteral("取消"));
  EXPECT_EQ(facts.text, QStringLiteral("要打开输出目录吗？\r\n<b>第二行</b>"));
  EXPECT_EQ(facts.icon, QMessageBox::Warning);
  EXPECT_EQ(facts.title, QStringLiteral("消息"));
}

TEST(Boxes, IconsFollowTheType) {
  for (const auto& [type, icon] :
       std::initializer_list<std::pair<int, QMessageBox::Icon>>{{0, QMessageBox::NoIcon},
                                                                {16, QMessageBox::Critical},
                                                                {33, QMessageBox::Question},
                                                                {48, QMessageBox::Warning},
                                                                {65, QMessageBox::Information},
                                                                {305, QMessageBox::Warning}}) {
    BoxFacts facts;
    Press(type, QStringLiteral("确定"), &facts);
    EXPECT_EQ(facts.icon, icon) << type;
  }
}

TEST(Dialogs, FiltersAreWrittenAsTheToolkitReadsThem) {
  EXPECT_EQ(ToolkitFilter("动态gif|*.gif"), QStringLiteral("动态gif (*.gif)"));
  EXPECT_EQ(ToolkitFilter("支持的类型|*.jpg;*jpe|图片文件(*.tif,*.tiff)|*.tif;*.tiff"),
            QStringLiteral("支持的类型 (*.jpg *jpe);;图片文件 (*.tif *.tiff)"));
  EXPECT_EQ(ToolkitFilter(""), QString());
}

TEST(UriList, KeepsNamesByteForByte) {
  QMimeData data;
  data.setData(QStringLiteral("text/uri-list"),
               "# remark\r\nfile:///tmp/a%20b%5B1%5D.jpg\r\nfile://host/tmp/%D6%D0.jpg\r\nhttp://x/y.jpg\r\n"
               "file:///tmp/%E5%9B%BE\r\n\r\n");
  EXPECT_EQ(PathsOf(data), (std::vector<std::string>{"/tmp/a b[1].jpg", "/tmp/\xd6\xd0.jpg", "/tmp/图"}));
}

TEST(UriList, IsEmptyForOtherData) {
  QMimeData data;
  data.setText(QStringLiteral("/tmp/a.jpg"));
  EXPECT_TRUE(PathsOf(data).empty());
}

TEST(Pump, LetsTimersRun) {
  bool ran = false;
  QtPump pump;
  QTimer::singleShot(0, qApp, [&] { ran = true; });
  pump.Turn();
  EXPECT_TRUE(ran);
}

TEST(Screen, ReturnsRealPixels) {
  QtScreen screen;
  const QScreen* primary = QGuiApplication::primaryScreen();
  EXPECT_EQ(screen.DesktopSize().width, qRound(primary->size().width() * primary->devicePixelRatio()));
  EXPECT_GE(screen.Dpi(), 72);
}

TEST(Shell, GoesOnWithoutAFileManager) {
  qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere");
  host::testing::RecordingShell fallback;
  DesktopShell shell(fallback);
  shell.OpenFolder("/tmp/输出");
  shell.Reveal("/tmp/a b.jpg");
  for (int turn = 0; turn < 200 && fallback.Revealed().empty(); ++turn) QTest::qWait(10);
  EXPECT_EQ(fallback.Folders(), std::vector<std::string>{"/tmp/输出"});
  EXPECT_EQ(fallback.Revealed(), std::vector<std::string>{"/tmp/a b.jpg"});
  EXPECT_EQ(shell.Start("/bin/true", {"x"}, "/tmp"), host::kStarted);
  EXPECT_EQ(fallback.Starts().size(), 1u);
}

// --- The wallpaper

class WallpaperTest : public ::testing::Test {
 protected:
  std::string Of(const char* desktop) {
    return WallpaperOf(QString::fromUtf8(desktop), QString::fromStdString(folder_.Path()),
                       [this](const QString& schema, const QString& key) {
                         asked_ << schema + u' ' + key;
                         return answer_;
                       });
  }
  host::testing::TempFolder folder_;
  std::string picture_ = folder_.Write("桌面 1.jpg", "x");
  QString answer_;
  QStringList asked_;
};

TEST_F(WallpaperTest, OfGnomeIsAnAddress) {
  answer_ = QStringLiteral("'file://%1/%E6%A1%8C%E9%9D%A2%201.jpg'\n").arg(QString::fromStdString(folder_.Path()));
  EXPECT_EQ(Of("ubuntu:GNOME"), picture_);
  EXPECT_EQ(asked_, QStringList{QStringLiteral("org.gnome.desktop.background picture-uri")});
}

TEST_F(WallpaperTest, OfMateIsAPath) {
  answer_ = QStringLiteral("'%1'").arg(QString::fromStdString(picture_));
  EXPECT_EQ(Of("MATE"), picture_);
  EXPECT_EQ(asked_, QStringList{QStringLiteral("org.mate.background picture-filename")});
}

TEST_F(WallpaperTest, OfKdeIsTheLastImageThatIsThere) {
  folder_.Write("plasma-org.kde.plasma.desktop-appletsrc",
                "[Wallpaper]\nImage=/none.jpg\nImage=file://" + picture_ + "\nImage=/gone.jpg\n");
  EXPECT_EQ(Of("KDE"), picture_);
}

TEST_F(WallpaperTest, OfXfceStandsInItsSettings) {
  folder_.Write("xfce4/xfconf/xfce-perchannel-xml/xfce4-desktop.xml",
                "<property name=\"last-image\" type=\"string\" value=\"" + picture_ + "\"/>");
  EXPECT_EQ(Of("XFCE"), picture_);
}

TEST_F(WallpaperTest, IsEmptyIfItIsNotKnown) {
  EXPECT_EQ(Of(""), "");
  EXPECT_EQ(Of("KDE"), "");
  EXPECT_EQ(Of("GNOME"), "");
  answer_ = QStringLiteral("'/no/such.jpg'");
  EXPECT_EQ(Of("MATE"), "");
}

// --- News

TEST(QtBoxes, NewsOfTheOwnerIsALine) {
  QWidget owner;
  owner.show();
  owner.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&owner));
  QStringList lines;
  QtBoxes boxes;
  boxes.SetOwner(&owner);
  boxes.SetNews([&](const QString& line) { lines << line; });
  EXPECT_EQ(boxes.Show({.text = "添加完毕！\r\n第二行"}), Reply::Ok);
  EXPECT_EQ(boxes.Show({.text = "本机异常", .notice = "未加入：a.jpg"}), Reply::Ok);
  EXPECT_EQ(lines, (QStringList{QStringLiteral("添加完毕！ 第二行"), QStringLiteral("未加入：a.jpg")}));
}

TEST(QtBoxes, QuestionsAndNewsForAnotherWindowAreBoxes) {
  QWidget owner;
  owner.show();
  QWidget other;
  other.show();
  other.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
  QStringList lines;
  QtBoxes boxes;
  boxes.SetOwner(&owner);
  boxes.SetNews([&](const QString& line) { lines << line; });
  AnswerNextBox(QStringLiteral("确定"));
  EXPECT_EQ(boxes.Show({.text = "添加完毕！"}), Reply::Ok);
  owner.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&owner));
  AnswerNextBox(QStringLiteral("取消"));
  EXPECT_EQ(boxes.Show({.text = "要继续吗？", .type = host::kOkCancelQuestion}), Reply::Cancel);
  EXPECT_TRUE(lines.isEmpty());
}

// --- A second start

TEST(HandOverWatch, PassesTheFilesOfAnotherStart) {
  const host::testing::TestHost world;
  const std::string folder = world.folder.Path("app");
  ASSERT_TRUE(HandOver(world.host.files, folder, {"/early.jpg"}));
  std::vector<std::vector<std::string>> received;
  bool busy = true;
  const HandOverWatch watch(world.host.files, folder, [&](const std::vector<std::string>& paths) {
    if (!busy) received.push_back(paths);
    return !std::exchange(busy, false);
  });
  ASSERT_TRUE(QTest::qWaitFor([&] { return !received.empty(); }));
  EXPECT_EQ(received, std::vector<std::vector<std::string>>{{"/early.jpg"}}) << "handed over before the watch began";
  received.clear();
  const std::vector<std::string> paths{"/in/图 1.jpg", "/in/a\nb.jpg", "/in/\xff.jpg"};
  ASSERT_TRUE(HandOver(world.host.files, folder, paths));
  ASSERT_TRUE(QTest::qWaitFor([&] { return !received.empty(); }));
  EXPECT_EQ(received, std::vector<std::vector<std::string>>{paths});
  EXPECT_TRUE(QTest::qWaitFor([&] {
    std::size_t left = 0;
    (void)world.host.files.ListFolder(folder, [&](const host::FolderEntry& entry) {
      left += entry.name.starts_with("handed-over-") ? 1 : 0;
      return true;
    });
    return left == 0;
  }));
}

}  // namespace
}  // namespace quillon::ui
