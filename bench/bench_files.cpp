// The picture file readers and writers, in points per second, each beside
// two floors: moving the same bytes between file and memory, and one
// unbuffered read or write per record. Every file benchmark runs once per
// data size, so that one run shows whether a cost depends on the file's size.
#include <cstdio>
#include <cstring>
#include <map>
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

// Generates a file of about `mb` megabytes with pictures of 1000 points:
// `header` writes what comes before the pictures, `picture` one picture
// (given its index and first point), `trailer` what follows them.
template <typename Header, typename Picture, typename Trailer>
DataFile generate(const std::string& name, uint32_t mb, uint32_t bytes_per_point, Header header, Picture picture,
                  Trailer trailer) {
  DataFile file{kb::temp_file(std::to_string(mb) + "MB-" + name),
                kb::megabytes(mb) / (bytes_per_point * kPointsPerPicture)};
  if (file.pictures > 30000) file.pictures = 30000;  // picture numbers stay in range
  Bytes out;
  out.data.reserve(file.pictures * (kPointsPerPicture * bytes_per_point + 32) + 64);
  header(out, file.pictures);
  for (uint64_t i = 0; i < file.pictures; ++i) picture(out, i, i * kPointsPerPicture);
  trailer(out, file.pictures);
  save(file.path, out);
  return file;
}

// One generated file per size, made on first use.
template <typename Make>
const DataFile& cached(std::map<uint32_t, DataFile>& files, uint32_t mb, Make make) {
  auto it = files.find(mb);
  if (it == files.end()) it = files.emplace(mb, make(mb)).first;
  return it->second;
}

void ilda_header(Bytes& out, uint32_t format, uint32_t records, uint32_t number, uint32_t total) {
  out.text("ILDA", 4), out.zeros(3), out.u8(format);
  out.text("BENCH   kalvor  ", 16);
  out.be16(records), out.be16(number), out.be16(total), out.u8(0), out.u8(0);
}

DataFile make_ilda(uint32_t format, uint32_t mb) {
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
  return generate(format == 0 ? "frames-0.ild" : "frames-5.ild", mb, 8, [](Bytes&, uint64_t) {}, frame, closing);
}
const DataFile& ilda0(uint32_t mb) {
  static std::map<uint32_t, DataFile> files;
  return cached(files, mb, [](uint32_t mb) { return make_ilda(0, mb); });
}
const DataFile& ilda5(uint32_t mb) {
  static std::map<uint32_t, DataFile> files;
  return cached(files, mb, [](uint32_t mb) { return make_ilda(5, mb); });
}

