// The web server, on CivetWeb: its own threads accept connections, parse
// HTTP and WebSocket framing, and answer malformed requests with 400. This
// file decides who may connect and feeds each WebSocket from a thread of its
// own, so that a browser that reads slowly, or never, holds up only itself.
#include "server.h"

#include <civetweb.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <system_error>
#include <thread>
#include <vector>

#include "page_files.h"
#include "platform/transport_platform.h"

namespace kalvor::preview {
namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kFrameSpacing = std::chrono::microseconds(1000000 / 60);  // 60 frames a second a scanner
constexpr int kMaxClients = 64;
constexpr const char* kFramesPath = "/frames";

// One connected browser and the thread that writes to it.
struct Client {
  mg_connection* connection = nullptr;
  Board* board = nullptr;
  bool closing = false;  // guarded by board->mutex
  std::thread thread;
};

Board* g_board = nullptr;
uint32_t g_port = 0;
std::atomic<int> g_clients{0};

bool equal_nocase(std::string_view a, std::string_view b) {
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(), [](unsigned char x, unsigned char y) { return std::tolower(x) == std::tolower(y); });
}

// Sends, for each scanner whose message changed, its latest message, at most
// 60 a second a scanner. Messages that arrive in between replace each other.
void feed(Client* client) {
  Board& board = *client->board;
  std::vector<uint8_t> buffer(message::largest);
  std::array<uint64_t, projector::kScanners + 1> sent{};
  std::array<Clock::time_point, projector::kScanners + 1> due{};
  uint32_t start = 1;  // turns, so that no scanner starves the others
  std::unique_lock<std::mutex> lock(board.mutex);
  while (!client->closing && !board.stopping) {
    Clock::time_point now = Clock::now(), wake = Clock::time_point::max();
    uint32_t pick = 0;
    for (uint32_t k = 0; k < projector::kScanners && !pick; ++k) {
      uint32_t n = 1 + (start - 1 + k) % projector::kScanners;
      if (board.slots[n].version == sent[n]) continue;
      if (due[n] <= now)
        pick = n;
      else
        wake = std::min(wake, due[n]);
    }
    if (!pick) {
      if (wake == Clock::time_point::max())
        board.changed.wait(lock);
      else
        board.changed.wait_until(lock, wake);
      continue;
    }
    start = pick % projector::kScanners + 1;
    const Board::Slot& slot = board.slots[pick];
    size_t length = slot.length;
    std::memcpy(buffer.data(), slot.bytes.data(), length);
    sent[pick] = slot.version;
    due[pick] = now + kFrameSpacing;
    lock.unlock();
    int written = mg_websocket_write(client->connection, MG_WEBSOCKET_OPCODE_BINARY,
                                     reinterpret_cast<const char*>(buffer.data()), length);
    lock.lock();
    if (written <= 0) break;  // the browser is gone or stopped reading: send nothing more
  }
}

bool is_websocket_upgrade(mg_connection* connection) {
  const char* upgrade = mg_get_header(connection, "Upgrade");
  return upgrade && equal_nocase(upgrade, "websocket");
}

// An error answer written by hand: CivetWeb's own error page has no status
// line when the request asked for a WebSocket.
int answer(mg_connection* connection, int status, const char* phrase, const std::string& text) {
  mg_printf(connection,
            "HTTP/1.1 %d %s\r\nContent-Type: text/plain; charset=utf-8\r\nContent-Length: %zu\r\n"
            "Connection: close\r\n\r\n%s\n",
            status, phrase, text.size() + 1, text.c_str());
  return status;
}

// Runs before CivetWeb handles any request: refuses foreign hosts and
// origins, and WebSocket requests that CivetWeb would refuse without a
// proper HTTP answer.
int check_request(mg_connection* connection) {
  const char* host = mg_get_header(connection, "Host");
  if (!host || !host_allowed(host, g_port))
    return answer(connection, 403, "Forbidden",
                  "the preview answers only to an IP address or localhost with port " + std::to_string(g_port));
  if (!is_websocket_upgrade(connection)) return 0;
  const char* origin = mg_get_header(connection, "Origin");
  if (!origin || !origin_allowed(origin, g_port))
    return answer(connection, 403, "Forbidden", "frames are sent only to the preview's own page");
  const mg_request_info* request = mg_get_request_info(connection);
  if (!request->local_uri || std::string_view(request->local_uri) != kFramesPath)
    return answer(connection, 404, "Not Found", std::string("the WebSocket is ") + kFramesPath);
  const char* version = mg_get_header(connection, "Sec-WebSocket-Version");
  if (!mg_get_header(connection, "Sec-WebSocket-Key") || !version || std::string_view(version) != "13")
    return answer(connection, 400, "Bad Request", "a WebSocket request needs Sec-WebSocket-Key and version 13");
  return 0;
}

