// Odd bytes, sizes, lines and paths, and the URLs and numbers that take them along.
#include "support/hostile_texts.h"

#include <cstddef>

namespace quillon {
namespace {

using Texts = std::vector<std::string>;

constexpr int kMuch = 60'000;  // bytes; a read takes 64 KiB, head included

std::string AllBytes() {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) {
    if (byte != '\r' && byte != '\n') bytes += static_cast<char>(byte);
  }
  return bytes;
}

std::string WithNuls(std::string text) {
  for (char& character : text) {
    if (character == '~') character = '\0';
  }
  return text;
}

}  // namespace

std::vector<std::string> OddTexts() {
  Texts texts = {
      // Empty, blank, wild.
      "", " ", "    ", "+", "++++", "*", "**", "?", "#", "%", "_", "[", "]", "[]", "[!]", "[!",
      "[a", "[a-", "[z-a]", "[!a-z]", "[[]", "[]]", "[-]", "[%]", "[*]", "*[*]*", "[\xE4-\xF6]",
      "!", "-", "=", ":", "a:b", ".", "..", "...", "1.1.1.1", "*.*.*.*", "1111.2222.3333",
      "11:22:33:44:55:66", "11-22-33-44-55-66", "1111.2222.*333", "....1....1....",
      "::::::", "------", "..:..-..",
      // Bytes that are no characters, and characters that a page or a log could take for its own.
      AllBytes(), WithNuls("~"), WithNuls("a~b"), WithNuls("~~~~~~~~"), WithNuls("sw7~' OR 1=1 --"),
      WithNuls("%' AND 1 ~ AND 0 --"), "\x01\x02\x03", "\x1B[2J\x1B[31m", "\x08\x08\x08", "\x7F",
      "\t\t", "\x0B\x0C", "\xFF", "\xFE\xFF", "\xC0\x80", "\xC0\xA7 OR 1=1", "\xE0\x80\xA7",
      "\xF0\x80\x80\xA7", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80",
      "\xE2\x80\xA8", "\xEF\xBB\xBF", "\xC3", "\xE4\xF6\xFC\xDF", "\xC3\xA4", "\xC2\x85", "\x85",
      "\xA0", "\xD0\x96",
      // HTML and script.
      "'><script>alert(1)</script>", "\"><img src=x onerror=alert(1)>", "</html>", "<!--", "-->",
      "]]>", "<!DOCTYPE HTML", "&lt;&amp;&#39;&#0;", "javascript:alert(1)",
      "</form></table></body>",
      "<?xml version='1.0'?><!DOCTYPE a [<!ENTITY b SYSTEM 'file:///etc/passwd'>]>", "${7*7}",
      "{{7*7}}", "<%= 7 %>", "`id`", "$(id)", "| id", "; id", "&& id", "%0a id", "() { :;}; id",
      // Format strings.
      "%s", "%n", "%s%s%s%s%s%s%s%s", "%n%n%n%n", "%100000000d", "%.1000000000f", "%1$s", "%x%x%x",
      "{}", "{0}", "{:>1000000000}", "{0.__class__}", "%-", "%%",
      // Numbers.
      "0", "-0", "-1", "2147483647", "2147483648", "-2147483648", "-2147483649", "4294967296",
      "9223372036854775807", "9223372036854775808", "18446744073709551616", "1e308", "1e309",
      "-1e309", "NaN", "inf", "0x7FFFFFFF", "1e-400", "00000000000000000000000000000001",
      // Paths.
      "../", "../../../../etc/passwd", "..\\..\\..\\Quillon.mdb", "/etc/passwd", "C:\\boot.ini",
      "\\\\server\\share", "file:///etc/passwd", "%2e%2e%2f", "..%c0%af", "....//", "./.",
      "/dev/zero", "/proc/self/mem", "Quillon.mdb", "~new.htm", "WebReports/Cache/a.htm",
      WithNuls("../a~.htm"), "con", "aux.htm", "a/b", "a\\b", ".htm", "*.htm", "disk-search-1.htm",
      "switch-mac-ip-1.htm",
      // Lines, heads and keys: the value ends at the first line end.
      "\r\n", "\r", "\n", "\r\r\n", "\n\r", "a\rb", "a\nb", "\r\n\r\n", "a\r\nSet-Cookie: x=y",
      "a\r\n\r\n<html>", "\r\nContent-Length: 0\r\n\r\nHTTP/1.0 200 OK\r\n\r\n",
      "a\r\nContent-Length: 999999999\r\n", "a\r\nDeviceName=b", "DeviceName=", "DeviceName=b",
      "PortName=", "PortName=c", "a\r\nPortName=c\r\nPortName=d",
      "MacIpName=", "DiskName=", "OrderBy=", "a\r\nOrderBy=usedbytes-asc",
      "=DeviceName=DiskName=OrderBy=PortName=MacIpName=", "a HTTP/1.1\r\n\r\n", "HTTP", "switch",
      "disk-", "a\r\n2024-05-02 12:00:00\t1\tfaked_event\tb", "POST /search-mac-ip",
      "POST /search-device-disk HTTP/1.1\r\n\r\nDeviceName=a\r\nDiskName=b",
      "GET /select?report=search-device-disk", "GET /qws.css", "GET /favicon.ico",
      "GET /DeviceId=7", "GET /DeviceId=7 HTTP/1.1\r\n", "login.cgi"};
  // Much of one thing.
  for (const char* piece :
       {"a",  "A",  "%",    "*",  "_",  "?",  "#", "[", "]", "[]",  "[!",   "[a-z]", "[!a]",
        "'",  "\"", "\\",   " ",  "+",  ".",  ":", "-", "=", "\t",  "\xE4", "\xFF",  "*a",
        "*?", "%_", "a*a?", "\r", "\n", "1.", "<", "&", "/", "../", "%s",   "<b>"}) {
    const std::string text = piece;
    texts.push_back(Repeated(text, kMuch / static_cast<int>(text.size())));
  }
  texts.push_back(std::string(kMuch, '\0'));
  texts.push_back("[" + std::string(kMuch, 'a') + "]");
  texts.push_back("[!" + Repeated("a-b", kMuch / 3) + "]");
  texts.push_back("[" + Repeated("]", kMuch));
  texts.push_back(Repeated("*a", 5'000) + "*b");
  texts.push_back(std::string(255, 'n'));
  texts.push_back(std::string(256, 'n'));
  texts.push_back(std::string(1'024, 'n'));
  texts.push_back(Repeated("<table><tr><td>", 4'000));
  texts.push_back("usedpercent-" + std::string(kMuch, 'd'));
  texts.push_back(std::string(kMuch, 'u') + "-desc");
  return texts;
}

std::vector<std::string> HostileTexts() {
  Texts texts = HostileSql();
  for (std::string& text : OddTexts()) texts.push_back(std::move(text));
  return texts;
}

std::vector<std::string> HostileDeviceIds() {
  Texts ids = {"7",
               "8",
               "900",
               "901",
               "-7",
               "+7",
               "--7",
               "7.0",
               "7.5",
               "8.5",
               "7e0",
               "70e-1",
               "7E0",
               "0.7e1",
               ".7e1",
               "7.",
               ".",
               "",
               " ",
               " 7 ",
               "\t7",
               "7\t",
               "7 7",
               "7,0",
               "7x",
               "x7",
               "0x7",
               "&H7",
               "$7",
               "(7)",
               "seven",
               "1e9",
               "1e10",
               "1e308",
               "1e309",
               "1e999999999",
               "-1e999999999",
               "1e",
               "e1",
               "1e+",
               "1e-400",
               "NaN",
               "inf",
               "2147483647",
               "2147483647.4",
               "2147483647.6",
               "2147483648",
               "-2147483648",
               "-2147483649",
               "9223372036854775808",
               "007",
               std::string(10'000, '9'),
               std::string(10'000, '0') + "7",
               "0." + std::string(10'000, '7'),
               "7 OR 1=1",
               "7;DROP TABLE VLAN",
               "7' OR '1'='1",
               "(SELECT 7)",
               "7 --",
               "7/0",
               "%37",
               "\xB7",
               std::string("7\0", 2),
               std::string("\0"
                           "7",
                           2),
               "7\r\n",
               "\r\n7",
               "HTTP",
               "7HTTP",
               "7 HTTP/1.1\r\nDeviceName=x\r\nPortName=y",
               "GET /DeviceId=7",
               "7&DeviceId=8",
               "7-switch-../../a.htm",
               "7 switch-a.htm",
               "7 disk-a.htm",
               "-1e5disk-a"};
  return ids;
}

std::vector<std::string> HostileUrls() {
  const Texts routes = {"",
                        "hist45-",
                        "hist45-7-4-",
                        "hist45-7-4-switch-",
                        "hist45-7-",
                        "hist45d-switch-",
                        "hist45d-switch-access-port-summary",
                        "x-port-summary",
                        "switch-access-port-top10-",
                        "switch-trunk-port-top10-",
                        "select?report=",
                        "select?report=search-mac-ip",
                        "histdisk45-",
                        "histdisk45-900-",
                        "histdisk45-900-C_-disk-",
                        "histdisksearch45-900-",
                        "histdisksearch45-900-C_-disk-search-",
                        "disk-physical-top10-",
                        "disk-mem-summary",
                        "qws.css",
                        "favicon.ico"};
  const Texts tails = {"",
                       ".htm",
                       "../../../../etc/passwd",
                       "/../../secret.htm",
                       "/../../../Quillon.mdb",
                       "\\..\\..\\secret.htm",
                       "/etc/passwd",
                       "%2e%2e%2fsecret.htm",
                       "..",
                       ".",
                       "/",
                       "\\",
                       "~new.htm",
                       "*",
                       "?",
                       "[a]",
                       "a b c",
                       " ",
                       "HTTP",
                       "HTTP/1.1 HTTP/1.1",
                       "switch",
                       "disk-",
                       "switch-a.htm-disk-b.htm",
                       "-1",
                       "-1-2",
                       "1--2.htm",
                       "99999999999-1.htm",
                       "1-2.htm",
                       "x-y.htm",
                       "7-4-hist45-8-5-switch-a.htm",
                       "' OR 1=1 --.htm",
                       "';DROP TABLE VLAN;--.htm",
                       "mem-disk-a.htm",
                       "C_-disk-/../../../secret.htm",
                       "%s%n%x.htm",
                       "<script>.htm",
                       "\xE4\xFF\xC0\x80.htm",
                       "\t.htm",
                       "\x1B[2J.htm",
                       "a\rb.htm",
                       "a\nb.htm"};
  Texts urls;
  std::size_t first = 0;
  for (const std::string& route : routes) {
    // Every other tail: a route of the same kind takes those between.
    for (std::size_t tail = first++ % 2; tail < tails.size(); tail += 2) {
      urls.push_back(route + tails[tail]);
    }
    urls.push_back(route + std::string("a\0b.htm", 7));
    urls.push_back(route + std::string("\0", 1));
    urls.push_back(route + std::string(255, 'n'));
    urls.push_back(route + std::string(kMuch, 'n'));
  }
  return urls;
}

}  // namespace quillon
