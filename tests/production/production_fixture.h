// The day's production around a site whose words show their number: word 38 is "W38". Today is
// 2024-05-02, noon; the newest day of a chart is the day before. Mails are noted and go nowhere.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "production/production_context.h"
#include "production/recording_smtp.h"
#include "support/report_rows.h"
#include "support/site.h"

namespace quillon {

class ProductionTest : public testing::Test {
 protected:
  using Lines = std::vector<std::string>;

  ProductionTest() { site.NumberWords("W"); }

  void Reports(const std::string& sql) const { site.installation.Sql("Reports.mdb", sql); }
  void History(const std::string& sql) const { site.installation.Sql("History.mdb", sql); }
  void Settings(const std::string& sql) const { site.installation.Sql("Quillon.mdb", sql); }

  Lines CacheFiles() const { return site.installation.List("WebReports/Cache"); }
  Lines MailFiles() const { return site.installation.List("WebReports/Mail"); }
  std::string Cached(const std::string& name) const {
    return site.installation.Read("WebReports/Cache/" + name);
  }
  std::string Mailed(const std::string& name) const {
    return site.installation.Read("WebReports/Mail/" + name);
  }

  // A real listener, real HTTP clients (site.Connect, site.Exchange, site.Get), real databases; the
  // clock of the site is set by hand, and site.clock.slept() tells the waits.
  Site site;
  MailLog mails;
  RepReceivers RepReceiver;
  ProductionContext production{
      site.diagnostics, site.settings,
      site.clock,       site.loop,
      site.tcpServer,   site.render,
      site.queries,     site.records,
      RepReceiver,      [this] { return std::make_unique<RecordingSmtp>(mails); }};
};

}  // namespace quillon
