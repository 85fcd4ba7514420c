#include "kit/json.h"

namespace kit {

std::string jsonLine(const Json& object) {
  return object.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n';
}

}  // namespace kit