const DataFile& las(uint32_t mb) {
  static std::map<uint32_t, DataFile> files;
  return cached(files, mb, [](uint32_t mb) {
    return generate(
        "frames.las", mb, kPointBytes, [](Bytes& out, uint64_t pictures) { out.le16(0), out.le16(pictures - 1); },
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
  });
}

const DataFile& flx(uint32_t mb) {
  static std::map<uint32_t, DataFile> files;
  return cached(files, mb, [](uint32_t mb) {
    return generate(
        "frames.flx", mb, kPointBytes, [](Bytes& out, uint64_t pictures) { out.le16(pictures), out.zeros(9); },
        [](Bytes& out, uint64_t, uint64_t first) {
          out.le16(kPointsPerPicture), out.zeros(9);
          for (uint64_t k = first; k < first + kPointsPerPicture; ++k) {
            Point p = point(k);
            out.le16(p.x), out.le16(p.y), out.zeros(5), out.u8(p.colour % 3), out.u8(0);
          }
        },
        [](Bytes&, uint64_t) {});
  });
}

const DataFile& catalogue(uint32_t mb) {
  static std::map<uint32_t, DataFile> files;
  return cached(files, mb, [](uint32_t mb) {
    return generate(
        "pictures.cat", mb, kPointBytes, [](Bytes&, uint64_t) {},
        [](Bytes& out, uint64_t, uint64_t first) {
          out.u8(1), out.le16(kPointsPerPicture);
          for (uint64_t k = first; k < first + kPointsPerPicture; ++k) picture_point(out, point(k));
        },
        [](Bytes&, uint64_t) {});
  });
}

const DataFile& show(uint32_t mb) {
  static std::map<uint32_t, DataFile> files;
  return cached(files, mb, [](uint32_t mb) {
    return generate(
        "pictures.lds", mb, kPointBytes, [](Bytes& out, uint64_t pictures) { out.zeros(4), out.le16(pictures); },
        [](Bytes& out, uint64_t i, uint64_t first) {
          out.le16(i), out.le16(kPointsPerPicture);
          for (uint64_t k = first; k < first + kPointsPerPicture; ++k) picture_point(out, point(k));
        },
        [](Bytes&, uint64_t) {});
  });
}

// A picture file holds one picture, so it has one size: 8192 points (90 KB
// in the current layout, 64 KB in the older one) behind the 14-byte header.
constexpr uint32_t kPicPoints = 8192;
DataFile make_pic(bool older) {
  Bytes out;
  out.be16(older ? 0 : 1024), out.zeros(4), out.be16(kPicPoints), out.be16(1), out.zeros(4);
  for (uint64_t k = 0; k < kPicPoints; ++k) {
    Point p = point(k);
    if (!older) picture_point(out, p);
    else out.u8(p.blank), out.u8(p.colour), out.be16(p.x), out.be16(p.y), out.be16(p.z);
  }
  DataFile file{kb::temp_file(older ? "older.pic" : "current.pic"), 1};
  save(file.path, out);
  return file;
}

// ---- readers -----------------------------------------------------------------

// Runs a reader over a file and checks that it sent every picture: `extra`
// commands and bytes besides the pictures (the closing ILDA header, the
// clear command).
void reader(benchmark::State& state, const DataFile& file, uint64_t extra_commands, uint64_t extra_bytes,
            void (*read)(const char*)) {
  if (!kb::start(state)) return;
  for (auto _ : state) read(file.path.c_str());
  kb::NullTransport& t = kb::null_transport();
  uint64_t n = state.iterations();
  if (t.commands() != n * (file.pictures + extra_commands) || t.bytes() != n * (file.sent_bytes() + extra_bytes))
    state.SkipWithError("the reader did not send every picture");
  state.SetItemsProcessed(static_cast<int64_t>(n * file.points()));
}

// The files a reader can read, each with its floors.
struct FileKind {
  const char* name;
  const DataFile& (*file)(uint32_t mb);
  uint32_t record_size;  // of the one-call-per-record floor
};
constexpr FileKind kIlda0{"ilda0", ilda0, 8}, kIlda5{"ilda5", ilda5, 8}, kLas{"las", las, kPointBytes},
    kFlx{"flx", flx, kPointBytes}, kCatalogue{"cat", catalogue, kPointBytes}, kShow{"lds", show, kPointBytes};
constexpr const FileKind* kFileKinds[] = {&kIlda0, &kIlda5, &kLas, &kFlx, &kCatalogue, &kShow};

// A reader: its file, the commands and bytes it sends besides the pictures,
// and the call.
struct ReaderCase {
  const char* label;
  const char* name;
  const FileKind& kind;
  uint32_t extra_commands, extra_bytes;
  void (*read)(const char* path);
};
const ReaderCase kReaders[] = {
    {"ILDA import, format 0", "ilda_import/format0", kIlda0, 1, 5,
     [](const char* p) { displayimportilda(kScanner, p, 1); }},
    {"ILDA import, format 5", "ilda_import/format5", kIlda5, 1, 5,
     [](const char* p) { displayimportilda(kScanner, p, 1); }},
    {"ILDA import with folding, format 0", "ilda_import_index/format0", kIlda0, 1, 5,
     [](const char* p) { displayimportildafromindex(kScanner, 0, p, 1); }},
    {"ILDA import from an index, format 5", "ilda_import_index/format5", kIlda5, 1, 5,
     [](const char* p) { displayimportildafromindex(kScanner, 0, p, 1); }},
    {"LAS import", "las_import", kLas, 0, 0, [](const char* p) { displayimportlas(kScanner, p, 1); }},
    {"FLX import", "flx_import", kFlx, 0, 0, [](const char* p) { displayimportflx(kScanner, p, 1); }},
    {"loadCAT", "cat_load", kCatalogue, 1, 1, [](const char* p) { loadCAT(kScanner, p); }},
    {"loadLDS", "lds_load", kShow, 1, 1, [](const char* p) { loadLDS(kScanner, p); }},
};

std::string sized(const std::string& name, uint32_t mb) { return name + "/" + std::to_string(mb) + "MB"; }

void register_readers(uint32_t mb) {
  for (const FileKind* kind : kFileKinds)
    benchmark::RegisterBenchmark(sized(std::string("read_floor/") + kind->name, mb).c_str(),
                                 [kind, mb](benchmark::State& state) {
                                   const DataFile& file = kind->file(mb);
                                   kb::floor_stream(state, file.path, file.points());
                                 })
        ->Unit(benchmark::kMillisecond);
  for (const ReaderCase& r : kReaders) {
    std::string name = sized(r.name, mb);
    benchmark::RegisterBenchmark(name.c_str(),
                                 [&r, mb](benchmark::State& state) {
                                   reader(state, r.kind.file(mb), r.extra_commands, r.extra_bytes, r.read);
                                 })
        ->Unit(benchmark::kMillisecond);
    std::string label = std::string(r.label) + ", " + std::to_string(mb) + " MB";
    kb::compare(label, name, sized(std::string("read_floor/") + r.kind.name, mb), kb::Goal::within, 2);
    kb::compare(label, name, std::string("read_per_record/") + r.kind.name, kb::Goal::faster, 20);
  }
}

// One call per record costs the same at any size: measured once, on the
// first 8 MB of the smallest file.
void register_per_record_floors(uint32_t mb) {
  for (const FileKind* kind : kFileKinds)
    benchmark::RegisterBenchmark((std::string("read_per_record/") + kind->name).c_str(),
                                 [kind, mb](benchmark::State& state) {
                                   kb::floor_read_per_record(state, kind->file(mb).path, kind->record_size);
                                 })
        ->Unit(benchmark::kMillisecond);
}

// Picture files, in both layouts, beside the streaming floor of the same file.
void picture_file(benchmark::State& state, bool older) {
  static const DataFile current = make_pic(false), old = make_pic(true);
  const DataFile& file = older ? old : current;
  if (!kb::start(state)) return;
  for (auto _ : state) displayloadpic(kScanner, file.path.c_str(), 1);
  kb::NullTransport& t = kb::null_transport();
  if (t.bytes() != static_cast<uint64_t>(state.iterations()) * (5 + kPointBytes * kPicPoints))
    state.SkipWithError("the reader did not send the picture");
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * kPicPoints));
}
void picture_file_floor(benchmark::State& state, bool older) {
  static const DataFile current = make_pic(false), old = make_pic(true);
  kb::floor_stream(state, (older ? old : current).path, kPicPoints);
}
BENCHMARK_CAPTURE(picture_file, current, false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(picture_file, older, true)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(picture_file_floor, current, false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(picture_file_floor, older, true)->Unit(benchmark::kMicrosecond);
const bool picture_rows = (kb::compare("displayloadpic, 8192 points", "picture_file/current",
                                       "picture_file_floor/current", kb::Goal::within, 2),
                           kb::compare("displayloadpic, older layout, 8192 points", "picture_file/older",
                                       "picture_file_floor/older", kb::Goal::within, 2),
                           true);

// ---- writers -----------------------------------------------------------------

// Pictures 1..n of 1000 points in the null transport's picture memory, about
// `mb` megabytes of points in all.
uint64_t picture_count(uint32_t mb) {
  uint64_t pictures = kb::megabytes(mb) / (kPointBytes * kPointsPerPicture);
  return pictures > 5000 ? 5000 : pictures;  // what the transport's memory holds
}
void fill_picture_memory(uint64_t pictures) {
  kb::NullTransport& t = kb::null_transport();
  t.keep_pictures(1);
  Bytes command;
  for (uint64_t i = 1; i <= pictures; ++i) {
    command.data.clear();
    command.u8(0x00), command.le16(i), command.le16(kPointsPerPicture);
    for (uint64_t k = 0; k < kPointsPerPicture; ++k) picture_point(command, point(i * kPointsPerPicture + k));
    t.command(kScanner, command.data.data(), static_cast<uint32_t>(command.data.size()), nullptr);
  }
}

// File sizes: a frame header and 8 bytes a point, then the closing header;
// a catalogue record per picture 1..n+1 (the last one empty, as the scanner
// reports n+1 pictures); a show record per picture 0..n (picture 0 empty).
uint64_t ilda_size(uint64_t n) { return n * (32 + 8 * kPointsPerPicture) + 32; }
uint64_t cat_size(uint64_t n) { return n * (3 + kPointBytes * kPointsPerPicture) + 3; }
uint64_t lds_size(uint64_t n) { return 6 + n * (4 + kPointBytes * kPointsPerPicture) + 4; }

// A writer: the call (given the path and the number of pictures), the size
// of the file it must write, and the record size of its per-record floor.
struct WriterCase {
  const char* label;
  const char* name;
  void (*write)(const char* path, uint64_t pictures);
  uint64_t (*size)(uint64_t pictures);
  const char* per_record;
};
const WriterCase kWriters[] = {
    {"ILDA export", "ilda_export",
     [](const char* path, uint64_t n) { displayexportilda(kScanner, path, 1, static_cast<uint16_t>(n)); }, ilda_size,
     "write_per_record/ilda"},
    {"saveCAT", "cat_save", [](const char* path, uint64_t) { saveCAT(kScanner, path); }, cat_size,
     "write_per_record/points"},
    {"saveLDS", "lds_save", [](const char* path, uint64_t) { saveLDS(kScanner, path); }, lds_size,
     "write_per_record/points"},
};

// Runs a writer and checks the size of what it wrote.
void writer(benchmark::State& state, const WriterCase& w, uint32_t mb) {
  if (!kb::start(state)) return;
  uint64_t pictures = picture_count(mb);
  fill_picture_memory(pictures);
  std::string path = kb::temp_file(std::string(w.name) + ".out");
  for (auto _ : state) w.write(path.c_str(), pictures);
  if (kb::file_size(path) != w.size(pictures)) state.SkipWithError("the writer wrote an unexpected size");
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * pictures * kPointsPerPicture));
  state.counters["bytes"] = static_cast<double>(kb::file_size(path));
}

