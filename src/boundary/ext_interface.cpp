#include "boundary/ext_interface.h"

#include <cstring>

#include "boundary/error_text.h"

namespace gantry {

int32_t CExtInterface::GetProperty(GetPropertyRequest* request, ExtErrorBlock* /*err*/) {
  if (request != nullptr) std::memset(request->value, 0, sizeof request->value);
  return -1;
}

int32_t CExtInterface::GetPropertyAddress(GetPropertyRequest* request, ExtErrorBlock* /*err*/) {
  if (request != nullptr) std::memset(request->value, 0, sizeof(void*));
  return -1;
}

int32_t CExtInterface::ConnectToApplication(uint32_t /*first*/, uint32_t /*second*/,
                                            ExtErrorBlock* err) {
  SetErrorText(err, "ConnectToApplication is not implemented");
  return 1;
}

}  // namespace gantry
