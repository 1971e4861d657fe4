// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/prefetch/prefetcher.h"

#include <gmock/gmock.h>

#include <atomic>
#include <set>
#include <stdexcept>
#include <thread>

#include "host/testing/fakes.h"
#include "imaging/jpeg/jpeg_cut.h"
#include "imaging/jpeg_maker.h"
#include "imaging/prefetch/prefetcher_fixture.h"

namespace quillon::imaging {
namespace {

using host::Problem;
using testing::Gate;
using testing::Log;
using testing::PrefetcherTest;

TEST_F(PrefetcherTest, PlannedWorkIsReturnedOnce) {
  const CropRequest a = Made("a");
  const CropRequest b = Made("b");
  Start(Naming());
  Plan({a, b});
  EXPECT_EQ(PopBytes(b, {}), b.source);
  EXPECT_EQ(PopBytes(a, {}), a.source);
  EXPECT_EQ(PopBytes(a, {}), std::nullopt);
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
  for (const CropRequest& other : others) EXPECT_EQ(PopBytes(other, {}), std::nullopt);
  EXPECT_TRUE(PopBytes(planned, {}).has_value());
}

TEST_F(PrefetcherTest, NothingWithoutAPlan) {
  const CropRequest a = Made("a");
  Start(Naming());
  EXPECT_EQ(PopBytes(a, {}), std::nullopt);
  Plan({});
  EXPECT_EQ(PopBytes(a, {}), std::nullopt);
  EXPECT_TRUE(log_.Lines().empty());
}

TEST_F(PrefetcherTest, WorkOfAnOldPlanThatStandsInTheNewOneIsKept) {
  const CropRequest a = Made("a");
  const CropRequest b = Made("b");
  Start(Naming(), {.threads = 1});
  Plan({a, b});
  EXPECT_TRUE(PopBytes(a, {}).has_value());
  Plan({b});
  Plan({b});
  EXPECT_TRUE(PopBytes(b, {}).has_value());
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
  EXPECT_EQ(PopBytes(a, {}), std::nullopt);
  EXPECT_TRUE(PopBytes(b, {}).has_value());  // the only thread is free again
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
    EXPECT_TRUE(PopBytes(many[static_cast<std::size_t>(i)], {}).has_value());
  }
  EXPECT_EQ(PopBytes(many[4], {}), std::nullopt);
  EXPECT_EQ(log_.Lines().size(), 4u);
}

TEST_F(PrefetcherTest, SourceChangedAfterwardsIsNotUsed) {
  const CropRequest a = Made("a");
  Start(Naming());
  Plan({a});
  // Asking for it proves that it is finished; planned anew it is made again.
  ASSERT_TRUE(PopBytes(a, {}).has_value());
  Plan({a});
  while (log_.Lines().size() < 2) std::this_thread::yield();
  folder_.Put("a", "other content, of another length");
  EXPECT_EQ(PopBytes(a, {}), std::nullopt);
}

TEST_F(PrefetcherTest, SourceChangedDuringTheWorkIsNotUsed) {
  const CropRequest a = Made("a");
  Start([&](const Prefetcher::Job& job) {
    folder_.Put("a", "changed while it was read");
    return job.output().Write("x", 1);
  });
  Plan({a});
  EXPECT_EQ(PopBytes(a, {}), std::nullopt);
}

TEST_F(PrefetcherTest, SourceReplacedByAnotherFileIsNotUsed) {
  const CropRequest a = Made("a");
  Start(Naming());
  Plan({a});
  while (log_.Lines().empty()) std::this_thread::yield();
  const std::string twin = folder_.Put("twin", "content of a");
  std::filesystem::last_write_time(twin, std::filesystem::last_write_time(a.source));
  std::filesystem::rename(twin, a.source);
  EXPECT_EQ(PopBytes(a, {}), std::nullopt);
}

TEST_F(PrefetcherTest, SourceThatKeptItsTimesIsNotUsed) {
  const CropRequest a = Made("a");
  Start(Naming());
  Plan({a});
  ASSERT_TRUE(PopBytes(a, {}).has_value());
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
  EXPECT_EQ(PopBytes(a, {}), std::nullopt);
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
  EXPECT_EQ(PopBytes(missing, {}), std::nullopt);
  EXPECT_EQ(PopBytes(fails, {}), std::nullopt);
  EXPECT_EQ(PopBytes(throws, {}), std::nullopt);
}

TEST_F(PrefetcherTest, WaitingTurnsThePump) {
  const CropRequest a = Made("a");
  Start([&](const Prefetcher::Job& job) {
    gate_.Pass();
    return job.output().Write("x", 1);
  });
  Plan({a});
  int turns = 0;
  EXPECT_EQ(PopBytes(a,
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
  EXPECT_EQ(PopBytes(a, [&] { Plan({}); }), std::nullopt);
}

TEST_F(PrefetcherTest, DestructionStopsWhatIsUnderWay) {
  Start([&](const Prefetcher::Job& job) {
    gate_.Pass(job.stop);
    return job.output().Write("x", 1);
  });
  Plan({Made("a"), Made("b"), Made("c")});
  gate_.AwaitWaiting(2);
  prefetcher_.reset();
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
      const std::optional<std::string> popped = PopBytes(request, {});
      if (popped) {
        EXPECT_EQ(*popped, result);
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
  EXPECT_EQ(PopBytes(a, {}), std::nullopt);
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
    for (const CropRequest& request : all) EXPECT_EQ(PopBytes(request, {}), "x");
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
  prefetcher_.reset();
}

TEST_F(PrefetcherTest, WorkThatNeverFitsIsLeftToTheCaller) {
  const CropRequest a = Made("a");
  Start(
      [](const Prefetcher::Job& job) {
        return job.admit(101, 0) ? job.output().Write("x", 1) : Status(Problem::Stopped, "");
      },
      {.threads = 2, .working = 100});
  Plan({a});
  EXPECT_EQ(PopBytes(a, {}), std::nullopt);
}

TEST_F(PrefetcherTest, MeasuresAreMadeInOrderAndNotTwice) {
  Start(Naming(), {.threads = 1}, [this](const std::string& path) { log_.Add(path); });
  prefetcher_->PlanMeasures({"1", "2", "3"});
  while (log_.Lines().size() < 3) std::this_thread::yield();
  EXPECT_EQ(log_.Lines(), (std::vector<std::string>{"1", "2", "3"}));
}

TEST_F(PrefetcherTest, AwaitMeasureRemovesAPathFromThePlan) {
  Start(Naming(), {.threads = 1}, [&](const std::string& path) {
    log_.Add(path);
    if (path == "1") gate_.Pass();
  });
  prefetcher_->PlanMeasures({"1", "2", "3"});
  gate_.AwaitWaiting(1);
  EXPECT_TRUE(prefetcher_->AwaitMeasure("2", {}));  // not begun: returns at once
  int turns = 0;
  EXPECT_TRUE(prefetcher_->AwaitMeasure("1", [&] {
    if (++turns == 2) gate_.Open();
  }));
  EXPECT_GE(turns, 2);
  while (log_.Lines().size() < 2) std::this_thread::yield();
  EXPECT_EQ(log_.Lines(), (std::vector<std::string>{"1", "3"}));
}

TEST_F(PrefetcherTest, AnEmptyPathIsNeverAwaited) {
  Start(Naming(), {.threads = 1});
  EXPECT_NO_THROW(EXPECT_TRUE(prefetcher_->AwaitMeasure("", [] { throw std::runtime_error("it waits"); })));
}

TEST_F(PrefetcherTest, CropsGoBeforeMeasures) {
  const CropRequest a = Made("a");
  Start(Naming(), {.threads = 1}, [&](const std::string& path) {
    if (path == "1") gate_.Pass();
    log_.Add(path);
  });
  prefetcher_->PlanMeasures({"1", "2"});
  gate_.AwaitWaiting(1);
  Plan({a});
  gate_.Open();
  EXPECT_TRUE(PopBytes(a, {}).has_value());
  while (log_.Lines().size() < 3) std::this_thread::yield();
  EXPECT_EQ(log_.Lines(), (std::vector<std::string>{"1", a.source, "2"}));
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
  int popped = 0;
  for (std::size_t i = 0; i < all.size(); ++i) {
    Plan({all.begin() + static_cast<std::ptrdiff_t>(i), all.end()});
    const std::optional<std::string> early = PopBytes(all[i], {});
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
    ++popped;
  }
  EXPECT_EQ(popped, 12);
}

}  // namespace
}  // namespace quillon::imaging
