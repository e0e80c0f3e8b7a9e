#pragma once
// The process's one worker thread, which carries enterprise protection
// queries. It takes jobs through a single slot, not a queue: the broker's one
// apartment thread posts a job and waits for it before it posts the next.
#include <condition_variable>
#include <mutex>
#include <thread>

#include "broker/TaskJob.h"

namespace SASM {

class Task {
 public:
  // Starts the thread; if that fails the task is stopped from the outset and
  // every Post fails.
  Task();
  Task(const Task&) = delete;
  Task& operator=(const Task&) = delete;
  // Stops and waits for the thread.
  ~Task();

  // False when there is no thread or the task is stopping. Otherwise the job
  // takes the slot, replacing one that hasn't started, and the thread wakes.
  bool Post(TaskJob* job);
  // Sets `stop`, wakes the thread and waits until it has ended. A job already
  // running finishes first; one still in the slot never runs. False when
  // called from the worker itself, which can't wait for its own end: the
  // thread then goes on until the job returns, and the Task must outlive it.
  bool Stop();
  bool HasThread() const { return thread_.joinable(); }

 private:
  void Loop();

  std::mutex lock_;
  std::condition_variable wake_;
  bool stop_ = false;
  TaskJob* pendingJob_ = nullptr;
  std::thread thread_;
};

// The process's Task, created on first use; null only when out of memory.
Task* GetTask();
// The process's Task if one exists, without creating it.
Task* CurrentTask();
// Stops and frees the process's Task; the server calls it at its end. With no
// Task it does nothing, so a second call is harmless.
void StopTask();

}  // namespace SASM
