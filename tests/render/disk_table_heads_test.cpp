// The heads of the disk tables: six links, of which that of the current field turns its direction
// over.
#include "render/disk_tables_fixture.h"

namespace quillon {
namespace {

class DiskHeads : public DiskTables {
 protected:
  // The pages to which the heads of a list lead; the links of the rows have no quotes.
  Names HeadLinks(std::string_view reportKind, std::string_view sortOrder,
                  std::string_view pageName) {
    return Between(Top10(reportKind, sortOrder, pageName), "<a href='", "'>");
  }
  // The six pages of Unix disks, each in one direction.
  static Names UnixPages(const Names& directions) {
    const std::string fields[] = {"totalbytes",  "freebytes", "usedbytes",
                                  "usedpercent", "trend14d",  "trend30d"};
    Names pages;
    for (std::size_t i = 0; i < directions.size(); ++i) {
      pages.push_back("disk-unix-top10-" + fields[i] + "-" + directions[i] + ".htm");
    }
    return pages;
  }
};

TEST_F(DiskHeads, HeadOfTheCurrentFieldTurnsItsDirectionOver) {
  const struct {
    std::string field;
    std::string order;
    Names directions;  // of the six heads
  } rows[] = {
      {"totalbytes", "ASC", {"desc", "asc", "desc", "desc", "desc", "desc"}},
      {"totalbytes", "DESC", {"asc", "asc", "desc", "desc", "desc", "desc"}},
      {"freebytes", "ASC", {"desc", "desc", "desc", "desc", "desc", "desc"}},
      {"freebytes", "DESC", {"desc", "asc", "desc", "desc", "desc", "desc"}},
      {"usedbytes", "ASC", {"desc", "asc", "desc", "desc", "desc", "desc"}},
      {"usedbytes", "DESC", {"desc", "asc", "asc", "desc", "desc", "desc"}},
      {"usedpercent", "ASC", {"desc", "asc", "desc", "desc", "desc", "desc"}},
      {"usedpercent", "DESC", {"desc", "asc", "desc", "asc", "desc", "desc"}},
      {"trend14d", "ASC", {"desc", "asc", "desc", "desc", "desc", "desc"}},
      {"trend14d", "DESC", {"desc", "asc", "desc", "desc", "asc", "desc"}},
      {"trend30d", "ASC", {"desc", "asc", "desc", "desc", "desc", "desc"}},
      {"trend30d", "DESC", {"desc", "asc", "desc", "desc", "desc", "asc"}},
  };
  for (const auto& row : rows) {
    // The direction in the page's name is not looked at.
    for (const std::string end : {"-asc.htm", "-desc.htm", ""}) {
      const std::string page = "disk-unix-top10-" + row.field + end;
      EXPECT_EQ(UnixPages(row.directions), HeadLinks("unix", row.order, page))
          << row.order << " " << page;
    }
  }
}

TEST_F(DiskHeads, UsedShareOfPhysicalMemoryDescending) {
  EXPECT_EQ(
      (Names{"disk-physical-top10-totalbytes-desc.htm", "disk-physical-top10-freebytes-asc.htm",
             "disk-physical-top10-usedbytes-desc.htm", "disk-physical-top10-usedpercent-asc.htm",
             "disk-physical-top10-trend14d-desc.htm", "disk-physical-top10-trend30d-desc.htm"}),
      HeadLinks("physical", "DESC", "disk-physical-top10-usedpercent-desc.htm"));
}

TEST_F(DiskHeads, AnyOrderButAscIsTurnedIntoAsc) {
  for (const std::string order : {"DESC", "", "asc", "ASC ", " ASC", "ASCENDING"}) {
    EXPECT_EQ(StoredTop10(StoredPiece("disk_rows.html")), Top10("windows", order)) << order;
  }
}

TEST_F(DiskHeads, HeadsLinkToTheListsOfTheirKind) {
  for (const std::string kind : {"physical", "virtual", "windows", "unix", "", "it's"}) {
    EXPECT_EQ(Whole(HeadOf(kind), StoredPiece("disk_rows.html")), Top10(kind)) << kind;
  }
}

TEST_F(DiskHeads, FirstFieldOfTheColumnsThatThePageNameHoldsDecides) {
  const Names normal = {"desc", "asc", "desc", "desc", "desc", "desc"};
  const struct {
    std::string pageName;
    Names ofAsc;
    Names ofDesc;
  } rows[] = {
      {"disk-unix-top10-trend30d-freebytes-asc.htm",
       {"desc", "desc", "desc", "desc", "desc", "desc"},
       normal},
      {"disk-unix-top10-freebytes-trend30d-asc.htm",
       {"desc", "desc", "desc", "desc", "desc", "desc"},
       normal},
      {"disk-unix-top10-usedpercent-usedbytes-desc.htm",
       normal,
       {"desc", "asc", "asc", "desc", "desc", "desc"}},
      {"disk-unix-top10-trend30d-trend14d-desc.htm",
       normal,
       {"desc", "asc", "desc", "desc", "asc", "desc"}},
      {"-trend30d-trend14d-usedpercent-usedbytes-freebytes-totalbytes",
       normal,
       {"asc", "asc", "desc", "desc", "desc", "desc"}},
      {"disk-unix-top10-usedpercentage", normal, {"desc", "asc", "desc", "asc", "desc", "desc"}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(UnixPages(row.ofAsc), HeadLinks("unix", "ASC", row.pageName)) << row.pageName;
    EXPECT_EQ(UnixPages(row.ofDesc), HeadLinks("unix", "DESC", row.pageName)) << row.pageName;
  }
}

TEST_F(DiskHeads, PageNameOfNoFieldLeavesTheSixHeadsOut) {
  const std::string head =
      "<table width='790px' class='tableData'>\r\n"
      "  <tr>\r\n"
      "    <th width='150px' style='text-align:left'>Word15</th>\r\n"
      "    <th width='130px' style='text-align:left'>Word68</th>\r\n"
      "  </tr>\r\n";
  for (const std::string pageName :
       {"", "disk-unix-top10.htm", "disk-unix-top10-usedshare-desc.htm", "usedpercent-desc.htm",
        "disk-unix-top10_usedpercent-desc.htm", "disk-unix-top10-UsedPercent-desc.htm",
        "disk-unix-top10- usedpercent-desc.htm", "disk-unix-top10-used-percent-desc.htm"}) {
    for (const std::string order : {"ASC", "DESC"}) {
      const std::string rows = Replaced(StoredPiece("disk_rows.html"), kPageName, pageName);
      EXPECT_EQ(Whole(head, rows), Top10("unix", order, pageName)) << pageName;
    }
  }
}

TEST_F(DiskHeads, WordsOfTheHeadsStandAsTheyAre) {
  for (const int number : {15, 68, 69, 70, 71, 72, 73, 74}) {
    const std::string word = "Word" + std::to_string(number);
    const std::string text = "S\xF6k <b>&'\"";
    house_.words.LangWord[number] = text;
    EXPECT_EQ(Replaced(StoredTop10(StoredPiece("disk_rows.html")), word + "<", text + "<"),
              Top10());
    EXPECT_EQ(Replaced(StoredSearch(StoredPiece("disk_search_rows.html")), word + "<", text + "<"),
              Search());
    house_.words.LangWord[number] = word;
  }
}

}  // namespace
}  // namespace quillon
