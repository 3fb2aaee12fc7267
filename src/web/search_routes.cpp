// The search routes: forms, and the four searches with what they have alike.
#include "web/search_routes.h"

#include <optional>
#include <string>
#include <string_view>

#include "queries/disk_search.h"
#include "queries/mac_search.h"
#include "queries/port_search.h"
#include "render/disk_tables.h"
#include "render/page_frame.h"
#include "render/search_forms.h"
#include "render/switch_tables.h"
#include "web/form_fields.h"
#include "web/http_header.h"
#include "web/page_cache.h"
#include "web/page_closing.h"

namespace quillon {
namespace {

constexpr std::string_view kMacIpReport = "search-mac-ip";
constexpr std::string_view kDiskReport = "search-device-disk";
constexpr std::string_view kFirstOrder = "usedpercent-desc";  // of a form that nobody has filled

// A search for ports: its form, and the column that the port is looked for in.
struct PortSearch {
  std::string_view reportKey;
  std::string_view column;
  std::string_view cacheBeginning;  // of the names under which results are stored
  void (*form)(const RenderContext& context, std::string_view device, std::string_view port,
               std::string& pageHtml);
};

constexpr PortSearch kByName = {"search-device-port-name", "IfDescr", "switch-device-port-name-",
                                TopHeader_SearchDevicePortName};
constexpr PortSearch kByAlias = {"search-device-port-alias", "IfAlias", "switch-device-port-alias-",
                                 TopHeader_SearchDevicePortAlias};

// Appends the top band with the form that `appendForm` appends to the same page.
template <typename AppendForm>
void TopBandWithForm(WebContext& context, int selectorWidth, std::string_view reportKey,
                     AppendForm&& appendForm, std::string& pageHtml) {
  TopHeader_Begin(context.render, selectorWidth, reportKey, pageHtml);
  appendForm(pageHtml);
  TopHeader_End(context.render, pageHtml);
}

// A form alone: nothing was searched, and nothing is stored.
template <typename AppendForm>
void EmptyForm(WebContext& context, int selectorWidth, std::string_view reportKey,
               AppendForm&& appendForm, Request& request) {
  TopBandWithForm(context, selectorWidth, reportKey, appendForm, request.pageHtml);
  Page_End(context.render, request.pageHtml);
  HTTP_Header("text/html", request.pageHtml);
}

// The result is the connection's own: the next search on it takes its place.
void NameResult(std::string_view beginning, Request& request) {
  request.cacheFile = std::string(beginning) + std::to_string(request.id) + ".htm";
}

void StoreAndClose(WebContext& context, Request& request) {
  SaveToCache(context.diagnostics, request.id, request.cacheFile, request.pageHtml);
  ClosePage(context, request);
}

void PortTableAndClose(WebContext& context, Request& request) {
  TableHeader_Switch(context.render, request.id, request.pageHtml);
  TableDataSwitch_Search(context.render, request.id, request.cacheFile, request.pageHtml);
  StoreAndClose(context, request);
}

void EmptyPortForm(WebContext& context, const PortSearch& search, Request& request) {
  const auto form = [&](std::string& page) { search.form(context.render, "", "", page); };
  EmptyForm(context, kPortSearchWidth, search.reportKey, form, request);
}

void SearchPorts(WebContext& context, const PortSearch& search, Request& request) {
  auto device = FormField(request.Text, "DeviceName=", FieldPlace::kInner);
  if (!device) return;
  auto port = FormField(request.Text, "PortName=", FieldPlace::kLast);
  if (!port) return;
  NameResult(search.cacheBeginning, request);
  SqlSearchDevicePort(context.queries, request.id, *device, *port, search.column);
  const auto form = [&](std::string& page) { search.form(context.render, *device, *port, page); };
  TopBandWithForm(context, kPortSearchWidth, search.reportKey, form, request.pageHtml);
  PortTableAndClose(context, request);
}

}  // namespace

void RoutePortNameForm(WebContext& context, Request& request) {
  EmptyPortForm(context, kByName, request);
}

void RoutePortAliasForm(WebContext& context, Request& request) {
  EmptyPortForm(context, kByAlias, request);
}

void RouteMacIpForm(WebContext& context, Request& request) {
  const auto form = [&](std::string& page) { TopHeader_SearchMacIp(context.render, "", page); };
  EmptyForm(context, kPortSearchWidth, kMacIpReport, form, request);
}

void RouteDiskForm(WebContext& context, Request& request) {
  const auto form = [&](std::string& page) {
    TopHeader_SearchDeviceStorage(context.render, "", "", kFirstOrder, page);
  };
  EmptyForm(context, kDiskSearchWidth, kDiskReport, form, request);
}

void RoutePortNameSearch(WebContext& context, Request& request) {
  SearchPorts(context, kByName, request);
}

void RoutePortAliasSearch(WebContext& context, Request& request) {
  SearchPorts(context, kByAlias, request);
}

void RouteMacIpSearch(WebContext& context, Request& request) {
  auto value = FormField(request.Text, "MacIpName=", FieldPlace::kLast);
  if (!value) return;
  NameResult("switch-mac-ip-", request);
  SqlSearchMacIp(context.queries, request.id, *value);
  const auto form = [&](std::string& page) { TopHeader_SearchMacIp(context.render, *value, page); };
  TopBandWithForm(context, kPortSearchWidth, kMacIpReport, form, request.pageHtml);
  PortTableAndClose(context, request);
}

void RouteDiskSearch(WebContext& context, Request& request) {
  auto device = FormField(request.Text, "DeviceName=", FieldPlace::kInner);
  if (!device) return;
  auto disk = FormField(request.Text, "DiskName=", FieldPlace::kInner);
  if (!disk) return;
  const auto order = FormField(request.Text, "OrderBy=", FieldPlace::kLast);
  if (!order) return;
  NameResult("disk-search-", request);
  SqlSearchDeviceDisk(context.queries, request.id, *device, *disk, *order);
  const auto form = [&](std::string& page) {
    TopHeader_SearchDeviceStorage(context.render, *device, *disk, *order, page);
  };
  TopBandWithForm(context, kDiskSearchWidth, kDiskReport, form, request.pageHtml);
  TableHeader_Disk(context.render, request.id, request.pageHtml);
  TableData_DiskSearch(context.render, request.id, request.pageHtml);
  StoreAndClose(context, request);
}

}  // namespace quillon
