// The picture file readers and writers, in points per second, each beside
// two floors: moving the same bytes between file and memory, and one
// unbuffered read or write per record.
#include <cstdio>
#include <cstring>
#include <vector>

#include "kalvor/kalvor.h"
#include "support.h"

namespace {

constexpr uint32_t kScanner = 1;
constexpr uint32_t kPointsPerPicture = 1000;
constexpr uint32_t kPointBytes = 11;  // a picture point as the library sends it

// ---- generated files --------------------------------------------------------

struct DataFile {
  std::string path;
  uint64_t pictures = 0;
  uint64_t points() const { return pictures * kPointsPerPicture; }
  // Bytes a reader sends: one picture command per picture.
  uint64_t sent_bytes() const { return pictures * (5 + kPointBytes * kPointsPerPicture); }
};

// Little- and big-endian writers into a growing buffer.
struct Bytes {
  std::vector<uint8_t> data;
  void u8(uint32_t v) { data.push_back(static_cast<uint8_t>(v)); }
  void le16(uint32_t v) { u8(v), u8(v >> 8); }
  void be16(uint32_t v) { u8(v >> 8), u8(v); }
  void zeros(size_t n) { data.insert(data.end(), n, 0); }
  void text(const char* s, size_t n) { data.insert(data.end(), s, s + n); }
};

// A varied point: position, blanking, colour index and colour from a simple
// generator, so that no reader sees the same record twice in a row.
struct Point {
  uint16_t x, y, z;
  uint8_t blank, colour, r, g, b;
};
Point point(uint64_t i) {
  uint64_t h = (i + 1) * 0x9E3779B97F4A7C15ull;
  h ^= h >> 29;
  return Point{static_cast<uint16_t>(h), static_cast<uint16_t>(h >> 16), static_cast<uint16_t>(h >> 32),
               static_cast<uint8_t>((h >> 48) % 8 == 0), static_cast<uint8_t>(h >> 51),
               static_cast<uint8_t>(h >> 40), static_cast<uint8_t>(h >> 44), static_cast<uint8_t>(h >> 56)};
}

// Bytes of one picture point as the library stores and sends it.
void picture_point(Bytes& out, const Point& p) {
  out.le16(p.x), out.le16(p.y), out.le16(p.z);
  out.u8((p.colour & 63) | (p.blank << 6) | 0x80);
  out.u8(0);
  out.u8(p.r), out.u8(p.g), out.u8(p.b);
}

void save(const std::string& path, const Bytes& bytes) {
  std::FILE* f = std::fopen(path.c_str(), "wb");
  if (!f) return;
  std::fwrite(bytes.data.data(), 1, bytes.data.size(), f);
  std::fclose(f);
}

// Generates a file of about data_bytes() with pictures of 1000 points:
// `header` writes what comes before the pictures, `picture` one picture
// (given its index and first point), `trailer` what follows them.
template <typename Header, typename Picture, typename Trailer>
DataFile generate(const char* name, uint32_t bytes_per_point, Header header, Picture picture, Trailer trailer) {
  DataFile file{kb::temp_file(name), kb::data_bytes() / (bytes_per_point * kPointsPerPicture)};
  if (file.pictures > 30000) file.pictures = 30000;  // picture numbers stay in range
  Bytes out;
  out.data.reserve(file.pictures * (kPointsPerPicture * bytes_per_point + 32) + 64);
  header(out, file.pictures);
  for (uint64_t i = 0; i < file.pictures; ++i) picture(out, i, i * kPointsPerPicture);
  trailer(out, file.pictures);
  save(file.path, out);
  return file;
}

void ilda_header(Bytes& out, uint32_t format, uint32_t records, uint32_t number, uint32_t total) {
  out.text("ILDA", 4), out.zeros(3), out.u8(format);
  out.text("BENCH   kalvor  ", 16);
  out.be16(records), out.be16(number), out.be16(total), out.u8(0), out.u8(0);
}

const DataFile& ilda(uint32_t format) {
  auto make = [](uint32_t format) {
    auto frame = [format](Bytes& out, uint64_t i, uint64_t first) {
      ilda_header(out, format, kPointsPerPicture, static_cast<uint32_t>(i), 0);
      for (uint64_t k = first; k < first + kPointsPerPicture; ++k) {
        Point p = point(k);
        out.be16(p.x), out.be16(p.y);
        if (format == 0) out.be16(p.z), out.u8(p.blank << 6), out.u8(p.colour);
        else out.u8(p.blank << 6), out.u8(p.b), out.u8(p.g), out.u8(p.r);
      }
    };
    auto closing = [format](Bytes& out, uint64_t) { ilda_header(out, format, 0, 0, 0); };
    return generate(format == 0 ? "frames-0.ild" : "frames-5.ild", 8, [](Bytes&, uint64_t) {}, frame, closing);
  };
  static const DataFile format0 = make(0), format5 = make(5);
  return format == 0 ? format0 : format5;
}

const DataFile& las() {
  static const DataFile file = generate(
      "frames.las", kPointBytes, [](Bytes& out, uint64_t pictures) { out.le16(0), out.le16(pictures - 1); },
      [](Bytes& out, uint64_t, uint64_t first) {
        out.le16(0), out.le16(kPointsPerPicture - 1), out.zeros(4);
        for (uint64_t k = first; k < first + kPointsPerPicture; ++k) {
          Point p = point(k);
          out.u8(0), out.le16(p.x & 0xFFF), out.le16(p.y & 0xFFF), out.u8(p.blank), out.u8(0), out.u8(p.colour);
          out.zeros(3);
        }
        out.zeros(2);
      },
      [](Bytes&, uint64_t) {});
  return file;
}

const DataFile& flx() {
  static const DataFile file = generate(
      "frames.flx", kPointBytes, [](Bytes& out, uint64_t pictures) { out.le16(pictures), out.zeros(9); },
      [](Bytes& out, uint64_t, uint64_t first) {
        out.le16(kPointsPerPicture), out.zeros(9);
        for (uint64_t k = first; k < first + kPointsPerPicture; ++k) {
          Point p = point(k);
          out.le16(p.x), out.le16(p.y), out.zeros(5), out.u8(p.colour % 3), out.u8(0);
        }
      },
      [](Bytes&, uint64_t) {});
  return file;
}

const DataFile& catalogue() {
  static const DataFile file = generate(
      "pictures.cat", kPointBytes, [](Bytes&, uint64_t) {},
      [](Bytes& out, uint64_t, uint64_t first) {
        out.u8(1), out.le16(kPointsPerPicture);
        for (uint64_t k = first; k < first + kPointsPerPicture; ++k) picture_point(out, point(k));
      },
      [](Bytes&, uint64_t) {});
  return file;
}

const DataFile& show() {
  static const DataFile file = generate(
      "pictures.lds", kPointBytes, [](Bytes& out, uint64_t pictures) { out.zeros(4), out.le16(pictures); },
      [](Bytes& out, uint64_t i, uint64_t first) {
        out.le16(i), out.le16(kPointsPerPicture);
        for (uint64_t k = first; k < first + kPointsPerPicture; ++k) picture_point(out, point(k));
      },
      [](Bytes&, uint64_t) {});
  return file;
}

// ---- readers -----------------------------------------------------------------

// Runs a reader over a file and checks that it sent every picture: `extra`
// commands and bytes besides the pictures (the closing ILDA header, the
// clear command).
template <typename Read>
void reader(benchmark::State& state, const DataFile& file, uint64_t extra_commands, uint64_t extra_bytes,
            Read read) {
  if (!kb::start(state)) return;
  for (auto _ : state) read(file.path.c_str());
  kb::NullTransport& t = kb::null_transport();
  uint64_t n = state.iterations();
  if (t.commands() != n * (file.pictures + extra_commands) || t.bytes() != n * (file.sent_bytes() + extra_bytes))
    state.SkipWithError("the reader did not send every picture");
  state.SetItemsProcessed(static_cast<int64_t>(n * file.points()));
}

void ilda_import(benchmark::State& state, uint32_t format) {
  reader(state, ilda(format), 1, 5, [](const char* path) { displayimportilda(kScanner, path, 1); });
}
void ilda_import_index(benchmark::State& state, uint32_t format) {
  reader(state, ilda(format), 1, 5, [](const char* path) { displayimportildafromindex(kScanner, 0, path, 1); });
}
void las_import(benchmark::State& state) {
  reader(state, las(), 0, 0, [](const char* path) { displayimportlas(kScanner, path, 1); });
}
void flx_import(benchmark::State& state) {
  reader(state, flx(), 0, 0, [](const char* path) { displayimportflx(kScanner, path, 1); });
}
void cat_load(benchmark::State& state) {
  reader(state, catalogue(), 1, 1, [](const char* path) { loadCAT(kScanner, path); });
}
void lds_load(benchmark::State& state) {
  reader(state, show(), 1, 1, [](const char* path) { loadLDS(kScanner, path); });
}

BENCHMARK_CAPTURE(ilda_import, format0, 0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ilda_import, format5, 5)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ilda_import_index, format0, 0)->Unit(benchmark::kMillisecond);
BENCHMARK(las_import)->Unit(benchmark::kMillisecond);
BENCHMARK(flx_import)->Unit(benchmark::kMillisecond);
BENCHMARK(cat_load)->Unit(benchmark::kMillisecond);
BENCHMARK(lds_load)->Unit(benchmark::kMillisecond);

