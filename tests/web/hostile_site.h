// A site with something to lose, a client that sends it what it likes, and the eyes on both: what
// is answered, how long that takes, and what the installation looks like afterwards.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "support/hostile_texts.h"
#include "support/stored_text.h"
#include "web/search_site.h"

namespace quillon {

// Passes the events of a listener on, and notes what came and how long the handler took.
class WatchedEvents : public ListenerEvents {
 public:
  explicit WatchedEvents(ListenerEvents& handler) : handler_(handler) {}

  void Connected(ConnectionId id, int code, const std::string& text) override {
    handler_.Connected(id, code, text);
  }
  void DataIn(ConnectionId id, std::string text) override {
    const std::size_t size = text.size();
    const auto start = std::chrono::steady_clock::now();
    handler_.DataIn(id, std::move(text));
    longest = std::max(longest, std::chrono::steady_clock::now() - start);
    bytes += size;
  }
  void Disconnected(ConnectionId id, int code, const std::string& text) override {
    ++ended;
    handler_.Disconnected(id, code, text);
  }
  void Error(int code, const std::string& text) override { handler_.Error(code, text); }

  std::size_t bytes = 0;  // of all texts that were dealt with
  int ended = 0;          // connections
  std::chrono::steady_clock::duration longest{};

 private:
  ListenerEvents& handler_;
};

class HostileSite : public SearchSite {
 protected:
#ifdef __SANITIZE_ADDRESS__
  static constexpr int kSlower = 10;
  static constexpr std::size_t kEach = 5;  // of so many texts, where each takes so much longer
#else
  static constexpr int kSlower = 1;
  static constexpr std::size_t kEach = 1;
#endif

  // The texts, or where a sanitizer watches a part of them: which one, `turn` tells.
  static std::vector<std::string> Taken(const std::vector<std::string>& texts, unsigned turn) {
    std::vector<std::string> taken;
    for (std::size_t i = turn % kEach; i < texts.size(); i += kEach) taken.push_back(texts[i]);
    return taken;
  }

  // No request holds the others up for longer: a select works for 2 s at the most.
  static constexpr std::chrono::seconds kLongest{3 * kSlower};

  static constexpr int kPlainSearches = 6;  // one behind so many requests

  HostileSite() : plainSearch_(PostText(kNameSearch.name, kNameSearch.body)) {
    Keep();
    site.tcpServer.SetEvents(events_);  // nobody has connected yet
    client_ = site.Connect();
    NotePlainAnswer();
    before_ = State();
  }

  // What the plain search finds, and how a page shows it.
  void NotePlainAnswer() {
    plainAnswer_ = site.Exchange(*client_, plainSearch_);
    sent_ = events_.bytes;
    EXPECT_EQ(plainAnswer_, Closed(Page(kNameSearch, 1, kNameSearch.shown)));
    EXPECT_EQ(Links(plainAnswer_), Links(kNameSearch, 1, kNameSearch.found));
  }

  // Sends the request, then what any other user asks for, on the same connection: the default page,
  // and now and then a search. Returns what came for the first.
  std::string Send(const std::string& request, const std::string& what) {
    client_->ClearReceived();
    Deliver(request, what);
    EXPECT_LE(events_.longest, kLongest) << what;
    events_.longest = {};
    Deliver(Site::Request(""), what);
    const bool searches = ++answers_ % kPlainSearches == 0;
    if (searches) Deliver(plainSearch_, what);
    site.favIconData = "end of answer " + std::to_string(answers_);
    Deliver(Site::Request("favicon.ico"), what);
    const std::string rest = DefaultResponse(site.render) + (searches ? plainAnswer_ : "") +
                             Response("image/x-icon", site.favIconData);
    Wait([&] { return client_->received().ends_with(site.favIconData); }, what);
    const std::string& all = client_->received();
    const bool restIsRight = all.ends_with(rest);
    EXPECT_TRUE(restIsRight) << what << "\nand what follows:\n"
                             << all.substr(0, 100) << "\n...\n"
                             << all.substr(all.size() - std::min(all.size(), rest.size()));
    return restIsRight ? all.substr(0, all.size() - rest.size()) : "";
  }

  // The same, and the answer, if there is one, is made of whole pages that give nothing away.
  // Afterwards it is answer_.
  void SendHarmless(const std::string& request, const std::string& what) {
    std::string_view left = std::string_view(answer_ = Send(request, what));
    EXPECT_FALSE(Holds(answer_, kSecret)) << what;
    EXPECT_FALSE(Holds(answer_, "root:")) << what;
    while (!left.empty()) {
      const std::size_t head = left.find("\r\n\r\n");
      ASSERT_TRUE(left.starts_with("HTTP/1.0 200 OK\r\n")) << what;
      ASSERT_NE(head, std::string::npos) << what;
      const std::size_t length = std::stoul(std::string(left.substr(left.find("Length: ") + 8, 9)));
      ASSERT_GE(left.size(), head + 4 + length) << what;
      const std::string_view body = left.substr(head + 4, length);
      const bool isPage = left.find("text/html") < head;
      EXPECT_TRUE(!isPage || body.empty() || body.ends_with("</body>\r\n</html>")) << what;
      left.remove_prefix(head + 4 + length);
    }
  }