// CivetWeb's own messages are replaced by the transport's single line.
int quiet(const mg_connection*, const char*) { return 1; }

int serve_page(mg_connection* connection, void*) {
  const mg_request_info* request = mg_get_request_info(connection);
  bool head = std::strcmp(request->request_method, "HEAD") == 0;
  if (!head && std::strcmp(request->request_method, "GET") != 0) {
    mg_send_http_error(connection, 405, "Method Not Allowed: the preview answers GET and HEAD\n");
    return 405;
  }
  std::string_view path = request->local_uri ? request->local_uri : "";
  if (path == kFramesPath) {
    mg_send_http_error(connection, 426, "Upgrade Required: %s is a WebSocket\n", kFramesPath);
    return 426;
  }
  for (size_t i = 0; i < kPageFileCount; ++i) {
    const PageFile& file = kPageFiles[i];
    if (path != file.path) continue;
    std::string length = std::to_string(file.size);
    mg_response_header_start(connection, 200);
    std::string type = std::string(file.type) + "; charset=utf-8";
    mg_response_header_add(connection, "Content-Type", type.c_str(), -1);
    mg_response_header_add(connection, "Content-Length", length.c_str(), -1);
    mg_response_header_add(connection, "Cache-Control", "no-store", -1);
    mg_response_header_add(connection, "X-Content-Type-Options", "nosniff", -1);
    mg_response_header_add(connection, "Content-Security-Policy",
                           "default-src 'self'; connect-src 'self'; frame-ancestors 'none'", -1);
    mg_response_header_send(connection);
    if (!head) mg_write(connection, file.data, file.size);
    return 200;
  }
  mg_send_http_error(connection, 404, "Not Found\n");
  return 404;
}

int websocket_connect(const mg_connection* connection, void*) {
  // CivetWeb reuses connection records: no sender from an earlier connection may show through.
  mg_set_user_connection_data(const_cast<mg_connection*>(connection), nullptr);
  if (++g_clients > kMaxClients) {
    --g_clients;
    return 1;  // refused
  }
  return 0;
}

void websocket_ready(mg_connection* connection, void*) {
  auto* client = new Client;
  client->connection = connection;
  client->board = g_board;
  try {
    client->thread = std::thread(feed, client);
  } catch (const std::system_error&) {  // no thread to spare: this browser gets no frames
    delete client;
    return;
  }
  mg_set_user_connection_data(connection, client);
}

// The page sends nothing the server needs; a close frame ends the connection.
int websocket_data(mg_connection*, int flags, char*, size_t, void*) {
  return (flags & 0x0F) == MG_WEBSOCKET_OPCODE_CONNECTION_CLOSE ? 0 : 1;
}

void websocket_close(const mg_connection* connection, void*) {
  auto* client = static_cast<Client*>(mg_get_user_connection_data(connection));
  if (client) {
    {
      std::lock_guard<std::mutex> lock(client->board->mutex);
      client->closing = true;
    }
    client->board->changed.notify_all();
    client->thread.join();
    delete client;
    mg_set_user_connection_data(const_cast<mg_connection*>(connection), nullptr);
  }
  --g_clients;
}

std::string url_host(const std::string& address) {
  if (address == "0.0.0.0") return "127.0.0.1";
  if (address == "[::]") return "[::1]";
  return address;
}

}  // namespace

bool parse_listen(const char* text, Listen& listen, std::string& why) {
  std::string value = text ? text : "";
  size_t colon = value.rfind(':');
  std::string port = colon == std::string::npos ? value : value.substr(colon + 1);
  std::string address = colon == std::string::npos ? std::string(kDefaultAddress) : value.substr(0, colon);
  bool digits = !port.empty() && port.size() <= 5 &&
                std::all_of(port.begin(), port.end(), [](char c) { return c >= '0' && c <= '9'; });
  if (!digits || std::stoul(port) > 65535 || address.empty()) {
    why = "KALVOR_PREVIEW_LISTEN='" + value + "' is not [ADDRESS:]PORT";
    return false;
  }
  listen.address = address;
  listen.port = static_cast<uint32_t>(std::stoul(port));
  return true;
}

