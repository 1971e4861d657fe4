// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/options.h"

#include "cli/replies.h"

namespace quillon::cli {
namespace {

constexpr const char* kUsage = R"(用法：quillon-batch [步骤...] [文件|文件夹...]

像操作窗口一样批量裁剪：填写参数、点击菜单、回答消息框。步骤按给出的先后执行；
文件和文件夹在第一个 --click 之前加入列表。“--”之后的一切都是文件或文件夹。

)";

constexpr const char* kExamples = R"help(
例子：
  四边各裁去 10%，结果写到 out 文件夹：
    quillon-batch --set ChCutA=0 --set 'TCutValue(0)=10' --set 'TCutValue(1)=10' \
      --set 'TCutValue(2)=10' --set 'TCutValue(3)=10' --out out --click menuNormalCut *.jpg

  每张裁成“2寸”，300 DPI 时正好 413x626 像素，质量 90：
    quillon-batch --set ChFixCut=1 --set 'CmbKeepCut=2寸 3.5cmx5.3cm' --set ChExact=1 \
      --set ChJpgComp=1 --set TQuality=90 --out out --click menuNormalCut 照片/

  底边裁去 5%，直接覆盖原文件：
    quillon-batch --set ChCutA=0 --set 'TCutValue(3)=5' --set ChOver=1 --click menuNormalCut a.jpg b.png

  同样的步骤写在文件里，事件逐行输出为 JSON：
    quillon-batch --json --script job.json

  job.json：
    {"steps": [{"files": ["照片"]},
               {"set": {"ChCutA": false, "TCutValue(1)": 12.5, "LOutDir": "/tmp/out"}},
               {"click": "menuNormalCut"},
               {"print": ["LStatus"]}],
     "answers": {"打开输出目录": "No"}}

  用四个进程处理一个文件夹：
    quillon-batch --jobs 4 --set ChKeepDir=1 --out out --click menuNormalCut 照片/

  几十万张图片，不列表，从输入目录直接处理；中断后再运行同一条命令就接着做：
    quillon-batch --jobs 4 --set ChBig=1 --set ChSubFold=1 --set LInDir=/data/照片 --set ChKeepDir=1 \
      --out /data/out --click menuNormalCut

  三台机器中的第一台，图片在共享存储上：
    quillon-batch --shard 1/3 --set ChKeepDir=1 --out /mnt/out --click menuNormalCut /mnt/照片

  查看一个控件，或列出全部控件：
    quillon-batch --print CmbKeepCut
    quillon-batch --list-controls

退出码：0 全部写出；1 有文件没有输出；2 参数有误；3 被中止。
)help";

std::string Padded(const std::string& text, std::size_t width) {
  return text.size() < width ? text + std::string(width - text.size(), ' ') : text + " ";
}

std::string ReplyList() {
  std::string list;
  for (const ReplyName& name : ReplyNames()) {
    list += (list.empty() ? "" : "、") + std::string(name.name) + "（" + name.chinese + "）";
  }
  return list;
}

}  // namespace

const std::vector<Option>& Options() {
  static const std::vector<Option> options{
      {"--set", "NAME=VALUE", "把 VALUE 填入控件 NAME；NAME 为 窗口.控件 或 窗口.控件(i)，Form1. 可省略"},
      {"--out", "DIR", "输出文件夹，等于 --set Form1.LOutDir=DIR"},
      {"--open", "WINDOW", "打开一个窗口"},
      {"--close", "WINDOW", "关闭一个窗口"},
      {"--click", "NAME", "按一个按钮或选一个菜单项；一次裁剪在其中开始并结束"},
      {"--answer", "TEXT=REPLY", "回答文字中含有 TEXT 的消息框或对话框；没有回答的取默认按钮，磁盘满时取 Cancel"},
      {"--print", "NAME", "写出控件的值、文字、可用、可见、选项和范围"},
      {"--script", "FILE.json", "从文件读取同样的步骤和回答"},
      {"--jobs", "N", "用 N 个进程同时处理，各取文件的一份，结果合并报告"},
      {"--shard", "I/N", "只处理全部文件的 N 份中的第 I 份；按相对路径分，每次、每台机器都一样"},
      {"--on-existing", "HOW",
       "输出的名字已被别的文件占用时：replace 替换（默认，旧文件进回收站）、rename 另取名字、skip 跳过"},
      {"--json", "", "每个事件在标准输出占一行 JSON"},
      {"--trace", "", "连同控件的每次变化（只用于 --json）"},
      {"--list-controls", "", "列出全部控件和当前值"},
      {"--help", "", "显示本说明"},
      {"--version", "", "显示版本"},
  };
  return options;
}

std::string HelpText() {
  std::string text = kUsage;
  text += "选项：\n";
  for (const Option& option : Options()) {
    text += "  " + Padded(std::string(option.name) + " " + option.argument, 24) + option.help + "\n";
  }
  text += "\nREPLY 是 " + ReplyList() + "；\n对话框的 REPLY 是文件或文件夹的路径。\n";
  return text + kExamples;
}

std::string VersionText() { return std::string("quillon-batch ") + QUILLON_VERSION + "\n"; }

}  // namespace quillon::cli
