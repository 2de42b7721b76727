// Sixteen records make sixteen 11-byte picture points: eleven 16-byte
// vectors. Each output vector is built from a 16-byte window of the input
// with byte shuffles, masks and constants, all worked out at compile time
// from a description of where each byte of a point comes from.
#include "pictures/point_groups.h"

#include <array>
#include <initializer_list>

#include "pictures/picture_points.h"

#if defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__))
#include <immintrin.h>
#define KALVOR_ILDA_GROUPS 1
#endif

namespace kalvor::pictures {

#if KALVOR_ILDA_GROUPS
namespace {

constexpr uint32_t kGroup = 16, kIn = 8, kOut = point::size, kVectors = kGroup * kOut / 16;
static_assert(kGroup * kOut == 16 * kVectors);
constexpr int8_t kNone = -1;

// Where byte b of a point comes from: (record[a] & and_a) | (record[b] &
// and_b), then ^ flip, | set; with `black`, bit 0x40 is also set when
// record[c0..c2] are all zero.
struct ByteRule {
  int8_t a = kNone, b = kNone;
  uint8_t and_a = 0xFF, and_b = 0, flip = 0, set = 0;
  bool black = false;
  int8_t c[3] = {kNone, kNone, kNone};
};
using PointRule = ByteRule[kOut];

// Format 0: x, y, z big-endian; status (blank in bit 6); colour index.
// Bytes of a point: x, y mirrored, z, status, repeat 0, white.
constexpr PointRule kFormat0 = {
    {.a = 1}, {.a = 0}, {.a = 3, .flip = 0xFF}, {.a = 2, .flip = 0xFF}, {.a = 5}, {.a = 4},
    {.a = 6, .b = 7, .and_a = kBlankBit, .and_b = kIndexMask, .set = kFlag7},
    {}, {.set = 0xFF}, {.set = 0xFF}, {.set = 0xFF}};
// Format 5: x, y big-endian; status; blue, green, red. Black blanks.
constexpr PointRule kFormat5 = {
    {.a = 1}, {.a = 0}, {.a = 3, .flip = 0xFF}, {.a = 2, .flip = 0xFF}, {}, {},
    {.a = 4, .and_a = kBlankBit, .set = kFlag7, .black = true, .c = {5, 6, 7}},
    {}, {.a = 7}, {.a = 6}, {.a = 5}};

// The shuffles and masks of the eleven vectors of a group.
struct Plan {
  uint32_t start[kVectors] = {};  // input window of each vector, from the group's first record
  uint32_t reach = 0;             // input bytes the windows span
  bool fits = true;               // no vector needs more than one window
  alignas(16) uint8_t a[kVectors][16] = {}, b[kVectors][16] = {}, c[3][kVectors][16] = {};
  alignas(16) uint8_t and_a[kVectors][16] = {}, and_b[kVectors][16] = {}, flip[kVectors][16] = {},
      set[kVectors][16] = {}, black[kVectors][16] = {};
};

constexpr Plan make_plan(const PointRule& rule) {
  Plan plan;
  for (uint32_t v = 0; v < kVectors; ++v) {
    // The window starts at the first input byte any output byte needs.
    uint32_t first = ~0u, last = 0;
    for (uint32_t i = 0; i < 16; ++i) {
      uint32_t byte = 16 * v + i, record = byte / kOut * kIn;
      const ByteRule& r = rule[byte % kOut];
      for (int8_t s : {r.a, r.b, r.c[0], r.c[1], r.c[2]})
        if (s != kNone) {
          first = record + s < first ? record + s : first;
          last = record + s > last ? record + s : last;
        }
    }
    if (last - first >= 16) plan.fits = false;
    plan.start[v] = first;
    plan.reach = first + 16 > plan.reach ? first + 16 : plan.reach;
    auto index = [&](uint32_t record, int8_t s) -> uint8_t {
      return s == kNone ? 0x80 : static_cast<uint8_t>(record + s - first);
    };
    for (uint32_t i = 0; i < 16; ++i) {
      uint32_t byte = 16 * v + i, record = byte / kOut * kIn;
      const ByteRule& r = rule[byte % kOut];
      plan.a[v][i] = index(record, r.a);
      plan.b[v][i] = index(record, r.b);
      for (int k = 0; k < 3; ++k) plan.c[k][v][i] = index(record, r.c[k]);
      plan.and_a[v][i] = r.a == kNone ? 0 : r.and_a;
      plan.and_b[v][i] = r.b == kNone ? 0 : r.and_b;
      plan.flip[v][i] = r.flip;
      plan.set[v][i] = r.set;
      plan.black[v][i] = r.black ? kBlankBit : 0;
    }
  }
  return plan;
}

constexpr Plan kPlan0 = make_plan(kFormat0), kPlan5 = make_plan(kFormat5);
static_assert(kPlan0.fits && kPlan5.fits);

__attribute__((target("ssse3"))) inline __m128i vec(const uint8_t* p) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
}

// Groups are converted while the windows of the next group lie inside the
// n records.
template <const Plan& plan, bool indexed>
__attribute__((target("ssse3"))) uint32_t convert(const uint8_t* in, uint32_t n, uint8_t* out) {
  uint32_t done = 0;
  for (; uint64_t{n - done} * kIn >= plan.reach; done += kGroup) {
    const uint8_t* src = in + kIn * done;
    uint8_t* dst = out + kOut * done;
    for (uint32_t v = 0; v < kVectors; ++v) {
      __m128i w = vec(src + plan.start[v]);
      __m128i x = _mm_and_si128(_mm_shuffle_epi8(w, vec(plan.a[v])), vec(plan.and_a[v]));
      if constexpr (indexed) {
        x = _mm_or_si128(x, _mm_and_si128(_mm_shuffle_epi8(w, vec(plan.b[v])), vec(plan.and_b[v])));
      } else {
        __m128i colour = _mm_or_si128(_mm_or_si128(_mm_shuffle_epi8(w, vec(plan.c[0][v])),
                                                   _mm_shuffle_epi8(w, vec(plan.c[1][v]))),
                                      _mm_shuffle_epi8(w, vec(plan.c[2][v])));
        x = _mm_or_si128(x, _mm_and_si128(_mm_cmpeq_epi8(colour, _mm_setzero_si128()), vec(plan.black[v])));
      }
      x = _mm_or_si128(_mm_xor_si128(x, vec(plan.flip[v])), vec(plan.set[v]));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + 16 * v), x);
    }
  }
  return done;
}

