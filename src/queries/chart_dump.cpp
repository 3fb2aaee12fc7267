// Dumps of the 45-day reports.
#include "queries/chart_dump.h"

#include "platform/text_encoding.h"

namespace quillon {

void DumpPanelHead(DebugDump& dump, std::string_view panelName, const Panel& panel) {
  const std::string name(panelName);
  dump.Field(name + "Head", panel.Head);
  dump.Field(name + "NameLeft", panel.NameLeft);
  dump.Field(name + "NameRight", panel.NameRight);
  dump.Field(name + "YaxisMax", panel.YaxisMax);
  dump.Field(name + "YaxisHalf", panel.YaxisHalf);
}

void DumpDays(const QueryContext& context, const Days<DateTime>& dates,
              const Days<std::string>* tables, std::initializer_list<const Panel*> panels,
              DebugDump& dump) {
  dump.Field("HistoryStart", DayText(dates[1]));
  dump.Field("HistoryEnd", DayText(dates[dates.kSize]));
  for (int position = 1; position <= dates.kSize; ++position) {
    std::string line = DayText(dates[position]);
    if (tables != nullptr) {
      line.append("\t").append(PageText((*tables)[position], context.settings.CharSet));
    }
    for (const Panel* panel : panels) {
      for (const Days<std::string>* column :
           {&panel->Left, &panel->LeftBar, &panel->Right, &panel->RightBar}) {
        line.append("\t").append((*column)[position]);
      }
    }
    dump.Row(line);
  }
  dump.Row("");
}

}  // namespace quillon
