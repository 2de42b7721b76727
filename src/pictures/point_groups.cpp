// W records (16 or 64) make W 11-byte picture points: eleven W-byte
// vectors. Each output vector is built from W-byte windows of the input with
// byte shuffles or permutes, masks and constants, all worked out at compile
// time from a description of where each byte of a point comes from.
#include "pictures/point_groups.h"

#include <array>
#include <cstring>
#include <initializer_list>

#include "pictures/picture_points.h"

#if defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__))
#include <immintrin.h>
#define KALVOR_POINT_GROUPS 1
#endif

namespace kalvor::pictures {

#if KALVOR_POINT_GROUPS
namespace {

// A group is as many records as a vector has bytes, so that its points fill
// eleven vectors whatever their width: 16 bytes with SSSE3, 64 with the
// AVX-512 byte permutes, which pick bytes across the whole vector.
constexpr uint32_t kIn = 8, kOut = point::size, kVectors = kOut;
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

// The shuffles and masks of the eleven vectors of a group, for vectors of W
// bytes.
template <uint32_t W>
struct Plan {
  uint32_t start[kVectors] = {};  // input window of each vector, from the group's first record
  uint32_t reach = 0;             // input bytes the windows span
  bool fits = true;               // no vector needs more than one window
  alignas(64) uint8_t a[kVectors][W] = {}, b[kVectors][W] = {}, c[3][kVectors][W] = {};
  alignas(64) uint8_t and_a[kVectors][W] = {}, and_b[kVectors][W] = {}, flip[kVectors][W] = {},
      set[kVectors][W] = {}, black[kVectors][W] = {};
};

template <uint32_t W>
constexpr Plan<W> make_plan(const PointRule& rule) {
  Plan<W> plan;
  for (uint32_t v = 0; v < kVectors; ++v) {
    // The window starts at the first input byte any output byte needs.
    uint32_t first = ~0u, last = 0;
    for (uint32_t i = 0; i < W; ++i) {
      uint32_t byte = W * v + i, record = byte / kOut * kIn;
      const ByteRule& r = rule[byte % kOut];
      for (int8_t s : {r.a, r.b, r.c[0], r.c[1], r.c[2]})
        if (s != kNone) {
          first = record + s < first ? record + s : first;
          last = record + s > last ? record + s : last;
        }
    }
    if (last - first >= W) plan.fits = false;
    plan.start[v] = first;
    plan.reach = first + W > plan.reach ? first + W : plan.reach;
    auto index = [&](uint32_t record, int8_t s) -> uint8_t {
      return s == kNone ? 0x80 : static_cast<uint8_t>(record + s - first);
    };
    for (uint32_t i = 0; i < W; ++i) {
      uint32_t byte = W * v + i, record = byte / kOut * kIn;
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

// Older picture files: 8-byte big-endian records whose status and colour
// index belong to the next point. A point takes x, y, z and repeat (byte 0,
// shifted right by one) from its own record, status and colour from the
// record before it; the offsets count from that one. `b` is the repeat
// byte, masked after the shift; `c` places the colour index where the
// channels go, which the converter looks up in tables of its own.
constexpr PointRule kOlder = {
    {.a = 11}, {.a = 10}, {.a = 13, .flip = 0xFF}, {.a = 12, .flip = 0xFF}, {.a = 15}, {.a = 14},
    {.a = 1}, {.b = 8, .and_b = 0x7F}, {.c = {1, kNone, kNone}}, {.c = {1, kNone, kNone}}, {.c = {1, kNone, kNone}}};

constexpr Plan<16> kPlan0 = make_plan<16>(kFormat0), kPlan5 = make_plan<16>(kFormat5);
constexpr Plan<64> kWidePlan0 = make_plan<64>(kFormat0), kWidePlan5 = make_plan<64>(kFormat5);
constexpr Plan<64> kWidePlanOlder = make_plan<64>(kOlder);
static_assert(kPlan0.fits && kPlan5.fits && kWidePlan0.fits && kWidePlan5.fits && kWidePlanOlder.fits);

// Bit i of bytes[c][v]: byte i of 64-byte vector v of a group holds colour
// channel c.
struct ChannelBytes {
  uint64_t bytes[3][kVectors] = {};
};
constexpr ChannelBytes make_channel_bytes() {
  ChannelBytes out;
  for (uint32_t c = 0; c < 3; ++c)
    for (uint32_t v = 0; v < kVectors; ++v)
      for (uint32_t i = 0; i < 64; ++i)
        if ((64 * v + i) % kOut == point::red.offset + c) out.bytes[c][v] |= uint64_t{1} << i;
  return out;
}
constexpr ChannelBytes kChannelBytes = make_channel_bytes();

#define KALVOR_AVX512 "avx512f,avx512bw,avx512vbmi"

__attribute__((target("ssse3"))) inline __m128i vec(const uint8_t* p) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
}
__attribute__((target(KALVOR_AVX512))) inline __m512i vec64(const uint8_t* p) { return _mm512_loadu_si512(p); }
// Byte j of the result is byte index[j] & 63 of w. (The unmasked intrinsic
// starts from an undefined vector, which GCC 12 warns about.)
__attribute__((target(KALVOR_AVX512))) inline __m512i pick64(const uint8_t* index, __m512i w) {
  return _mm512_maskz_permutexvar_epi8(~__mmask64{0}, vec64(index), w);
}
// x | (a & b) and (x ^ a) | b in one instruction each (the immediates are
// their truth tables over x = 0xF0, a = 0xCC, b = 0xAA).
__attribute__((target(KALVOR_AVX512))) inline __m512i or_and(__m512i x, __m512i a, const uint8_t* b) {
  return _mm512_ternarylogic_epi32(x, a, vec64(b), 0xF8);
}
__attribute__((target(KALVOR_AVX512))) inline __m512i xor_or(__m512i x, const uint8_t* a, const uint8_t* b) {
  return _mm512_ternarylogic_epi32(x, vec64(a), vec64(b), 0xBE);
}

// Groups are converted while the windows of the next group lie inside the
// n records.
template <const Plan<16>& plan, bool indexed>
__attribute__((target("ssse3"))) uint32_t convert(const uint8_t* in, uint32_t n, uint8_t* out) {
  uint32_t done = 0;
  for (; uint64_t{n - done} * kIn >= plan.reach; done += 16) {
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

// The same with 64-byte vectors. Bytes without a source pick any byte of the
// window: their masks clear them. Older picture files (kOlder) take their
// repeat byte shifted and their colours from `colours` (one 64-entry table a
// channel) by byte permutes.
enum class Kind { indexed, true_colour, older };
template <const Plan<64>& plan, Kind kind>
__attribute__((target(KALVOR_AVX512))) uint32_t convert64(const uint8_t* in, uint32_t n, uint8_t* out,
                                                          const uint8_t (*colours)[64]) {
  __m512i red{}, green{}, blue{};
  if constexpr (kind == Kind::older) red = vec64(colours[0]), green = vec64(colours[1]), blue = vec64(colours[2]);
  uint32_t done = 0;
  for (; uint64_t{n - done} * kIn >= plan.reach; done += 64) {
    const uint8_t* src = in + kIn * done;
    uint8_t* dst = out + kOut * done;
#pragma GCC unroll 11
    for (uint32_t v = 0; v < kVectors; ++v) {
      __m512i w = vec64(src + plan.start[v]);
      __m512i x = _mm512_and_si512(pick64(plan.a[v], w), vec64(plan.and_a[v]));
      if constexpr (kind == Kind::indexed) {
        x = or_and(x, pick64(plan.b[v], w), plan.and_b[v]);
      } else if constexpr (kind == Kind::older) {
        x = or_and(x, _mm512_srli_epi16(pick64(plan.b[v], w), 1), plan.and_b[v]);
        __m512i index = pick64(plan.c[0][v], w);
        x = _mm512_mask_permutexvar_epi8(x, kChannelBytes.bytes[0][v], index, red);
        x = _mm512_mask_permutexvar_epi8(x, kChannelBytes.bytes[1][v], index, green);
        x = _mm512_mask_permutexvar_epi8(x, kChannelBytes.bytes[2][v], index, blue);
      } else {
        __m512i colour = _mm512_or_si512(_mm512_or_si512(pick64(plan.c[0][v], w),
                                                         pick64(plan.c[1][v], w)),
                                         pick64(plan.c[2][v], w));
        __mmask64 black = _mm512_cmpeq_epi8_mask(colour, _mm512_setzero_si512());
        x = _mm512_or_si512(x, _mm512_maskz_mov_epi8(black, vec64(plan.black[v])));
      }
      _mm512_storeu_si512(dst + 64 * v, xor_or(x, plan.flip[v], plan.set[v]));
    }
  }
  return done;
}

// LAS and FLX: 11-byte records. An output byte is the OR of up to four terms,
// each a record byte shifted by the term's fixed amount and masked, of one
// bit field (bits 4 to 11 of two record bytes read little-endian, masked),
// and of one mask that is set where a record byte equals a value; then
// ^ flip, | set. The vector shifts move 16-bit lanes; each mask drops the
// bits that cross over from the neighbouring byte, which makes them byte
// shifts. 64-byte vectors pick a bit field in one instruction
// (vpmultishiftqb); 16-byte ones make it of the terms that shift by 4 and -4.
constexpr uint32_t kWide = 11, kTerms = 4;
constexpr int kShift[kTerms] = {0, 4, -4, 6};
struct Term {
  int8_t from = kNone;
  uint8_t mask = 0;
};
struct WideByte {
  Term term[kTerms] = {};
  Term bits = {};  // from: the lower of the two bytes
  Term equal = {};
  uint8_t value = 0, flip = 0, set = 0;
};
using WideRule = WideByte[kOut];

// LAS: x and y little-endian at 1 and 3, 12 bits centred on 2048, become
// (v & 0xFFF) << 4 ^ 0x8000: the low byte is bits 4 to 11 of bytes 0 and 1
// with its low half cleared. Blank in bit 0 of byte 5; colour index at 7;
// every point is output twice (repeat 1).
constexpr WideRule kLas = {
    {.bits = {0, 0xF0}}, {.bits = {1, 0xFF}, .flip = 0x80},
    {.bits = {2, 0xF0}}, {.bits = {3, 0xFF}, .flip = 0x80},
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

// Each term and the equality test read a window of their own: the bytes one
// of them needs lie close together, all of a point's bytes may not (FLX keeps
// its state byte far from x and y).
template <uint32_t W>
struct WidePlan {
  uint32_t start[kTerms][kVectors] = {}, equal_start[kVectors] = {}, bits_start[kVectors] = {};
  uint32_t reach = 0;
  bool fits = true, used[kTerms] = {}, equal = false, bits = false, bits_two[kVectors] = {};
  alignas(64) uint8_t index[kTerms][kVectors][W] = {}, mask[kTerms][kVectors][W] = {};
  // Each 8 bytes of the bit-field window hold the record bytes that the
  // output bytes in the same 8 bytes read, from the lowest on; `bits_control`
  // is the bit where each output byte's field starts.
  alignas(64) uint8_t bits_index[kVectors][W] = {}, bits_control[kVectors][W] = {}, bits_mask[kVectors][W] = {};
  alignas(64) uint8_t equal_index[kVectors][W] = {}, equal_mask[kVectors][W] = {}, value[kVectors][W] = {},
      flip[kVectors][W] = {}, set[kVectors][W] = {};
};

// The first input byte of the group that a vector's `pick`ed sources need
// (0 when there are none), and whether they all fit in `span` bytes from it.
template <uint32_t W, typename Pick>
constexpr uint32_t window(const WideRule& rule, uint32_t v, Pick pick, bool& fits, uint32_t span = W) {
  uint32_t first = ~0u, last = 0;
  for (uint32_t i = 0; i < W; ++i) {
    uint32_t byte = W * v + i, at = byte / kOut * kWide;
    for (int8_t s : pick(rule[byte % kOut]))
      if (s != kNone) {
        first = at + s < first ? at + s : first;
        last = at + s > last ? at + s : last;
      }
  }
  if (first == ~0u) return 0;
  if (last - first >= span) fits = false;
  return first;
}

static_assert(kShift[1] == 4 && kShift[2] == -4);
// Term t of byte b; without a bit-field pick (`fields` false) a bit field
// becomes its high part's term 1 and its low part's term 2.
constexpr Term term_of(const WideByte& b, uint32_t t, bool fields) {
  if (fields || b.bits.from == kNone || (t != 1 && t != 2)) return b.term[t];
  uint8_t mask = b.bits.mask & (t == 1 ? 0xF0 : 0x0F);
  return mask ? Term{static_cast<int8_t>(b.bits.from + (t == 1 ? 1 : 0)), mask} : Term{};
}

// The record bytes a bit field needs: a half that its mask clears needs none.
constexpr std::array<int8_t, 2> field_bytes(const WideByte& b) {
  if (b.bits.from == kNone) return {kNone, kNone};
  return {b.bits.mask & 0x0F ? b.bits.from : kNone,
          b.bits.mask & 0xF0 ? static_cast<int8_t>(b.bits.from + 1) : kNone};
}

// The bit fields of vector v: each 8 output bytes take their record bytes
// into the same 8 bytes of the picked window, so that one multishift, which
// reads within each 8 bytes (turning round at their end), finds them. Where
// a vector's fields span more than one window (65 record bytes in one LAS
// vector), it picks from two.
template <uint32_t W>
constexpr void add_bit_fields(WidePlan<W>& plan, const WideRule& rule, uint32_t v) {
  bool one = true;
  uint32_t start = window<W>(rule, v, field_bytes, one);
  window<W>(rule, v, field_bytes, plan.fits, 2 * W);
  plan.bits_two[v] = !one;
  plan.bits_start[v] = start;
  uint32_t reach = start + (one ? W : 2 * W);
  plan.reach = reach > plan.reach ? reach : plan.reach;
  for (uint32_t q = 0; q < W; q += 8) {
    uint32_t lowest = ~0u, highest = 0;
    for (uint32_t i = q; i < q + 8; ++i) {
      uint32_t byte = W * v + i, at = byte / kOut * kWide;
      for (int8_t s : field_bytes(rule[byte % kOut]))
        if (s != kNone) {
          lowest = at + s < lowest ? at + s : lowest;
          highest = at + s > highest ? at + s : highest;
        }
    }
    if (lowest == ~0u) continue;
    if (highest - lowest >= 8) plan.fits = false;
    for (uint32_t j = 0; j < 8 && lowest + j <= highest; ++j)
      plan.bits_index[v][q + j] = static_cast<uint8_t>(lowest + j - start);
    for (uint32_t i = q; i < q + 8; ++i) {
      uint32_t byte = W * v + i, at = byte / kOut * kWide;
      const Term& bits = rule[byte % kOut].bits;
      if (bits.from == kNone) continue;
      plan.bits_control[v][i] = static_cast<uint8_t>((8 * (at + bits.from - lowest) + 4) & 63);
      plan.bits_mask[v][i] = bits.mask;
      plan.bits = true;
    }
  }
}

template <uint32_t W>
constexpr WidePlan<W> make_wide_plan(const WideRule& rule) {
  WidePlan<W> plan;
  constexpr bool fields = W == 64;
  for (uint32_t v = 0; v < kVectors; ++v) {
    uint32_t start[kTerms];
    for (uint32_t t = 0; t < kTerms; ++t) {
      auto from = [t](const WideByte& b) { return std::array<int8_t, 1>{term_of(b, t, fields).from}; };
      start[t] = window<W>(rule, v, from, plan.fits);
      plan.start[t][v] = start[t];
      plan.reach = start[t] + W > plan.reach ? start[t] + W : plan.reach;
    }
    if (fields) add_bit_fields(plan, rule, v);
    uint32_t equal_start = window<W>(rule, v, [](const WideByte& b) { return std::array<int8_t, 1>{b.equal.from}; }, plan.fits);
    plan.equal_start[v] = equal_start;
    plan.reach = equal_start + W > plan.reach ? equal_start + W : plan.reach;
    for (uint32_t i = 0; i < W; ++i) {
      uint32_t byte = W * v + i, at = byte / kOut * kWide;
      const WideByte& b = rule[byte % kOut];
      for (uint32_t t = 0; t < kTerms; ++t) {
        Term term = term_of(b, t, fields);
        bool has = term.from != kNone;
        plan.index[t][v][i] = has ? static_cast<uint8_t>(at + term.from - start[t]) : 0x80;
        plan.mask[t][v][i] = has ? term.mask : 0;
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

constexpr WidePlan<16> kPlanLas = make_wide_plan<16>(kLas), kPlanFlx = make_wide_plan<16>(kFlx);
constexpr WidePlan<64> kWidePlanLas = make_wide_plan<64>(kLas), kWidePlanFlx = make_wide_plan<64>(kFlx);
static_assert(kPlanLas.fits && kPlanFlx.fits && kWidePlanLas.fits && kWidePlanFlx.fits);

// Term t of vector v of the group at src, shifted and masked.
template <const WidePlan<16>& plan, uint32_t t>
__attribute__((target("ssse3"))) inline __m128i term(const uint8_t* src, uint32_t v) {
  __m128i x = _mm_shuffle_epi8(vec(src + plan.start[t][v]), vec(plan.index[t][v]));
  if constexpr (kShift[t] > 0) x = _mm_slli_epi16(x, kShift[t]);
  if constexpr (kShift[t] < 0) x = _mm_srli_epi16(x, -kShift[t]);
  return _mm_and_si128(x, vec(plan.mask[t][v]));
}

template <const WidePlan<16>& plan>
__attribute__((target("ssse3"))) uint32_t convert_wide(const uint8_t* in, uint32_t n, uint8_t* out) {
  uint32_t done = 0;
  for (; uint64_t{n - done} * kWide >= plan.reach; done += 16) {
    const uint8_t* src = in + kWide * done;
    uint8_t* dst = out + kOut * done;
    for (uint32_t v = 0; v < kVectors; ++v) {
      __m128i x = _mm_setzero_si128();
      if constexpr (plan.used[0]) x = _mm_or_si128(x, term<plan, 0>(src, v));
      if constexpr (plan.used[1]) x = _mm_or_si128(x, term<plan, 1>(src, v));
      if constexpr (plan.used[2]) x = _mm_or_si128(x, term<plan, 2>(src, v));
      if constexpr (plan.used[3]) x = _mm_or_si128(x, term<plan, 3>(src, v));
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

// x with term t of vector v of the group at src added.
template <const WidePlan<64>& plan, uint32_t t>
__attribute__((target(KALVOR_AVX512))) inline __m512i term64(__m512i x, const uint8_t* src, uint32_t v) {
  if constexpr (!plan.used[t]) return x;
  __m512i y = pick64(plan.index[t][v], vec64(src + plan.start[t][v]));
  if constexpr (kShift[t] > 0) y = _mm512_slli_epi16(y, kShift[t]);
  if constexpr (kShift[t] < 0) y = _mm512_srli_epi16(y, -kShift[t]);
  return or_and(x, y, plan.mask[t][v]);
}

template <const WidePlan<64>& plan>
__attribute__((target(KALVOR_AVX512))) uint32_t convert_wide64(const uint8_t* in, uint32_t n, uint8_t* out) {
  uint32_t done = 0;
  for (; uint64_t{n - done} * kWide >= plan.reach; done += 64) {
    const uint8_t* src = in + kWide * done;
    uint8_t* dst = out + kOut * done;
    // Unrolled, the windows and tables are at constant offsets and equal
    // windows are loaded once.
#pragma GCC unroll 11
    for (uint32_t v = 0; v < kVectors; ++v) {
      __m512i x = _mm512_setzero_si512();
      x = term64<plan, 3>(term64<plan, 2>(term64<plan, 1>(term64<plan, 0>(x, src, v), src, v), src, v), src, v);
      if constexpr (plan.bits) {
        const uint8_t* window = src + plan.bits_start[v];
        __m512i fields = plan.bits_two[v]
                             ? _mm512_permutex2var_epi8(vec64(window), vec64(plan.bits_index[v]), vec64(window + 64))
                             : pick64(plan.bits_index[v], vec64(window));
        // Masked form: the unmasked one starts from an undefined vector.
        __m512i picked = _mm512_maskz_multishift_epi64_epi8(~__mmask64{0}, vec64(plan.bits_control[v]), fields);
        x = or_and(x, picked, plan.bits_mask[v]);
      }
      if constexpr (plan.equal) {
        __m512i e = pick64(plan.equal_index[v], vec64(src + plan.equal_start[v]));
        __mmask64 equal = _mm512_cmpeq_epi8_mask(e, vec64(plan.value[v]));
        x = _mm512_or_si512(x, _mm512_maskz_mov_epi8(equal, vec64(plan.equal_mask[v])));
      }
      _mm512_storeu_si512(dst + 64 * v, xor_or(x, plan.flip[v], plan.set[v]));
    }
  }
  return done;
}

bool have_instructions() { return __builtin_cpu_supports("ssse3"); }
// Not on Windows: there GCC may spill a 64-byte vector with an aligned move
// to a stack that is only 16-byte aligned.
bool have_wide_instructions() {
#if defined(_WIN32)
  return false;
#else
  return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
         __builtin_cpu_supports("avx512vbmi");
#endif
}

// The records of group x that equal the one after them (the last one's
// follower is the first of group next). The masked form: GCC 12 warns about
// the unmasked one's undefined source.
__attribute__((target(KALVOR_AVX512))) inline __mmask8 repeats8(__m512i x, __m512i next) {
  return _mm512_cmpeq_epi64_mask(x, _mm512_maskz_alignr_epi64(0xFF, next, x, 1));
}

// Where the first of the n 8-byte records at r may equal the one after it,
// checked eight records against the eight after them at a time.
__attribute__((target(KALVOR_AVX512))) uint32_t unrepeated8_wide(const uint8_t* r, uint32_t n) {
  uint32_t i = 0;
  // Four groups a step, each group's followers shifted in from the next
  // group's load: one load and one branch less per group.
  for (; i + 40 <= n; i += 32) {
    const uint8_t* g = r + 8 * i;
    __m512i a = vec64(g), b = vec64(g + 64), c = vec64(g + 128), d = vec64(g + 192), e = vec64(g + 256);
    if (repeats8(a, b) | repeats8(b, c) | repeats8(c, d) | repeats8(d, e)) break;
  }
  for (; i + 9 <= n; i += 8)
    if (_mm512_cmpeq_epi64_mask(vec64(r + 8 * i), vec64(r + 8 * i + 8))) break;
  return i;
}
uint32_t unrepeated8(const uint8_t* r, uint32_t n) { return have_wide_instructions() ? unrepeated8_wide(r, n) : 0; }

// The ILDA formats need no colour tables.
template <const Plan<64>& plan, Kind kind>
uint32_t convert64_ilda(const uint8_t* in, uint32_t n, uint8_t* out) {
  return convert64<plan, kind>(in, n, out, nullptr);
}

// Converts 64 records at a time where the processor can, then 16 at a time.
template <uint32_t in_size, uint32_t (*wide)(const uint8_t*, uint32_t, uint8_t*),
          uint32_t (*narrow)(const uint8_t*, uint32_t, uint8_t*)>
uint32_t convert_any(const uint8_t* in, uint32_t n, uint8_t* out) {
  if (!have_instructions()) return 0;
  uint32_t done = have_wide_instructions() ? wide(in, n, out) : 0;
  return done + narrow(in + in_size * done, n - done, out + kOut * done);
}

}  // namespace

uint32_t convert_groups_format0(const uint8_t* in, uint32_t n, uint8_t* out) {
  return convert_any<kIn, convert64_ilda<kWidePlan0, Kind::indexed>, convert<kPlan0, true>>(in, n, out);
}
uint32_t convert_groups_format5(const uint8_t* in, uint32_t n, uint8_t* out) {
  return convert_any<kIn, convert64_ilda<kWidePlan5, Kind::true_colour>, convert<kPlan5, false>>(in, n, out);
}
uint32_t convert_groups_older(const uint8_t* in, uint32_t n, uint8_t* out, const uint8_t (*colours)[64]) {
  return have_wide_instructions() ? convert64<kWidePlanOlder, Kind::older>(in, n, out, colours) : 0;
}
uint32_t convert_groups_las(const uint8_t* in, uint32_t n, uint8_t* out) {
  return convert_any<kWide, convert_wide64<kWidePlanLas>, convert_wide<kPlanLas>>(in, n, out);
}
uint32_t convert_groups_flx(const uint8_t* in, uint32_t n, uint8_t* out) {
  return convert_any<kWide, convert_wide64<kWidePlanFlx>, convert_wide<kPlanFlx>>(in, n, out);
}

#else

namespace {
uint32_t unrepeated8(const uint8_t*, uint32_t) { return 0; }
}  // namespace
uint32_t convert_groups_format0(const uint8_t*, uint32_t, uint8_t*) { return 0; }
uint32_t convert_groups_format5(const uint8_t*, uint32_t, uint8_t*) { return 0; }
uint32_t convert_groups_las(const uint8_t*, uint32_t, uint8_t*) { return 0; }
uint32_t convert_groups_older(const uint8_t*, uint32_t, uint8_t*, const uint8_t (*)[64]) { return 0; }
uint32_t convert_groups_flx(const uint8_t*, uint32_t, uint8_t*) { return 0; }

#endif

bool any_repeat8(const uint8_t* r, uint32_t n) {
  for (uint32_t i = unrepeated8(r, n); i + 1 < n; ++i)
    if (memcmp(r + 8 * i, r + 8 * i + 8, 8) == 0) return true;
  return false;
}

}  // namespace kalvor::pictures