// LAS and FLX: 11-byte records. An output byte is the OR of up to four terms,
// each a record byte shifted by the term's fixed amount and masked, and of
// one mask that is set where a record byte equals a value; then ^ flip, | set.
// The vector shifts move 16-bit lanes; each mask drops the bits that cross
// over from the neighbouring byte, which makes them byte shifts.
constexpr uint32_t kWide = 11, kTerms = 4;
constexpr int kShift[kTerms] = {0, 4, -4, 6};
struct Term {
  int8_t from = kNone;
  uint8_t mask = 0;
};
struct WideByte {
  Term term[kTerms] = {};
  Term equal = {};
  uint8_t value = 0, flip = 0, set = 0;
};
using WideRule = WideByte[kOut];

// LAS: x and y little-endian at 1 and 3, 12 bits centred on 2048, become
// (v & 0xFFF) << 4 ^ 0x8000; blank in bit 0 of byte 5; colour index at 7;
// every point is output twice (repeat 1).
constexpr WideRule kLas = {
    {.term = {{}, {1, 0xF0}}}, {.term = {{}, {2, 0xF0}, {1, 0x0F}}, .flip = 0x80},
    {.term = {{}, {3, 0xF0}}}, {.term = {{}, {4, 0xF0}, {3, 0x0F}}, .flip = 0x80},
    {}, {},
    {.term = {{7, kIndexMask}, {}, {}, {5, kBlankBit}}, .set = kFlag7},
    {.set = 1}, {.set = 0xFF}, {.set = 0xFF}, {.set = 0xFF}};