// Reader floors, per file: read it whole, and one read per record.
void read_floor(benchmark::State& state, const DataFile& (*file)()) {
  kb::floor_read(state, file().path, file().points());
}
void read_per_record(benchmark::State& state, const DataFile& (*file)(), uint32_t record_size) {
  kb::floor_read_per_record(state, file().path, record_size);
}
const DataFile& ilda0() { return ilda(0); }
const DataFile& ilda5() { return ilda(5); }

BENCHMARK_CAPTURE(read_floor, ilda0, ilda0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(read_floor, ilda5, ilda5)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(read_floor, las, las)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(read_floor, flx, flx)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(read_floor, cat, catalogue)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(read_floor, lds, show)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(read_per_record, ilda0, ilda0, 8)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(read_per_record, ilda5, ilda5, 8)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(read_per_record, las, las, kPointBytes)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(read_per_record, flx, flx, kPointBytes)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(read_per_record, cat, catalogue, kPointBytes)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(read_per_record, lds, show, kPointBytes)->Unit(benchmark::kMillisecond);

// ---- writers -----------------------------------------------------------------

// Pictures 1..n of 1000 points in the null transport's picture memory, about
// data_bytes() of points in all.
uint64_t fill_picture_memory() {
  kb::NullTransport& t = kb::null_transport();
  uint64_t pictures = kb::data_bytes() / (kPointBytes * kPointsPerPicture);
  if (pictures > 5000) pictures = 5000;  // what the transport's memory holds
  t.keep_pictures(1);
  Bytes command;
  for (uint64_t i = 1; i <= pictures; ++i) {
    command.data.clear();
    command.u8(0x00), command.le16(i), command.le16(kPointsPerPicture);
    for (uint64_t k = 0; k < kPointsPerPicture; ++k) picture_point(command, point(i * kPointsPerPicture + k));
    t.command(kScanner, command.data.data(), static_cast<uint32_t>(command.data.size()), nullptr);
  }
  return pictures;
}

// Runs a writer and checks the size of what it wrote; `expected` maps the
// number of pictures to the file's size.
template <typename Write, typename Size>
void writer(benchmark::State& state, const char* name, Write write, Size expected) {
  if (!kb::start(state)) return;
  uint64_t pictures = fill_picture_memory();
  std::string path = kb::temp_file(name);
  for (auto _ : state) write(path.c_str(), pictures);
  if (kb::file_size(path) != expected(pictures)) state.SkipWithError("the writer wrote an unexpected size");
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * pictures * kPointsPerPicture));
  state.counters["bytes"] = static_cast<double>(kb::file_size(path));
}

