// Slice threading: a task's slices handed to the processor pool.
#include <boost/bind/bind.hpp>
#include <boost/function.hpp>

#include "Ombrix.h"
#include "platform/zelcore.h"

namespace OX {
namespace Threading {

Task::~Task() = default;

void RunTask(Task& task) {
  boost::function<void(int)> slice = boost::bind(&Task::RunSlice, boost::ref(task), boost::placeholders::_1);
  const int count = task.SliceCount();
  zelcore::threads::ExecuteCPUBoundTaskOnAllProcessors(slice, count);
}

}  // namespace Threading
}  // namespace OX
