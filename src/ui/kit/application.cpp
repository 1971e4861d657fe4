// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/kit/application.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>
#include <cstring>

#include "ui/kit/theme/theme.h"

namespace quillon::ui {
namespace {

struct Words {
  const char* source;
  const char* chinese;
};

constexpr Words kWords[] = {
    // Buttons
    {"OK", "确定"},
    {"&OK", "确定(&O)"},
    {"Cancel", "取消"},
    {"&Cancel", "取消(&C)"},
    {"Open", "打开"},
    {"&Open", "打开(&O)"},
    {"Save", "保存"},
    {"&Save", "保存(&S)"},
    {"Close", "关闭"},
    {"&Close", "关闭(&C)"},
    {"&Choose", "选择(&C)"},
    {"&Yes", "是(&Y)"},
    {"&No", "否(&N)"},
    // File dialog
    {"Look in:", "位置："},
    {"Back", "后退"},
    {"Go back", "后退"},
    {"Forward", "前进"},
    {"Go forward", "前进"},
    {"Parent Directory", "上级目录"},
    {"Go to the parent directory", "转到上级目录"},
    {"Create New Folder", "新建文件夹"},
    {"Create a New Folder", "新建文件夹"},
    {"List View", "列表"},
    {"Change to list view mode", "以列表显示"},
    {"Detail View", "详细信息"},
    {"Change to detail view mode", "显示详细信息"},
    {"Sidebar", "侧栏"},
    {"List of places and bookmarks", "位置和书签"},
    {"Files", "文件"},
    {"File &name:", "文件名(&N)："},
    {"Files of type:", "文件类型："},
    {"Directory:", "目录："},
    {"Directories", "目录"},
    {"All Files (*)", "所有文件 (*)"},
    {"&Rename", "重命名(&R)"},
    {"&Delete", "删除(&D)"},
    {"Show &hidden files", "显示隐藏文件(&H)"},
    {"&New Folder", "新建文件夹(&N)"},
    {"New Folder", "新建文件夹"},
    {"Remove", "移除"},
    {"Show ", "显示 "},
    {"Recent Places", "最近的位置"},
    {"Find Directory", "查找目录"},
    {"Name", "名称"},
    {"Size", "大小"},
    {"Type", "类型"},
    {"Kind", "类型"},
    {"Date Modified", "修改日期"},
    {"My Computer", "我的电脑"},
    {"Computer", "计算机"},
    {"Drive", "驱动器"},
    {"Folder", "文件夹"},
    {"File", "文件"},
    {"%1 File", "%1 文件"},
    {"%1\nFile not found.\nPlease verify the correct file name was given.", "%1\n找不到文件。\n请核对文件名。"},
    {"%1\nDirectory not found.\nPlease verify the correct directory name was given.",
     "%1\n找不到目录。\n请核对目录名。"},
    // Colour dialog
    {"Select Color", "选择颜色"},
    {"&Basic colors", "基本颜色(&B)"},
    {"&Custom colors", "自定义颜色(&C)"},
    {"&Add to Custom Colors", "添加到自定义颜色(&A)"},
    {"&Pick Screen Color", "拾取屏幕颜色(&P)"},
    {"Cursor at %1, %2\nPress ESC to cancel", "光标位于 %1, %2\n按 ESC 键取消"},
    {"Hu&e:", "色调(&E)："},
    {"&Sat:", "饱和度(&S)："},
    {"&Val:", "亮度(&V)："},
    {"&Red:", "红(&R)："},
    {"&Green:", "绿(&G)："},
    {"Bl&ue:", "蓝(&U)："},
    {"A&lpha channel:", "透明度(&L)："},
    {"&HTML:", "HTML(&H)："},
    // Menus of text boxes
    {"&Undo", "撤销(&U)"},
    {"&Redo", "重做(&R)"},
    {"Cu&t", "剪切(&T)"},
    {"&Copy", "复制(&C)"},
    {"&Paste", "粘贴(&P)"},
    {"Delete", "删除"},
    {"Select All", "全选"},
    {"&Select All", "全选(&S)"},
    {"&Step up", "增加(&S)"},
    {"Step &down", "减少(&D)"},
    // Docked windows
    {"Float", "浮动"},
    {"Undocks and re-attaches the dock widget", "使窗口浮动或停靠"},
    {"Closes the dock widget", "关闭窗口"},
};

// Translates the texts of the toolkit: file and colour dialogs, text menus and docked windows. The translations that Qt
// provides are a package of their own, which may not be installed.
class ToolkitTexts : public QTranslator {
 public:
  using QTranslator::QTranslator;

  bool isEmpty() const override { return false; }
  QString translate(const char*, const char* source, const char*, int) const override {
    for (const Words& words : kWords) {
      if (std::strcmp(words.source, source) == 0) return QString::fromUtf8(words.chinese);
    }
    return {};
  }
};

}  // namespace

void SetUp(QApplication& application) {
  QApplication::setApplicationName(QStringLiteral("quillon"));
  QApplication::setApplicationDisplayName({});
  QApplication::setApplicationVersion(QStringLiteral(QUILLON_VERSION));
  QApplication::setDesktopFileName(QStringLiteral("quillon"));
  // The main window may be hidden during a run; it ends the program itself.
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication::setWindowIcon(ProgramIcon());
  QLocale::setDefault(QLocale(QLocale::Chinese, QLocale::China));
  QApplication::installTranslator(new ToolkitTexts(&application));
  auto* translator = new QTranslator(&application);
  const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
  if (translator->load(QStringLiteral("qtbase_zh_CN"), folder)) QApplication::installTranslator(translator);
  PreferChineseFonts();
  ApplyTheme(application);
}

}  // namespace quillon::ui