// FLX: x and y little-endian at 0 and 2, centred on 32768; byte 9 is 0 for a
// blanked point and 2 for one output three times (repeat 2).
constexpr WideRule kFlx = {
    {.term = {{0, 0xFF}}}, {.term = {{1, 0xFF}}, .flip = 0x80},
    {.term = {{2, 0xFF}}}, {.term = {{3, 0xFF}}, .flip = 0x80},
    {}, {},
    {.equal = {9, kBlankBit}, .value = 0, .set = kFlag7},
    {.equal = {9, 2}, .value = 2},
    {.set = 0xFF}, {.set = 0xFF}, {.set = 0xFF}};

// The terms of a vector share one window; the equality test has a window of
// its own, since FLX keeps its state byte too far from x and y for one.
struct WidePlan {
  uint32_t start[kVectors] = {}, equal_start[kVectors] = {};
  uint32_t reach = 0;
  bool fits = true, used[kTerms] = {}, equal = false;
  alignas(16) uint8_t index[kTerms][kVectors][16] = {}, mask[kTerms][kVectors][16] = {};
  alignas(16) uint8_t equal_index[kVectors][16] = {}, equal_mask[kVectors][16] = {}, value[kVectors][16] = {},
      flip[kVectors][16] = {}, set[kVectors][16] = {};
};

// The first input byte of the group that a vector's `pick`ed sources need
// (0 when there are none), and whether they all fit in 16 bytes from it.
template <typename Pick>
constexpr uint32_t window(const WideRule& rule, uint32_t v, Pick pick, bool& fits) {
  uint32_t first = ~0u, last = 0;
  for (uint32_t i = 0; i < 16; ++i) {
    uint32_t byte = 16 * v + i, at = byte / kOut * kWide;
    for (int8_t s : pick(rule[byte % kOut]))
      if (s != kNone) {
        first = at + s < first ? at + s : first;
        last = at + s > last ? at + s : last;
      }
  }
  if (first == ~0u) return 0;
  if (last - first >= 16) fits = false;
  return first;
}

constexpr WidePlan make_wide_plan(const WideRule& rule) {
  WidePlan plan;
  for (uint32_t v = 0; v < kVectors; ++v) {
    uint32_t start = window(
        rule, v, [](const WideByte& b) { return std::array<int8_t, kTerms>{b.term[0].from, b.term[1].from, b.term[2].from, b.term[3].from}; },
        plan.fits);
    uint32_t equal_start = window(rule, v, [](const WideByte& b) { return std::array<int8_t, 1>{b.equal.from}; }, plan.fits);
    plan.start[v] = start, plan.equal_start[v] = equal_start;
    plan.reach = start + 16 > plan.reach ? start + 16 : plan.reach;
    plan.reach = equal_start + 16 > plan.reach ? equal_start + 16 : plan.reach;
    for (uint32_t i = 0; i < 16; ++i) {
      uint32_t byte = 16 * v + i, at = byte / kOut * kWide;
      const WideByte& b = rule[byte % kOut];
      for (uint32_t t = 0; t < kTerms; ++t) {
        bool has = b.term[t].from != kNone;
        plan.index[t][v][i] = has ? static_cast<uint8_t>(at + b.term[t].from - start) : 0x80;
        plan.mask[t][v][i] = has ? b.term[t].mask : 0;
        plan.used[t] = plan.used[t] || has;
      }
      bool has = b.equal.from != kNone;
      plan.equal_index[v][i] = has ? static_cast<uint8_t>(at + b.equal.from - equal_start) : 0x80;
      plan.equal_mask[v][i] = has ? b.equal.mask : 0;
      plan.value[v][i] = b.value;
      plan.equal = plan.equal || has;
      plan.flip[v][i] = b.flip;
      plan.set[v][i] = b.set;
    }
  }
  return plan;
}

