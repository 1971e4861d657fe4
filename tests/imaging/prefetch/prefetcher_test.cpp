// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/prefetch/prefetcher.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <set>
#include <stdexcept>

#include "host/background_call.h"
#include "host/posix/posix_disk.h"
#include "host/testing/fakes.h"
#include "imaging/jpeg/jpeg_cut.h"
#include "imaging/jpeg_maker.h"
#include "imaging/scratch_folder.h"

namespace quillon::imaging {
namespace {

using host::Problem;
using testing::ScratchFolder;

// Lets work go on when the test says so.
class Gate {
 public:
  void Open() {
    {
      const std::lock_guard lock(mutex_);
      open_ = true;
    }
    changed_.notify_all();
  }
  // Ends early when stop is requested.
  void Pass(std::stop_token stop = {}) {
    std::unique_lock lock(mutex_);
    ++waiting_;
    changed_.notify_all();
    changed_.wait(lock, stop, [this] { return open_; });
    --waiting_;
  }
  void AwaitWaiting(int count) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return waiting_ >= count; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable_any changed_;
  bool open_ = false;
  int waiting_ = 0;
};

// What worker threads did, in order.
class Log {
 public:
  void Add(const std::string& what) {
    const std::lock_guard lock(mutex_);
    lines_.push_back(what);
  }
  std::vector<std::string> Lines() const {
    const std::lock_guard lock(mutex_);
    return lines_;
  }

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> lines_;
};

class PrefetcherTest : public ::testing::Test {
 protected:
  CropRequest Request(const std::string& name, int left = 0) {
    CropRequest request;
    request.source = folder_.Path(name);
    request.destination = folder_.Path("out-" + name);
    request.rect = {left, 0, 10, 10};
    return request;
  }

  // A source that exists, with a request for it.
  CropRequest Made(const std::string& name) {
    folder_.Put(name, "content of " + name);
    return Request(name);
  }

  void Start(Prefetcher::Worker crop, Prefetcher::Bounds bounds = {.threads = 2},
             Prefetcher::Measurement measure = {}) {
    if (!measure) measure = [](const std::string&) {};
    ahead_ = std::make_unique<Prefetcher>(files_, std::move(crop), std::move(measure), bounds);
  }

  static FileWork Work(const CropRequest& request) { return {{request}}; }
  void Plan(const std::vector<CropRequest>& requests) {
    std::vector<FileWork> works;
    for (const CropRequest& request : requests) works.push_back(Work(request));
    ahead_->PlanWork(works);
  }
  Status Pop(const CropRequest& request, const std::function<void()>& pump, std::optional<std::string>& bytes) {
    bytes.reset();
    std::optional<std::vector<std::string>> outputs;
    Status popped = ahead_->Pop(Work(request), pump, outputs);
    if (outputs) bytes = outputs->front();
    return popped;
  }

  // What a wait that is not given up gives.
  std::optional<std::string> Take(const CropRequest& request, const std::function<void()>& pump) {
    std::optional<std::string> bytes;
    const Status taken = Pop(request, pump, bytes);
    EXPECT_TRUE(taken) << taken.Why();
    return bytes;
  }

  // The source's name as the result.
  Prefetcher::Worker Naming() {
    return [this](const Prefetcher::Job& job) {
      log_.Add(job.work.Source());
      return job.output().Write(job.work.Source().data(), job.work.Source().size());
    };
  }

