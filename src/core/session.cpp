// A scanner's session and output: beginning and ending its use, switching its
// output, its rates, the scan and global parameters (passed through for the
// scanner to interpret), the version, the time and the wait value.
#include <cstring>

#include "colour/colour_buffers.h"
#include "core/clock.h"
#include "core/library.h"
#include "core/short_commands.h"
#include "kalvor/kalvor.h"

using namespace kalvor;

namespace {

void send_frequency(uint32_t scanner, uint32_t points_per_second) {
  uint8_t cmd[5] = {op(Opcode::PointRate)};
  store_le<uint32_t>(cmd + 1, points_per_second);
  send(scanner, cmd);
}

// Sends the output signal (0 switches the output off) and records the switch.
void switch_output(uint32_t scanner, uint8_t signal, uint8_t output) {
  if (uint8_t* rec = scanner_record(scanner)) {
    send_byte(scanner, Opcode::Signal, signal);
    store(rec, record::output, output);
  }
}

uint8_t header_byte(uint32_t scanner, Field<uint8_t> field) {
  const uint8_t* rec = scanner_record(scanner);
  return rec ? load(rec, field) : 0;
}

// Scan parameters 5, 6, 9 and 10 never go out as 0.
uint16_t at_least_one(uint16_t v) { return v ? v : 1; }

}  // namespace

KALVOR_API void KALVOR_CALL displaybeginsession(uint32_t scanner) {
  uint8_t* rec = scanner_record(scanner);
  if (!rec) return;
  getscannerprofile(scanner);
  displaygetversion(scanner);
  send_byte(scanner, Opcode::Signal, load(rec, record::signal));
  for (uint8_t buffer = 0; buffer < colour_buffer::count; ++buffer) displaydefaultcolorbuffer(scanner, buffer);
}

KALVOR_API void KALVOR_CALL displayendsession(uint32_t scanner) { send_opcode(scanner, Opcode::EndSession); }

KALVOR_API void KALVOR_CALL displaysignal(uint32_t scanner, uint8_t signal) {
  send_and_store(scanner, Opcode::Signal, record::signal, signal);
}

KALVOR_API uint8_t KALVOR_CALL displaygetsignal(uint32_t scanner) { return header_byte(scanner, record::signal); }

KALVOR_API void KALVOR_CALL displayoutput(uint32_t scanner, uint8_t on) {
  // Only 1 switches the output on; every value is stored as given.
  switch_output(scanner, on == 1 ? header_byte(scanner, record::signal) : 0, on);
}

KALVOR_API uint8_t KALVOR_CALL displaygetoutput(uint32_t scanner) { return header_byte(scanner, record::output); }

KALVOR_API void KALVOR_CALL displaystopoutput(void) {
  for (uint32_t s = 1; s <= kMaxScanner; ++s) switch_output(s, 0, 0);
}

KALVOR_API void KALVOR_CALL displayenableoutput(void) {
  for (uint32_t s = 1; s <= kMaxScanner; ++s) switch_output(s, header_byte(s, record::signal), 1);
}

KALVOR_API void KALVOR_CALL displayshutter(uint32_t scanner, uint8_t value) {
  send_byte(scanner, Opcode::Shutter, value);
}

KALVOR_API void KALVOR_CALL displayfreq(uint32_t scanner, uint32_t pointsPerSecond) {
  send_frequency(scanner, pointsPerSecond);
}

KALVOR_API void KALVOR_CALL displaypointrate(uint32_t scanner, uint8_t thousands) {
  send_frequency(scanner, thousands * 1000u);
}

KALVOR_API void KALVOR_CALL displaypicpersec(uint32_t scanner, double picturesPerSecond) {
  uint8_t cmd[9] = {op(Opcode::PicturesPerSecond)};
  store_le<double>(cmd + 1, picturesPerSecond);
  send(scanner, cmd);
}

