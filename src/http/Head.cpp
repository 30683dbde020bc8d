// The request head: request line, header lines and credentials.
#include "document/Base64.h"
#include "document/Utilities.h"
#include "http/Communications.h"
#include "support/InlineText.h"
#include "support/Porting.h"

namespace AIRSYNC_STACK {

namespace {

// domain, "/", user, ":" and password, each field filled to its last byte.
const UINT32 kCredentialsLength = 256 + 1 + 256 + 1 + 256;
const UINT32 kRealmCapacity = 256 + 1 + 256 + 1;

// A text that grows within a fixed area, and remembers when something could not be written.
class BoundedText {
 public:
  // Continues the terminated text in `area`.
  BoundedText(char* area, UINT32 capacity) : area_(area), capacity_(capacity), length_(SmlStrlen(area)) {}

  void Append(const char* text) {
    const UINT32 length = SmlStrlen(text);
    if (length >= capacity_ - length_) {
      complete_ = false;
      return;
    }
    SmlMemcpy(area_ + length_, text, length);
    length_ += length;
    area_[length_] = '\0';
  }

  // A text from outside: by a control character it could end its line and begin another.
  void AppendForeign(const char* text) {
    for (const char* at = text; *at != '\0'; ++at) {
      if (static_cast<UINT8>(*at) < 0x20) complete_ = false;
    }
    Append(text);
  }

  template <UINT32 kCapacity>
  void AppendField(const char (&field)[kCapacity]) {
    AppendForeign(TerminatedText<kCapacity>(field).text);
  }

  bool Complete() const { return complete_; }

 private:
  char* area_;
  UINT32 capacity_;
  UINT32 length_;
  bool complete_ = true;
};

bool AppendRequestLine(char* buffer, const SERVER_INFO& server, const char* cmd, const char* method) {
  BoundedText line(buffer, Communications::kHeadCapacity);
  line.AppendForeign(method);
  line.Append(" ");
  line.AppendField(server.path);
  line.Append("?");
  if (cmd != nullptr) {
    line.Append("Cmd=");
    line.AppendForeign(cmd);
    line.Append("&");
  }
  line.Append("User=");
  line.AppendField(server.user);
  line.Append("&DeviceId=");
  line.AppendField(server.deviceId);
  line.Append("&DeviceType=");
  line.AppendField(server.deviceType);
  line.Append(" HTTP/1.1\r\n");
  return line.Complete();
}

// The line is written always, also with empty domain and password.
bool AddCredentials(char* buffer, const SERVER_INFO& server) {
  char realm[kRealmCapacity] = {};
  BoundedText text(realm, sizeof(realm));
  text.Append(TerminatedText<sizeof(server.domain)>(server.domain).text);
  text.Append("/");
  text.Append(TerminatedText<sizeof(server.user)>(server.user).text);
  const TerminatedText<sizeof(server.password)> password(server.password);
  char credentials[Communications::kCredentialsCapacity];
  return Communications::basic_authentication_encode(realm, password.text, credentials) &&
         Communications::AddLine(buffer, "Authorization:", credentials);
}

}  // namespace

bool Communications::BuildHttpHeader(char* buffer, UINT32 contentLength, const SERVER_INFO& server,
                                     const char* cmd, ENCODINGTYPE encoding, const char* method) {
  const TerminatedText<sizeof(server.host)> host(server.host);
  const TerminatedText<sizeof(server.userAgent)> userAgent(server.userAgent);
  const char* contentType = encoding == ENCODING_NO_BODY ? nullptr : GetContentTypeString(encoding);
  char length[11];
  SmlUnsignedIntegerToString(length, contentLength);

  buffer[0] = '\0';
  bool complete = AppendRequestLine(buffer, server, cmd, method);
  complete = AddLine(buffer, "Host:", host.text) && complete;
  if (contentType != nullptr) complete = AddLine(buffer, "Accept:", contentType) && complete;
  complete = AddLine(buffer, "Accept-Charset:", "utf-8") && complete;
  complete = AddLine(buffer, "Accept-Language:", "en") && complete;
  complete = AddLine(buffer, "Cache-Control:", "private") && complete;
  complete = AddCredentials(buffer, server) && complete;
  if (contentType != nullptr) complete = AddLine(buffer, "Content-Type:", contentType) && complete;
  complete =
      AddLine(buffer, "User-Agent:", userAgent.text[0] == '\0' ? "Tarn-TestClient/0.1" : userAgent.text) &&
      complete;
  complete = AddLine(buffer, "Connection:", "Keep-Alive") && complete;
  complete = AddLine(buffer, "Content-Length:", length) && complete;
  complete = AddLine(buffer, "MS-ASProtocolVersion:", "2.0") && complete;
  BoundedText end(buffer, kHeadCapacity);
  end.Append("\r\n");
  return complete && end.Complete();
}

bool Communications::AddLine(char* buffer, const char* name, const char* value) {
  BoundedText line(buffer, kHeadCapacity);
  line.Append(name);
  line.Append(" ");
  line.AppendForeign(value);
  line.Append("\r\n");
  return line.Complete();
}

const char* Communications::GetContentTypeString(ENCODINGTYPE encoding) {
  switch (encoding) {
    case ENCODING_XML:
      return "application/vnd.syncml+xml";
    case ENCODING_WBXML:
      return "application/vnd.ms-sync.wbxml";
    case ENCODING_RAW_MESSAGE:
      return "message/rfc822";
    default:
      return nullptr;
  }
}

bool Communications::basic_authentication_encode(const char* realm, const char* password, char* out) {
  char plain[kCredentialsLength + 1] = {};
  BoundedText text(plain, sizeof(plain));
  text.Append(realm);
  text.Append(":");
  text.Append(password);
  if (!text.Complete()) return false;
  SmlStrcpy(out, "Basic ");
  SmlBase64Encode(out + SmlStrlen(out), reinterpret_cast<const UINT8*>(plain),
                  static_cast<int>(SmlStrlen(plain)));
  return true;
}

SYNC_RESULT Communications::RealmUsername(const char* serverAddress, const char* user, char* out) {
  static const char kHttp[] = "http://";
  static const char kHttps[] = "https://";
  const char* at = SmlStrstr(serverAddress, kHttp);
  if (at != nullptr) {
    at += sizeof(kHttp) - 1;
  } else if ((at = SmlStrstr(serverAddress, kHttps)) != nullptr) {
    at += sizeof(kHttps) - 1;
  } else {
    SmlUnexpected(false);
    return AS_RESULT_BAD_SERVER_ADDRESS;
  }
  at = SmlStrchr(at, '.');
  if (at == nullptr) return AS_RESULT_BAD_SERVER_ADDRESS;
  char* end = out;
  for (++at; *at != '\0' && *at != ':' && *at != '/'; ++at) *end++ = *at;
  *end++ = '/';
  SmlStrcpy(end, user);
  return AS_RESULT_OK;
}

}  // namespace AIRSYNC_STACK
