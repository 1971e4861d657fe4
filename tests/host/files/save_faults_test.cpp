// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <optional>
#include <set>

#include "host/files/files.h"
#include "host/testing/test_host.h"

namespace quillon::host {
namespace {

namespace fs = std::filesystem;
using testing::DiskCall;
using testing::Fault;
using testing::TestHost;

constexpr const char* kOld = "the old content, whole";
constexpr const char* kNew = "the new content, whole";

// How a file comes to be written: under a free name, over a file, through a link, and each by saving or by copying.
struct Way {
  const char* name;
  bool existing;
  bool link;
  bool copy;
};

constexpr Way kWays[] = {
    {"save fresh", false, false, false}, {"save over", true, false, false}, {"save through a link", true, true, false},
    {"copy fresh", false, false, true},  {"copy over", true, false, true},  {"copy of a program", false, false, true},
};

// What came of one save under one fault.
struct Outcome {
  Status save;
  std::vector<LateFailure> late;
  std::optional<std::string> content;
  int fired = 0;
};

Status FillInSteps(Draft& draft) {
  const std::string_view content = kNew;
  if (Status written = draft.Write(content.data(), 5); !written) return written;
  if (Status written = draft.Write("........", 8); !written) return written;
  if (Status moved = draft.Seek(5); !moved) return moved;
  if (Status written = draft.Write(content.data() + 5, content.size() - 5); !written) return written;
  char start = 0;
  if (Status moved = draft.Seek(0); !moved) return moved;
  return draft.Read(&start, 1) == 1 && start == content[0] ? Status::Ok() : Status(Problem::Other, "读回不符");
}

class World {
 public:
  explicit World(const Way& way) : way_(way) {
    if (way.existing) test_.folder.Write("out/real/a.jpg", kOld);
    if (way.existing && geteuid() == 0) {
      EXPECT_EQ(chown(Real().c_str(), 1234, 4321), 0);
    }
    fs::create_directories(test_.folder.Path("out/real"));
    if (way.link) fs::create_symlink("real/a.jpg", test_.folder.Path("out/a.jpg"));
    test_.folder.Write("source", kNew);
    if (std::string_view(way.name) == "copy of a program") {
      fs::permissions(test_.folder.Path("source"), fs::perms::owner_all);
    }
    test_.faults.Clear();
  }

  testing::FaultyDisk& Faults() { return test_.faults; }

  Outcome Run() {
    Outcome outcome;
    const std::string path = way_.link ? test_.folder.Path("out/a.jpg") : Real();
    outcome.save =
        way_.copy ? test_.files.Copy(test_.folder.Path("source"), path) : test_.files.Save(path, FillInSteps);
    outcome.late = test_.files.Flush();
    outcome.fired = test_.faults.Fired();
    if (test_.folder.Exists("out/real/a.jpg")) outcome.content = test_.folder.Read("out/real/a.jpg");
    return outcome;
  }

  // No draft, nothing but the file, nothing left open, the source and the link as they were.
  void ExpectNothingLeft(const Outcome& outcome) {
    std::vector<std::string> expected;
    if (outcome.content) expected.push_back("a.jpg");
    EXPECT_EQ(test_.folder.Names("out/real"), expected);
    EXPECT_EQ(test_.faults.OpenHandles(), 0);
    EXPECT_EQ(test_.folder.Read("source"), kNew);
    if (way_.link) {
      EXPECT_TRUE(fs::is_symlink(test_.folder.Path("out/a.jpg")));
    }
  }

 private:
  std::string Real() const { return test_.folder.Path("out/real/a.jpg"); }