// File sizes: a frame header and 8 bytes a point, then the closing header;
// a catalogue record per picture 1..n+1 (the last one empty, as the scanner
// reports n+1 pictures); a show record per picture 0..n (picture 0 empty).
uint64_t ilda_size(uint64_t n) { return n * (32 + 8 * kPointsPerPicture) + 32; }
uint64_t cat_size(uint64_t n) { return n * (3 + kPointBytes * kPointsPerPicture) + 3; }
uint64_t lds_size(uint64_t n) { return 6 + n * (4 + kPointBytes * kPointsPerPicture) + 4; }

void ilda_export(benchmark::State& state) {
  writer(
      state, "export.ild",
      [](const char* path, uint64_t n) { displayexportilda(kScanner, path, 1, static_cast<uint16_t>(n)); },
      ilda_size);
}
void cat_save(benchmark::State& state) {
  writer(state, "saved.cat", [](const char* path, uint64_t) { saveCAT(kScanner, path); }, cat_size);
}
void lds_save(benchmark::State& state) {
  writer(state, "saved.lds", [](const char* path, uint64_t) { saveLDS(kScanner, path); }, lds_size);
}
BENCHMARK(ilda_export)->Unit(benchmark::kMillisecond);
BENCHMARK(cat_save)->Unit(benchmark::kMillisecond);
BENCHMARK(lds_save)->Unit(benchmark::kMillisecond);

