#include "mime/Compose.h"

#include "mime/Gmime.h"
#include "mime/Parts.h"

namespace demoserver {
namespace {

void setText(GMimePart* part, const std::string& text) {
  const ByteSink sink;
  g_mime_stream_write(sink.stream(), text.data(), text.size());
  g_mime_stream_reset(sink.stream());
  const Owned<GMimeDataWrapper> content(
      g_mime_data_wrapper_new_with_stream(sink.stream(), GMIME_CONTENT_ENCODING_DEFAULT));
  g_mime_part_set_content(part, content.get());
  g_mime_object_set_content_type_parameter(GMIME_OBJECT(part), "charset", "utf-8");
  g_mime_part_set_content_encoding(part, GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE);
}

Owned<GMimePart> newText(const std::string& text) {
  Owned<GMimePart> part(g_mime_part_new_with_type("text", "plain"));
  setText(part.get(), text);
  return part;
}

Owned<GMimePart> newAttachment(const MimeAttachment& attachment) {
  const std::size_t slash = attachment.type.find('/');
  const bool typed = slash != std::string::npos && attachment.type.rfind("text/", 0) != 0 &&
                     attachment.type.rfind("multipart/", 0) != 0 && attachment.type.rfind("message/", 0) != 0;
  const std::string type = typed ? attachment.type.substr(0, slash) : "application";
  const std::string subtype = typed ? attachment.type.substr(slash + 1) : "octet-stream";
  Owned<GMimePart> part(g_mime_part_new_with_type(type.c_str(), subtype.c_str()));
  const Owned<GMimeStream> stream(
      g_mime_stream_mem_new_with_buffer(attachment.content.data(), attachment.content.size()));
  const Owned<GMimeDataWrapper> content(
      g_mime_data_wrapper_new_with_stream(stream.get(), GMIME_CONTENT_ENCODING_DEFAULT));
  g_mime_part_set_content(part.get(), content.get());
  g_mime_object_set_disposition(GMIME_OBJECT(part.get()), "attachment");
  g_mime_part_set_filename(part.get(), attachment.name.c_str());
  g_mime_part_set_content_encoding(part.get(), GMIME_CONTENT_ENCODING_BASE64);
  return part;
}

// The multipart/mixed at the top of the message, made around what is there if there is none.
GMimeMultipart* mixedTop(GMimeMessage* message) {
  GMimeObject* top = g_mime_message_get_mime_part(message);
  if (top != nullptr && GMIME_IS_MULTIPART(top) &&
      g_mime_content_type_is_type(g_mime_object_get_content_type(top), "multipart", "mixed") != FALSE)
    return GMIME_MULTIPART(top);
  const Owned<GMimeMultipart> mixed(g_mime_multipart_new_with_subtype("mixed"));
  if (top != nullptr) g_mime_multipart_add(mixed.get(), top);
  g_mime_message_set_mime_part(message, GMIME_OBJECT(mixed.get()));
  return GMIME_MULTIPART(g_mime_message_get_mime_part(message));
}

std::string written(GMimeMessage* message) {
  const std::unique_ptr<GMimeFormatOptions, void (*)(GMimeFormatOptions*)> format(g_mime_format_options_new(),
                                                                                  g_mime_format_options_free);
  g_mime_format_options_set_newline_format(format.get(), GMIME_NEWLINE_FORMAT_DOS);
  const ByteSink sink;
  g_mime_object_write_to_stream(GMIME_OBJECT(message), format.get(), sink.stream());
  return std::string(sink.bytes());
}

}  // namespace

std::string completeMessage(std::string_view bytes, const std::string& text,
                            const std::vector<MimeAttachment>& attachments) {
  const ByteSource source(bounded(bytes));
  const Owned<GMimeMessage> message = parseObject(source);
  const MessageParts parts(message.get());
  if (!parts.texts().empty()) {
    setText(parts.texts().front(), plainText(parts.texts().front()) + text);
  } else if (g_mime_message_get_mime_part(message.get()) == nullptr) {
    g_mime_message_set_mime_part(message.get(), GMIME_OBJECT(newText(text).get()));
  } else {
    g_mime_multipart_add(mixedTop(message.get()), GMIME_OBJECT(newText(text).get()));
  }
  for (const MimeAttachment& attachment : attachments)
    g_mime_multipart_add(mixedTop(message.get()), GMIME_OBJECT(newAttachment(attachment).get()));
  return written(message.get());
}

}  // namespace demoserver
