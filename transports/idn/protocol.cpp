// Building and reading IDN datagrams.
#include "protocol.h"

#include <algorithm>
#include <iterator>
#include <cstring>

#include "core/bytes.h"

namespace kalvor::idn {
namespace {

size_t put_hello(uint8_t* out, uint8_t command, uint16_t sequence) {
  out[at::command] = command;
  out[at::flags] = 0;  // client group 0
  store_be<uint16_t>(out + at::sequence, sequence);
  return kHelloSize;
}

// Hello header and channel message header; the total size is set by finish().
void put_channel_header(uint8_t* out, uint8_t command, uint16_t sequence, const Stream& stream, bool cclf,
                        uint8_t chunk, uint32_t timestamp) {
  put_hello(out, command, sequence);
  uint16_t content = static_cast<uint16_t>(kChannelMessageBit | (cclf ? kCclf : 0) | ((stream.channel & 63u) << 8) | chunk);
  store_be<uint16_t>(out + at::contentId, content);
  store_be<uint32_t>(out + at::timestamp, timestamp);
}

void put_config(uint8_t* out, const Stream& stream, uint8_t words, uint8_t flags) {
  out[at::config] = words;
  out[at::config + 1] = flags;
  out[at::config + 2] = stream.service;
  out[at::config + 3] = kModeDiscrete;
}

// The configuration with the sample layout and routing; returns the end.
size_t put_layout(uint8_t* out, const Stream& stream) {
  put_config(out, stream, kTagsSize / 4, kDataMatch | kRouting);
  for (size_t i = 0; i < std::size(kTags); ++i) store_be<uint16_t>(out + at::tags + 2 * i, kTags[i]);
  return at::tags + kTagsSize;
}

size_t finish(uint8_t* out, size_t size) {
  store_be<uint16_t>(out + at::totalSize, static_cast<uint16_t>(size - kHelloSize));
  return size;
}

void copy_text(char* out, const uint8_t* in, size_t size) {
  size_t n = 0;
  for (; n < size && in[n]; ++n) out[n] = (in[n] >= 0x20 && in[n] < 0x7F) ? static_cast<char>(in[n]) : '?';
  out[n] = 0;
}

}  // namespace

void put_sample(uint8_t* out, int16_t x, int16_t y, uint8_t r, uint8_t g, uint8_t b, uint8_t intensity) {
  store_be<int16_t>(out, x);
  store_be<int16_t>(out + 2, y);
  out[4] = r;
  out[5] = g;
  out[6] = b;
  out[7] = intensity;
}

uint32_t fragment_count(uint32_t samples) {
  if (samples <= kFirstSamples) return 1;
  return 1 + (samples - kFirstSamples + kSequelSamples - 1) / kSequelSamples;
}

size_t write_fragment(uint8_t* out, const Stream& stream, uint16_t sequence, uint32_t timestamp,
                      uint32_t duration, const uint8_t* samples, uint32_t count, uint32_t k) {
  uint32_t fragments = fragment_count(count);
  if (k >= fragments) return 0;
  if (k == 0) {
    uint8_t chunk = fragments == 1 ? kChunkFrame : kChunkFirst;
    put_channel_header(out, kChannelMessage, sequence, stream, true, chunk, timestamp);
    size_t end = put_layout(out, stream);
    store_be<uint32_t>(out + end, (uint32_t{kDataMatch} << 24) | std::min(duration, kMaxDuration));
    end += kChunkHeaderSize;
    uint32_t n = std::min(count, kFirstSamples);
    std::memcpy(out + end, samples, n * kSampleSize);
    return finish(out, end + n * kSampleSize);
  }
  uint32_t first = kFirstSamples + (k - 1) * kSequelSamples;
  uint32_t n = std::min(count - first, kSequelSamples);
  put_channel_header(out, kChannelMessage, sequence, stream, k + 1 == fragments, kChunkSequel, timestamp + k);
  std::memcpy(out + kSequelHeader, samples + size_t{first} * kSampleSize, n * kSampleSize);
  return finish(out, kSequelHeader + n * kSampleSize);
}

size_t write_void(uint8_t* out, const Stream& stream, uint16_t sequence, uint32_t timestamp) {
  put_channel_header(out, kChannelMessage, sequence, stream, true, kChunkVoid, timestamp);
  return finish(out, put_layout(out, stream));
}

size_t write_channel_close(uint8_t* out, const Stream& stream, uint16_t sequence, uint32_t timestamp) {
  put_channel_header(out, kChannelMessage, sequence, stream, true, kChunkVoid, timestamp);
  put_config(out, stream, 0, kCloseChannel);
  return finish(out, at::config + kConfigSize);
}

size_t write_request(uint8_t* out, Command command, uint16_t sequence) { return put_hello(out, command, sequence); }

bool parse_scan_response(const uint8_t* data, size_t size, ScanResponse* out) {
  constexpr size_t kBody = 40;
  if (!data || size < kHelloSize + kBody || data[at::command] != kScanResponse) return false;
  const uint8_t* body = data + kHelloSize;
  size_t structSize = body[0];
  if (structSize < kBody || structSize > size - kHelloSize) return false;
  uint8_t idLength = body[4];
  if (idLength > sizeof out->unitId) return false;
  *out = ScanResponse{};
  out->sequence = load_be<uint16_t>(data + at::sequence);
  out->version = body[1];
  out->status = body[2];
  out->unitIdLength = idLength;
  std::memcpy(out->unitId, body + 5, idLength);
  copy_text(out->hostName, body + 20, 20);
  return true;
}

bool parse_service_map(const uint8_t* data, size_t size, ServiceMap* out) {
  if (!data || size < kHelloSize + 4 || data[at::command] != kServiceMapResponse) return false;
  const uint8_t* body = data + kHelloSize;
  size_t available = size - kHelloSize;
  size_t structSize = body[0], entrySize = body[1];
  size_t relays = body[2], services = body[3];
  if (structSize < 4 || entrySize < 24 || structSize > available) return false;
  if ((relays + services) * entrySize > available - structSize) return false;
  out->sequence = load_be<uint16_t>(data + at::sequence);
  out->relayCount = static_cast<uint8_t>(relays);
  out->serviceCount = static_cast<uint8_t>(services);
  const uint8_t* entry = body + structSize + relays * entrySize;
  for (size_t i = 0; i < services; ++i, entry += entrySize) {
    Service& s = out->services[i];
    s.id = entry[0];
    s.type = entry[1];
    s.flags = entry[2];
    s.relay = entry[3];
    copy_text(s.name, entry + 4, 20);
  }
  return true;
}

bool parse_acknowledge(const uint8_t* data, size_t size, Acknowledge* out) {
  if (!data || size < kHelloSize + 4 || data[at::command] != kAcknowledge) return false;
  const uint8_t* body = data + kHelloSize;
  size_t structSize = body[0];
  // The first 4 bytes (size, result, input flags) are common to every receiver;
  // later fields are read only where the stated size covers them.
  if (structSize < 4 || structSize > size - kHelloSize) return false;
  *out = Acknowledge{};
  out->sequence = load_be<uint16_t>(data + at::sequence);
  out->result = static_cast<int8_t>(body[1]);
  out->inputFlags = load_be<uint16_t>(body + 2);
  if (structSize >= 6) out->pipelineFlags = load_be<uint16_t>(body + 4);
  if (structSize >= 8) {
    out->status = body[6];
    out->linkQuality = body[7];
  }
  if (structSize >= 12) out->latency = load_be<uint32_t>(body + 8);
  return true;
}

}  // namespace kalvor::idn