bool host_allowed(const char* host, uint32_t port) {
  std::string_view h = host;
  std::string_view name = h, port_text;
  if (!h.empty() && h.front() == '[') {  // [IPv6]:port
    size_t close = h.find(']');
    if (close == std::string_view::npos) return false;
    name = h.substr(1, close - 1);
    std::string_view rest = h.substr(close + 1);
    if (!rest.empty()) {
      if (rest.front() != ':') return false;
      port_text = rest.substr(1);
    }
  } else if (size_t colon = h.find(':'); colon != std::string_view::npos) {
    name = h.substr(0, colon);
    port_text = h.substr(colon + 1);
  }
  std::string expected = std::to_string(port);
  // The name is what a rebinding attack controls; a port, when given, must be ours.
  if (!port_text.empty() && port_text != expected) return false;
  std::string n(name);
  return equal_nocase(n, "localhost") || kalvor::net::is_ip_literal(n.c_str());
}

bool origin_allowed(const char* origin, uint32_t port) {
  std::string_view o = origin;
  constexpr std::string_view scheme = "http://";
  if (o.size() <= scheme.size() || !equal_nocase(o.substr(0, scheme.size()), scheme)) return false;
  std::string host(o.substr(scheme.size()));
  // An origin without a port is a page on port 80: some other server's.
  size_t bracket = host.rfind(']');
  bool has_port = host.find(':', bracket == std::string::npos ? 0 : bracket + 1) != std::string::npos;
  return (has_port || port == 80) && host_allowed(host.c_str(), port);
}

void Server::start(Board& board) {
  if (context_) return;
  Listen listen;
  std::string why;
  const char* chosen = std::getenv("KALVOR_PREVIEW_LISTEN");
  if (chosen && !parse_listen(chosen, listen, why)) {
    std::fprintf(stderr, "kalvor preview: %s; the preview is off, commands are still answered\n", why.c_str());
    return;
  }
  g_board = &board;
  {
    std::lock_guard<std::mutex> lock(board.mutex);
    board.stopping = false;
  }
  std::string ports = listen.address + ":" + std::to_string(listen.port);
  // A never-reading browser holds its own sender for at most the request timeout.
  const char* options[] = {"listening_ports", ports.c_str(), "num_threads", "80", "request_timeout_ms", "5000",
                           "websocket_timeout_ms", "5000", "enable_websocket_ping_pong", "yes",
                           "enable_keep_alive", "yes", nullptr};
  mg_callbacks callbacks{};
  callbacks.begin_request = check_request;
  callbacks.log_message = quiet;
  mg_init_data init{&callbacks, nullptr, options};
  char text[256] = {};
  unsigned code = 0;
  mg_error_data error{&code, text, sizeof text};
  mg_init_library(MG_FEATURES_WEBSOCKET | MG_FEATURES_IPV6);
  context_ = mg_start2(&init, &error);
  if (!context_) {
    std::fprintf(stderr,
                 "kalvor preview: cannot listen on %s (port %u is taken or not allowed); the preview is off, "
                 "commands are still answered\n",
                 ports.c_str(), static_cast<unsigned>(listen.port));
    mg_exit_library();
    return;
  }
  mg_server_port port{};
  g_port = mg_get_server_ports(context_, 1, &port) == 1 ? static_cast<uint32_t>(port.port) : listen.port;
  mg_set_request_handler(context_, "/", serve_page, nullptr);
  mg_set_websocket_handler(context_, kFramesPath, websocket_connect, websocket_ready, websocket_data, websocket_close,
                           nullptr);
  std::fprintf(stderr, "kalvor preview: open http://%s:%u/ in a browser\n", url_host(listen.address).c_str(),
               static_cast<unsigned>(g_port));
}

void Server::stop() {
  if (!context_) return;
  {
    std::lock_guard<std::mutex> lock(g_board->mutex);
    g_board->stopping = true;
  }
  g_board->changed.notify_all();
  mg_stop(context_);  // closes every connection; each close joins its sender
  context_ = nullptr;
  mg_exit_library();
}

}  // namespace kalvor::preview
