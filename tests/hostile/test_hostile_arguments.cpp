// Every export, called with hostile arguments: scanner numbers 0, 21 and
// 0xFFFFFFFF; every integer at and past the ends of the areas it may index
// (tracks 32 and 65535, slots 8 and 255, entries 64, 512, 8192, 16000, ...);
// NaN, infinities and +-1e300 for every double; empty, directory, missing and
// over-long paths; hostile contents in the tables a host passes in. Nothing
// may crash (this runs under AddressSanitizer and UndefinedBehaviorSanitizer
// in CI), and no record but the addressed one may change: every scanner but
// the addressed one is observed through the exports before and after.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <memory>
#include <set>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "every_export.h"
#include "support/harness.h"

using namespace kt;

namespace {

constexpr uint32_t kTarget = 5;  // the one scanner whose record calls may change
constexpr size_t kAllDoubles = 1000;  // "vary every double parameter at once"

// The path arguments: files of every extension a reader or writer picks by,
// a folder, paths that do not exist, and one longer than any buffer.
struct Paths {
  std::vector<std::string> all;  // the first is the ordinary one
  std::string folder;  // removed at the end
};

// One call: the export's name and the buffers behind its pointer arguments,
// each allocated to exactly the size the export may use, so that a write or
// read past it is caught.
struct Call {
  template <typename T>
  T* buffer(size_t count) {  // zero-filled
    owned.emplace_back(new uint8_t[count * sizeof(T)]());
    return reinterpret_cast<T*>(owned.back().get());
  }
  const std::string name;
  const Paths& paths;
  std::vector<std::unique_ptr<uint8_t[]>> owned;
};

// Elements behind a pointer argument: one for a plain out-parameter, more for
// the tables some exports take. An unknown table fails the test, so that a new
// export with one is given its size here.
size_t elements(const Call& c, bool input) {
  if (c.name == "displayinithierarchy" || c.name == "displayhierarchy") return 8;
  if (c.name == "displaymapdmx") return 512;
  if (c.name == "displayglobal") return 16;
  if (input) ADD_FAILURE() << c.name << ": give the size of its table argument";
  return 1;
}

// Integer values at and around every limit of the library: scanner 20/21,
// tracks 31/32, slots 7/8, entries 28/29, 63/64, 80/81, 511/512/513,
// 8191/8192, 15999/16000, the type's own ends.
template <typename T>
std::vector<T> integer_values() {
  const int64_t edges[] = {0,    1,    7,    8,    9,     20,    21,    28,    29,     31,         32,
                           50,   51,   63,   64,   80,    81,    127,   128,   255,    256,        511,
                           512,  513,  8191, 8192, 8193,  15999, 16000, 32767, 32768,  65535,      65536,
                           -1,   -2,   -65536, 0x7FFFFFFF, 0x80000000LL, 0xFFFFFFFELL, 0xFFFFFFFFLL,
                           std::numeric_limits<T>::min(), std::numeric_limits<T>::max()};
  std::set<T> values;
  for (int64_t v : edges)
    if (v >= static_cast<int64_t>(std::numeric_limits<T>::min()) &&
        v <= static_cast<int64_t>(std::numeric_limits<T>::max()))
      values.insert(static_cast<T>(v));
  return {values.begin(), values.end()};
}

const std::vector<double>& double_values() {
  static const std::vector<double> v = {std::nan(""), -std::nan(""), HUGE_VAL, -HUGE_VAL, 1e300, -1e300, -0.0,
                                        std::numeric_limits<double>::denorm_min(), 2147483648.0, -2147483649.0,
                                        4294967296.0, 1e-300};
  return v;
}

// How each parameter type is given: count(c, position) hostile values, and
// make(c, position, k) the k-th of them, or with k = -1 an ordinary value.
template <typename T, typename = void>
struct Arg;

template <typename T>
struct Arg<T, std::enable_if_t<std::is_integral_v<T>>> {
  static bool scanner(const Call& c, size_t pos) {
    return pos == 0 && std::is_same_v<T, uint32_t> && c.name != "displayprint";
  }
  static int count(const Call& c, size_t pos) {
    return scanner(c, pos) ? 3 : static_cast<int>(integer_values<T>().size());
  }
  static T make(Call& c, size_t pos, int k) {
    if (scanner(c, pos)) {
      const uint32_t bad[] = {0, 21, 0xFFFFFFFF};
      return static_cast<T>(k < 0 ? kTarget : bad[k]);
    }
    return k < 0 ? T{1} : integer_values<T>()[static_cast<size_t>(k)];
  }
};

template <>
struct Arg<double> {
  static int count(const Call&, size_t) { return static_cast<int>(double_values().size()); }
  static double make(Call&, size_t, int k) { return k < 0 ? 0.25 : double_values()[static_cast<size_t>(k)]; }
};

template <>
struct Arg<const char*> {
  static int count(const Call& c, size_t) { return static_cast<int>(c.paths.all.size()); }
  static const char* make(Call& c, size_t, int k) {
    return c.paths.all[k < 0 ? 0 : static_cast<size_t>(k)].c_str();
  }
};

// Writable buffers: out-parameters, names and glyph file names (16 bytes).
template <typename T>
struct Arg<T*, std::enable_if_t<!std::is_const_v<T>>> {
  static int count(const Call&, size_t) { return 0; }
  static T* make(Call& c, size_t, int) {
    return c.buffer<T>(std::is_same_v<T, char> ? 16 : elements(c, false));
  }
};

// Tables the host passes in. Kind 0 is ordinary (no parents; the identity
// map), the others hostile: slot hierarchies with parents out of range, pairs
// of mutual parents and slots that are their own parent; DMX maps naming
// channels that do not exist.
template <typename T>
struct Arg<const T*> {
  static int64_t entry(size_t kind, size_t i) {
    const int64_t index = static_cast<int64_t>(i);
    if constexpr (std::is_same_v<T, int32_t>) {
      const int64_t kinds[] = {-1, 8, INT32_MIN, INT32_MAX, index ^ 1, index};
      return kinds[kind];
    } else {
      const int64_t kinds[] = {index + 1, 0, 513, std::numeric_limits<T>::max()};
      return kinds[kind];
    }
  }
  static int count(const Call&, size_t) { return std::is_same_v<T, int32_t> ? 5 : 3; }
  static const T* make(Call& c, size_t, int k) {
    size_t n = elements(c, true);
    T* p = c.buffer<T>(n);
    for (size_t i = 0; i < n; ++i) p[i] = static_cast<T>(entry(static_cast<size_t>(k + 1), i));
    return p;
  }
};

// Calls fn once with ordinary arguments, then once for every hostile value
// of every parameter (the others ordinary), then once for every hostile double
// in all double parameters at once. Returns the number of calls.
template <typename R, typename... A>
int hammer(const char* name, R(KALVOR_CALL* fn)(A...), const Paths& paths) {
  return [&]<size_t... I>(std::index_sequence<I...>) {
    int calls = 0;
    auto call = [&](size_t varied, [[maybe_unused]] int k) {
      Call c{name, paths, {}};
      // The varied parameter, or every double at once, takes the k-th hostile value.
      std::tuple<A...> args{
          Arg<A>::make(c, I, I == varied || (varied == kAllDoubles && std::is_same_v<A, double>) ? k : -1)...};
      std::apply(fn, args);
      ++calls;
    };
    call(sizeof...(A), -1);
    Call probe{name, paths, {}};
    const int counts[] = {0, Arg<A>::count(probe, I)...};
    for (size_t pos = 1; pos < std::size(counts); ++pos)
      for (int k = 0; k < counts[pos]; ++k) call(pos - 1, k);
    if constexpr ((std::is_same_v<A, double> || ...))
      for (int k = 0; k < static_cast<int>(double_values().size()); ++k) call(kAllDoubles, k);
    return calls;
  }(std::index_sequence_for<A...>{});
}

// Exports left out of the hammering: the lifecycle (the fixture binds and
// initialises), and the two that switch the output of all 20 scanners at once,
// which take no arguments and are called on their own below.
const std::set<std::string> kLeftOut = {"DisplayInit", "DisplayExit", "displaystopoutput", "displayenableoutput"};

// Distinct contents in every area of scanner s, so that a write that lands in
// another scanner's record shows.
void fill_record(Recorder& rec, uint32_t s) {
  displayinittrack(s);
  for (uint16_t t = 0; t < 32; ++t) {
    displayframe(s, t, static_cast<uint16_t>(100 * s + t + 1));  // every track active
    displayscalex(s, t, 7, 1.0 + s);                              // all 8 slots in use
  }
  for (uint8_t b = 0; b < 8; ++b) displayinitcolorbuffer(s, b, static_cast<uint8_t>(s * 8 + b));
  for (uint16_t i = 0; i < 8192; i += 97) displaysetpoint(s, i, s, i, 0, i % 64, 0, s, s, s);
  displaysetgeonet(s, 4, 4, 0.5 * s, 0.25 * s, 1.0);
  displaysettruecolor(s, 3, static_cast<uint8_t>(s), 2, 3, 4, 5, 6, 7, 8, 9);
  displaydirectpoint(s, 15999, static_cast<uint16_t>(s), 2, 3, 4, 5, 6, 7, 8, 9);
  // Answers into the reply areas: a picture and three previews.
  Bytes area(16000 * 15 + 6);
  for (size_t i = 0; i < area.size(); ++i) area[i] = static_cast<uint8_t>(i * 7 + s);
  area[0] = area[3] = 3;  // small point counts: the writers run thousands of times
  area[1] = area[4] = 0;
  for (uint8_t opcode : {0x06, 0x7B, 0x7E})
    rec.set_reply(opcode, Bytes(area.begin(), area.begin() + (opcode == 0x06 ? 176006 : 240006)));
  rec.set_reply(0x04, Bytes(area.begin(), area.begin() + 90117));
  displaygetpic(s, 1);
  for (auto refresh : {displayupdatepreviewbuffer, displayupdatefullpreviewbuffer, displayupdatevistrelbuffer})
    refresh(s, nullptr, nullptr);
  DisplaySetPreviewG(s, 0.5, 0.25 * s, 0, 0, 0, 1);
  char name[8];
  snprintf(name, sizeof name, "S%u", s);
  setsendname(s, name);
  displaysignal(s, static_cast<uint8_t>(s));
  displayupdatepal(s, 0);  // as observe() leaves it
  rec.clear();
}

// Everything of scanner s that the exports let a host see: getters, the
// reply areas point by point, and the areas that are sent as they lie
// (tracks, picture upload, palette, true colour, geometry net, direct points,
// DMX maps through the channels they send).
Bytes observe(Recorder& rec, uint32_t s) {
  Bytes seen;
  auto add = [&seen](const void* p, size_t n) {
    const uint8_t* b = static_cast<const uint8_t*>(p);
    seen.insert(seen.end(), b, b + n);
  };
  auto add_value = [&add](auto v) { add(&v, sizeof v); };
  rec.clear();
  char names[2][16] = {};
  getsendname(s, names[0]);
  getreceivename(s, names[1]);
  add(names, sizeof names);
  for (uint8_t v : {displaygetsignal(s), displaygetoutput(s), displaygetpreviewflag(s), displaygetbeamshowflag(s),
                    displaygetgraficflag(s), displaygetenabledmxin(s), getlasterror(s)})
    add_value(v);
  add_value(DisplayGetTimeToWait(s));
  for (uint8_t i = 0; i < 64; ++i) {
    uint8_t c[6] = {};
    displaygetpal(s, i, &c[0], &c[1], &c[2], &c[3], &c[4], &c[5]);
    add(c, sizeof c);
    for (uint8_t b = 0; b < 8; ++b) {
      const Bytes entry = colour_entry(s, b, i);
      add(entry.data(), entry.size());
    }
  }
  uint16_t count = 0;
  displaygetpiccnt(s, &count);
  add_value(count);
  for (uint16_t i = 0; i < 8192; ++i) {
    uint16_t xyz[3] = {};
    uint8_t c[5] = {};
    DisplayGetPicPoint(s, i, &xyz[0], &xyz[1], &xyz[2], &c[0], &c[1], &c[2], &c[3], &c[4]);
    add(xyz, sizeof xyz), add(c, sizeof c);
  }
  for (auto get : {displaygetpreviewbuffercnt, displaygetfullpreviewbuffercnt, displaygetvistrelbuffercnt}) {
    get(s, &count);
    add_value(count);
  }
  for (uint16_t i = 0; i < 16000; ++i) {
    uint16_t xy[2] = {};
    int32_t fx[4] = {};
    uint8_t c[12] = {};
    displaygetpreviewbuffervector(s, i, &xy[0], &xy[1], &c[0], &c[1], &c[2], &c[3]);
    displaygetfullpreviewbuffervector(s, i, &fx[0], &fx[1], &c[4], &c[5], &c[6], &c[7]);
    displaygetvistrelbuffervector(s, i, &fx[2], &fx[3], &c[8], &c[9], &c[10], &c[11]);
    add(xy, sizeof xy), add(fx, sizeof fx), add(c, sizeof c);
  }
  add_value(displayupdate(s));
  displaysetpic(s, 1, 8192);
  displayupdatepal(s, 0);  // the palette command now holds buffer 0, observed above
  displayupdatetruecolor(s, 0);
  displayupdategeonet(s, 0);
  displaydirect(s, 0, 0, 0);
  for (uint32_t k = 1; k <= 512; ++k) {
    displaysetdmx(s, k, 0);
    add_value(displaygetdmx(s, k));
  }
  for (const Sent& sent : rec.all()) {
    EXPECT_EQ(sent.scanner, s);
    add(sent.bytes.data(), sent.bytes.size());
  }
  rec.clear();
  return seen;
}

Paths make_paths() {
  namespace fs = std::filesystem;
  Paths p;
  const std::string folder = p.folder = temp_path("files");
  fs::create_directories(folder);
  Bytes content(700);
  for (size_t i = 0; i < content.size(); ++i) content[i] = static_cast<uint8_t>(i * 13 + 1);
  for (const char* ext : {".cat", ".lds", ".ild", ".pal", ".rgb", ".pic", ".las", ".flx", ".CAT", ""}) {
    p.all.push_back(folder + "/data" + ext);
    write_file(p.all.back(), content);
  }
  write_file(folder + "/empty.cat", {});
  // Then an empty file and path, a folder with and without a separator, a
  // missing file, a file in a missing folder, a path longer than any, and
  // names of 15 characters (fits) and 16 (one too many).
  p.all.insert(p.all.end(), {folder + "/empty.cat", "", folder, folder + "/", folder + "/missing.cat",
                             folder + "/gone/inner.lds", folder + "/" + std::string(5000, 'n') + ".pal",
                             "0123456789ABCDE", "0123456789ABCDEF"});
  return p;
}

class HostileArguments : public KalvorTest {};

}  // namespace

