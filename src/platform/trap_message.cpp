// The encoder: each piece is built inside out, so every length is known when it is written.
#include "platform/trap_message.h"

#include <arpa/inet.h>

#include <charconv>
#include <string_view>

#include "platform/failure.h"

namespace quillon {
namespace {

// Tags of the encoding (X.690) and of SNMP (RFC 1155, RFC 1157).
enum class Tag : unsigned char {
  kInteger = 0x02,
  kText = 0x04,
  kIdentifier = 0x06,
  kSequence = 0x30,
  kIpAddress = 0x40,
  kTimeTicks = 0x43,
  kTrapPdu = 0xA4,
};

constexpr std::int32_t kVersion1 = 0;  // its number on the wire
constexpr std::int64_t kOctet = 256;

void AppendOctet(std::string& bytes, std::uint64_t value) {
  bytes += static_cast<char>(static_cast<unsigned char>(value));
}

// Below 128 a length is one octet; else the first one counts those that follow.
std::string Length(std::size_t length) {
  std::string octets;
  if (length < 0x80) {
    AppendOctet(octets, length);
    return octets;
  }
  for (; length > 0; length /= kOctet) octets.insert(0, 1, static_cast<char>(length % kOctet));
  octets.insert(0, 1, static_cast<char>(0x80 | octets.size()));
  return octets;
}

std::string Element(Tag tag, std::string_view content) {
  std::string bytes;
  AppendOctet(bytes, static_cast<unsigned char>(tag));
  return bytes + Length(content.size()) + std::string(content);
}

// Two's complement in as few octets as keep the sign.
std::string Number(Tag tag, std::int64_t value) {
  std::string octets;
  do {
    octets.insert(0, 1, static_cast<char>(value & 0xFF));
    value >>= 8;
  } while (value != 0 && value != -1);
  const bool readsNegative = (octets.front() & 0x80) != 0;
  if (readsNegative != (value < 0)) octets.insert(0, 1, static_cast<char>(value));
  return Element(tag, octets);
}

// Seven bits an octet, the highest first; all but the last are marked.
void AppendSubIdentifier(std::string& octets, std::uint64_t value) {
  constexpr std::uint64_t kPiece = 128;
  std::string pieces(1, static_cast<char>(value % kPiece));
  while ((value /= kPiece) > 0) pieces.insert(0, 1, static_cast<char>(0x80 | (value % kPiece)));
  octets += pieces;
}

std::vector<std::uint32_t> SubIdentifiers(const std::string& identifier) {
  std::vector<std::uint32_t> parts;
  const char* position = identifier.data();
  const char* const end = position + identifier.size();
  while (true) {
    std::uint32_t part = 0;
    const auto [next, error] = std::from_chars(position, end, part);
    if (error != std::errc()) return {};
    parts.push_back(part);
    if (next == end) return parts;
    if (*next != '.') return {};
    position = next + 1;
  }
}

// The first two parts share one sub-identifier.
std::string Identifier(const std::string& identifier) {
  constexpr std::uint32_t kSecondPartRoom = 40;
  const std::vector<std::uint32_t> parts = SubIdentifiers(identifier);
  const bool isOne =
      parts.size() >= 2 && parts[0] <= 2 && (parts[0] == 2 || parts[1] < kSecondPartRoom);
  if (!isOne) throw ConversionFailure("not an object identifier: \"" + identifier + "\"");
  std::string octets;
  AppendSubIdentifier(octets, std::uint64_t{parts[0]} * kSecondPartRoom + parts[1]);
  for (std::size_t i = 2; i < parts.size(); ++i) AppendSubIdentifier(octets, parts[i]);
  return Element(Tag::kIdentifier, octets);
}

std::string IpAddress(const std::string& text) {
  in_addr address{};  // 0.0.0.0, as it stays for what is no IPv4 address
  const bool endsAtNul = text.find('\0') != std::string::npos;
  if (!endsAtNul) inet_pton(AF_INET, text.c_str(), &address);
  return Element(Tag::kIpAddress,
                 std::string_view(reinterpret_cast<const char*>(&address), sizeof address));
}

std::string EncodeVarbind(const Varbind& varbind) {
  const auto* number = std::get_if<std::int32_t>(&varbind.value);
  const std::string value = number != nullptr
                                ? Number(Tag::kInteger, *number)
                                : Element(Tag::kText, std::get<std::string>(varbind.value));
  return Element(Tag::kSequence, Identifier(varbind.identifier) + value);
}

}  // namespace

std::string EncodeTrap(const TrapMessage& message) {
  std::string varbinds;
  for (const Varbind& varbind : message.varbinds) varbinds += EncodeVarbind(varbind);
  const std::string pdu =
      Identifier(message.enterprise) + IpAddress(message.agentAddress) +
      Number(Tag::kInteger, message.genericTrap) + Number(Tag::kInteger, message.specificTrap) +
      Number(Tag::kTimeTicks, message.timeStamp) + Element(Tag::kSequence, varbinds);
  return Element(Tag::kSequence, Number(Tag::kInteger, kVersion1) +
                                     Element(Tag::kText, message.community) +
                                     Element(Tag::kTrapPdu, pdu));
}

}  // namespace quillon