KALVOR_API void KALVOR_CALL displayscanpar(uint32_t scanner, uint8_t p1, uint8_t p2, uint8_t p3, uint8_t p4,
                                           uint16_t p5, uint16_t p6, uint8_t p7, uint8_t p8, uint16_t p9,
                                           uint16_t p10, uint16_t p11, uint16_t p12) {
  uint8_t cmd[19] = {op(Opcode::ScanParameters), p1, p2, p3, p4};
  store_le<uint16_t>(cmd + 5, at_least_one(p5));
  store_le<uint16_t>(cmd + 7, at_least_one(p6));
  cmd[9] = p7;
  cmd[10] = p8;
  store_le<uint16_t>(cmd + 11, at_least_one(p9));
  store_le<uint16_t>(cmd + 13, at_least_one(p10));
  store_le<uint16_t>(cmd + 15, p11);
  store_le<uint16_t>(cmd + 17, p12);
  send(scanner, cmd);
}

KALVOR_API void KALVOR_CALL displayglobal(
    uint32_t scanner, double v1, double v2, double v3, double v4, double v5, double v6, double v7, double v8,
    double v9, double v10, double v11, double v12, double v13, double v14, double v15, double v16, double v17,
    double v18, double v19, double v20, double v21, double v22, double v23, double v24, double v25, double v26,
    double v27, double v28, double v29, double v30, double v31, double v32, double v33, double v34, double v35,
    double v36, double v37, double v38, uint8_t v39, uint8_t v40, uint8_t v41, uint8_t v42, uint8_t v43,
    double v44, double v45, double v46, double v47, double v48, double v49, double v50, double v51, double v52,
    double v53, uint16_t v54, const uint8_t* v55) {
  const double first[38] = {v1,  v2,  v3,  v4,  v5,  v6,  v7,  v8,  v9,  v10, v11, v12, v13,
                            v14, v15, v16, v17, v18, v19, v20, v21, v22, v23, v24, v25, v26,
                            v27, v28, v29, v30, v31, v32, v33, v34, v35, v36, v37, v38};
  const uint8_t bytes[5] = {v39, v40, v41, v42, v43};
  const double second[10] = {v44, v45, v46, v47, v48, v49, v50, v51, v52, v53};

  uint8_t cmd[1 + sizeof first + sizeof bytes + sizeof second + 2 + 16] = {op(Opcode::GlobalParameters)};
  static_assert(sizeof cmd == 408);
  uint8_t* at = cmd + 1;
  auto put_double = [&at](double v) {
    store_le<double>(at, v);
    at += 8;
  };
  for (double v : first) put_double(v);
  memcpy(at, bytes, sizeof bytes);
  at += sizeof bytes;
  for (double v : second) put_double(v);
  store_le<uint16_t>(at, v54);
  if (v55) memcpy(at + 2, v55, 16);  // a null pointer sends 16 zero bytes
  send(scanner, cmd);
}

KALVOR_API void KALVOR_CALL displayenablewait(uint32_t scanner) { send_opcode(scanner, Opcode::EnableWait); }

KALVOR_API uint32_t KALVOR_CALL DisplayGetTimeToWait(uint32_t scanner) {
  const uint8_t* rec = scanner_record(scanner);
  return rec ? load(rec + record::preview.offset, preview::waitValue) : 0;
}

KALVOR_API uint32_t KALVOR_CALL displaygettime(void) { return clock_ms(); }

KALVOR_API uint32_t KALVOR_CALL displaygetversion(uint32_t scanner) {
  uint8_t cmd[1] = {op(Opcode::Version)};
  uint8_t version[4] = {0, 0, 0, 0};  // stays 0 when nothing answers
  send(scanner, cmd, version);
  return load_le<uint32_t>(version);
}

KALVOR_API void KALVOR_CALL displayreset(uint32_t scanner, uint8_t buffer) {
  uint8_t* rec = scanner_record(scanner);
  if (!colour_buffer_at(rec, buffer)) return;
  // The Vistrel buffer keeps its count.
  store<uint16_t>(rec + record::preview.offset, preview::pointCount, 0);
  store<uint16_t>(rec + record::fullPreview.offset, preview::pointCount, 0);
  send_palette(scanner, buffer, Opcode::ResetPalette);
}

KALVOR_API void KALVOR_CALL displaybeamparking(uint32_t scanner, uint8_t value) {
  send_byte(scanner, Opcode::BeamParking, value);
}

KALVOR_API void KALVOR_CALL displaytostartpoint(uint32_t scanner, uint8_t value) {
  send_byte(scanner, Opcode::ToStartPoint, value > 50 ? 50 : value);
}