  // A search with the text in the first place of "#" in the body.
  void SearchFor(const std::string& text, const std::string& action, const std::string& body) {
    const std::string what = action + ", " + body + ": " + Shown(text);
    SendHarmless(PostText(action, Replaced(body, "#", text)), what);
  }

  static std::string Shown(const std::string& text) {
    return std::to_string(text.size()) + " bytes " + text.substr(0, 150);
  }

  // What nobody may read, and folders through which a way up would lead to it.
  void Keep() const {
    site.installation.Write("secret.htm", std::string(kSecret));
    site.installation.Write("WebReports/secret.htm", std::string(kSecret));
    site.installation.Sql("Quillon.mdb",
                          "UPDATE Settings_SmtpServer SET Pass = '" + std::string(kSecret) + "'");
    Reports("CREATE TABLE ZLast (A TEXT DEFAULT '" + std::string(kSecret) + "');" +
            "CREATE TABLE Many (n INTEGER);" + "INSERT INTO Many" + NumbersUpTo(1'000) +
            "SELECT n FROM Number");
    for (const char* door : {"switch", "switch-", "disk-", "disk-search-", "hist45d-switch-",
                             "switch-access-port-top10-", "disk-physical-top10-"}) {
      MakeDoor(door);
    }
  }

  void ExpectNothingHasChanged() const {
    const auto after = State();
    EXPECT_EQ(Keys(after), Keys(before_));
    for (const auto& [name, contents] : before_) {
      EXPECT_TRUE(after.contains(name) && after.at(name) == contents) << name;
    }
    for (const std::string& name : CacheFiles()) ExpectPlainFile(name);
    for (const std::string& event : site.Events()) EXPECT_FALSE(Holds(event, kSecret)) << event;
    for (const std::string& name : site.installation.List("Debug")) {
      EXPECT_TRUE(name == "AppEventWeb.txt" || (site.settings.DebugMode && name.starts_with("Web")))
          << name;
    }
    EXPECT_EQ(events_.ended, 0) << "the connection has lasted";
  }

  static constexpr std::string_view kSecret = "hidden-from-everybody";

  std::string answer_;

 private:
  using Contents = std::map<std::string, std::string>;

  static Names Keys(const Contents& contents) {
    Names keys;
    for (const auto& [key, value] : contents) keys.push_back(key);
    return keys;
  }

  void ExpectPlainFile(const std::string& name) const {
    const auto path = std::filesystem::path(site.installation.path()) / "WebReports/Cache" / name;
    const bool isDoor = std::filesystem::is_directory(path);
    EXPECT_TRUE(isDoor ? std::filesystem::is_empty(path) : std::filesystem::is_regular_file(path));
    bool isNamedForAPage = false;
    for (const char* word :
         {"switc", "disk", "hist45-"}) {  // up to a blank, or a letter, before HTTP
      isNamedForAPage = isNamedForAPage || name.starts_with(word);
    }
    EXPECT_TRUE(isNamedForAPage || isDoor) << name;
  }

  // Sends bytes and runs events until the server has dealt with all of them.
  void Deliver(const std::string& bytes, const std::string& what) {
    client_->Send(bytes);
    sent_ += bytes.size();
    Wait([&] { return events_.bytes == sent_; }, what);
  }

  void Wait(const std::function<bool()>& condition, const std::string& what) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(5);
    while (!condition()) {
      ASSERT_LT(std::chrono::steady_clock::now(), end) << what;
      ASSERT_FALSE(client_->closedByServer()) << what;
      site.loop.Pump();
      client_->Receive();
    }
  }

  // All files but those that requests make, and all that the databases hold.
  Contents State() const {
    namespace fs = std::filesystem;
    Contents state;
    const std::string root = site.installation.path() + "/";
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
      const std::string name = entry.path().string().substr(root.size());
      const std::string folder = entry.path().parent_path().filename();
      const bool isMade = folder == "Debug" || folder == "Cache";
      if (isMade || Holds(name, ".mdb-")) continue;  // nor side files of a database
      const bool isRead = entry.is_regular_file() && !name.ends_with(".mdb");
      state[name] = isRead ? site.installation.Read(name) : "";
    }
    for (const char* file : {"Quillon.mdb", "Reports.mdb", "History.mdb"}) AddTables(file, state);
    return state;
  }

  void AddTables(const std::string& file, Contents& state) const {
    const auto rows = [&](const std::string& select) {
      std::string text;
      for (const std::string& row : site.installation.Select(file, select)) text += row + "\n";
      return text;
    };
    state[file + " as such"] = rows(
        "SELECT type, name, sql FROM sqlite_master;"
        "PRAGMA user_version; PRAGMA journal_mode; PRAGMA integrity_check");
    for (const std::string& table :
         site.installation.Select(file, "SELECT name FROM sqlite_master WHERE type = 'table'")) {
      state[file + " " + table] = rows("SELECT rowid, * FROM " + table);
    }
  }

  WatchedEvents events_{site.server};
  std::unique_ptr<RawClient> client_;
  std::size_t sent_ = 0;
  int answers_ = 0;
  std::string plainSearch_;
  std::string plainAnswer_;
  Contents before_;
};

}  // namespace quillon
