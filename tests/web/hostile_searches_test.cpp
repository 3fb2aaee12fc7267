// Search texts go into selects and pages as they stand, whatever they hold: they can neither change
// nor give away anything, nor hold the others up.
#include <string>
#include <vector>

#include "web/hostile_site.h"

namespace quillon {
namespace {

using Texts = std::vector<std::string>;

class HostileSearches : public HostileSite {
 protected:
  // All texts of the list, and some of the grammar.
  static Texts TextsFor(unsigned seed) {
    Texts texts = HostileTexts();
    HostileGrammar grammar(seed);
    for (int count = 0; count < 200; ++count) texts.push_back(grammar.Text());
    return Taken(texts, seed);
  }

  void SearchForAll(unsigned seed, const std::string& action, const std::string& body) {
    for (const std::string& text : TextsFor(seed)) SearchFor(text, action, body);
    ExpectNothingHasChanged();
  }

  void SearchForBusy(const std::vector<BusyText>& texts) {
    for (const auto& [name, text] : texts) {
      SCOPED_TRACE(name);
      SearchFor(text, "search-device-port-name", "DeviceName=#\r\nPortName=*\r\n");
    }
    ExpectNothingHasChanged();
  }
};

TEST_F(HostileSearches, DeviceOfASearchByPortNameHurtsNobody) {
  SearchForAll(1, "search-device-port-name", "DeviceName=#\r\nPortName=*\r\n");
}

TEST_F(HostileSearches, PortNameHurtsNobody) {
  SearchForAll(2, "search-device-port-name", "DeviceName=*\r\nPortName=#");
}

TEST_F(HostileSearches, DeviceOfASearchByAliasHurtsNobody) {
  SearchForAll(3, "search-device-port-alias", "DeviceName=#\r\nPortName=*\r\n");
}

TEST_F(HostileSearches, AliasHurtsNobody) {
  SearchForAll(4, "search-device-port-alias", "DeviceName=10.0.0.*\r\nPortName=#\r\n");
}

TEST_F(HostileSearches, MacAddressHurtsNobody) {
  SearchForAll(5, "search-mac-ip", "MacIpName=#");
}

// With a dot in front nothing of the text is rewritten.
TEST_F(HostileSearches, IpAddressHurtsNobody) {
  SearchForAll(6, "search-mac-ip", "MacIpName=.#\r\n");
}

TEST_F(HostileSearches, ServerHurtsNobody) {
  SearchForAll(7, "search-device-disk", "DeviceName=#\r\nDiskName=*\r\nOrderBy=usedbytes-asc");
}

TEST_F(HostileSearches, DiskHurtsNobody) {
  SearchForAll(8, "search-device-disk", "DeviceName=*\r\nDiskName=#\r\nOrderBy=trend14d-desc\r\n");
}

TEST_F(HostileSearches, FieldToSortByHurtsNobody) {
  SearchForAll(9, "search-device-disk", "DeviceName=*\r\nDiskName=*\r\nOrderBy=#-desc");
}

TEST_F(HostileSearches, DirectionToSortInHurtsNobody) {
  SearchForAll(10, "search-device-disk", "DeviceName=*\r\nDiskName=*\r\nOrderBy=usedbytes-#");
}

TEST_F(HostileSearches, OrderAsAWholeHurtsNobody) {
  SearchForAll(11, "search-device-disk", "DeviceName=*\r\nDiskName=*\r\nOrderBy=#\r\n");
}

// Whether a search fails or finds something would already be an answer to such a question.
TEST_F(HostileSearches, WhatNoReportReadsCannotEvenBeAskedFor) {
  const auto expectRefused = [&](const std::string& text, const std::string& action,
                                 const std::string& body, const std::string& procedure) {
    site.ForgetEvents();
    SearchFor(text, action, body);
    EXPECT_EQ(Failures(), Names{"modSelectSql_" + procedure}) << Shown(text);
    EXPECT_EQ(Links(answer_), Names{}) << Shown(text);
  };
  for (const std::string& text : ForbiddenSql()) {
    expectRefused(text, "search-device-port-name", "DeviceName=#\r\nPortName=*\r\n",
                  "SqlSearchDevicePort");
    expectRefused(text, "search-mac-ip", "MacIpName=.#", "SqlSearchMacIp");
  }
  ExpectNothingHasChanged();
}

TEST_F(HostileSearches, DebugFilesTakeEveryText) {
  site.settings.DebugMode = true;
  int count = 0;
  for (const std::string& text : Taken(HostileTexts(), 12)) {
    if (++count % 2 == 0) {
      SearchFor(text, "search-mac-ip", "MacIpName=#\r\n");
    } else {
      SearchFor(text, "search-device-disk", "DeviceName=*\r\nDiskName=#\r\nOrderBy=usedbytes-asc");
    }
  }
  ExpectNothingHasChanged();
}

TEST_F(HostileSearches, PagesOfEveryCharsetTakeEveryByte) {
  for (const char* charset : {"UTF-8", "KOI8-R"}) {
    site.settings.CharSet = charset;
    NotePlainAnswer();
    for (const std::string& text : OddTexts()) {
      SearchFor(text, "search-device-port-name", "DeviceName=#\r\nPortName=*\r\n");
    }
  }
  ExpectNothingHasChanged();
}

TEST_F(HostileSearches, NumberOfADeviceHurtsNobody) {
  Texts ids = HostileDeviceIds();
  for (const std::string& text : HostileTexts()) ids.push_back(text);
  for (const std::string& text : HostileSql()) ids.push_back("7" + text);
  for (const std::string& id : Taken(ids, 13)) {
    SendHarmless(Site::Request("DeviceId=" + id), "DeviceId: " + Shown(id));
  }
  ExpectNothingHasChanged();
}

TEST_F(HostileSearches, UrlsOfAllRoutesHurtNobody) {
  for (const std::string& url : Taken(HostileUrls(), 14)) {
    SendHarmless(Site::Request(url), Shown(url));
  }
  ExpectNothingHasChanged();
}

TEST_F(HostileSearches, UrlsOfRoutesInAnyOrderHurtNobody) {
  HostileGrammar grammar(12);
  for (int count = 0; count < 200; ++count) {
    const std::string url = grammar.Url();
    SendHarmless(Site::Request(url), Shown(url));
  }
  ExpectNothingHasChanged();
}

TEST_F(HostileSearches, WorkWithoutEndIsStopped) {
  SearchForBusy(TextsOfEndlessSteps());
}

TEST_F(HostileSearches, WorkInsideSingleCallsIsStopped) {
  SearchForBusy(TextsOfLongCalls());
}

TEST_F(HostileSearches, WorkOfFewWordsIsStopped) {
  SearchForBusy(TextsOfFewWords());
}

TEST_F(HostileSearches, WorkBeforeTheFirstStepIsStopped) {
  SearchForBusy(TextsOfLongPlanning());
}

}  // namespace
}  // namespace quillon
