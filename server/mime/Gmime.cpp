#include "mime/Gmime.h"

namespace demoserver {

void prepareGmime() {
  [[maybe_unused]] static const bool prepared = [] {
    g_mime_init();
    return true;
  }();
}

ByteSource::ByteSource(std::string_view bytes) : array_() {
  prepareGmime();
  // GMime never writes to what it reads from; its types just do not say so.
  array_.data = reinterpret_cast<guint8*>(const_cast<char*>(bytes.data()));
  array_.len = static_cast<guint>(bytes.size());
  stream_.reset(g_mime_stream_mem_new_with_byte_array(&array_));
  g_mime_stream_mem_set_owner(GMIME_STREAM_MEM(stream_.get()), FALSE);
}

ByteSink::ByteSink() {
  prepareGmime();
  stream_.reset(g_mime_stream_mem_new());
}

std::string_view ByteSink::bytes() const {
  const GByteArray* array = g_mime_stream_mem_get_byte_array(GMIME_STREAM_MEM(stream_.get()));
  if (array == nullptr || array->data == nullptr) return {};
  return {reinterpret_cast<const char*>(array->data), array->len};
}

namespace {

std::string_view withBoundedHead(std::string_view message) {
  const std::string_view start = message.substr(0, kMaxHead);
  const bool ends = start.find("\n\n") != std::string_view::npos ||
                    start.find("\n\r\n") != std::string_view::npos || start.starts_with('\n') ||
                    start.starts_with("\r\n");
  return ends ? message : start;
}

std::string_view withBoundedParts(std::string_view message) {
  constexpr std::string_view kMark = "\n--";
  std::size_t lines = 0;
  for (std::size_t at = message.find(kMark); at != std::string_view::npos; at = message.find(kMark, at + 1))
    if (++lines > kMaxPartLines) return message.substr(0, at + 1);
  return message;
}

}  // namespace

std::string_view bounded(std::string_view message) { return withBoundedParts(withBoundedHead(message)); }

Owned<GMimeMessage> parseObject(const ByteSource& source) {
  const Owned<GMimeParser> parser(g_mime_parser_new_with_stream(source.stream()));
  Owned<GMimeMessage> message(g_mime_parser_construct_message(parser.get(), nullptr));
  if (!message) message.reset(g_mime_message_new(TRUE));
  return message;
}

std::string contentOf(GMimePart* part) {
  GMimeDataWrapper* wrapper = g_mime_part_get_content(part);
  if (wrapper == nullptr) return {};
  const ByteSink sink;
  g_mime_data_wrapper_write_to_stream(wrapper, sink.stream());
  return std::string(sink.bytes());
}

}  // namespace demoserver
