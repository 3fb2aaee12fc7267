// The style rules, one line of file each. The blanks inside the selectors align the
// braces and belong to the text.
#include "render/stylesheet.h"

#include "platform/files.h"
#include "render/page_text.h"
#include "service/error_exit.h"

namespace quillon {
namespace {

void Popups(const Theme& theme, std::string& css) {
  Line(css,
       ".popupHelp  "
       "{position:absolute;width:450px;visibility:hidden;font-family:arial,sans-serif;font-size:"
       "12px;background-color:",
       theme.PopupBg, ";color:", theme.PopupText, ";border:2px solid ", theme.PopupBorder,
       ";text-align:left;padding:5px;left:300px;top:90px}");
  Line(css,
       ".popupTable "
       "{position:absolute;width:450px;visibility:hidden;font-family:arial,sans-serif;font-size:"
       "12px;background-color:",
       theme.PopupBg, ";color:", theme.PopupText, ";border:2px solid ", theme.PopupBorder,
       ";text-align:left;padding:5px;left:80px}");
  Line(css,
       ".popupChart "
       "{position:absolute;width:200px;visibility:hidden;font-family:arial,sans-serif;font-size:"
       "12px;background-color:",
       theme.PopupBg, ";color:", theme.PopupText, ";border:2px solid ", theme.PopupBorder,
       ";text-align:left;padding:5px;padding-left:15px}");
}

void PopupTables(const Theme& theme, std::string& css) {
  Line(css, ".div-table         {display:table;width:450px}");
  Line(css, ".div-table-caption {display:table-caption;font-weight:bold;background-color:",
       theme.CaptionBg, ";color:", theme.CaptionText, ";padding:2px}");
  Line(css, ".div-table-row     {display:table-row;font-weight:normal;border:0px;padding:5px}");
  Line(css, ".div-table-col     {display:table-cell;width:50px;border:0px;border-top:1px solid ",
       theme.PopupBorder, ";padding:1px}");
}

void Inputs(const Theme& theme, std::string& css) {
  Line(css, ".selectBox  {font-size:12px;background-color:", theme.InputBg,
       ";color:", theme.InputText, ";border:1px solid ", theme.InputBorder, ";padding:1px}");
  Line(css, ".inputField {height:15px;font-size:11px;background-color:", theme.InputBg,
       ";color:", theme.InputText, ";border:2px solid ", theme.InputBorder, ";vertical-align:top}");
}

void BodyAndLinks(const Theme& theme, std::string& css) {
  Line(css, "body {background-color:", theme.BodyBg, ";margin:15px}");
  Line(css, "a         {color:", theme.LinkColor, ";text-decoration:none}");
  Line(css, "a:link    {color:", theme.LinkColor, ";text-decoration:none}");
  Line(css, "a:visited {color:", theme.LinkColor, ";text-decoration:none}");
  Line(css, "a:hover   {color:", theme.LinkHover, ";text-decoration:none}");
  Line(css, "a:active  {color:", theme.LinkHover, ";text-decoration:none}");
}

void TopRules(const Theme& theme, std::string& css) {
  Line(
      css,
      "hr.topLine1 {height:1px;width:790px;border:0px;margin:0px;padding:0px;border-top:0px solid ",
      theme.TopLine1, ";border-bottom:2px solid ", theme.TopLine1, "}");
  Line(
      css,
      "hr.topLine2 {height:1px;width:790px;border:0px;margin:0px;padding:0px;border-top:2px solid ",
      theme.TopLine2, ";border-bottom:0px solid ", theme.TopLine2, "}");
}

void TopBand(const Theme& theme, std::string& css) {
  Line(css, "table.topHeader {font-family:arial,sans-serif;font-size:12px;background-color:",
       theme.BandBg, ";color:", theme.BandText, ";padding:0px;border-top:1px solid ",
       theme.BandBorder, ";border-bottom:1px solid ", theme.BandBorder, "}");
  Line(css, "table.topHeader td {text-align:left;padding:5px}");
}

void TopBandBlocks(const Theme& theme, std::string& css) {
  Line(css,
       "table.topHeader2 "
       "{font-family:arial,sans-serif;font-size:12px;font-weight:bold;background-color:",
       theme.BandBg, ";color:", theme.BandText, ";padding:0px}");
  Line(css, "table.topHeader2 th {text-align:left;vertical-align:middle;padding:2px}");
  Line(css, "table.topHeader2 td {text-align:left;vertical-align:middle;padding:2px}");
}

void ReportBands(const Theme& theme, std::string& css) {
  Line(css, "table.repHeader {font-family:arial,sans-serif;font-size:20px;background-color:",
       theme.BandBg, ";color:", theme.BandText, ";padding:2px;border-top:1px solid ",
       theme.BandBorder, ";border-bottom:1px solid ", theme.BandBorder,
       ";border-collapse:collapse}");
  Line(css, "table.repHeader td {text-align:center;padding:0px}");
}

void ReportBandBlocks(const Theme& theme, std::string& css) {
  Line(css, "table.repHeader2 {font-family:arial,sans-serif;font-size:12px;background-color:",
       theme.BandBg, ";color:", theme.BandText, ";padding:0px;border-left:1px solid ",
       theme.BandBorder, ";border-right:1px solid ", theme.BandBorder,
       ";border-collapse:collapse}");
  Line(css, "table.repHeader2 td {text-align:left;padding:2px}");
}

void RowStripes(const Theme& theme, std::string& css) {
  Line(css, "tr.tableDataOdd    {background-color:", theme.RowOddBg, "}");
  Line(css, "tr.tableDataEven   {background-color:", theme.RowEvenBg, "}");
  Line(css, "tr.tableDataActive {background-color:", theme.RowActiveBg, "}");
}

void Tables(const Theme& theme, std::string& css) {
  Line(css, "table.tableData {font-family:arial,sans-serif;font-size:12px;background-color:",
       theme.BandBg, ";color:", theme.TableText,
       ";border-width:0px;border-spacing:1px;padding:0px}");
  Line(css, "table.tableData th {text-align:center;padding:2px;border-right:1px solid ",
       theme.BandBorder, ";border-bottom:1px solid ", theme.BandBorder, "}");
  Line(css, "table.tableData td {text-align:right;padding:1px;border-right:1px solid ",
       theme.BandBorder, ";padding-left:2px;padding-right:2px;white-space:nowrap}");
}

void ChartRows(const Theme& theme, std::string& css) {
  Line(css, "tr.chartDataBg     {background-color:", theme.ChartBg, "}");
  Line(css, "tr.chartDataLeft   {background-color:", theme.ChartLeft, "}");
  Line(css, "tr.chartDataRight  {background-color:", theme.ChartRight, "}");
  Line(css, "tr.chartDataLeft2  {background-color:", theme.ChartLeft2, "}");
  Line(css, "tr.chartDataRight2 {background-color:", theme.ChartRight2, "}");
  Line(css, "tr.chartDataLeft3  {background-color:", theme.ChartLeft3, "}");
  Line(css, "tr.chartDataRight3 {background-color:", theme.ChartRight3, "}");
  Line(css, "tr.chartDataYaxis  {background-color:", theme.ChartAxis, ";font-size:4px}");
  Line(css, "tr.chartDataXaxis  {background-color:", theme.ChartAxis, ";font-size:0px}");
}

void Charts(const Theme& theme, std::string& css) {
  Line(
      css,
      "table.chartData {height:135px;font-family:arial,sans-serif;font-size:12px;background-color:",
      theme.ChartBg, ";color:", theme.ChartText, ";padding:0px;border-left:1px solid ",
      theme.BandBorder, ";border-right:1px solid ", theme.BandBorder, ";border-collapse:collapse}");
  Line(css, "table.chartData td {text-align:right;padding:0px;vertical-align:bottom}");
}

void ChartParts(const Theme& theme, std::string& css) {
  Line(css,
       "table.chartData2 "
       "{height:110px;font-family:arial,sans-serif;font-size:12px;background-color:",
       theme.ChartBg, ";color:", theme.ChartText,
       ";padding:0px;border:0px;border-collapse:collapse}");
  Line(css, "table.chartData2 td {text-align:right;padding:0px;vertical-align:bottom}");
}

void DayNumbers(const Theme& theme, std::string& css) {
  Line(css, "table.chartDayNr {font-family:arial,sans-serif;font-size:12px;background-color:",
       theme.ChartBg, ";color:", theme.ChartText, ";text-align:center;border-left:1px solid ",
       theme.BandBorder, ";border-right:1px solid ", theme.BandBorder, ";border-bottom:1px solid ",
       theme.BandBorder, ";border-collapse:collapse}");
  Line(css, "table.chartDayNr th {background-color:", theme.ChartSundayBg, "}");
}

void Footer(const Theme& theme, std::string& css) {
  Line(css,
       "table.footer {font-family:arial,sans-serif;font-size:10px;background-color:", theme.BandBg,
       ";color:", theme.BandText, ";text-align:left;padding:0px}");
}

}  // namespace

std::string StylesheetText(const Theme& theme) {
  using Block = void (*)(const Theme&, std::string&);
  // In the order of the file, an empty line between two blocks.
  constexpr Block kBlocks[] = {Popups,           PopupTables, Inputs,        BodyAndLinks,
                               TopRules,         TopBand,     TopBandBlocks, ReportBands,
                               ReportBandBlocks, RowStripes,  Tables,        ChartRows,
                               Charts,           ChartParts,  DayNumbers,    Footer};
  std::string css;
  for (const Block block : kBlocks) {
    if (!css.empty()) Line(css);
    block(theme, css);
  }
  Line(css);  // the file is written as one line, which adds a line end of its own
  return css;
}

void CreateCss(const Diagnostics& diagnostics, std::string_view cboColorTheme) {
  ErrorExit(diagnostics, "modHtml", "CreateCss", [&] {
    ReplaceFile(PathBelow(diagnostics.settings, "\\WebReports\\qws.css"),
                StylesheetText(FindTheme(cboColorTheme)), OldFile::kStays);
  });
}

}  // namespace quillon