// Writer floors: the same bytes in 64 KiB blocks, and one write per record.
void write_floor(benchmark::State& state, uint64_t (*size)(uint64_t)) {
  uint64_t pictures = kb::data_bytes() / (kPointBytes * kPointsPerPicture);
  if (pictures > 5000) pictures = 5000;
  kb::floor_write(state, size(pictures), pictures * kPointsPerPicture);
}
BENCHMARK_CAPTURE(write_floor, ilda, ilda_size)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(write_floor, cat, cat_size)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(write_floor, lds, lds_size)->Unit(benchmark::kMillisecond);
void write_per_record(benchmark::State& state, uint32_t record_size) {
  kb::floor_write_per_record(state, record_size);
}
BENCHMARK_CAPTURE(write_per_record, ilda, 8)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(write_per_record, points, kPointBytes)->Unit(benchmark::kMillisecond);

// ---- the table ------------------------------------------------------------------

void rows(const char* label, const char* name, const char* floor, const char* per_record) {
  kb::compare(label, name, floor, kb::Goal::within, 3);
  kb::compare(label, name, per_record, kb::Goal::faster, 20);
}
const bool file_rows = (rows("ILDA import, format 0", "ilda_import/format0", "read_floor/ilda0",
                             "read_per_record/ilda0"),
                        rows("ILDA import, format 5", "ilda_import/format5", "read_floor/ilda5",
                             "read_per_record/ilda5"),
                        rows("ILDA import with folding, format 0", "ilda_import_index/format0",
                             "read_floor/ilda0", "read_per_record/ilda0"),
                        rows("LAS import", "las_import", "read_floor/las", "read_per_record/las"),
                        rows("FLX import", "flx_import", "read_floor/flx", "read_per_record/flx"),
                        rows("loadCAT", "cat_load", "read_floor/cat", "read_per_record/cat"),
                        rows("loadLDS", "lds_load", "read_floor/lds", "read_per_record/lds"),
                        rows("ILDA export", "ilda_export", "write_floor/ilda", "write_per_record/ilda"),
                        rows("saveCAT", "cat_save", "write_floor/cat", "write_per_record/points"),
                        rows("saveLDS", "lds_save", "write_floor/lds", "write_per_record/points"),
                        true);

}  // namespace
