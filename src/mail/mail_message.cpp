// Composing on GMime.
#include "mail/mail_message.h"

#include <gmime/gmime.h>

#include <algorithm>
#include <memory>
#include <string_view>

#include "mail/mail_codes.h"
#include "mail/mail_header.h"
#include "mail/mail_html.h"
#include "platform/standard_error.h"
#include "platform/text_encoding.h"
#include "platform/text_lines.h"

namespace quillon {
namespace {

constexpr std::size_t kLongestLine = 998;  // of a mail, without its end

// The library keeps tables of its own, which are made for the first mail.
void StartLibrary() {
  struct Library {
    Library() { g_mime_init(); }
    ~Library() { g_mime_shutdown(); }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
  };
  static const Library kLibrary;
}

struct Unreference {
  template <typename Object>
  void operator()(Object* object) const {
    g_object_unref(object);
  }
};
template <typename Object>
using Owned = std::unique_ptr<Object, Unreference>;

// A mailbox as a text names it.
struct Mailbox {
  std::string name;
  std::string address;
};

bool IsBare(std::string_view address) {
  const std::size_t at = address.rfind('@');
  const bool hasBothParts = at != std::string_view::npos && at > 0 && at + 1 < address.size();
  return hasBothParts && address.find_first_of(" \t<>") == std::string_view::npos;
}

// What stands in front of "<address>" may be a name; the parser passes over much more than that.
bool IsWholly(std::string_view text, std::string_view address) {
  if (text == address) return true;
  const std::string bracketed = "<" + std::string(address) + ">";
  return text.ends_with(bracketed) &&
         text.substr(0, text.size() - bracketed.size()).find_first_of("<>") ==
             std::string_view::npos;
}

// Both empty where the text is not one mailbox.
Mailbox ParseMailbox(const std::string& text) {
  StartLibrary();
  if (OneLine(text) != text) return {};
  const Owned<InternetAddressList> list(internet_address_list_parse(nullptr, text.c_str()));
  if (!list || internet_address_list_length(list.get()) != 1) return {};
  InternetAddress* const first = internet_address_list_get_address(list.get(), 0);
  if (!INTERNET_ADDRESS_IS_MAILBOX(first)) return {};
  const char* const name = internet_address_get_name(first);
  const char* const address = internet_address_mailbox_get_addr(INTERNET_ADDRESS_MAILBOX(first));
  if (address == nullptr || !IsBare(address) || !IsWholly(TrimmedView(text), address)) return {};
  return {name != nullptr ? name : "", address};
}

// The domain of the sender makes the id unique to his house.
std::string NewMessageId(const std::string& senderAddress) {
  const std::size_t at = senderAddress.rfind('@');
  const std::string domain = at == std::string::npos || at + 1 == senderAddress.size()
                                 ? "localhost"
                                 : senderAddress.substr(at + 1);
  const std::unique_ptr<char, decltype(&g_free)> id(
      g_mime_utils_generate_message_id(domain.c_str()), g_free);
  return id.get();
}

// A field with encoded words is ours to write; a plain one, which may need quotes, is the
// library's. Returns the field where it is ours.
std::string SetMailbox(GMimeMessage* mail, GMimeAddressType type, const std::string& field,
                       const std::string& name, const std::string& address) {
  const std::string shown = HeaderText(name);
  const std::string bare = OneLine(address);
  if (shown != OneLine(name)) return FieldOfWords(field, shown + " <" + bare + ">");
  g_mime_message_add_mailbox(mail, type, shown.empty() ? nullptr : shown.c_str(), bare.c_str());
  return {};
}

std::string SetSubject(GMimeMessage* mail, const std::string& subject) {
  const std::string shown = HeaderText(subject);
  if (shown != OneLine(subject)) return FieldOfWords("Subject", shown);
  g_mime_message_set_subject(mail, shown.c_str(), nullptr);
  return {};
}

void SetPriority(GMimeMessage* mail, int priority) {
  constexpr int kNormal = 3;
  const char* const importance = priority < kNormal   ? "high"
                                 : priority > kNormal ? "low"
                                                      : "normal";
  g_mime_object_set_header(GMIME_OBJECT(mail), "X-Priority", std::to_string(priority).c_str(),
                           nullptr);
  g_mime_object_set_header(GMIME_OBJECT(mail), "Importance", importance, nullptr);
}

// Returns the fields that are to stand in front of the library's.
std::string SetHeader(GMimeMessage* mail, const MailMessage& message) {
  Mailbox sender = ParseMailbox(message.from);
  if (sender.address.empty()) sender.address = message.from;
  const std::string bare = BareAddress(message.recipientAddress);
  GDateTime* const now = g_date_time_new_now_local();
  g_mime_message_set_date(mail, now);
  g_date_time_unref(now);
  g_mime_message_set_message_id(mail, NewMessageId(sender.address).c_str());
  SetPriority(mail, MailPriority(message.priority));
  return SetMailbox(mail, GMIME_ADDRESS_TYPE_FROM, "From", sender.name, sender.address) +
         SetMailbox(mail, GMIME_ADDRESS_TYPE_TO, "To", message.recipientName,
                    bare.empty() ? message.recipientAddress : bare) +
         SetSubject(mail, message.subject);
}

void SetContent(GMimePart* part, std::string_view bytes, GMimeContentEncoding encoding) {
  const Owned<GMimeStream> stream(g_mime_stream_mem_new_with_buffer(bytes.data(), bytes.size()));
  const Owned<GMimeDataWrapper> content(
      g_mime_data_wrapper_new_with_stream(stream.get(), GMIME_CONTENT_ENCODING_DEFAULT));
  g_mime_part_set_content(part, content.get());
  g_mime_part_set_content_encoding(part, encoding);
}

// The text with this end at each of its lines that has one.
std::string WithLineEnds(std::string_view text, std::string_view lineEnd) {
  std::string lines;
  while (!text.empty()) {
    const std::size_t before = text.size();
    const std::string_view line = TakeLine(text);
    lines += line;
    if (line.size() + text.size() < before) lines += lineEnd;
  }
  return lines;
}

bool GoesAsItIs(std::string_view text) {
  std::size_t length = 0;
  for (const char c : text) {
    length = c == '\n' ? 0 : length + 1;
    if ((c & 0x80) != 0 || c == '\0' || length > kLongestLine) return false;
  }
  return true;
}

GMimeContentEncoding EncodingOf(BodyEncoding wanted, const std::string& text) {
  switch (wanted) {
    case BodyEncoding::kBase64:
      return GMIME_CONTENT_ENCODING_BASE64;
    case BodyEncoding::kQuotedPrintable:
      return GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE;
    case BodyEncoding::kAsNeeded:
      break;
  }
  return GoesAsItIs(text) ? GMIME_CONTENT_ENCODING_7BIT : GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE;
}

// How bodies are written.
struct BodyForm {
  std::string charSet;
  BodyEncoding encoding;
};

// A charset that mails can be in: its name is a plain one (the converter knows additions of its
// own), and it has the letters of ASCII at their places.
bool IsOfMails(const std::string& charSet) {
  const bool isPlainName = std::all_of(charSet.begin(), charSet.end(), [](char c) {
    const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    return isLetter || (c >= '0' && c <= '9') || c == '-' || c == '_' || c == '.' || c == ':' ||
           c == '+';
  });
  return isPlainName && IsKnownCharset(charSet) &&
         PageText("\r\nA\xC3\xA9", charSet).starts_with("\r\nA");
}

BodyForm FormOf(const MailMessage& message) {
  const BodyEncoding encoding = BodyEncodingOf(message.bodyEncoding);
  if (IsOfMails(message.charSet)) return {message.charSet, encoding};
  if (!message.charSet.empty()) {
    TellStandardError("mail: CharSet '" + message.charSet +
                      "' is not known or not for mails, UTF-8 is used");
  }
  return {"UTF-8", encoding};
}

// A text of the body. In base64 the line ends are part of what is encoded; otherwise they become
// those of the mail as it is written.
Owned<GMimeObject> TextPart(const char* subtype, const std::string& text, const BodyForm& form) {
  GMimePart* const part = g_mime_part_new_with_type("text", subtype);
  g_mime_object_set_content_type_parameter(GMIME_OBJECT(part), "charset", form.charSet.c_str());
  const std::string bytes = PageText(WithLineEnds(text, "\n"), form.charSet);
  const GMimeContentEncoding encoding = EncodingOf(form.encoding, bytes);
  const bool isBase64 = encoding == GMIME_CONTENT_ENCODING_BASE64;
  SetContent(part, isBase64 ? PageText(WithLineEnds(text, "\r\n"), form.charSet) : bytes, encoding);
  return Owned<GMimeObject>(GMIME_OBJECT(part));
}

Owned<GMimeObject> Body(const MailMessage& message) {
  const BodyForm form = FormOf(message);
  Owned<GMimeObject> plain = TextPart("plain", message.body, form);
  if (BodyFormatOf(message.bodyFormat) == BodyFormat::kPlain) return plain;
  GMimeMultipart* const both = g_mime_multipart_new_with_subtype("alternative");
  g_mime_multipart_add(both, plain.get());
  g_mime_multipart_add(both, TextPart("html", MailHtml(message.body), form).get());
  return Owned<GMimeObject>(GMIME_OBJECT(both));
}

// The types of what is attached, by the ending of the name.
struct MediaType {
  std::string_view ending;
  const char* type;
  const char* subtype;
};

constexpr MediaType kMediaTypes[] = {
    {".htm", "text", "html"}, {".html", "text", "html"}, {".css", "text", "css"}};
constexpr MediaType kAnyType = {"", "application", "octet-stream"};

MediaType MediaTypeOf(std::string_view fileName) {
  for (const MediaType& known : kMediaTypes) {
    if (fileName.ends_with(known.ending)) return known;
  }
  return kAnyType;
}

Owned<GMimeObject> AttachmentPart(const MailAttachment& attachment) {
  const MediaType media = MediaTypeOf(attachment.fileName);
  GMimePart* const part = g_mime_part_new_with_type(media.type, media.subtype);
  g_mime_object_set_disposition(GMIME_OBJECT(part), GMIME_DISPOSITION_ATTACHMENT);
  g_mime_part_set_filename(part, OneLine(attachment.fileName).c_str());
  SetContent(part, attachment.bytes, GMIME_CONTENT_ENCODING_BASE64);
  return Owned<GMimeObject>(GMIME_OBJECT(part));
}

Owned<GMimeObject> Content(const MailMessage& message) {
  Owned<GMimeObject> body = Body(message);
  if (message.attachments.empty()) return body;
  CheckAttachmentEncoding(message.encoding);
  GMimeMultipart* const all = g_mime_multipart_new_with_subtype("mixed");
  g_mime_multipart_add(all, body.get());
  for (const MailAttachment& attachment : message.attachments) {
    g_mime_multipart_add(all, AttachmentPart(attachment).get());
  }
  return Owned<GMimeObject>(GMIME_OBJECT(all));
}

std::string TextOf(GMimeMessage* mail) {
  const std::unique_ptr<GMimeFormatOptions, decltype(&g_mime_format_options_free)> format(
      g_mime_format_options_new(), g_mime_format_options_free);
  g_mime_format_options_set_newline_format(format.get(), GMIME_NEWLINE_FORMAT_DOS);
  const Owned<GMimeStream> stream(g_mime_stream_mem_new());
  g_mime_object_write_to_stream(GMIME_OBJECT(mail), format.get(), stream.get());
  const GByteArray* const bytes = g_mime_stream_mem_get_byte_array(GMIME_STREAM_MEM(stream.get()));
  return {reinterpret_cast<const char*>(bytes->data), bytes->len};
}

}  // namespace

std::string Compose(const MailMessage& message) {
  StartLibrary();
  const Owned<GMimeMessage> mail(g_mime_message_new(TRUE));
  const std::string ownFields = SetHeader(mail.get(), message);
  g_mime_message_set_mime_part(mail.get(), Content(message).get());
  return ownFields + TextOf(mail.get());
}

std::string BareAddress(const std::string& text) {
  return ParseMailbox(text).address;
}

}  // namespace quillon
