// Commands for the scanner's own equipment and the tools around it: one-byte
// commands, device queries, Vistrel output, the ILDA export name, help, the
// LPT port, firmware upload and file copy.
#include <cstring>

#include "core/file_io.h"
#include "core/library.h"
#include "core/short_commands.h"
#include "kalvor/kalvor.h"
#include "platform/platform.h"

using namespace kalvor;

namespace {

// Sends a query of Length bytes (the opcode, then for two bytes the low byte
// of the scanner number) with an answer area preset to `preset`, which is
// what comes back when nothing answers.
template <typename T, uint32_t Length = 2>
T query(uint32_t scanner, Opcode opcode, T preset = 0) {
  static_assert(Length == 1 || Length == 2);
  uint8_t cmd[Length] = {op(opcode)};
  if constexpr (Length == 2) cmd[1] = static_cast<uint8_t>(scanner);
  uint8_t answer[sizeof(T)];
  store_le<T>(answer, preset);
  send(scanner, cmd, answer);
  return load_le<T>(answer);
}

template <typename T>
void put(T* out, T value) {
  if (out) *out = value;
}

// Room for data in the firmware-upload command of 65,004 bytes.
constexpr uint32_t kUpdateRoom = 65001;
constexpr uint32_t kBlockData = 1024;

}  // namespace

// X(export, opcode): commands of one byte, no answer.
#define KALVOR_ONE_BYTE_COMMANDS(X)          \
  X(ZRKErzeugeFormular, CreateForm)          \
  X(EnableILDAOutput, EnableIldaOutput)      \
  X(DisableILDAOutput, DisableIldaOutput)    \
  X(ShowHWManager, ShowHwManager)            \
  X(HideHWManager, HideHwManager)            \
  X(CheckforUpdate, CheckForUpdate)          \
  X(StartHWManager, StartHwManager)          \
  X(EnableILDAOutputonce, EnableIldaOutputOnce) \
  X(Display_Invert_Y, ShowHwManager)

#define KALVOR_DEFINE_ONE_BYTE(name, opcode) \
  KALVOR_API void KALVOR_CALL name(uint32_t scanner) { send_opcode(scanner, Opcode::opcode); }
KALVOR_ONE_BYTE_COMMANDS(KALVOR_DEFINE_ONE_BYTE)
#undef KALVOR_DEFINE_ONE_BYTE

// X(export, opcode, answer type): queries carrying the scanner byte.
#define KALVOR_DEVICE_QUERIES(X)                                \
  X(GetRouting, Routing, uint8_t)                               \
  X(GetInvertX, InvertX, uint8_t)                               \
  X(GetInvertY, InvertY, uint8_t)                               \
  X(GetSwapXY, SwapXY, uint8_t)                                 \
  X(GetInterpolatedPointCnt, InterpolatedPointCount, uint16_t)

#define KALVOR_DEFINE_QUERY(name, opcode, type)        \
  KALVOR_API type KALVOR_CALL name(uint32_t scanner) { \
    return query<type>(scanner, Opcode::opcode);       \
  }
KALVOR_DEVICE_QUERIES(KALVOR_DEFINE_QUERY)
#undef KALVOR_DEFINE_QUERY

KALVOR_API uint8_t KALVOR_CALL HWManagerGetStatus(uint32_t scanner) {
  return query<uint8_t, 1>(scanner, Opcode::HwManagerStatus, 99);
}

KALVOR_API uint32_t KALVOR_CALL SoftwareGetCRC(uint32_t scanner) {
  return query<uint32_t, 1>(scanner, Opcode::SoftwareCrc, 0);
}

KALVOR_API void KALVOR_CALL GetDeviceSettings(uint32_t scanner, uint8_t* v1, uint8_t* v2, uint8_t* v3,
                                              uint32_t* v4, uint32_t* v5, uint32_t* v6, uint32_t* v7,
                                              uint32_t* v8) {
  uint8_t cmd[2] = {op(Opcode::DeviceSettings), static_cast<uint8_t>(scanner)};
  uint8_t answer[23] = {};  // all zero when nothing answers
  send(scanner, cmd, answer);
  uint8_t* bytes[3] = {v1, v2, v3};
  uint32_t* words[5] = {v4, v5, v6, v7, v8};
  for (uint32_t k = 0; k < 3; ++k) put(bytes[k], answer[k]);
  for (uint32_t k = 0; k < 5; ++k) put(words[k], load_le<uint32_t>(answer + 3 + 4 * k));
}