TEST_F(HostileArguments, EveryExportLeavesEveryOtherRecordAlone) {
  for (uint32_t s = 1; s <= 20; ++s) fill_record(rec, s);
  displaystopoutput();  // the all-scanner exports, outside the comparison
  displayenableoutput();
  std::vector<Bytes> before(21);
  for (uint32_t s = 1; s <= 20; ++s)
    if (s != kTarget) before[s] = observe(rec, s);

  Paths paths = make_paths();
  int calls = 0, exports = 0;
#define KALVOR_HAMMER(name)                                 \
  if (!kLeftOut.count(#name)) {                             \
    calls += hammer(#name, &name, paths);                   \
    ++exports;                                              \
    rec.clear();                                            \
  }
  KALVOR_EVERY_EXPORT(KALVOR_HAMMER)
#undef KALVOR_HAMMER
  SetVistrel(kTarget, 0);  // a value shared by all scanners, set back on purpose
  printf("[ hostile ] %d exports, %d calls\n", exports, calls);
  RecordProperty("hostile_calls", calls);

  for (uint32_t s = 1; s <= 20; ++s) {
    if (s == kTarget) continue;
    Bytes after = observe(rec, s);
    ASSERT_EQ(after.size(), before[s].size()) << "scanner " << s;
    auto first = std::mismatch(after.begin(), after.end(), before[s].begin()).first - after.begin();
    EXPECT_EQ(size_t(first), after.size()) << "scanner " << s << " changed; first difference at observed byte " << first;
  }
  std::filesystem::remove_all(paths.folder);
}
