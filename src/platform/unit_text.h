// The unit file of the service as it lies in share/, compiled in.
#pragma once

#include <string_view>

namespace quillon {

// share/quillon-web.service, with "@AppPath@" where the installation's directory belongs.
extern const std::string_view kQuillonWebUnit;

}  // namespace quillon
