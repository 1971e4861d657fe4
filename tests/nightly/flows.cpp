// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "nightly/flows.h"

#include "tools/converter_order.h"

namespace quillon::nightly {
namespace {

using Words = std::vector<std::string>;

Words operator+(Words words, const Words& more) {
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

Words Set(const Words& settings) {
  Words words;
  for (const std::string& setting : settings) words.insert(words.end(), {"--set", setting});
  return words;
}

// A cut in percent; no box opens the output folder.
const Words kBegin =
    Words{"--json", "--answer", "打开输出目录=No"} + Set({"ChCutA=0", "TCutValue(0)=10", "TCutValue(3)=10"});
const Words kClick = {"--click", "menuNormalCut"};
const Words kFolder = {"--", "in"};
const Words kLarge = Set({"ChBig=1", "LInDir=in"});
const Words kThree = {"a.jpg", "b.png", "c.bmp"};

Flow Batch(const std::string& name, const Words& arguments) {
  Flow flow;
  flow.name = name;
  flow.program = "quillon-batch";
  flow.arguments = arguments;
  flow.pictures = kThree;
  return flow;
}

Flow ThenRead(Flow flow) {
  flow.next = Next::ReadsFolder;
  return flow;
}

Words Effects() {
  return Words{"--open", "FBaseOpt"} + Set({"FBaseOpt.CmbRotate=1", "FBaseOpt.ChToGray=1", "FBaseOpt.ChAddBoard=1",
                                            "FBaseOpt.TBoard(1)=1", "FBaseOpt.ChKeepExif=1", "FBaseOpt.CmbDPI=300"});
}

Flow Regions() {
  Flow flow = Batch("region list", kBegin +
                                       Words{"--out", "out", "--open", "FMultCut", "--answer", "导入=regions.clt",
                                             "--click", "FMultCut.CmdInput", "--click", "FMultCut.CmdOk"} +
                                       kFolder);
  flow.more["regions.clt"] = "D\n10\t20\t30\t15\n0\t0\t60\t50\n";
  return flow;
}

Flow Watch() {
  Flow flow = ThenRead(
      Batch("watch", kBegin + Words{"--open", "FCutTime", "--set", "FCutTime.LDir=in", "--click", "FCutTime.CmdDo"}));
  flow.pictures = {"a.jpg", "a2.jpg"};
  flow.ends = Ends::Interrupted;
  return flow;
}

// Only pictures of the output's type can be cut by hand.
Flow Manual() {
  Flow flow = Batch("manual", kBegin + Words{"--out", "out", "--answer", "/a2.jpg=CmdRot90", "--open", "FBaseOpt"} +
                                  Set({"FBaseOpt.ChMamal=1"}) + kClick + kFolder);
  flow.pictures = {"a.jpg", "a2.jpg"};
  return flow;
}

Flow Converter(const std::string& root) {
  tools::ConverterOrder order;
  order.source = root + "/in/a.jpg";
  order.target = root + "/out/a.png";
  order.OnlyConverter = true;
  Flow flow;
  flow.name = "PicCutConverter";
  flow.program = "PicCutConverter.dll";
  flow.pictures = {"a.jpg"};
  flow.more["Param.txt"] = tools::OrderText(order).value_or("");
  flow.reports = false;
  return flow;
}

}  // namespace

std::vector<Flow> AllFlows(const std::string& root) {
  const Words out = {"--out", "out"};
  const Words over = Set({"ChOver=1"});
  return {Batch("folder", kBegin + out + kClick + kFolder),
          ThenRead(Batch("ChOver", kBegin + over + kClick + kFolder)),
          Batch("effects", kBegin + out + Effects() + kClick + kFolder),
          Regions(),
          Batch("large", kBegin + out + kLarge + kClick),
          Batch("large with ChOver", kBegin + over + kLarge + kClick),
          Watch(),
          Manual(),
          Batch("--jobs 2", Words{"--jobs", "2"} + kBegin + out + kClick + kFolder),
          ThenRead(Converter(root))};
}

Flow ReadingFlow() { return Batch("next call", kBegin + Words{"--out", "out"} + kClick + kFolder); }

}  // namespace quillon::nightly
