#include "frame/Contract.h"

#include <csignal>

#include "platform/zelcore.h"

namespace OX {

void ReportContractFailure(const char* condition, const char* file, const char* function, int line) {
  if (zelcore::debug::BreakAfterContractDialog(condition, file, function, line) &&
      zelcore::debug::IsDebuggerAttached())
    std::raise(SIGTRAP);
  zelcore::config::ReplacementValue a, b, c, d;
  zelcore::config::ThrowError(
      0, "$$$/zelcore/utility/Error/Contract/InputContractViolation=An input contract violation has occurred!", 105,
      25, true, a, b, c, d);
}

}  // namespace OX
