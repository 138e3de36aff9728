#include "report/PageServer.h"

#include <atomic>
#include <cstddef>
#include <exception>
#include <mutex>
#include <random>
#include <string_view>
#include <utility>

#include <httplib.h>

#include "report/PageSource.h"
#include "text/Failure.h"

namespace quilon {

namespace {

constexpr const char* kHost = "127.0.0.1";

/// @return 128 bits of the system's randomness
std::string MakeToken()
{
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::random_device         random;
  std::string                token;
  for (int word = 0; word < 4; ++word) {
    const unsigned bits = random();
    for (unsigned shift = 0; shift < 32; shift += 4) token += kDigits[bits >> shift & 15U];
  }
  return token;
}

/// @return whether the two are equal, after a time that does not tell where they differ
bool IsSame(std::string_view a, std::string_view b)
{
  unsigned difference = a.size() == b.size() ? 0U : 1U;
  for (std::size_t i = 0; i < a.size() && i < b.size(); ++i)
    difference |= static_cast<unsigned>(static_cast<unsigned char>(a[i] ^ b[i]));
  return difference == 0;
}

/// Tells now and then that nobody has come.
class WatchedPool : public httplib::ThreadPool
{
public:
  WatchedPool(std::size_t size, std::function<void()> watch) : ThreadPool(size), watch_(std::move(watch)) {}
  void on_idle() override { watch_(); }

private:
  std::function<void()> watch_;
};

}  // namespace

struct PageServer::State
{
  State(PageSource& ofPage, std::string text) : source(ofPage), page(std::move(text)), token(MakeToken()) {}

  /// Refuses what does not come from the page that the user has opened.
  bool IsRefused(const httplib::Request& request, httplib::Response& response) const
  {
    const std::string host = request.get_header_value("Host");
    const std::string at   = ':' + std::to_string(port);
    if (host != kHost + at && host != "localhost" + at) {
      response.status = 421;
      response.set_content("expected the host " + (kHost + at) + "\n", "text/plain");
      return true;
    }
    const std::string_view path(request.path);
    if (path.size() < token.size() + 2 || !IsSame(path.substr(1, token.size()), token) || path[token.size() + 1] != '/')
    {
      response.status = 403;
      response.set_content("expected the address that quilon serve has printed\n", "text/plain");
      return true;
    }
    return false;
  }

  void AnswerBlob(const std::string& number, httplib::Response& response)
  {
    std::size_t blob = source.NumBlobs();
    if (number.size() < 10) blob = static_cast<std::size_t>(std::stoul(number));
    if (blob >= source.NumBlobs()) {
      response.status = 404;
      response.set_content("no blob " + number + ", expected 0 to " + std::to_string(source.NumBlobs() - 1) + "\n",
                           "text/plain");
      return;
    }
    // A browser asks for several at once; a database is read by one at a time.
    const std::lock_guard lock(mutex);
    response.set_content(source.MakeBlob(blob), "application/octet-stream");
  }

  PageSource&           source;
  const std::string     page;
  const std::string     token;
  int                   port = 0;
  std::mutex            mutex;
  std::function<bool()> isToStop;
  httplib::Server       server;
};

PageServer::PageServer(PageSource& source, std::string page, int port)
    : state_(std::make_unique<State>(source, std::move(page)))
{
  State&           state  = *state_;
  httplib::Server& server = state.server;
  // Another program may not take the port along with us.
  server.set_socket_options([](socket_t) {});
  server.set_keep_alive_timeout(1);
  server.set_payload_max_length(1024);  // requests have no bodies
  server.set_idle_interval(0, 100'000);
  server.set_default_headers({{"X-Content-Type-Options", "nosniff"},
                              {"Referrer-Policy", "no-referrer"},
                              {"Cross-Origin-Resource-Policy", "same-origin"},
                              {"Content-Security-Policy", "frame-ancestors 'none'"},
                              {"Cache-Control", "no-store"}});
  server.set_pre_routing_handler([&state](const httplib::Request& request, httplib::Response& response) {
    return state.IsRefused(request, response) ? httplib::Server::HandlerResponse::Handled
                                              : httplib::Server::HandlerResponse::Unhandled;
  });
  server.Get("/[0-9a-f]+/", [&state](const httplib::Request&, httplib::Response& response) {
    response.set_content(state.page, "text/html; charset=utf-8");
  });
  server.Get("/[0-9a-f]+/blob/([0-9]+)", [&state](const httplib::Request& request, httplib::Response& response) {
    state.AnswerBlob(request.matches[1], response);
  });
  server.set_exception_handler(
      [](const httplib::Request&, httplib::Response& response, const std::exception_ptr& thrown) {
        response.status = 500;
        try {
          std::rethrow_exception(thrown);
        } catch (const std::exception& failure) {
          response.set_content(std::string(failure.what()) + '\n', "text/plain");
        }
      });
  server.new_task_queue = [&state] {
    // As many connections as browsers open to one server, and one more.
    return new WatchedPool(7, [&state] {
      if (state.isToStop()) state.server.stop();
    });
  };
  state.port = port == 0 ? server.bind_to_any_port(kHost) : server.bind_to_port(kHost, port) ? port : -1;
  if (state.port < 0) Fail("port " + std::to_string(port) + " is taken or not allowed, expected another or 0 for any");
}

PageServer::~PageServer() = default;

std::string PageServer::GetAddress() const
{
  return std::string("http://") + kHost + ':' + std::to_string(state_->port) + '/' + state_->token + '/';
}

void PageServer::Run(const std::function<bool()>& isToStop)
{
  state_->isToStop = isToStop;
  state_->server.listen_after_bind();
}

}  // namespace quilon
