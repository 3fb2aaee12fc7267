// The reader of the list, which is strict: a list that was read half would measure something else.
#include "endurance/request_list.h"

#include <unistd.h>

#include <charconv>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string_view>

namespace quillon {
namespace {

const std::map<std::string, Expected, std::less<>> kExpectations = {
    {"same", Expected::kSame}, {"page", Expected::kPage}, {"nothing", Expected::kNothing}};

std::string BytesOf(std::string_view digits) {
  std::string bytes;
  for (; digits.size() >= 2; digits.remove_prefix(2)) {
    unsigned byte = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + 2, byte, 16);
    if (error != std::errc() || end != digits.data() + 2) break;
    bytes += static_cast<char>(byte);
  }
  if (!digits.empty()) throw std::runtime_error("no hexadecimal digits");
  return bytes;
}

ListedRequest RequestOf(const std::string& line) {
  std::istringstream fields(line);
  ListedRequest request;
  std::string expected;
  std::string digits;
  if (!(fields >> request.weight >> request.kind >> expected >> request.freshFile >> digits)) {
    throw std::runtime_error("not the line of a request: " + line);
  }
  request.expected = kExpectations.at(expected);
  if (request.freshFile == "-") request.freshFile.clear();
  request.text = BytesOf(digits);
  return request;
}

std::vector<double> WeightsOf(const std::vector<ListedRequest>& requests) {
  std::vector<double> weights;
  for (const ListedRequest& request : requests) weights.push_back(request.weight);
  return weights;
}

}  // namespace

std::vector<ListedRequest> ReadRequests(const std::string& path) {
  std::ifstream file(path);
  std::vector<ListedRequest> requests;
  for (std::string line; std::getline(file, line);) requests.push_back(RequestOf(line));
  if (requests.empty()) throw std::runtime_error("no requests in " + path);
  return requests;
}

Mixture::Mixture(const std::vector<ListedRequest>& requests, std::uint64_t seed) : dice_(seed) {
  const std::vector<double> weights = WeightsOf(requests);
  chance_ = std::discrete_distribution<std::size_t>(weights.begin(), weights.end());
}

void MakeReady(const ListedRequest& request) {
  if (!request.freshFile.empty()) unlink(request.freshFile.c_str());
}

}  // namespace quillon
