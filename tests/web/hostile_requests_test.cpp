// Requests that no browser sends: whatever comes, the next request is answered, and
// nothing outside the cache folder is made or read.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "support/site.h"
#include "web/expected_pages.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

std::string AllBytes() {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  return bytes;
}

// Random bytes, the same in each run, without a line feed and so without a line end.
std::string Noise(std::size_t size) {
  std::mt19937 random(20240502);
  std::string bytes(size, ' ');
  for (char& byte : bytes) {
    byte = static_cast<char>(random() % 256);
    if (byte == '\n') byte = 'n';
  }
  return bytes;
}

class HostileRequests : public testing::Test {
 protected:
  // Folders in the cache, so that a way up through them would lead somewhere.
  HostileRequests() {
    site.installation.Write("WebReports/secret.htm", "secret");
    for (const char* folder : {"switch-access-port-top10", "disk-physical-top10"}) {
      fs::create_directory(site.installation.path() + "/WebReports/Cache/" + folder);
    }
    site.Get("switch-access-port-top10-known.htm");
    before_ = Files();
  }

  // All files but those of Debug and those directly in the cache, with their contents.
  Names Files() const {
    Names files;
    const std::string root = site.installation.path() + "/";
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
      const std::string name = entry.path().string().substr(root.size());
      const std::string folder = entry.path().parent_path().filename();
      if (folder == "Debug" || (folder == "Cache" && entry.is_regular_file())) continue;
      files.push_back(name + (name.ends_with(".htm") ? ": " + site.installation.Read(name) : ""));
    }
    std::sort(files.begin(), files.end());
    return files;
  }

  std::string Answer(const std::string& request) {
    const auto client = site.Connect();
    const std::string response = site.Exchange(*client, request);
    EXPECT_EQ(site.Exchange(*client, "GET / HTTP/1.1\r\n\r\n"), DefaultResponse(site.render))
        << "after " << request.substr(0, 60);
    client->Close();
    site.Settle();
    return response;
  }

  // The answer to a GET, after which the files are those of before.
  std::string Get(const std::string& url) {
    const std::string response = Answer("GET " + url + " HTTP/1.1\r\n\r\n");
    EXPECT_EQ(Files(), before_) << "after " << url;
    EXPECT_EQ(response.find("secret"), std::string::npos) << url;
    return response;
  }

  Names CacheFiles() const { return site.installation.List("WebReports/Cache"); }

  Site site;

 private:
  Names before_;
};

TEST_F(HostileRequests, EveryByteIsATextLikeAnother) {
  const std::string page = DefaultResponse(site.render);
  EXPECT_EQ(Answer(AllBytes() + "\r\n"), page);
  EXPECT_EQ(Answer("GET /" + AllBytes() + " HTTP/1.1\r\n\r\n"), page);
  EXPECT_EQ(Answer("GET / HTTP/1.1\r\n" + AllBytes()), page);
  const auto client = site.Connect();
  for (int byte = 0; byte < 256; ++byte) {
    EXPECT_EQ(site.Exchange(*client, std::string(1, static_cast<char>(byte)) + "\r\n"), page)
        << byte;
  }
  EXPECT_TRUE(site.Events().empty());
}

TEST_F(HostileRequests, NoiseGetsNoAnswerAndTheConnectionStays) {
  for (const std::size_t size : {1u, 100u, 4096u, 65536u}) {
    const std::size_t events = site.Events().size();
    EXPECT_EQ(Answer(Noise(size)), "") << size;
    EXPECT_GT(site.Events().size(), events) << size;
  }
}

TEST_F(HostileRequests, NoiseBehindAFirstLineIsNotLookedAt) {
  EXPECT_EQ(Answer("GET / HTTP/1.1\r\n" + Noise(30000)), DefaultResponse(site.render));
}

TEST_F(HostileRequests, AUrlOfTenThousandCharactersIsAnswered) {
  const std::string tail(10000, 'x');
  EXPECT_EQ(Get("/" + tail), DefaultResponse(site.render));
  EXPECT_EQ(Get("/disk-mem-summary" + tail), "");
  EXPECT_TRUE(site.Events().empty());
  const std::string list = Get("/switch-access-port-top10-" + tail);
  EXPECT_EQ(list.find("HTTP/1.0 200 OK\r\n"), 0u);
  ASSERT_EQ(site.Events().size(), 1u);
  EXPECT_EQ(site.Events()[0].find("1\tmodHtml_SaveToCache\t"), 0u);
}

