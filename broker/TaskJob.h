#pragma once
// A piece of work the process's worker thread runs for the broker. The owner
// keeps it alive until it has told the owner it is done.
namespace SASM {

class TaskJob {
 public:
  virtual void Run() = 0;

 protected:
  ~TaskJob() = default;
};

}  // namespace SASM