KALVOR_API void KALVOR_CALL SetVistrel(uint32_t scanner, uint8_t flag) {
  if (!scanner_record(scanner)) return;
  g_library.vistrelEnabled = static_cast<int8_t>(flag);
  send_byte(scanner, Opcode::Vistrel, flag);
}

KALVOR_API void KALVOR_CALL SetExportILDAName(uint32_t scanner, const char* name) {
  uint8_t cmd[256] = {op(Opcode::ExportIldaName)};
  // At most 255 bytes: a name of 255 characters or more goes without its zero.
  if (name) memcpy(cmd + 1, name, strnlen(name, sizeof cmd - 1));
  send(scanner, cmd);
}

KALVOR_API void KALVOR_CALL Showhelp(uint32_t scanner) {
  uint8_t cmd[5] = {op(Opcode::ShowHelp)};
  store_le<uint32_t>(cmd + 1, scanner);
  send(scanner, cmd);
}

KALVOR_API void KALVOR_CALL displaywritelpt(uint32_t scanner, uint8_t first, uint16_t second) {
  uint8_t cmd[4] = {op(Opcode::WriteLpt), first};
  store_le<uint16_t>(cmd + 2, second);
  send(scanner, cmd);
}

KALVOR_API void KALVOR_CALL softwareupdate(uint32_t scanner, const char* path) {
  if (!scanner_record(scanner)) return;
  FileReader in(path);
  if (!in.is_open()) return;
  // The length field has 16 bits and the command room for 65,001 bytes:
  // n is the length's low 16 bits, cut to that room.
  uint32_t n = static_cast<uint16_t>(in.length());
  if (n > kUpdateRoom) n = kUpdateRoom;
  uint8_t cmd[3 + kUpdateRoom];
  cmd[0] = op(Opcode::SoftwareUpdate);
  store_le<uint16_t>(cmd + 1, static_cast<uint16_t>(n));
  size_t got = in.read(cmd + 3, n);
  memset(cmd + 3 + got, 0, n - got);  // bytes that could not be read go out as zero
  send(scanner, cmd, 3 + n, nullptr);
}

KALVOR_API void KALVOR_CALL displaycopyfile(uint32_t scanner, const char* path) {
  if (!scanner_record(scanner)) return;
  FileReader in(path);
  if (!in.is_open()) return;

  uint8_t header[263] = {op(Opcode::CopyFile)};
  platform::PathParts parts;
  platform::split_path(path, &parts);
  // File name and extension, at most 255 characters, zero-filled.
  size_t name = strnlen(parts.name, 255);
  memcpy(header + 1, parts.name, name);
  memcpy(header + 1 + name, parts.extension, strnlen(parts.extension, 255 - name));
  const uint32_t size = static_cast<uint32_t>(in.length());
  // Counts have 16 bits: a file of 64 MiB or more sends only the blocks the
  // count announces.
  const uint16_t full_blocks = static_cast<uint16_t>(size / kBlockData);
  const uint32_t remainder = size % kBlockData;
  store_le<uint32_t>(header + 257, size);
  store_le<uint16_t>(header + 261, static_cast<uint16_t>(full_blocks + (remainder ? 1 : 0)));
  send(scanner, header);

  uint8_t block[2 + kBlockData];
  auto send_block = [&](uint32_t count) {
    store_le<uint16_t>(block, static_cast<uint16_t>(count));
    size_t got = in.read(block + 2, count);
    memset(block + 2 + got, 0, kBlockData - got);  // unused and unread bytes go out as zero
    send(scanner, block);
  };
  for (uint32_t b = 0; b < full_blocks; ++b) send_block(kBlockData);
  if (remainder) send_block(remainder);
}