  ScratchFolder folder_;
  host::posix::PosixDisk disk_;
  host::Files files_{disk_};
  Log log_;
  Gate gate_;
  std::unique_ptr<Prefetcher> ahead_;  // last: its threads use all of the above
};

TEST_F(PrefetcherTest, PlannedWorkIsHandedOutOnce) {
  const CropRequest a = Made("a");
  const CropRequest b = Made("b");
  Start(Naming());
  Plan({a, b});
  EXPECT_EQ(Take(b, {}), b.source);
  EXPECT_EQ(Take(a, {}), a.source);
  EXPECT_EQ(Take(a, {}), std::nullopt);
}

TEST_F(PrefetcherTest, OnlyExactlyTheSameRequest) {
  const CropRequest planned = Made("a");
  Start(Naming());
  std::vector<CropRequest> others(7, planned);
  others[0].rect.left = 1;
  others[1].quality = 81;
  others[2].dpi = 72;
  others[3].encoder = Encoder::Png;
  others[4].exif = Exif::Keep;
  others[5].destination += "x";
  others[6].source = Made("b").source;
  Plan({planned});
  for (const CropRequest& other : others) EXPECT_EQ(Take(other, {}), std::nullopt);
  EXPECT_TRUE(Take(planned, {}).has_value());
}

TEST_F(PrefetcherTest, NothingWithoutAPlan) {
  const CropRequest a = Made("a");
  Start(Naming());
  EXPECT_EQ(Take(a, {}), std::nullopt);
  Plan({});
  EXPECT_EQ(Take(a, {}), std::nullopt);
  EXPECT_TRUE(log_.Lines().empty());
}

TEST_F(PrefetcherTest, WorkOfAnOldPlanThatStandsInTheNewOneIsKept) {
  const CropRequest a = Made("a");
  const CropRequest b = Made("b");
  Start(Naming(), {.threads = 1});
  Plan({a, b});
  EXPECT_TRUE(Take(a, {}).has_value());
  Plan({b});
  Plan({b});
  EXPECT_TRUE(Take(b, {}).has_value());
  EXPECT_EQ(log_.Lines(), (std::vector<std::string>{a.source, b.source}));
}

TEST_F(PrefetcherTest, ReplacedPlanIsStoppedAndThrownAway) {
  const CropRequest a = Made("a");
  const CropRequest b = Made("b");
  std::atomic<int> stopped = 0;
  Start(
      [&](const Prefetcher::Job& job) {
        if (job.work == Work(a)) {
          gate_.Pass(job.stop);
          if (job.stop.stop_requested()) ++stopped;
        }
        return job.output().Write("x", 1);
      },
      {.threads = 1});
  Plan({a});
  gate_.AwaitWaiting(1);
  Plan({b});
  EXPECT_EQ(Take(a, {}), std::nullopt);
  EXPECT_TRUE(Take(b, {}).has_value());  // the only thread is free again
  EXPECT_EQ(stopped, 1);
}

TEST_F(PrefetcherTest, TheFirstIsBegunFirstThenTheLargest) {
  std::vector<CropRequest> all;
  for (const char* name : {"a", "bb", "eeeee", "dddd"}) all.push_back(Made(name));
  Start(Naming(), {.threads = 1});
  Plan(all);
  while (log_.Lines().size() < all.size()) std::this_thread::yield();
  EXPECT_EQ(log_.Lines(), (std::vector<std::string>{all[0].source, all[2].source, all[3].source, all[1].source}));
}

TEST_F(PrefetcherTest, NoMoreThanPlannedIsBegun) {
  std::vector<CropRequest> many;
  for (int i = 0; i < 20; ++i) many.push_back(Made("f" + std::to_string(i)));
  Start(Naming(), {.threads = 2, .planned = 4});
  Plan(many);
  for (int i = 0; i < 4; ++i) {
    EXPECT_TRUE(Take(many[static_cast<std::size_t>(i)], {}).has_value());
  }
  EXPECT_EQ(Take(many[4], {}), std::nullopt);
  EXPECT_EQ(log_.Lines().size(), 4u);
}

TEST_F(PrefetcherTest, SourceChangedAfterwardsIsNotTaken) {
  const CropRequest a = Made("a");
  Start(Naming());
  Plan({a});
  // Asking for it proves that it is finished; planned anew it is made again.
  ASSERT_TRUE(Take(a, {}).has_value());
  Plan({a});
  while (log_.Lines().size() < 2) std::this_thread::yield();
  folder_.Put("a", "other content, of another length");
  EXPECT_EQ(Take(a, {}), std::nullopt);
}

TEST_F(PrefetcherTest, SourceChangedDuringTheWorkIsNotTaken) {
  const CropRequest a = Made("a");
  Start([&](const Prefetcher::Job& job) {
    folder_.Put("a", "changed while it was read");
    return job.output().Write("x", 1);
  });
  Plan({a});
  EXPECT_EQ(Take(a, {}), std::nullopt);
}

TEST_F(PrefetcherTest, SourceReplacedByAnotherFileIsNotTaken) {
  const CropRequest a = Made("a");
  Start(Naming());
  Plan({a});
  while (log_.Lines().empty()) std::this_thread::yield();
  const std::string twin = folder_.Put("twin", "content of a");
  std::filesystem::last_write_time(twin, std::filesystem::last_write_time(a.source));
  std::filesystem::rename(twin, a.source);
  EXPECT_EQ(Take(a, {}), std::nullopt);
}

TEST_F(PrefetcherTest, SourceThatKeptItsTimesIsNotTaken) {
  const CropRequest a = Made("a");
  Start(Naming());
  Plan({a});
  ASSERT_TRUE(Take(a, {}).has_value());
  Plan({a});
  while (log_.Lines().size() < 2) std::this_thread::yield();
  const host::FileFacts before = *files_.Stat(a.source);
  const auto time = std::filesystem::last_write_time(a.source);
  // The system's clock for changes moves in steps.
  do {
    folder_.Put("a", "CONTENT OF a");
    std::filesystem::last_write_time(a.source, time);
  } while (files_.Stat(a.source)->changed == before.changed);
  EXPECT_EQ(files_.Stat(a.source)->size, before.size);
  EXPECT_EQ(files_.Stat(a.source)->modified, before.modified);
  EXPECT_EQ(Take(a, {}), std::nullopt);
}

TEST_F(PrefetcherTest, MissingSourceAndFailuresAreLeftToTheCaller) {
  const CropRequest missing = Request("missing");
  const CropRequest fails = Made("fails");
  const CropRequest throws = Made("throws");
  Start([&](const Prefetcher::Job& job) -> Status {
    if (job.work == Work(throws)) throw std::runtime_error("broken");
    static_cast<void>(job.output().Write("half", 4));
    return {Problem::Damaged, "damaged"};
  });
  Plan({missing, fails, throws});
  EXPECT_EQ(Take(missing, {}), std::nullopt);
  EXPECT_EQ(Take(fails, {}), std::nullopt);
  EXPECT_EQ(Take(throws, {}), std::nullopt);
}

TEST_F(PrefetcherTest, WaitingTurnsThePump) {
  const CropRequest a = Made("a");
  Start([&](const Prefetcher::Job& job) {
    gate_.Pass();
    return job.output().Write("x", 1);
  });
  Plan({a});
  int turns = 0;
  EXPECT_EQ(Take(a,
                 [&] {
                   if (++turns == 3) gate_.Open();
                 }),
            "x");
  EXPECT_GE(turns, 3);
}

TEST_F(PrefetcherTest, PumpMayThrowThePlanAway) {
  const CropRequest a = Made("a");
  Start([&](const Prefetcher::Job& job) {
    gate_.Pass(job.stop);
    return job.output().Write("x", 1);
  });
  Plan({a});
  EXPECT_EQ(Take(a, [&] { Plan({}); }), std::nullopt);
}

TEST_F(PrefetcherTest, DestructionStopsWhatIsUnderWay) {
  Start([&](const Prefetcher::Job& job) {
    gate_.Pass(job.stop);
    return job.output().Write("x", 1);
  });
  Plan({Made("a"), Made("b"), Made("c")});
  gate_.AwaitWaiting(2);
  ahead_.reset();
}

TEST_F(PrefetcherTest, ResultsAreBounded) {
  std::vector<CropRequest> all;
  for (const char* name : {"a", "b", "c", "d"}) all.push_back(Made(name));
  const std::string result(600, 'r');
  std::atomic<int> refused = 0;
  Start(
      [&](const Prefetcher::Job& job) {
        const Status status = job.output().Write(result.data(), result.size());
        if (!status) ++refused;
        return status;
      },
      {.threads = 2, .results = 1000});
  for (int round = 0; round < 50; ++round) {
    Plan(all);
    for (const CropRequest& request : all) {
      const std::optional<std::string> taken = Take(request, {});
      if (taken) {
        EXPECT_EQ(*taken, result);
      }
    }
  }
  // Two at a time are tried only until the first result has shown how large they are.
  EXPECT_LE(refused, 6);
}

TEST_F(PrefetcherTest, ResultLargerThanTheBoundIsLeftToTheCaller) {
  const CropRequest a = Made("a");
  const std::string result(600, 'r');
  Start(
      [&](const Prefetcher::Job& job) {
        host::Draft& draft = job.output();
        for (int i = 0; i < 2; ++i) {
          if (Status status = draft.Write(result.data(), result.size()); !status) return status;
        }
        return Status::Ok();
      },
      {.threads = 2, .results = 1000});
  Plan({a});
  EXPECT_EQ(Take(a, {}), std::nullopt);
}

TEST_F(PrefetcherTest, WorkingMemoryIsBounded) {
  std::vector<CropRequest> all;
  for (const char* name : {"a", "b", "c", "d"}) all.push_back(Made(name));
  std::atomic<int> inside = 0;
  std::atomic<int> most = 0;
  std::atomic<int> finished = 0;
  Start(
      [&](const Prefetcher::Job& job) -> Status {
        if (!job.admit(60, 0)) return {Problem::Stopped, ""};
        most = std::max(most.load(), ++inside);
        std::this_thread::yield();
        --inside;
        ++finished;
        return job.output().Write("x", 1);
      },
      {.threads = 3, .working = 100});
  for (int round = 0; round < 50; ++round) {
    Plan(all);
    for (const CropRequest& request : all) EXPECT_EQ(Take(request, {}), "x");
  }
  EXPECT_EQ(most, 1);
  EXPECT_EQ(finished, 200);
}

// 88 million bytes are a progressive picture of 5120 x 2880, 55 million one of 3840 x 2400, with colour at every pixel.
TEST_F(PrefetcherTest, TwoLargePicturesAreHeldAtOnceButNoThird) {
  std::vector<CropRequest> all;
  for (const char* name : {"a", "b", "c", "d"}) all.push_back(Made(name));
  const std::vector<std::int64_t> bytes = {88'000'000, 55'000'000, 8'000'000, 88'000'000};
  std::mutex mutex;
  std::condition_variable_any changed;
  std::int64_t held = 0;
  std::size_t asked = 0;
  const auto work = [&](const Prefetcher::Job& job) -> Status {
    std::unique_lock lock(mutex);
    const bool admitted = job.admit(bytes.at(asked), 0);
    if (admitted) held += bytes.at(asked);
    ++asked;
    changed.notify_all();
    if (admitted) changed.wait(lock, job.stop, [] { return false; });
    return {Problem::Stopped, ""};
  };
  Start(work, {.threads = 4});
  Plan(all);
  std::unique_lock lock(mutex);
  changed.wait(lock, [&] { return asked == all.size(); });
  EXPECT_EQ(held, 143'000'000);
  lock.unlock();
  ahead_.reset();
}

TEST_F(PrefetcherTest, WorkThatNeverFitsIsLeftToTheCaller) {
  const CropRequest a = Made("a");
  Start(
      [](const Prefetcher::Job& job) {
        return job.admit(101, 0) ? job.output().Write("x", 1) : Status(Problem::Stopped, "");
      },
      {.threads = 2, .working = 100});
  Plan({a});
  EXPECT_EQ(Take(a, {}), std::nullopt);
}

TEST_F(PrefetcherTest, MeasuresAreMadeInOrderAndNotTwice) {
  Start(Naming(), {.threads = 1}, [this](const std::string& path) { log_.Add(path); });
  ahead_->PlanMeasures({"1", "2", "3"});
  while (log_.Lines().size() < 3) std::this_thread::yield();
  EXPECT_EQ(log_.Lines(), (std::vector<std::string>{"1", "2", "3"}));
}

TEST_F(PrefetcherTest, AwaitMeasureTakesAPathOutOfThePlan) {
  Start(Naming(), {.threads = 1}, [&](const std::string& path) {
    log_.Add(path);
    if (path == "1") gate_.Pass();
  });
  ahead_->PlanMeasures({"1", "2", "3"});
  gate_.AwaitWaiting(1);
  EXPECT_TRUE(ahead_->AwaitMeasure("2", {}));  // not begun: returns at once
  int turns = 0;
  EXPECT_TRUE(ahead_->AwaitMeasure("1", [&] {
    if (++turns == 2) gate_.Open();
  }));
  EXPECT_GE(turns, 2);
  while (log_.Lines().size() < 2) std::this_thread::yield();
  EXPECT_EQ(log_.Lines(), (std::vector<std::string>{"1", "3"}));
}

TEST_F(PrefetcherTest, AnEmptyPathIsNeverAwaited) {
  Start(Naming(), {.threads = 1});
  EXPECT_NO_THROW(EXPECT_TRUE(ahead_->AwaitMeasure("", [] { throw std::runtime_error("it waits"); })));
}

TEST_F(PrefetcherTest, CropsGoBeforeMeasures) {
  const CropRequest a = Made("a");
  Start(Naming(), {.threads = 1}, [&](const std::string& path) {
    if (path == "1") gate_.Pass();
    log_.Add(path);
  });
  ahead_->PlanMeasures({"1", "2"});
  gate_.AwaitWaiting(1);
  Plan({a});
  gate_.Open();
  EXPECT_TRUE(Take(a, {}).has_value());
  while (log_.Lines().size() < 3) std::this_thread::yield();
  EXPECT_EQ(log_.Lines(), (std::vector<std::string>{"1", a.source, "2"}));
}

// Waits for reads that do not come back: each turn of the pump takes ten seconds of a clock.
class SilentDiskTest : public PrefetcherTest {
 protected:
  // Work that reads until the gate opens, on the sources of that name, and is done at once on others.
  Prefetcher::Worker Hanging(const std::string& name) {
    return [gate = gate_, name](const Prefetcher::Job& job) -> Status {
      if (job.work.Source().ends_with(name)) {
        ++job.reads;
        gate->Pass();
        ++job.reads;
      }
      return job.output().Write("x", 1);
    };
  }
  Prefetcher::Bounds Clocked(int threads) {
    Prefetcher::Bounds bounds;
    bounds.threads = threads;
    bounds.seconds = [this] { return seconds_; };
    bounds.stopped = [this] { return stopped_; };
    return bounds;
  }
  Status TakeSilent(const CropRequest& request) {
    std::optional<std::string> bytes;
    Status taken = Pop(request, pump_, bytes);
    EXPECT_EQ(bytes, std::nullopt);
    return taken;
  }
  // Whether the gate still stands: threads that were left behind hold it.
  bool AllThreadsEnded() const { return gate_.use_count() == 1; }

