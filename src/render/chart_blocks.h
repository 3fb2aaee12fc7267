// The charts of a report one below the other, each with its band. `slot` is 1 to 20.
#pragma once

#include <string>

#include "platform/listener.h"
#include "render/render_context.h"

namespace quillon {

// Append the three charts of a port out of Hist45SwitchRep.
void PortChartBlocks(const RenderContext& context, ConnectionId slot, std::string& chartHtml);

// Append the two charts of a server's memory out of Hist45MemRep.
void MemoryChartBlocks(const RenderContext& context, ConnectionId slot, std::string& chartHtml);

// Append the chart of a disk out of Hist45DiskRep.
void DiskChartBlock(const RenderContext& context, ConnectionId slot, std::string& chartHtml);

// Append the four charts of all ports of a kind out of Hist45dSwitchRep.
void SwitchSummaryBlocks(const RenderContext& context, ConnectionId slot, std::string& pageHtml);

// Append the four charts of all storages out of Hist45dDiskRep.
void DiskSummaryBlocks(const RenderContext& context, ConnectionId slot, std::string& pageHtml);

}  // namespace quillon
