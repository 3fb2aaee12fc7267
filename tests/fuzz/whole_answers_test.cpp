// The judge of answers: what it lets pass, and what it does not.
#include "whole_answers.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace quillon::fuzz {
namespace {

std::string Answer(const std::string& type, const std::string& body) {
  return "HTTP/1.0 200 OK\r\nContent-Type: " + type +
         "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

const std::string kPage = Answer("text/html", "<html><body></body>\r\n</html>");

TEST(WholeAnswers, CountTheirBytesOneBehindTheOther) {
  const std::string answers = kPage + Answer("text/css", "a {}") + Answer("text/html", "");
  EXPECT_EQ(WholeAnswers(""), 0u);
  EXPECT_EQ(WholeAnswers(kPage), kPage.size());
  EXPECT_EQ(WholeAnswers(answers), answers.size());
}

TEST(WholeAnswers, DoNotCountTheBeginningOfAnother) {
  for (std::size_t length = 0; length < kPage.size(); ++length) {
    EXPECT_EQ(WholeAnswers(kPage + kPage.substr(0, length)), kPage.size()) << length;
  }
}

TEST(WholeAnswers, RaiseAnythingElse) {
  for (const std::string& bytes :
       {std::string("x"), kPage + "x", Answer("text/html", "<html><body>"),
        std::string("HTTP/1.0 200 OK\r\nContent-Type: text/html\r\n\r\n"),
        std::string("HTTP/1.0 200 OK\r\nContent-Type: text/html\r\nContent-Length: x\r\n\r\n"),
        std::string("HTTP/1.0 404 Not Found\r\nContent-Type: text/html\r\n")}) {
    EXPECT_THROW(WholeAnswers(bytes), std::logic_error) << bytes;
  }
}

}  // namespace
}  // namespace quillon::fuzz
