// Connecting on libcurl's multi interface. The library could bring the mail over, too, but keeps
// the thread meanwhile: until the server has answered the last line of a mail, and again until it
// has answered the good-bye.
#include "mail/smtp_connection.h"

#include <curl/curl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>

namespace quillon {
namespace {

constexpr std::int16_t kStepMs = 10;
constexpr std::chrono::seconds kOrdinaryTimeOut{60};  // where none is set
constexpr std::size_t kLongestLine =
    std::size_t{16} * 1024;  // ordinary ones have 512 bytes at most

std::chrono::seconds TimeOutOf(const SmtpServer& server) {
  return server.timeOutSeconds > 0 ? std::chrono::seconds(server.timeOutSeconds) : kOrdinaryTimeOut;
}

template <auto release>
struct Release {
  template <typename Handle>
  void operator()(Handle* handle) const {
    release(handle);
  }
};
using Url = std::unique_ptr<CURLU, Release<curl_url_cleanup>>;

// What the service calls itself, where this machine has a full name; some servers demand one.
std::string FullHostName() {
  std::array<char, 256> name{};
  if (gethostname(name.data(), name.size() - 1) != 0) return {};
  const std::string_view text = name.data();
  const bool isFull = text.find('.') != std::string_view::npos && IsMailHost(text);
  return isFull ? std::string(text) : std::string();
}

// smtp://<host>:<port>/<own name>. SmtpFailure where the first two make no address.
Url UrlOf(const SmtpServer& server) {
  const bool isIp6 = server.host.find(':') != std::string::npos;
  const std::string host = isIp6 ? "[" + server.host + "]" : server.host;
  Url url(curl_url());
  if (!IsMailHost(server.host) ||
      curl_url_set(url.get(), CURLUPART_SCHEME, "smtp", 0) != CURLUE_OK ||
      curl_url_set(url.get(), CURLUPART_HOST, host.c_str(), 0) != CURLUE_OK ||
      curl_url_set(url.get(), CURLUPART_PORT, std::to_string(server.port).c_str(), 0) !=
          CURLUE_OK) {
    throw SmtpFailure("MailServer or MailPort is no address");
  }
  const std::string ownName = FullHostName();
  if (!ownName.empty()) curl_url_set(url.get(), CURLUPART_PATH, ("/" + ownName).c_str(), 0);
  return url;
}

// Follows what a server says until encryption has begun. The library goes on in clear text, login
// and all, where one offers to encrypt and then refuses, or somebody on the line does so for it.
class StartOfTls {
 public:
  // False for the line of a refusal: the connection is to end with it.
  bool Allows(std::string_view line) noexcept {
    if (next_) {
      next_ = false;
      refused_ = !line.starts_with('2');
      return !refused_;
    }
    const std::string_view end = line.substr(std::min<std::size_t>(line.size(), 3));
    if (end.substr(std::min<std::size_t>(end.size(), 1)).starts_with("STARTTLS")) offered_ = true;
    if (offered_ && end.starts_with(' ')) {
      offered_ = false;
      next_ = true;
    }
    return true;
  }
  bool isRefused() const { return refused_; }

 private:
  bool offered_ = false;  // in the answer that is being read
  bool next_ = false;     // the next line answers the request to begin
  bool refused_ = false;
};

}  // namespace

// The handles of a connection.
class SmtpConnection::Library {
 public:
  explicit Library(const SmtpServer& server) : url_(UrlOf(server)) {
    Start();
    easy_.reset(curl_easy_init());
    multi_.reset(curl_multi_init());
    Set(CURLOPT_CURLU, url_.get());
    Set(CURLOPT_CONNECT_ONLY, 1L);
    Set(CURLOPT_PROXY, "");  // whatever the environment names is for other programs
    Set(CURLOPT_NOSIGNAL, 1L);
    Set(CURLOPT_QUICK_EXIT, 1L);  // a look-up of a name that hangs is left behind
    SetTimes(TimeOutOf(server));
    Set(CURLOPT_ERRORBUFFER, error_.data());
    SetEncryption();
    if (server.login) SetLogin(*server.login);
    curl_multi_add_handle(multi_.get(), easy_.get());
  }
  ~Library() { curl_multi_remove_handle(multi_.get(), easy_.get()); }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  // One step of connecting; true when it is done.
  bool Connect() {
    int running = 0;
    if (curl_multi_perform(multi_.get(), &running) != CURLM_OK) throw SmtpFailure("out of memory");
    if (running != 0) return false;
    int left = 0;
    const CURLMsg* const message = curl_multi_info_read(multi_.get(), &left);
    Expect(message != nullptr ? message->data.result : CURLE_OUT_OF_MEMORY);
    return true;
  }

