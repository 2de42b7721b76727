/*
 * A host's view of the recording transport (the LASER.DLL that records each
 * command it is given). The host loads "LASER.DLL" itself, which yields the
 * module kalvor bound, and reads the commands back. C and C++.
 */
#ifndef CONSUMER_RECORDING_H
#define CONSUMER_RECORDING_H

#include <stdint.h>
#include <stdio.h>
#include <string.h>

#if defined(_WIN32)
#include <windows.h>
#define RECORDING_OPEN() ((void*)LoadLibraryA("LASER.DLL"))
#define RECORDING_FIND(m, n) ((void*)GetProcAddress((HMODULE)(m), n))
#else
#include <dlfcn.h>
#define RECORDING_OPEN() dlopen("LASER.DLL", RTLD_NOW)
#define RECORDING_FIND(m, n) dlsym(m, n)
#endif

struct recording {
  int (*count)(void);
  uint32_t (*scanner)(int index);
  uint32_t (*length)(int index);
  const uint8_t* (*bytes)(int index);
  int (*had_reply)(int index);
  void (*set_reply)(uint8_t opcode, const uint8_t* bytes, uint32_t length);
  int (*destructor_calls)(void);
};

/* Binds the recorder's entries; 0, with a message naming the host, when the
 * loaded LASER.DLL does not record. */
static inline int recording_open(struct recording* r, const char* host) {
  void* m = RECORDING_OPEN();
  int ok = m != NULL;
  if (ok) {
    r->count = (int (*)(void))RECORDING_FIND(m, "recorder_count");
    r->scanner = (uint32_t(*)(int))RECORDING_FIND(m, "recorder_scanner");
    r->length = (uint32_t(*)(int))RECORDING_FIND(m, "recorder_length");
    r->bytes = (const uint8_t* (*)(int))RECORDING_FIND(m, "recorder_bytes");
    r->had_reply = (int (*)(int))RECORDING_FIND(m, "recorder_had_reply");
    r->set_reply = (void (*)(uint8_t, const uint8_t*, uint32_t))RECORDING_FIND(m, "recorder_set_reply");
    r->destructor_calls = (int (*)(void))RECORDING_FIND(m, "recorder_destructor_calls");
    ok = r->count && r->scanner && r->length && r->bytes && r->had_reply && r->set_reply && r->destructor_calls;
  }
  if (!ok) fprintf(stderr, "%s: the recording LASER.DLL was not found\n", host);
  return ok;
}

/* 1 when command `index` went to `scanner` with exactly these bytes and, as
 * `reply` says, with or without an answer area; otherwise prints what was
 * sent (the expected bytes are in the host's source) and returns 0. */
static inline int recording_expect(const struct recording* r, int index, uint32_t scanner,
                                   const uint8_t* bytes, uint32_t length, int reply) {
  if (index >= r->count()) return 0;  /* the host reports the count */
  uint32_t n = r->length(index);
  const uint8_t* got = r->bytes(index);
  if (r->scanner(index) == scanner && n == length && memcmp(got, bytes, n) == 0 &&
      (r->had_reply(index) != 0) == (reply != 0))
    return 1;
  printf("command %d: scanner %u, reply area %d, bytes:", index, r->scanner(index), r->had_reply(index));
  for (uint32_t k = 0; k < n; ++k) printf(" %02X", got[k]);
  printf("\n");
  return 0;
}

#endif
