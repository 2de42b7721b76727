// Sixteen 8-byte ILDA records make sixteen 11-byte picture points: eleven
// 16-byte vectors. Each output vector is built from one 16-byte window of the
// input with byte shuffles, masks and constants, all worked out at compile
// time from a description of where each byte of a point comes from.
#include "pictures/ilda_groups.h"

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

bool have_instructions() { return __builtin_cpu_supports("ssse3"); }

}  // namespace

uint32_t convert_groups_format0(const uint8_t* in, uint32_t n, uint8_t* out) {
  return have_instructions() ? convert<kPlan0, true>(in, n, out) : 0;
}
uint32_t convert_groups_format5(const uint8_t* in, uint32_t n, uint8_t* out) {
  return have_instructions() ? convert<kPlan5, false>(in, n, out) : 0;
}

#else

uint32_t convert_groups_format0(const uint8_t*, uint32_t, uint8_t*) { return 0; }
uint32_t convert_groups_format5(const uint8_t*, uint32_t, uint8_t*) { return 0; }

#endif

}  // namespace kalvor::pictures