TEST_F(HostileRequests, ANameOf255BytesIsStoredAndALongerOneIsNot) {
  const std::string start = "switch-access-port-top10-";
  const std::string longest = start + std::string(255 - start.size(), 'x');
  Get("/" + longest);
  EXPECT_TRUE(site.installation.Exists("WebReports/Cache/" + longest));
  EXPECT_TRUE(site.Events().empty());
  const std::size_t files = CacheFiles().size();
  EXPECT_EQ(Get("/" + longest + "x").find("HTTP/1.0 200 OK\r\n"), 0u);
  EXPECT_EQ(CacheFiles().size(), files);
  EXPECT_EQ(site.Events().size(), 1u);
}

TEST_F(HostileRequests, UrlsThatLeadElsewhereGetTheDefaultPage) {
  for (const std::string url :
       {"/../secret.htm", "/../../../../../../etc/passwd", "/..", "/../", "/./", "//",
        "/..\\..\\Quillon.mdb", "\\Quillon.mdb", "C:\\Quillon.mdb", "/%2e%2e/%2e%2e/secret.htm",
        "/%2e%2e%2fsecret.htm", "/%00", "/WebReports/secret.htm", "/Cache/../secret.htm",
        "/select?report=../secret.htm", "/..%5csecret.htm", "/~root/", "file:///etc/passwd"}) {
    EXPECT_EQ(Get(url), DefaultResponse(site.render)) << url;
  }
  EXPECT_EQ(Get(std::string("/\0/qws", 6)), DefaultResponse(site.render));
  EXPECT_TRUE(site.Events().empty());
}

TEST_F(HostileRequests, StoredPagesOutsideTheCacheAreNotFound) {
  site.installation.Write("WebReports/Cache/disk-unix-top10", "stored");
  for (const std::string& url :
       Names{"/disk-physical-top10/../../secret.htm", "/disk-physical-top10\\..\\..\\secret.htm",
             "/disk-physical-top10", "/disk-physical-top10/", "/disk-physical-top10/.",
             "/disk-physical-top10/..", "/disk-physical-top10%2f..%2f..%2fsecret.htm",
             "/select?report=disk-physical-top10/../../secret.htm", "/disk-unix-top10/",
             "/disk-unix-top10/../disk-unix-top10", std::string("/disk-unix-top10\0", 17),
             std::string("/disk-unix-top10\0.htm", 21), "/disk-unix-top10*", "/disk-unix-top10?"}) {
    EXPECT_EQ(Get(url), "") << url;
  }
}

TEST_F(HostileRequests, ListsAreNotStoredOutsideTheCache) {
  std::size_t events = 0;
  const Names files = CacheFiles();
  for (const std::string& url :
       Names{"/switch-access-port-top10/../../new.htm",
             "/switch-access-port-top10/../../secret.htm", "/switch-access-port-top10/new.htm",
             "/switch-access-port-top10/../new.htm", "/switch-access-port-top10/",
             "/switch-access-port-top10\\..\\..\\new.htm", "/switch-access-port-top10\\new.htm",
             "/switch-access-port-top10", "/switch-trunk-port-top10/../../../../../../tmp/new.htm",
             std::string("/switch-trunk-port-top10\0", 25),
             std::string("/switch-trunk-port-top10\0.htm", 29)}) {
    EXPECT_EQ(Get(url).find("HTTP/1.0 200 OK\r\nContent-Type: text/html\r\n"), 0u) << url;
    ASSERT_EQ(site.Events().size(), ++events) << url;
    EXPECT_EQ(site.Events().back().find("1\tmodHtml_SaveToCache\t"), 0u) << site.Events().back();
    EXPECT_EQ(CacheFiles(), files) << url;
  }
}

TEST_F(HostileRequests, EncodedWaysUpAreOrdinaryCharactersOfAName) {
  const std::string name = "switch-access-port-top10%2f%2e%2e%2f..%5c%00.htm";
  EXPECT_EQ(Get("/" + name).find("HTTP/1.0 200 OK\r\n"), 0u);
  EXPECT_TRUE(site.installation.Exists("WebReports/Cache/" + name));
  EXPECT_TRUE(site.Events().empty());
}

// Pieces of requests in random order, the same in each run.
TEST_F(HostileRequests, WhateverComesTheNextRequestIsAnswered) {
  const Names pieces = {"GET /",
                        "POST /",
                        "HTTP",
                        " HTTP/1.1",
                        "\r\n",
                        "switch",
                        "disk-",
                        "-access-port-top10",
                        "-trunk-port-top10",
                        "-involume",
                        "../",
                        "\\",
                        ".htm",
                        "disk-mem-summary",
                        "qws.css",
                        " ",
                        "login.cgi",
                        "select?report=",
                        std::string(1, '\0'),
                        "\xFF",
                        "favicon.ico"};
  std::mt19937 random(1);
  for (int round = 0; round < 60; ++round) {
    std::string request;
    for (auto count = random() % 12 + 1; count > 0; --count) {
      request += pieces[random() % pieces.size()];
    }
    Answer(request);
  }
}

}  // namespace
}  // namespace quillon
