// The contract path: a failed input contract is reported through the platform and the code goes
// on past it.
#pragma once

namespace OX {

void ReportContractFailure(const char* condition, const char* file, const char* function, int line);

}  // namespace OX

#define OX_CONTRACT(cond, function, line)                                                  \
  do {                                                                                     \
    if (!(cond)) ::OX::ReportContractFailure(#cond, "ResampleKernel", function, line);     \
  } while (0)
