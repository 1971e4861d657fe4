// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QCheckBox>
#include <QDir>
#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QSpinBox>
#include <csignal>
#include <memory>
#include <set>

#include "build_paths.h"
#include "helpers/dc_tiffs_maker/window/task.h"
#include "helpers/dc_tiffs_maker/window/tiffs_window.h"
#include "host/posix/sqlite_settings.h"
#include "imaging/codecs/tiff_pages.h"
#include "ui/kit/theme/theme.h"
#include "ui/ui_world.h"

namespace quillon::ui {
namespace {

constexpr const char* kHelper = QUILLON_BINARY_DIR "/bin/DCTiffsMaker.exe";
constexpr int kTimeout = 30'000;  // milliseconds that a test waits for another process

class TiffsMaker : public ::testing::Test {
 protected:
  TiffsMaker() {
    for (const char* name : {"in/1.png", "in/2.png", "in/10.png", "in/notes.txt"}) world.folder.Write(name, "x");
    order = {.target = Path("out/a.tif"),
             .compress = true,
             .quality = 1,
             .colour = true,
             .verify = true,
             .dpi = 300,
             .pictures = {Path("in/1.png"), Path("in/2.png")}};
    QDir().mkpath(Shown(Path("out")));
    QDir().mkpath(Shown(world.host.programFolder));
  }

  std::string Path(const std::string& entry) const { return world.folder.Path(entry); }

  // A helper that runs a script in the program folder, with the path of the order as its argument.
  std::string Script(const std::string& lines) const {
    const std::string path = world.folder.Write("helper", "#!/bin/sh\n" + lines);
    chmod(path.c_str(), 0700);
    return path;
  }
  // Runs until a file "go" exists; writes its process id to "pid".
  std::string Waiting(const std::string& end) const {
    return Script("echo $$ > pid.new && mv pid.new pid\nwhile [ ! -e go ]; do sleep 0.01; done\n" + end);
  }

  void Open(const std::string& program) {
    window = std::make_unique<helpers::TiffsWindow>(world.host, order, "说明", program);
    window->show();
    UiWorld::Turn();
  }

  template <typename T>
  T* Find(const char* name) {
    return window->findChild<T*>(QString::fromLatin1(name));
  }
  QPushButton* Button(const QString& begins) {
    for (QPushButton* button : window->findChildren<QPushButton*>()) {
      if (button->text().startsWith(begins)) return button;
    }
    return nullptr;
  }
  void Press(const QString& begins) {
    ASSERT_TRUE(Button(begins)->isEnabled()) << begins.toStdString();
    Button(begins)->click();
  }
  std::string Status() { return Bytes(Find<QLabel>("status")->text()); }
  int Bar() { return window->findChild<QProgressBar*>()->value(); }
  bool Running() { return Button("停止")->isEnabled(); }
  bool Ends() {
    return QTest::qWaitFor([&] { return !Running(); }, kTimeout);
  }
  bool Starts() {
    return QTest::qWaitFor([&] { return world.folder.Exists("app/pid"); }, kTimeout);
  }
  void Report(const std::string& text) { world.settings.Set("DCTiffsMaker", "Default", "MakeTiffProg", text); }
  pid_t Helper() const { return std::stoi(world.folder.Read("app/pid")); }
  bool Says(const std::string& sentence) {
    return QTest::qWaitFor([&] { return Status() == sentence; }, kTimeout);
  }