  // As many bytes as can go out now.
  std::size_t Send(std::string_view bytes) {
    std::size_t sent = 0;
    const CURLcode result = curl_easy_send(easy_.get(), bytes.data(), bytes.size(), &sent);
    if (result != CURLE_AGAIN) Expect(result);
    return sent;
  }

  // What has come by now.
  std::string Receive() {
    std::array<char, 4096> buffer;
    std::size_t received = 0;
    const CURLcode result = curl_easy_recv(easy_.get(), buffer.data(), buffer.size(), &received);
    if (result == CURLE_AGAIN) return {};
    Expect(result);
    if (received == 0) throw SmtpFailure("the server closed the connection");
    return {buffer.data(), received};
  }

 private:
  // The library sets itself up for the first mail: an installation without receivers is spared it.
  static void Start() {
    struct Global {
      Global() { curl_global_init(CURL_GLOBAL_DEFAULT); }
      ~Global() { curl_global_cleanup(); }
      Global(const Global&) = delete;
      Global& operator=(const Global&) = delete;
    };
    static const Global kGlobal;
  }

  template <typename OptionValue>
  void Set(CURLoption option, OptionValue value) {
    curl_easy_setopt(easy_.get(), option, value);
  }

  // The library's own limits lie behind ours, which counts for all that the connection does.
  void SetTimes(std::chrono::seconds timeOut) {
    constexpr std::chrono::seconds kBehind{10};
    const long seconds = (timeOut + kBehind).count();
    Set(CURLOPT_CONNECTTIMEOUT, seconds);
    Set(CURLOPT_SERVER_RESPONSE_TIMEOUT, seconds);
  }

  // Whom to trust is the system's matter, or of the variable that administrators know for it.
  void SetEncryption() {
    Set(CURLOPT_USE_SSL, static_cast<long>(CURLUSESSL_TRY));
    Set(CURLOPT_HEADERDATA, &startOfTls_);
    Set(
        CURLOPT_HEADERFUNCTION, +[](char* text, std::size_t size, std::size_t count, void* data) {
          const std::string_view line(text, size * count);
          return static_cast<StartOfTls*>(data)->Allows(line) ? line.size() : 0;
        });
    const char* const authorities = std::getenv("SSL_CERT_FILE");  // NOLINT(concurrency-mt-unsafe)
    if (authorities == nullptr) return;
    Set(CURLOPT_CAINFO, authorities);
    Set(CURLOPT_CAPATH, static_cast<const char*>(nullptr));
  }

  // Not the mechanisms that ask a directory: the library would wait for it, and the site with it.
  void SetLogin(const SmtpLogin& login) {
    Set(CURLOPT_USERNAME, login.account.c_str());
    Set(CURLOPT_PASSWORD, login.password.c_str());
    Set(CURLOPT_LOGIN_OPTIONS,
        login.onlyAuthLogin ? "AUTH=LOGIN" : "AUTH=CRAM-MD5;AUTH=PLAIN;AUTH=LOGIN");
  }

  // Some failures have no text of their own.
  void Expect(CURLcode result) const {
    if (result == CURLE_OK) return;
    if (startOfTls_.isRefused()) throw SmtpFailure("the server offers STARTTLS and refuses it");
    throw SmtpFailure(error_.front() != '\0' ? error_.data() : curl_easy_strerror(result));
  }

  Url url_;
  StartOfTls startOfTls_;
  std::array<char, CURL_ERROR_SIZE> error_{};
  std::unique_ptr<CURL, Release<curl_easy_cleanup>> easy_;
  std::unique_ptr<CURLM, Release<curl_multi_cleanup>> multi_;
};

SmtpConnection::SmtpConnection(EventLoop& loop, const SmtpServer& server)
    : loop_(loop),
      deadline_(std::chrono::steady_clock::now() + TimeOutOf(server)),
      library_(std::make_unique<Library>(server)) {
  while (!library_->Connect()) Wait();
}

SmtpConnection::~SmtpConnection() = default;

void SmtpConnection::Send(std::string_view bytes) {
  while (true) {
    bytes.remove_prefix(library_->Send(bytes));
    if (bytes.empty()) return;
    Wait();
  }
}

std::string SmtpConnection::ReadLine() {
  std::size_t end = received_.find('\n');
  for (; end == std::string::npos; end = received_.find('\n')) {
    if (received_.size() > kLongestLine) throw SmtpFailure("the server does not speak SMTP");
    const std::string more = library_->Receive();
    received_ += more;
    if (more.empty()) Wait();
  }
  std::string line = received_.substr(0, end);
  received_.erase(0, end + 1);
  if (line.ends_with('\r')) line.pop_back();
  return line;
}

void SmtpConnection::Quit() {
  library_->Send("QUIT\r\n");
}

void SmtpConnection::Wait() {
  if (std::chrono::steady_clock::now() >= deadline_) {
    throw SmtpFailure("the server took longer than TimeOut");
  }
  loop_.DelayMs(kStepMs);
}

}  // namespace quillon
