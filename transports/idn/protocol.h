// IDN (ILDA Digital Network) packets: what the transport sends and the
// answers it and `kalvor devices` read. Every multi-byte field is big-endian
// and goes through the helpers of core/bytes.h. The builders write into a
// caller's buffer of kMaxDatagram bytes; the parsers read only within the
// datagram they are given and refuse anything whose sizes or counts claim
// more than it holds.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kalvor::idn {

inline constexpr uint16_t kPort = 7255;
// The largest UDP payload sent: fits an Ethernet frame with room for tunnels.
inline constexpr size_t kMaxDatagram = 1454;

// Hello header commands.
enum Command : uint8_t {
  kPingRequest = 0x08,
  kPingResponse = 0x09,
  kScanRequest = 0x10,
  kScanResponse = 0x11,
  kServiceMapRequest = 0x12,
  kServiceMapResponse = 0x13,
  kChannelMessage = 0x40,
  kChannelMessageAck = 0x41,
  kClose = 0x44,
  kCloseAck = 0x45,
  kAcknowledge = 0x47,
};

// Chunk types of a channel message.
enum Chunk : uint8_t {
  kChunkVoid = 0x00,
  kChunkFrame = 0x02,       // a whole frame in one message
  kChunkFirst = 0x03,       // the first fragment of a frame
  kChunkSequel = 0xC0,      // a later fragment; CCLF marks the last
};

inline constexpr uint8_t kModeDiscrete = 0x02;  // graphic frames
inline constexpr uint8_t kServiceLaser = 0x80;  // service type of a laser projector
inline constexpr uint8_t kServiceDefault = 0x01;  // service flag: the default service

// Configuration flags. The service data match (bits 5..4) is repeated in
// every sample chunk header; the receiver drops a chunk where they differ.
inline constexpr uint8_t kRouting = 0x01;
inline constexpr uint8_t kCloseChannel = 0x02;
inline constexpr uint8_t kDataMatch = 0x20;

// Offsets, declared once. Hello header at 0; channel message header at 4.
namespace at {
inline constexpr size_t command = 0, flags = 1, sequence = 2;
inline constexpr size_t totalSize = 4, contentId = 6, timestamp = 8;
inline constexpr size_t config = 12;  // word count, flags, service, mode
inline constexpr size_t tags = 16;
}  // namespace at
inline constexpr size_t kHelloSize = 4;
inline constexpr size_t kChannelHeaderEnd = 12;
inline constexpr size_t kConfigSize = 4;

// contentID bits.
inline constexpr uint16_t kChannelMessageBit = 0x8000;
inline constexpr uint16_t kCclf = 0x4000;

// The sample layout sent: X, Y signed 16-bit, then red, green, blue and
// intensity one byte each.
inline constexpr uint16_t kTags[8] = {0x4200, 0x4010, 0x4210, 0x4010, 0x527E, 0x5214, 0x51CC, 0x5C10};
inline constexpr size_t kTagsSize = sizeof kTags;
inline constexpr size_t kSampleSize = 8;
inline constexpr size_t kChunkHeaderSize = 4;
// Header bytes before the samples of a first fragment (or whole frame) and of a sequel.
inline constexpr size_t kFirstHeader = kChannelHeaderEnd + kConfigSize + kTagsSize + kChunkHeaderSize;  // 36
inline constexpr size_t kSequelHeader = kChannelHeaderEnd;
inline constexpr uint32_t kFirstSamples = (kMaxDatagram - kFirstHeader) / kSampleSize;    // 177
inline constexpr uint32_t kSequelSamples = (kMaxDatagram - kSequelHeader) / kSampleSize;  // 180
inline constexpr uint32_t kMaxDuration = 0xFFFFFF;  // µs, the 24 bits of a chunk header

// Frames smaller than this are padded: some receivers refuse shorter ones.
inline constexpr uint32_t kMinSamples = 20;
// Receivers reassemble frames of at most 200,000 bytes.
inline constexpr uint32_t kMaxSamples = 200000 / kSampleSize;

// The channel a sender streams on and the service it addresses.
struct Stream {
  uint8_t channel = 0;  // 0..63
  uint8_t service = 0;  // 0: the receiver's default laser service
};

// Writes one sample: x and y already in the 16-bit range, Y pointing up.
void put_sample(uint8_t* out, int16_t x, int16_t y, uint8_t r, uint8_t g, uint8_t b, uint8_t intensity);

// Number of datagrams a frame of `samples` samples takes (1 up to 177 samples).
uint32_t fragment_count(uint32_t samples);

// Writes datagram `k` of a frame whose encoded samples are `samples`
// (count * kSampleSize bytes); returns its size. The first datagram carries
// the configuration and the whole frame's duration; sequel k has timestamp
// `timestamp + k`, and the last one is marked.
size_t write_fragment(uint8_t* out, const Stream& stream, uint16_t sequence, uint32_t timestamp,
                      uint32_t duration, const uint8_t* samples, uint32_t count, uint32_t k);

// A void channel message with the configuration: keeps the channel open.
size_t write_void(uint8_t* out, const Stream& stream, uint16_t sequence, uint32_t timestamp);
// Closes the channel (the configuration's close flag, no sample layout).
size_t write_channel_close(uint8_t* out, const Stream& stream, uint16_t sequence, uint32_t timestamp);
// A request with no payload (scan, service map, close).
size_t write_request(uint8_t* out, Command command, uint16_t sequence);

// ---- parsers ---------------------------------------------------------------

struct ScanResponse {
  uint16_t sequence = 0;
  uint8_t version = 0;
  uint8_t status = 0;  // 0x80 malfunction, 0x40 offline, 0x20 excluded, 0x10 occupied, 0x01 realtime
  uint8_t unitIdLength = 0;  // bytes of unitId used: category then the ID
  uint8_t unitId[15] = {};
  char hostName[21] = {};  // printable ASCII only, terminated
};

struct Service {
  uint8_t id = 0, type = 0, flags = 0, relay = 0;
  char name[21] = {};
};

struct ServiceMap {
  uint16_t sequence = 0;
  uint8_t relayCount = 0;
  uint8_t serviceCount = 0;
  Service services[255];
};

struct Acknowledge {
  uint16_t sequence = 0;
  int8_t result = 0;
  uint16_t inputFlags = 0, pipelineFlags = 0;
  uint8_t status = 0, linkQuality = 0;
  uint32_t latency = 0;
};

// Each returns false, leaving nothing trusted, for a datagram of another
// command or whose sizes or counts claim more than it holds.
bool parse_scan_response(const uint8_t* data, size_t size, ScanResponse* out);
bool parse_service_map(const uint8_t* data, size_t size, ServiceMap* out);
bool parse_acknowledge(const uint8_t* data, size_t size, Acknowledge* out);

}  // namespace kalvor::idn