constexpr WidePlan kPlanLas = make_wide_plan(kLas), kPlanFlx = make_wide_plan(kFlx);
static_assert(kPlanLas.fits && kPlanFlx.fits);

// Term t of vector v of window w, shifted and masked.
template <const WidePlan& plan, uint32_t t>
__attribute__((target("ssse3"))) inline __m128i term(__m128i w, uint32_t v) {
  __m128i x = _mm_shuffle_epi8(w, vec(plan.index[t][v]));
  if constexpr (kShift[t] > 0) x = _mm_slli_epi16(x, kShift[t]);
  if constexpr (kShift[t] < 0) x = _mm_srli_epi16(x, -kShift[t]);
  return _mm_and_si128(x, vec(plan.mask[t][v]));
}

template <const WidePlan& plan>
__attribute__((target("ssse3"))) uint32_t convert_wide(const uint8_t* in, uint32_t n, uint8_t* out) {
  uint32_t done = 0;
  for (; uint64_t{n - done} * kWide >= plan.reach; done += kGroup) {
    const uint8_t* src = in + kWide * done;
    uint8_t* dst = out + kOut * done;
    for (uint32_t v = 0; v < kVectors; ++v) {
      __m128i w = vec(src + plan.start[v]);
      __m128i x = _mm_setzero_si128();
      if constexpr (plan.used[0]) x = _mm_or_si128(x, term<plan, 0>(w, v));
      if constexpr (plan.used[1]) x = _mm_or_si128(x, term<plan, 1>(w, v));
      if constexpr (plan.used[2]) x = _mm_or_si128(x, term<plan, 2>(w, v));
      if constexpr (plan.used[3]) x = _mm_or_si128(x, term<plan, 3>(w, v));
      if constexpr (plan.equal) {
        __m128i e = _mm_shuffle_epi8(vec(src + plan.equal_start[v]), vec(plan.equal_index[v]));
        x = _mm_or_si128(x, _mm_and_si128(_mm_cmpeq_epi8(e, vec(plan.value[v])), vec(plan.equal_mask[v])));
      }
      x = _mm_or_si128(_mm_xor_si128(x, vec(plan.flip[v])), vec(plan.set[v]));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + 16 * v), x);
    }
  }
  return done;
}

bool have_instructions() { return __builtin_cpu_supports("ssse3"); }

}  // namespace

uint32_t convert_groups_format0(const uint8_t* in, uint32_t n, uint8_t* out) {
  return have_instructions() ? convert<kPlan0, true>(in, n, out) : 0;
}
uint32_t convert_groups_format5(const uint8_t* in, uint32_t n, uint8_t* out) {
  return have_instructions() ? convert<kPlan5, false>(in, n, out) : 0;
}
uint32_t convert_groups_las(const uint8_t* in, uint32_t n, uint8_t* out) {
  return have_instructions() ? convert_wide<kPlanLas>(in, n, out) : 0;
}
uint32_t convert_groups_flx(const uint8_t* in, uint32_t n, uint8_t* out) {
  return have_instructions() ? convert_wide<kPlanFlx>(in, n, out) : 0;
}

#else

uint32_t convert_groups_format0(const uint8_t*, uint32_t, uint8_t*) { return 0; }
uint32_t convert_groups_format5(const uint8_t*, uint32_t, uint8_t*) { return 0; }
uint32_t convert_groups_las(const uint8_t*, uint32_t, uint8_t*) { return 0; }
uint32_t convert_groups_flx(const uint8_t*, uint32_t, uint8_t*) { return 0; }

#endif

}  // namespace kalvor::pictures