// Writer floors: the same bytes in 64 KiB blocks, per size.
void register_writers(uint32_t mb) {
  for (const WriterCase& w : kWriters) {
    std::string name = sized(w.name, mb), floor = sized(std::string("write_floor/") + w.name, mb);
    benchmark::RegisterBenchmark(name.c_str(), [&w, mb](benchmark::State& state) { writer(state, w, mb); })
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(floor.c_str(),
                                 [&w, mb](benchmark::State& state) {
                                   uint64_t pictures = picture_count(mb);
                                   kb::floor_write(state, w.size(pictures), pictures * kPointsPerPicture);
                                 })
        ->Unit(benchmark::kMillisecond);
    std::string label = std::string(w.label) + ", " + std::to_string(mb) + " MB";
    kb::compare(label, name, floor, kb::Goal::within, 3);
    kb::compare(label, name, w.per_record, kb::Goal::faster, 20);
  }
}

void write_per_record(benchmark::State& state, uint32_t record_size) {
  kb::floor_write_per_record(state, record_size);
}
BENCHMARK_CAPTURE(write_per_record, ilda, 8)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(write_per_record, points, kPointBytes)->Unit(benchmark::kMillisecond);

}  // namespace

namespace kb {

void register_file_benchmarks() {
  std::vector<uint32_t> sizes = data_sizes();
  register_per_record_floors(sizes.front());
  for (uint32_t mb : sizes) register_readers(mb);
  for (uint32_t mb : sizes) register_writers(mb);
}

}  // namespace kb
