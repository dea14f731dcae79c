#pragma once
// Listens to the events of one task of a batch.

#include <windows.h>
#include <olectl.h>

#include "ZEQUtility2.h"
#include "automation/ComPtr.h"

namespace zeq::fileops {

/// Who wants to hear of a task's events. `arguments` are those of the event, the last one first.
class TaskListener {
 public:
  virtual void onTaskEvent(_CFileOperation& task, DISPID event, DISPPARAMS& arguments) = 0;

 protected:
  ~TaskListener() = default;
};

/// Connected while it lives; no event of the task reaches the listener afterwards. A task without events is
/// held like any other and stays silent.
class TaskConnection {
 public:
  TaskConnection(const automation::ComPtr<_CFileOperation>& task, TaskListener& listener);
  ~TaskConnection();
  TaskConnection(const TaskConnection&) = delete;
  TaskConnection& operator=(const TaskConnection&) = delete;

 private:
  class Sink;

  automation::ComPtr<Sink> sink_;
  automation::ComPtr<IConnectionPoint> point_;
  DWORD cookie_ = 0;
};

}  // namespace zeq::fileops