  host::testing::TestHost world;
  tools::OkList order;
  std::unique_ptr<helpers::TiffsWindow> window;
};

// --- The order

TEST_F(TiffsMaker, ShowsAnOrderAndKeepsWhatItDoesNotShow) {
  order.resize = true;
  order.width = 640;
  order.sharpen = true;
  order.cutRule = "^a";
  order.grey = true;
  order.colour = false;
  Open(kHelper);
  EXPECT_EQ(Find<QListWidget>("list")->count(), 2);
  EXPECT_EQ(Find<QListWidget>("list")->item(1)->text(), Shown(Path("in/2.png")));
  EXPECT_EQ(Find<QLineEdit>("target")->text(), Shown(order.target));
  EXPECT_EQ(Find<QComboBox>("colours")->currentText(), QStringLiteral("灰度"));
  EXPECT_EQ(Find<QComboBox>("quality")->currentText(), QStringLiteral("中品质"));
  EXPECT_EQ(window->findChild<QSpinBox*>()->value(), 300);
  EXPECT_EQ(Find<QLabel>("further")->text(), QStringLiteral("任务文件还要求：缩放、锐化"));
  EXPECT_EQ(Status(), "说明");
  EXPECT_EQ(window->Order(), order);
}

TEST_F(TiffsMaker, WritesTheOrderLineByLine) {
  order.resize = true;
  order.width = 640;
  order.height = 480;
  Open(Script("cp \"$1\" seen\n"));
  Press("开始");
  ASSERT_TRUE(Ends());
  EXPECT_EQ(world.folder.Read("app/seen"),
            "DCTiffsMaker\n" + Path("out/a.tif") +
                "\n1\n1\n1\n0\n1\n640\n480\n0\n0\n0\n0\n0\nFalse\n\n0\nFalse\n0\n1\n\n300\n0\n0\n0\n0\n0\n" +
                Path("in/1.png") + "\n" + Path("in/2.png") + "\n");
  EXPECT_EQ(world.folder.Names("app"), std::vector<std::string>{"seen"});
}

TEST_F(TiffsMaker, ColoursDecideWhatElseCanBeChosen) {
  Open(kHelper);
  auto* compress = window->findChild<QCheckBox*>();
  auto* quality = Find<QComboBox>("quality");
  EXPECT_TRUE(compress->isEnabled() && quality->isEnabled());
  compress->click();
  EXPECT_FALSE(quality->isEnabled());
  Find<QComboBox>("colours")->setCurrentIndex(2);
  EXPECT_FALSE(compress->isEnabled());
  const tools::OkList changed = window->Order();
  EXPECT_FALSE(changed.colour || changed.grey || changed.compress);
}

TEST_F(TiffsMaker, ATargetGetsTheExtensionOfATiff) {
  EXPECT_EQ(helpers::TiffName("/a/b"), "/a/b.tif");
  EXPECT_EQ(helpers::TiffName("/a/b.TIFF"), "/a/b.TIFF");
  EXPECT_EQ(helpers::TiffName("/a/b.jpg"), "/a/b.jpg.tif");
  EXPECT_EQ(helpers::TiffName(""), "");
  EXPECT_EQ(helpers::TiffName("/a/"), "/a/");
}

// --- The list

TEST_F(TiffsMaker, ReadsPicturesOfAFolderAsAPersonCounts) {
  order.pictures.clear();
  Open(kHelper);
  world.dialogs.ChooseFolderNext(Path("in"));
  Press("添加文件夹");
  EXPECT_EQ(window->Order().pictures, (std::vector{Path("in/1.png"), Path("in/2.png"), Path("in/10.png")}));
  EXPECT_EQ(Status(), "添加了 3 张图片。");
  world.dialogs.ChooseFolderNext(Path("out"));
  Press("添加文件夹");
  EXPECT_EQ(Status(), "文件夹里没有可以合成的图片：请另选一个，或直接添加图片。");
}

TEST_F(TiffsMaker, KeepsNamesThatTheScreenCannotShow) {
  order.pictures.clear();
  order.target = Path("out/\xFF.tif");
  Open(kHelper);
  world.dialogs.ChooseFiles({Path("in/\xFE.png")});
  Press("添加图片");
  EXPECT_EQ(window->Order().pictures, std::vector{Path("in/\xFE.png")});
  EXPECT_EQ(window->Order().target, order.target);
}

TEST_F(TiffsMaker, OrdersAndRemovesPictures) {
  order.pictures = {"/1", "/2", "/3", "/4"};
  Open(kHelper);
  auto* list = Find<QListWidget>("list");
  list->setFocus();
  list->setCurrentRow(2);
  list->item(3)->setSelected(true);
  Press("上移");
  EXPECT_EQ(window->Order().pictures, (std::vector<std::string>{"/1", "/3", "/4", "/2"}));
  QTest::keyClick(list, Qt::Key_Up, Qt::AltModifier);
  Press("上移");
  EXPECT_EQ(window->Order().pictures, (std::vector<std::string>{"/3", "/4", "/1", "/2"}));
  Press("下移");
  EXPECT_EQ(window->Order().pictures, (std::vector<std::string>{"/1", "/3", "/4", "/2"}));
  QTest::keyClick(list, Qt::Key_Delete);
  EXPECT_EQ(window->Order().pictures, (std::vector<std::string>{"/1", "/2"}));
  list->setCurrentRow(0);
  Press("移除");
  EXPECT_EQ(window->Order().pictures, (std::vector<std::string>{"/2"}));
  Press("清空");
  EXPECT_TRUE(window->Order().pictures.empty());
}

TEST_F(TiffsMaker, AddsWhatIsDroppedOnTheList) {
  order.pictures.clear();
  Open(kHelper);
  QMimeData data;
  data.setData(QStringLiteral("text/uri-list"),
               QByteArray::fromStdString("file://" + Path("in") + "\r\nfile://" + Path("in/2.png") + "\r\n"));
  auto* list = Find<QListWidget>("list");
  QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  enter.ignore();
  QCoreApplication::sendEvent(list->viewport(), &enter);
  EXPECT_TRUE(enter.isAccepted());
  QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(list->viewport(), &drop);
  EXPECT_EQ(window->Order().pictures,
            (std::vector{Path("in/1.png"), Path("in/2.png"), Path("in/10.png"), Path("in/2.png")}));
}

// --- Reasons not to start

TEST_F(TiffsMaker, SaysWhatIsMissing) {
  const auto hindrance = [&](auto change) {
    tools::OkList changed = order;
    change(changed);
    return helpers::WhyNotStartable(world.files, changed);
  };
  EXPECT_EQ(helpers::WhyNotStartable(world.files, order), "");
  EXPECT_EQ(hindrance([](auto& o) { o.pictures.clear(); }), "请先添加要合成的图片。");
  EXPECT_EQ(hindrance([](auto& o) { o.pictures = {"/a\nb.png"}; }),
            "“a\nb.png”的路径里有换行：请改名，或移除这张图片。");
  EXPECT_EQ(hindrance([](auto& o) { o.pictures = {"/a/../b.png"}; }), "“b.png”的路径不完整：请移除后重新添加。");
  EXPECT_EQ(hindrance([](auto& o) { o.target.clear(); }), "请先点“浏览”，选择生成的Tiff保存在哪里。");
  EXPECT_EQ(hindrance([](auto& o) { o.target = "a.tif"; }),
            "保存位置不是完整的路径：请点“浏览”选择，或输入以 / 开头的路径。");
  EXPECT_EQ(hindrance([](auto& o) { o.target = "/tmp/a\n.tif"; }), "保存位置的名字里有换行：请换一个名字。");
  EXPECT_EQ(hindrance([&](auto& o) { o.target = Path("out"); }), "“out”是一个文件夹：请换一个文件名。");
  EXPECT_EQ(hindrance([&](auto& o) { o.target = Path("none/a.tif"); }), "保存位置的文件夹不存在：请点“浏览”另选一个。");
  EXPECT_EQ(hindrance([&](auto& o) { o.target = Path("in/2.png"); }),
            "“2.png”就在列表里，不能覆盖它：请换一个文件名。");
}

TEST_F(TiffsMaker, StartsNothingWhileSomethingIsMissing) {
  order.pictures.clear();
  Open(Waiting(""));
  Press("开始");
  EXPECT_EQ(Status(), "请先添加要合成的图片。");
  EXPECT_FALSE(Running());
  EXPECT_TRUE(world.folder.Names("app").empty());
}

TEST_F(TiffsMaker, AsksBeforeItReplaces) {
  world.folder.Write("out/a.tif", "old");
  Open(Script("exit 0\n"));
  Press("开始");
  EXPECT_EQ(world.boxes.Count("“a.tif”已经存在，要替换它吗？"), 1);
  EXPECT_EQ(Status(), "说明");
  world.boxes.Answer("要替换它吗", host::Reply::Yes);
  Press("开始");
  ASSERT_TRUE(Ends());
  EXPECT_EQ(Status(), "已生成“a.tif”。");
  // The dialog has asked before.
  world.dialogs.ChooseFiles({Path("out/a.tif")});
  Press("浏览");
  world.boxes.Forget();
  Press("开始");
  ASSERT_TRUE(Ends());
  EXPECT_TRUE(world.boxes.All().empty());
}

TEST_F(TiffsMaker, SaysThatTheOrderCannotBeWritten) {
  Open(Script("exit 0\n"));
  world.faults.Set({.call = host::testing::DiskCall::Write, .nth = 1, .error = ENOSPC});
  Press("开始");
  EXPECT_FALSE(Running());
  EXPECT_EQ(Status().rfind("无法启动合成（", 0), 0U) << Status();
}

TEST_F(TiffsMaker, SaysThatTheHelperIsMissing) {
  Open(Path("nothing-here"));
  Press("开始");
  ASSERT_TRUE(Ends());
  EXPECT_EQ(Status().rfind("无法启动合成（", 0), 0U) << Status();
  EXPECT_TRUE(world.folder.Names("app").empty());
}

// --- A run

TEST_F(TiffsMaker, ShowsTheProgress) {
  Open(Waiting("exit 0\n"));
  Report("old news");
  Press("开始");
  ASSERT_TRUE(Starts());
  EXPECT_EQ(Status(), "正在启动…");
  EXPECT_FALSE(Button("开始")->isEnabled());
  EXPECT_FALSE(Button("添加图片")->isEnabled());
  EXPECT_FALSE(Find<QListWidget>("list")->isEnabled());
  Report("Tiff压制中，2/2");
  EXPECT_TRUE(Says("Tiff压制中，2/2"));
  EXPECT_EQ(Bar(), 1);
  Report("True");
  world.folder.Write("app/go", "");
  ASSERT_TRUE(Ends());
  EXPECT_EQ(Status(), "已生成“a.tif”。");
  EXPECT_EQ(Bar(), 2);
  EXPECT_TRUE(Button("开始")->isEnabled());
}

struct EndCase {
  const char* text;
  const char* script;
  const char* sentence;
};

class TiffsMakerEnds : public TiffsMaker, public ::testing::WithParamInterface<EndCase> {};

TEST_P(TiffsMakerEnds, InASentence) {
  Open(Waiting(GetParam().script));
  Press("开始");
  ASSERT_TRUE(Starts());
  Report(GetParam().text);
  world.folder.Write("app/go", "");
  ASSERT_TRUE(Ends());
  EXPECT_EQ(Status(), GetParam().sentence);
  EXPECT_EQ(world.folder.Names("app"), (std::vector<std::string>{"go", "pid"}));
}

INSTANTIATE_TEST_SUITE_P(
    All, TiffsMakerEnds,
    ::testing::Values(
        EndCase{"True", "exit 0\n", "已生成“a.tif”。"},
        EndCase{"True", "echo 'DCTiffsMaker: 2.png：已损坏' >&2\nexit 0\n",
                "已生成“a.tif”，但少了读不出来的图片（2.png：已损坏）：请修复后重新开始。"},
        EndCase{"FullDisk", "echo 'DCTiffsMaker: 磁盘空间不足' >&2\nexit 1\n",
                "磁盘空间不足，没有生成Tiff：请释放空间，或换一个磁盘保存，再点“开始”。"},
        EndCase{"没有写入权限", "exit 1\n", "没有生成Tiff（没有写入权限）：请检查图片和保存位置后再点“开始”。"},
        EndCase{"", "echo 'DCTiffsMaker: 没有写入权限' >&2\nexit 1\n",
                "没有生成Tiff（没有写入权限）：请检查图片和保存位置后再点“开始”。"},
        EndCase{"", "exit 1\n", "没有生成Tiff（没有说明原因）：请检查图片和保存位置后再点“开始”。"},
        EndCase{"已损坏",
                "echo 'DCTiffsMaker: 1.png：已损坏' >&2\necho 'DCTiffsMaker: 2.png：已损坏' >&2\n"
                "echo 'DCTiffsMaker: 已损坏' >&2\nexit 1\n",
                "没有生成Tiff，因为有图片读不出来（1.png：已损坏，等 2 张）：请移除或修复后再点“开始”。"},
        EndCase{"Tiff压制中，2/2", "kill -9 $$\n",
                "处理第 2 张图片时意外中止，没有生成Tiff：请再点“开始”；如果仍然中止，请移除这张图片。"},
        EndCase{"", "kill -9 $$\n", "程序意外中止，没有生成Tiff：请再点“开始”；如果仍然中止，请移除这张图片。"}));

TEST(TiffsMakerProgress, IsReadFromItsText) {
  const auto picture = helpers::ParseProgress("Tiff压制中，12/345");
  ASSERT_TRUE(picture);
  EXPECT_EQ(picture->number, 12);
  EXPECT_EQ(picture->count, 345);
  for (const char* text : {"", "True", "/", "x/3", "3/", "4/3", "99999999999/3"})
    EXPECT_FALSE(helpers::ParseProgress(text)) << text;
}

TEST_F(TiffsMaker, StopEndsTheProcess) {
  Open(Waiting("exit 0\n"));
  Press("开始");
  ASSERT_TRUE(Starts());
  const pid_t helper = Helper();
  ASSERT_EQ(kill(helper, 0), 0);
  // The draft that a killed helper leaves.
  world.folder.Write("out/.a.tif.quillon-abcdef", "half");
  Press("停止");
  EXPECT_FALSE(Running());
  EXPECT_EQ(kill(helper, 0), -1);
  EXPECT_EQ(Status(), "已停止，没有生成Tiff；点“开始”可以重新合成。");
  EXPECT_EQ(world.folder.Names("app"), std::vector<std::string>{"pid"});
  EXPECT_TRUE(world.folder.Names("out").empty());
}

TEST_F(TiffsMaker, ClosingEndsTheProcessAndEscapeDoesNot) {
  Open(Waiting("exit 0\n"));
  Press("开始");
  ASSERT_TRUE(Starts());
  const pid_t helper = Helper();
  QTest::keyClick(window.get(), Qt::Key_Escape);
  EXPECT_TRUE(window->isVisible());
  EXPECT_EQ(kill(helper, 0), 0);
  Press("关闭");
  EXPECT_FALSE(window->isVisible());
  EXPECT_EQ(kill(helper, 0), -1);
}

TEST_F(TiffsMaker, ClosingTheWindowEndsTheProcess) {
  Open(Waiting("exit 0\n"));
  Press("开始");
  ASSERT_TRUE(Starts());
  const pid_t helper = Helper();
  window.reset();
  EXPECT_EQ(kill(helper, 0), -1);
  EXPECT_EQ(world.folder.Names("app"), std::vector<std::string>{"pid"});
}

TEST_F(TiffsMaker, TheRealHelperMakesTheTiff) {
  host::posix::SqliteSettings store(world.host.programFolder);
  store.Set("test", "Default", "made", "1");
  host::Host& fake = world.host;
  host::Host real{fake.boxes,     fake.dialogs, fake.pump,   fake.clock,    fake.files,        store,
                  fake.processes, fake.shell,   fake.screen, fake.instance, fake.programFolder};
  for (const std::string& picture : order.pictures) {
    QImage image(20, 10, QImage::Format_RGB32);
    image.fill(Qt::red);
    ASSERT_TRUE(image.save(Shown(picture)));
  }
  window = std::make_unique<helpers::TiffsWindow>(real, order, "", kHelper);
  window->show();
  Press("开始");
  ASSERT_TRUE(Ends());
  EXPECT_EQ(Status(), "已生成“a.tif”。");
  int pages = 0;
  EXPECT_TRUE(imaging::CountTiffPages(world.files, order.target, pages));
  EXPECT_EQ(pages, 2);
}

TEST_F(TiffsMaker, WordsFollowTheScheme) {
  order.sharpen = true;
  Open(kHelper);
  ApplyScheme(Scheme::Dark);
  UiWorld::Turn();
  const QPalette dark = PaletteFor(Scheme::Dark);
  EXPECT_EQ(Find<QLabel>("status")->palette().windowText().color(), dark.windowText().color());
  EXPECT_EQ(Find<QLabel>("further")->palette().windowText().color(), FaintInk(dark));
  Press("清空");
  Press("开始");
  EXPECT_EQ(Find<QLabel>("status")->palette().windowText().color(), DangerInk(dark));
  ApplyScheme(Scheme::Light);
  UiWorld::Turn();
  EXPECT_EQ(Find<QLabel>("status")->palette().windowText().color(), DangerInk(PaletteFor(Scheme::Light)));
}

// --- The keyboard

TEST_F(TiffsMaker, EverythingIsReachedByTheKeyboard) {
  Open(kHelper);
  std::set<QString> letters;
  QStringList texts;
  for (const auto* button : window->findChildren<QAbstractButton*>()) texts << button->text();
  for (const auto* label : window->findChildren<QLabel*>()) {
    if (label->buddy()) texts << label->text();
  }
  for (const QString& text : texts) {
    const QRegularExpressionMatch match = QRegularExpression(QStringLiteral("&([A-Z])")).match(text);
    ASSERT_TRUE(match.hasMatch()) << text.toStdString();
    EXPECT_TRUE(letters.insert(match.captured(1)).second) << text.toStdString();
  }
  EXPECT_EQ(letters.size(), 15U);
  std::set<const QWidget*> reached;
  for (const QWidget* widget = window->nextInFocusChain(); widget != window.get();
       widget = widget->nextInFocusChain()) {
    if (widget->focusPolicy() & Qt::TabFocus) reached.insert(widget);
  }
  for (const auto* button : window->findChildren<QAbstractButton*>()) EXPECT_TRUE(reached.contains(button));
  EXPECT_TRUE(reached.contains(Find<QListWidget>("list")));
  EXPECT_TRUE(reached.contains(Find<QLineEdit>("target")));
}

}  // namespace
}  // namespace quillon::ui
