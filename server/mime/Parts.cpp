#include "mime/Parts.h"

#include "support/Utf8.h"

namespace demoserver {
namespace {

constexpr std::size_t kMaxName = 255;

bool hasType(GMimeObject* part, const char* type, const char* subtype) {
  GMimeContentType* content = g_mime_object_get_content_type(part);
  return content == nullptr ? std::string_view(type) == "text" && std::string_view(subtype) == "plain"
                            : g_mime_content_type_is_type(content, type, subtype) != FALSE;
}

bool isAttachment(GMimePart* part) {
  return g_mime_part_is_attachment(part) != FALSE || g_mime_part_get_filename(part) != nullptr;
}

// The text in UTF-8; the bytes as they are when their charset is unknown.
std::string converted(GMimePart* part) {
  const char* charset = g_mime_object_get_content_type_parameter(GMIME_OBJECT(part), "charset");
  GMimeDataWrapper* wrapper = g_mime_part_get_content(part);
  if (wrapper == nullptr) return {};
  const std::string name = stringOf(charset);
  const bool isUtf8Already = name.empty() || g_ascii_strcasecmp(name.c_str(), "utf-8") == 0 ||
                             g_ascii_strcasecmp(name.c_str(), "us-ascii") == 0;
  if (isUtf8Already) return contentOf(part);
  const Owned<GMimeFilter> filter(g_mime_filter_charset_new(name.c_str(), "utf-8"));
  if (!filter) return contentOf(part);
  const ByteSink sink;
  const Owned<GMimeStream> stream(g_mime_stream_filter_new(sink.stream()));
  g_mime_stream_filter_add(GMIME_STREAM_FILTER(stream.get()), filter.get());
  g_mime_data_wrapper_write_to_stream(wrapper, stream.get());
  g_mime_stream_flush(stream.get());
  return std::string(sink.bytes());
}

std::string withLineFeeds(std::string text) {
  std::string lines;
  lines.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i)
    if (text[i] != '\r')
      lines += text[i];
    else if (i + 1 == text.size() || text[i + 1] != '\n')
      lines += '\n';
  return lines;
}

// A file's name: one line, no directory parts that a careless reader could follow.
std::string safeName(const char* text) {
  std::string name(utf8Head(itemText(stringOf(text)), kMaxName));
  for (char& c : name)
    if (c == '\r' || c == '\n' || c == '\t') c = ' ';
  return name;
}

// The type in characters that are safe in a header line.
std::string safeType(GMimeObject* part) {
  constexpr std::size_t kMaxType = 100;
  constexpr char kAllowed[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789!#$&^_.+-/";
  GMimeContentType* content = g_mime_object_get_content_type(part);
  if (content == nullptr) return "application/octet-stream";
  const OwnedText text(g_mime_content_type_get_mime_type(content));
  std::string type = stringOf(text.get());
  const bool good = type.size() <= kMaxType && type.find_first_not_of(kAllowed) == std::string::npos;
  return good ? type : "application/octet-stream";
}

MimeAttachment enclosedMessage(GMimeMessage* message) {
  MimeAttachment attachment{safeName(g_mime_message_get_subject(message)), "message/rfc822", {}};
  attachment.name = (attachment.name.empty() ? "message" : attachment.name) + ".eml";
  const ByteSink sink;
  g_mime_object_write_to_stream(GMIME_OBJECT(message), nullptr, sink.stream());
  attachment.content = sink.bytes();
  return attachment;
}

}  // namespace

MessageParts::MessageParts(GMimeMessage* message) {
  if (GMimeObject* top = g_mime_message_get_mime_part(message)) sort(top, 0);
  if (!texts_.empty()) return;
  for (GMimePart* page : pages_) attachments_.push_back(GMIME_OBJECT(page));
}

void MessageParts::sort(GMimeObject* part, int depth) {
  if (depth > kMaxNesting || attachments_.size() >= kMaxAttachments) return;
  if (GMIME_IS_MULTIPART(part)) {
    GMimeMultipart* multipart = GMIME_MULTIPART(part);
    for (int i = 0; i < g_mime_multipart_get_count(multipart); ++i)
      sort(g_mime_multipart_get_part(multipart, i), depth + 1);
  } else if (GMIME_IS_MESSAGE_PART(part)) {
    if (g_mime_message_part_get_message(GMIME_MESSAGE_PART(part)) != nullptr) attachments_.push_back(part);
  } else if (GMIME_IS_PART(part)) {
    GMimePart* leaf = GMIME_PART(part);
    if (!isAttachment(leaf) && hasType(part, "text", "plain"))
      texts_.push_back(leaf);
    else if (!isAttachment(leaf) && hasType(part, "text", "html"))
      pages_.push_back(leaf);
    else
      attachments_.push_back(part);
  }
}

std::string plainText(GMimePart* part) {
  const std::string text = converted(part);
  // Four times the limit in bytes is enough for every encoding to give the limit in UTF-8, or nearly so.
  return withLineFeeds(itemText(std::string_view(text).substr(0, 4 * kMaxBody)));
}

MimeAttachment attachmentOf(GMimeObject* part) {
  if (GMIME_IS_MESSAGE_PART(part))
    return enclosedMessage(g_mime_message_part_get_message(GMIME_MESSAGE_PART(part)));
  GMimePart* leaf = GMIME_PART(part);
  MimeAttachment attachment{safeName(g_mime_part_get_filename(leaf)), safeType(part), contentOf(leaf)};
  if (attachment.name.empty())
    attachment.name = hasType(part, "text", "html") ? "message.html" : "attachment";
  return attachment;
}

}  // namespace demoserver
