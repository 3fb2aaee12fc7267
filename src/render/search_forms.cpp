// The search forms, line by line in page order. A form opens in one cell and closes behind another,
// and labels stand without a row: this site's text, wanted as it is.
#include "render/search_forms.h"

#include "render/page_text.h"
#include "service/error_exit.h"

namespace quillon {
namespace {

constexpr std::string_view kModule = "modHtml";

// Numbers of the language file.
constexpr int kDeviceLabel = 15;
constexpr int kPortLabel = 16;
constexpr int kSubmitText = 17;
constexpr int kAddressLabel = 33;
constexpr int kDiskLabel = 68;
constexpr int kOrderLabel = 81;

// The orders of the disk search. Their texts are the same in all languages.
struct Order {
  std::string_view key;
  std::string_view text;
};

constexpr Order kOrders[] = {
    {"totalbytes-asc", "Total Bytes - Asc"},   {"totalbytes-desc", "Total Bytes - Desc"},
    {"freebytes-asc", "Free Bytes - Asc"},     {"freebytes-desc", "Free Bytes - Desc"},
    {"usedbytes-asc", "Used Bytes - Asc"},     {"usedbytes-desc", "Used Bytes - Desc"},
    {"usedpercent-asc", "Used Percent - Asc"}, {"usedpercent-desc", "Used Percent - Desc"},
    {"trend14d-asc", "Trend 14d - Asc"},       {"trend14d-desc", "Trend 14d - Desc"},
    {"trend30d-asc", "Trend 30d - Asc"},       {"trend30d-desc", "Trend 30d - Desc"},
};

void CellBegin(std::string_view width, std::string& pageHtml) {
  Line(pageHtml, "      <td width='", width,
       "px' style='vertical-align:middle;padding:0px'><table class='topHeader2'>");
}

void CellEnd(std::string& pageHtml) {
  Line(pageHtml, "      </table></td>");
}

// A label in a row of its own; the last one of a cell stands without the row.
void LabelRow(std::string_view label, std::string& pageHtml) {
  Line(pageHtml, "      <tr><th style='font-weight:bold'>", label, ":</th></tr>");
}

void LastLabel(std::string_view label, std::string& pageHtml) {
  Line(pageHtml, "      <th style='font-weight:bold'>", label, ":</th>");
}

void FormBegin(std::string_view action, std::string& pageHtml) {
  Line(pageHtml, "        <form name='frmInput' action='", action,
       "' method='post' enctype='text/plain'>");
}

void InputField(std::string_view name, std::string_view value, std::string& pageHtml) {
  Line(pageHtml, "        <input class='inputField' type='text' name='", name, "' value='", value,
       "'/>");
}

// The cell of the button, behind which the form closes.
void SubmitCell(const RenderContext& context, std::string& pageHtml) {
  Line(pageHtml, "      <td width='60px' style='vertical-align:middle'><table class='topHeader2'>");
  Line(pageHtml,
       "        <tr><td><input type='submit' style='border:none;text-align:center' value='",
       context.LangWord(kSubmitText), "'/></td></tr>");
  Line(pageHtml, "      </table></td></form>");
}

void PortForm(const RenderContext& context, std::string_view action, std::string_view device,
              std::string_view port, std::string& pageHtml) {
  CellBegin("40", pageHtml);
  LabelRow(context.LangWord(kDeviceLabel), pageHtml);
  LastLabel(context.LangWord(kPortLabel), pageHtml);
  CellEnd(pageHtml);
  CellBegin("120", pageHtml);
  FormBegin(action, pageHtml);
  InputField("DeviceName", device, pageHtml);
  InputField("PortName", port, pageHtml);
  CellEnd(pageHtml);
  SubmitCell(context, pageHtml);
}

// The choice of the order, all in one line.
void OrderChoice(std::string_view orderKey, std::string& pageHtml) {
  Append(pageHtml, "        <tr>", "          <div>",
         "          <select class='selectBox' name='OrderBy'>");
  for (const Order& order : kOrders) {
    const std::string_view mark = order.key == orderKey ? " selected='selected'" : "";
    Append(pageHtml, "            <option", mark, " value='", order.key, "'>", order.text,
           "</option>");
  }
  Append(pageHtml, "          </select></div>", "        </tr>");
}

}  // namespace

void TopHeader_SearchDevicePortName(const RenderContext& context, std::string_view device,
                                    std::string_view port, std::string& pageHtml) {
  ErrorExit(context.diagnostics, kModule, "TopHeader_SearchDevicePortName",
            [&] { PortForm(context, "search-device-port-name", device, port, pageHtml); });
}

void TopHeader_SearchDevicePortAlias(const RenderContext& context, std::string_view device,
                                     std::string_view port, std::string& pageHtml) {
  ErrorExit(context.diagnostics, kModule, "TopHeader_SearchDevicePortAlias",
            [&] { PortForm(context, "search-device-port-alias", device, port, pageHtml); });
}

void TopHeader_SearchMacIp(const RenderContext& context, std::string_view address,
                           std::string& pageHtml) {
  ErrorExit(context.diagnostics, kModule, "TopHeader_SearchMacIp", [&] {
    CellBegin("70", pageHtml);
    Line(pageHtml, "       <th style='font-weight:bold'>", context.LangWord(kAddressLabel),
         ":</th>");
    CellEnd(pageHtml);
    CellBegin("120", pageHtml);
    FormBegin("search-mac-ip", pageHtml);
    InputField("MacIpName", address, pageHtml);
    CellEnd(pageHtml);
    SubmitCell(context, pageHtml);
  });
}

void TopHeader_SearchDeviceStorage(const RenderContext& context, std::string_view device,
                                   std::string_view disk, std::string_view orderKey,
                                   std::string& pageHtml) {
  ErrorExit(context.diagnostics, kModule, "TopHeader_SearchDeviceStorage", [&] {
    CellBegin("70", pageHtml);
    LabelRow(context.LangWord(kDeviceLabel), pageHtml);
    LabelRow(context.LangWord(kDiskLabel), pageHtml);
    LastLabel(context.LangWord(kOrderLabel), pageHtml);
    CellEnd(pageHtml);
    CellBegin("120", pageHtml);
    FormBegin("search-device-disk", pageHtml);
    InputField("DeviceName", device, pageHtml);
    InputField("DiskName", disk, pageHtml);
    OrderChoice(orderKey, pageHtml);
    CellEnd(pageHtml);
    SubmitCell(context, pageHtml);
  });
}

}  // namespace quillon
