// A request for a cached page: its dispatch alone, and the round trip over a real socket
// with the listener in this process, the client's calls included.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <memory>
#include <string>

#include "support/site.h"
#include "web/route_table.h"

namespace {

using namespace quillon;

constexpr const char* kPage = "switch-access-port-top10-inerrors.htm";
constexpr ConnectionId kSlot = 1;

std::string RequestText() {
  return std::string("GET /") + kPage + " HTTP/1.1\r\nHost: localhost\r\n\r\n";
}

// A site whose one page is in the cache, about as long as a real one.
class CachedSite {
 public:
  CachedSite() {
    std::filesystem::copy(SHARE_PATH "/WebReports", site_.installation.path() + "/WebReports",
                          std::filesystem::copy_options::recursive);
    site_.installation.Write(std::string("WebReports/Cache/") + kPage, std::string(30'000, 'x'));
  }

  Site& site() { return site_; }

 private:
  Site site_;
};

void DispatchCached(benchmark::State& state) {
  CachedSite cached;
  for (auto _ : state) {
    Request request;
    request.id = kSlot;
    request.Text = RequestText();
    request.httpQuery = request.Text.substr(0, request.Text.find("\r\n"));
    request.cacheFile = kPage;
    Dispatch(cached.site().web, request);
    if (!request.tableFromCache) {
      state.SkipWithError("the page does not come from the cache");
      break;
    }
    benchmark::DoNotOptimize(request.pageHtml);
  }
}

void RoundTripCached(benchmark::State& state) {
  CachedSite cached;
  Site& site = cached.site();
  const std::unique_ptr<RawClient> client = site.Connect();
  const std::string text = RequestText();
  const std::size_t whole = site.Exchange(*client, text).size();
  for (auto _ : state) {
    client->ClearReceived();
    client->Send(text);
    while (client->received().size() < whole) {
      site.loop.Pump();
      client->Receive();
    }
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(whole));
}

BENCHMARK(DispatchCached)->Unit(benchmark::kMicrosecond);
BENCHMARK(RoundTripCached)->Unit(benchmark::kMicrosecond);

}  // namespace
