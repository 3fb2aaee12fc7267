// The page frame, line by line in page order. Unquoted and doubled attributes are this
// site's text and wanted as they are.
#include "render/page_frame.h"

#include "render/page_text.h"
#include "service/error_exit.h"
#include "service/version.h"

namespace quillon {
namespace {

constexpr std::string_view kModule = "modHtml";
constexpr std::string_view kOwnersNotice = "Quillon Network Reporting";

// One option of the report selector. A group label opens a group in front of its option.
struct Option {
  std::string_view group;
  std::string_view reportKey;
  std::string_view value;
  int word;
};

constexpr std::string_view kSameGroup;

constexpr Option kOptions[] = {
    {kSameGroup, "none", "none", 1},
    {"Switch", "switch-access-port-top10", "switch-access-port-top10-inerrors.htm", 2},
    {kSameGroup, "switch-access-port-summary", "hist45d-switch-access-port-summary.htm", 34},
    {kSameGroup, "switch-trunk-port-top10", "switch-trunk-port-top10-inerrors.htm", 3},
    {kSameGroup, "switch-trunk-port-summary", "hist45d-switch-trunk-port-summary.htm", 35},
    {kSameGroup, "search-device-port-name", "search-device-port-name", 4},
    {kSameGroup, "search-device-port-alias", "search-device-port-alias", 37},
    {"Server", "disk-windows-top10", "disk-windows-top10-usedpercent-desc.htm", 88},
    {kSameGroup, "disk-unix-top10", "disk-unix-top10-usedpercent-desc.htm", 51},
    {kSameGroup, "disk-physical-top10", "disk-physical-top10-usedpercent-desc.htm", 52},
    {kSameGroup, "disk-virtual-top10", "disk-virtual-top10-usedpercent-desc.htm", 53},
    {kSameGroup, "disk-mem-summary", "hist45d-disk-mem-summary.htm", 54},
    {kSameGroup, "search-device-disk", "search-device-disk", 55},
    {"User", "search-mac-ip", "search-mac-ip", 5},
};

// Doctype to opened body, the same for web and mail pages.
void DocumentHead(const RenderContext& context, std::string& pageHtml) {
  Line(pageHtml, "<!DOCTYPE HTML PUBLIC '-//W3C//DTD HTML 4.01 Strict//EN'>");
  Line(pageHtml, "<html>");
  Line(pageHtml, "<head>");
  Line(pageHtml, "  <title>Quillon</title>");
  Line(pageHtml,
       "  <meta http-equiv='Content-type' content='text/html;charset=", context.settings.CharSet,
       "'>");
  Line(pageHtml, "  <link rel='stylesheet' type='text/css' href='qws.css'>");
  Line(pageHtml, "  <script type='text/javascript'>");
  Line(pageHtml,
       "    function popupShow(id) {document.getElementById(id).style.visibility='visible'}");
  Line(pageHtml,
       "    function popupHide(id) {document.getElementById(id).style.visibility='hidden'}");
  Line(pageHtml, "  </script>");
  Line(pageHtml, "</head>");
  Line(pageHtml, "<body>");
}

void ReportSelector(const RenderContext& context, std::string_view reportKey,
                    std::string& pageHtml) {
  bool groupOpen = false;
  for (const Option& option : kOptions) {
    if (option.group != kSameGroup) {
      if (groupOpen) Line(pageHtml, "            </optgroup>");
      Line(pageHtml, "            <optgroup label='", option.group, "'>");
      groupOpen = true;
    }
    const std::string_view mark = option.reportKey == reportKey ? " selected='selected'" : "";
    Line(pageHtml, "            <option", mark, " value='", option.value, "'>",
         context.LangWord(option.word), "</option>");
  }
  Line(pageHtml, "            </optgroup>");
}

}  // namespace

void TopHeader_Begin(const RenderContext& context, int middleCellWidth, std::string_view reportKey,
                     std::string& pageHtml) {
  ErrorExit(context.diagnostics, kModule, "TopHeader_Begin", [&] {
    DocumentHead(context, pageHtml);
    // The style rules of topLine1 and topLine2 are written for rules (hr) and match no
    // table: these two show as nothing, and stay.
    Line(pageHtml, "  <table width='790px' class='topLine1'>");
    Line(pageHtml, "  </table>");
    Line(pageHtml, "  <table width='790px' class='topHeader'>");
    Line(pageHtml, "    <tr>");
    Line(pageHtml, "      <td width='200px' style='font-size:24px;font-weight:bold;padding:12px'>",
         "Quillon</td>");
    Line(pageHtml, "      <td width='", std::to_string(middleCellWidth),
         "px' style='vertical-align:middle;padding:0px'><table class='topHeader2'>");
    Line(pageHtml, "        <tr>");
    Line(pageHtml, "          <form name='frmSelect' action='select' method='get'>");
    Line(pageHtml, "          <div>");
    Line(pageHtml,
         "          <select class='selectBox' name='report' onchange='frmSelect.submit();'>");
    ReportSelector(context, reportKey, pageHtml);
    Line(pageHtml, "          </select></div></form>");
    Line(pageHtml, "        </tr>");
    Line(pageHtml, "      </table></td>");
  });
}

void TopHeader_End(const RenderContext& context, std::string& pageHtml) {
  ErrorExit(context.diagnostics, kModule, "TopHeader_End", [&] {
    Line(pageHtml,
         "      <td width='10px' style='vertical-align:top;padding:0px'>"
         "<table class='topHeader2'>");
    Line(pageHtml, "        <tr><th style='font-weight:bold'>", PopupLink("h1", "?"), "</th></tr>");
    Line(pageHtml, "          <div id='h1' class='popupHelp'>");
    Line(pageHtml, "          <div class='div-table'>");
    Append(pageHtml, context.words.HelpText);
    Line(pageHtml, "        </div></div>");
    Line(pageHtml, "      </table></td>");
    Line(pageHtml, "    </tr>");
    Line(pageHtml, "  </table>");
    Line(pageHtml, "  <table width='790px' class='topLine2'>");
    Line(pageHtml, "  </table>");
    Line(pageHtml, "<br>");
  });
}

void TopHeader_MailReport(const RenderContext& context, std::string& pageHtml) {
  ErrorExit(context.diagnostics, kModule, "TopHeader_MailReport",
            [&] { DocumentHead(context, pageHtml); });
}

void Page_Footer(const RenderContext& context, std::string& pageHtml) {
  ErrorExit(context.diagnostics, kModule, "Page_Footer", [&] {
    Line(pageHtml, "<table width='790px' class='footer'>");
    Line(pageHtml, "  <tr>");
    Line(pageHtml, "    <td width='600px'>", kOwnersNotice, "</td>");
    Line(pageHtml, "    <td width='190px' style='text-align:right'>Quillon ", kVersion, "</td>");
    Line(pageHtml, "  </tr>");
    Line(pageHtml, "</table>");
  });
}

void Page_End(const RenderContext& context, std::string& pageHtml) {
  ErrorExit(context.diagnostics, kModule, "Page_End", [&] {
    Line(pageHtml, "</body>");
    Append(pageHtml, "</html>");
  });
}

}  // namespace quillon