  void TearDown() override {
    gate_->Open();
    ahead_.reset();
    while (!AllThreadsEnded()) std::this_thread::yield();
  }

  double seconds_ = 1000;
  bool stopped_ = false;
  std::function<void()> pump_ = [this] {
    if (host::testing::OtherThreadsWait()) seconds_ += 10;
  };
  std::shared_ptr<Gate> gate_ = std::make_shared<Gate>();
};

TEST_F(SilentDiskTest, AReadThatDoesNotComeBackIsGivenUp) {
  const CropRequest a = Made("a");
  Start(Hanging("a"), Clocked(1));
  Plan({a});
  gate_->AwaitWaiting(1);
  const Status taken = TakeSilent(a);
  EXPECT_EQ(taken.GetProblem(), Problem::Stopped);
  EXPECT_EQ(taken.Why(), "磁盘没有响应，已跳过；请检查磁盘或网络连接后重新处理");
  EXPECT_GE(seconds_, 1030);
  EXPECT_LE(seconds_, 1050);
}

TEST_F(SilentDiskTest, AnotherThreadTakesItsPlace) {
  const CropRequest a = Made("a");
  const CropRequest b = Made("b");
  Start(Hanging("a"), Clocked(1));
  Plan({a, b});
  gate_->AwaitWaiting(1);
  EXPECT_EQ(Take(b, pump_), "x");
  const double then = seconds_;
  EXPECT_EQ(TakeSilent(a).Why(), host::kDiskUnresponsive);
  EXPECT_EQ(seconds_, then) << "it is known by now";
  Plan({a});
  EXPECT_EQ(TakeSilent(a).Why(), host::kDiskUnresponsive) << "it is not tried again";
  EXPECT_EQ(ahead_->AwaitMeasure(a.source, pump_).Why(), host::kDiskUnresponsive);
  // Until it answers.
  gate_->Open();
  std::optional<std::string> bytes;
  do {
    Plan({a});
    static_cast<void>(Pop(a, pump_, bytes));
  } while (!bytes);
}

TEST_F(SilentDiskTest, AComputationIsWaitedForHoweverLongItTakes) {
  const CropRequest a = Made("a");
  Start(
      [gate = gate_](const Prefetcher::Job& job) {
        gate->Pass();
        return job.output().Write("x", 1);
      },
      Clocked(1));
  stopped_ = true;
  Plan({a});
  gate_->AwaitWaiting(1);
  int turns = 0;
  EXPECT_EQ(Take(a,
                 [&] {
                   pump_();
                   if (++turns == 50) gate_->Open();
                 }),
            "x");
}

TEST_F(SilentDiskTest, ReadsThatComeBackAreNoSilence) {
  constexpr int kReads = 20;
  const CropRequest a = Made("a");
  auto wanted = std::make_shared<std::atomic<int>>(0);
  auto read = std::make_shared<std::atomic<int>>(0);
  Start(
      [=](const Prefetcher::Job& job) {
        while (*read < kReads) {
          ++job.reads;
          wanted->wait(*read);
          ++job.reads;
          ++*read;
          read->notify_one();
        }
        return job.output().Write("x", 1);
      },
      Clocked(1));
  Plan({a});
  EXPECT_EQ(Take(a,
                 [&] {
                   if (*wanted == kReads) return;
                   seconds_ += 20;
                   ++*wanted;
                   wanted->notify_one();
                   read->wait(*wanted - 1);
                 }),
            "x");
}

TEST_F(SilentDiskTest, AStopEndsTheWaitForARead) {
  const CropRequest a = Made("a");
  Start(Hanging("a"), Clocked(1));
  Plan({a});
  gate_->AwaitWaiting(1);
  pump_ = [this] {
    seconds_ += 0.5;
    stopped_ = true;
  };
  EXPECT_EQ(TakeSilent(a).Why(), "已停止");
  EXPECT_LE(seconds_, 1002);
}

TEST_F(SilentDiskTest, AStopEndsTheWaitForWhatIsNotBegun) {
  const CropRequest a = Made("a");
  const CropRequest b = Made("b");
  Start(Hanging("a"), Clocked(1));
  Plan({a, b});
  gate_->AwaitWaiting(1);
  pump_ = [this] {
    seconds_ += 0.5;
    stopped_ = true;
  };
  EXPECT_EQ(TakeSilent(b).Why(), "已停止");
}

TEST_F(SilentDiskTest, TheEndDoesNotWaitForADeadRead) {
  const CropRequest a = Made("a");
  Start(Hanging("a"), Clocked(2));
  Plan({a, Made("b")});
  gate_->AwaitWaiting(1);
  ahead_.reset();
  EXPECT_FALSE(AllThreadsEnded());
}

TEST_F(SilentDiskTest, AMeasurementThatDoesNotComeBackIsGivenUp) {
  auto measured = std::make_shared<Log>();
  Start(Naming(), Clocked(1), [gate = gate_, measured](const std::string& path) {
    if (path == "1") gate->Pass();
    measured->Add(path);
  });
  ahead_->PlanMeasures({"1", "2"});
  gate_->AwaitWaiting(1);
  EXPECT_EQ(ahead_->AwaitMeasure("1", pump_).Why(), host::kDiskUnresponsive);
  EXPECT_GE(seconds_, 1030);
  const double then = seconds_;
  EXPECT_EQ(ahead_->AwaitMeasure("1", pump_).Why(), host::kDiskUnresponsive);
  EXPECT_EQ(seconds_, then);
  while (measured->Lines().empty()) std::this_thread::yield();
  EXPECT_EQ(measured->Lines(), std::vector<std::string>{"2"});
}

TEST_F(SilentDiskTest, AStopEndsTheWaitForAMeasurement) {
  Start(Naming(), Clocked(1), [gate = gate_](const std::string&) { gate->Pass(); });
  ahead_->PlanMeasures({"1"});
  gate_->AwaitWaiting(1);
  pump_ = [this] {
    seconds_ += 0.5;
    stopped_ = true;
  };
  EXPECT_EQ(ahead_->AwaitMeasure("1", pump_).Why(), "已停止");
}

// A run over real pictures: the bytes are the same with and without, whatever is replanned in between.
TEST_F(PrefetcherTest, RealCutsAreTheSameAsWithout) {
  std::vector<CropRequest> all;
  for (int i = 0; i < 12; ++i) {
    testing::MakeOptions options;
    options.scans = i % 3 == 0 ? testing::Scans::Progressive : testing::Scans::One;
    const std::string name = "p" + std::to_string(i) + ".jpg";
    folder_.Put(name, MakeJpeg(testing::TestPicture({200 + i, 150}, options.colours), options));
    all.push_back(Request(name, i));
    all.back().rect = {i, 3, 150, 120};
  }
  const auto cut = [](const CropRequest& r, const ByteSink& sink, const JpegCutControl& control) {
    return CutJpeg(r.source, r.rect, r.quality, r.dpi, r.exif, Limits{}, sink, control);
  };
  Start([&](const Prefetcher::Job& job) {
    host::Draft& draft = job.output();
    const auto sink = [&](const void* data, std::size_t size) { return draft.Write(data, size); };
    const auto admit = [&](std::int64_t bytes) { return job.admit(bytes, 0); };
    return cut(std::get<CropRequest>(job.work.steps.front()), sink, {.stop = job.stop, .admit = admit});
  });
  int taken = 0;
  for (std::size_t i = 0; i < all.size(); ++i) {
    Plan({all.begin() + static_cast<std::ptrdiff_t>(i), all.end()});
    const std::optional<std::string> early = Take(all[i], {});
    if (i % 5 == 4) Plan({});
    std::string plain;
    ASSERT_TRUE(cut(all[i],
                    [&](const void* data, std::size_t size) {
                      plain.append(static_cast<const char*>(data), size);
                      return Status::Ok();
                    },
                    {}));
    if (!early) continue;
    EXPECT_EQ(*early, plain);
    ++taken;
  }
  EXPECT_EQ(taken, 12);
}

}  // namespace
}  // namespace quillon::imaging
