// The six figures of a port, which the history and its sums keep under the same names.
#pragma once

#include <string>

namespace quillon {

inline const std::string kMetrics[] = {"InErrorsTot24H",    "OutErrorsTot24H", "InBroadCastPpm24H",
                                       "InMultiCastPpm24H", "InHCOctetsMb24H", "OutHCOctetsMb24H"};

}  // namespace quillon
