// The styles as rows of a table, in the order of PortStyleId.
#include "quillondb/demo/port_styles.h"

#include <fmt/format.h>

namespace quillon {

constinit const std::array<PortStyle, 6> kPortStyles = {{
    {"GigabitEthernet1/0/{}", "TenGigabitEthernet1/1/{}", true, 10101, true, true},
    {"ge-0/0/{}", "xe-0/1/{}", true, 512, true, true},
    {"Port {}", "Port {}", false, 1, false, true},
    {"Ethernet1/{}", "Ethernet1/{}", false, 436207616, true, true},
    {"A{}", "B{}", true, 25, true, true},
    {"FastEthernet0/{}", "GigabitEthernet0/{}", true, 1, false, false},
}};

const PortStyle& StyleOf(PortStyleId id) {
  return kPortStyles[static_cast<std::size_t>(id)];
}

std::string PortName(const PortStyle& style, bool isTrunk, int number) {
  return fmt::format(fmt::runtime(isTrunk ? style.trunkName : style.accessName), number);
}

}  // namespace quillon
