#include "broker/Task.h"

#include <new>
#include <system_error>

namespace SASM {

namespace {

std::mutex processTaskLock;
Task* processTask = nullptr;

}  // namespace

Task::Task() {
  try {
    thread_ = std::thread(&Task::Loop, this);
  } catch (const std::system_error&) {
    stop_ = true;
  }
}

Task::~Task() { Stop(); }

bool Task::Post(TaskJob* job) {
  std::lock_guard<std::mutex> hold(lock_);
  if (!thread_.joinable() || stop_) return false;
  pendingJob_ = job;
  wake_.notify_one();
  return true;
}

bool Task::Stop() {
  {
    std::lock_guard<std::mutex> hold(lock_);
    stop_ = true;
    wake_.notify_all();
  }
  if (!thread_.joinable()) return true;
  if (thread_.get_id() == std::this_thread::get_id()) {
    thread_.detach();
    return false;
  }
  thread_.join();
  return true;
}

void Task::Loop() {
  std::unique_lock<std::mutex> hold(lock_);
  while (!stop_) {
    if (pendingJob_) {
      TaskJob* job = pendingJob_;
      pendingJob_ = nullptr;
      hold.unlock();
      job->Run();
      hold.lock();
      continue;
    }
    wake_.wait(hold);
  }
}

Task* GetTask() {
  std::lock_guard<std::mutex> hold(processTaskLock);
  if (!processTask) processTask = new (std::nothrow) Task();
  return processTask;
}

Task* CurrentTask() {
  std::lock_guard<std::mutex> hold(processTaskLock);
  return processTask;
}

void StopTask() {
  Task* task = nullptr;
  {
    std::lock_guard<std::mutex> hold(processTaskLock);
    task = processTask;
    processTask = nullptr;
  }
  // Stopped outside the lock: GetTask stays usable while the thread ends. A
  // worker that stopped itself still runs on this Task, which is then kept.
  if (task && task->Stop()) delete task;
}

}  // namespace SASM