  const Way& way_;
  TestHost test_;
};

// A failure of these is harmless: a lock only protects from sweeps, a started sync is only a hint, closing comes after
// the sync, and the sync reports again what a stat of the open file would have reported.
const std::set<DiskCall> kHarmless{DiskCall::Lock,  DiskCall::Unlock,   DiskCall::StartSync,
                                   DiskCall::Close, DiskCall::StatOpen, DiskCall::Stat};

// The second opening is of a program that was placed already; without it, the program stays open for writing.
bool Harmless(const Way& way, const Fault& fault) {
  const bool program = std::string_view(way.name) == "copy of a program";
  return kHarmless.contains(fault.call) || fault.kind == Fault::Kind::Short ||
         (program && fault.call == DiskCall::OpenRead && fault.nth == 2);
}

void ExpectTruth(const Way& way, const Fault& fault, const Outcome& outcome) {
  const std::optional<std::string> old = way.existing ? std::optional<std::string>(kOld) : std::nullopt;
  EXPECT_GE(outcome.fired, 1) << "the fault did not fire";
  if (!outcome.save) {
    EXPECT_EQ(outcome.content, old) << "reported as failed";
    EXPECT_TRUE(outcome.late.empty());
    EXPECT_FALSE(outcome.save.Why().empty());
  } else if (!outcome.late.empty() && !way.existing) {
    EXPECT_EQ(outcome.content, std::nullopt) << "reported as failed late";
  } else {
    EXPECT_EQ(outcome.content, kNew) << "reported as written";
  }
  if (Harmless(way, fault)) return;
  EXPECT_TRUE(!outcome.save || !outcome.late.empty()) << "not reported";
  const Status& reported = outcome.save ? outcome.late.front().status : outcome.save;
  EXPECT_EQ(reported.DiskFull(), fault.error == ENOSPC) << reported.Why();
}

// Every call of every kind on the way of a save is made to fail.
class SaveFaults : public ::testing::TestWithParam<Way> {
 protected:
  // The calls of each kind that a run without faults makes.
  std::map<DiskCall, int> CallsOf(const Way& way) {
    World world(way);
    const Outcome outcome = world.Run();
    EXPECT_TRUE(outcome.save) << outcome.save.Why();
    EXPECT_TRUE(outcome.late.empty());
    EXPECT_EQ(outcome.content, kNew);
    std::map<DiskCall, int> counts;
    for (const DiskCall call : world.Faults().Calls()) ++counts[call];
    return counts;
  }

  void Try(const Way& way, const Fault& fault) {
    SCOPED_TRACE(std::string(NameOf(fault.call)) + " number " + std::to_string(fault.nth) + " error " +
                 std::to_string(fault.error) + (fault.length == Fault::Length::Once ? " once" : " for ever") +
                 " kind " + std::to_string(static_cast<int>(fault.kind)));
    World world(way);
    world.Faults().Set(fault);
    const Outcome outcome = world.Run();
    ExpectTruth(way, fault, outcome);
    world.ExpectNothingLeft(outcome);
  }
};

TEST_P(SaveFaults, EveryCallFailing) {
  int tried = 0;
  for (const auto& [call, count] : CallsOf(GetParam())) {
    for (int nth = 1; nth <= count; ++nth) {
      for (const int error : {ENOSPC, EIO}) {
        for (const auto length : {Fault::Length::Once, Fault::Length::ForEver}) {
          Try(GetParam(), {.call = call, .nth = nth, .error = error, .length = length});
          ++tried;
        }
      }
    }
  }
  EXPECT_GT(tried, 40);
}

TEST_P(SaveFaults, EveryWriteTakingOnlyHalf) {
  const int writes = CallsOf(GetParam())[DiskCall::Write];
  ASSERT_GE(writes, 1);
  for (int nth = 1; nth <= writes; ++nth) {
    for (const auto length : {Fault::Length::Once, Fault::Length::ForEver}) {
      Try(GetParam(), {.call = DiskCall::Write, .nth = nth, .length = length, .kind = Fault::Kind::Short});
      for (const int error : {ENOSPC, EIO}) {
        Try(GetParam(),
            {.call = DiskCall::Write, .nth = nth, .error = error, .length = length, .kind = Fault::Kind::HalfError});
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Ways, SaveFaults, ::testing::ValuesIn(kWays), [](const auto& way) {
  std::string name = way.param.name;
  std::replace(name.begin(), name.end(), ' ', '_');
  return name;
});

}  // namespace
}  // namespace quillon::host
