#include "broker/Task.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

using SASM::Task;
using SASM::TaskJob;

namespace {

// A job that can be held inside Run until released, and counts its runs.
class ProbeJob : public TaskJob {
 public:
  explicit ProbeJob(bool hold = false) : hold_(hold) {}

  void Run() override {
    std::unique_lock<std::mutex> lock(mutex_);
    thread_ = std::this_thread::get_id();
    started_ = true;
    changed_.notify_all();
    changed_.wait(lock, [this] { return !hold_; });
    ++runs_;
    changed_.notify_all();
  }
  void WaitStarted() { Wait([this] { return started_; }); }
  bool WaitRun() { return Wait([this] { return runs_ > 0; }); }
  void Release() {
    std::lock_guard<std::mutex> lock(mutex_);
    hold_ = false;
    changed_.notify_all();
  }

  // Read once the job has run or its worker is stopped.
  int runs_ = 0;
  std::thread::id thread_;

 private:
  template <typename Predicate>
  bool Wait(Predicate done) {
    std::unique_lock<std::mutex> lock(mutex_);
    return changed_.wait_for(lock, std::chrono::seconds(5), done);
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  bool hold_;
  bool started_ = false;
};

}  // namespace

TEST(Task, TheSlotHoldsOneJobAndALaterPostReplacesOneNotYetStarted) {
  Task task;
  ProbeJob busy(true);
  ProbeJob replaced;
  ProbeJob last;
  ASSERT_TRUE(task.Post(&busy));
  busy.WaitStarted();
  EXPECT_TRUE(task.Post(&replaced));
  EXPECT_TRUE(task.Post(&last));
  busy.Release();
  ASSERT_TRUE(last.WaitRun());
  task.Stop();
  EXPECT_EQ(replaced.runs_, 0);
  EXPECT_EQ(busy.runs_, 1);
}

TEST(Task, StopWaitsForTheRunningJobAndRefusesLaterPosts) {
  Task task;
  ProbeJob busy(true);
  ASSERT_TRUE(task.Post(&busy));
  busy.WaitStarted();
  std::thread releaser([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    busy.Release();
  });
  EXPECT_TRUE(task.Stop());
  EXPECT_EQ(busy.runs_, 1);
  releaser.join();
  EXPECT_FALSE(task.HasThread());
  ProbeJob late;
  EXPECT_FALSE(task.Post(&late));
}

TEST(Task, TheProcessTaskIsMadeOnceAndStoppingItTwiceIsHarmless) {
  SASM::StopTask();
  EXPECT_EQ(SASM::CurrentTask(), nullptr);
  Task* task = SASM::GetTask();
  ASSERT_NE(task, nullptr);
  EXPECT_EQ(SASM::GetTask(), task);
  EXPECT_EQ(SASM::CurrentTask(), task);
  ProbeJob job;
  ASSERT_TRUE(task->Post(&job));
  ASSERT_TRUE(job.WaitRun());
  SASM::StopTask();
  SASM::StopTask();
  EXPECT_EQ(SASM::CurrentTask(), nullptr);
}
