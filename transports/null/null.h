/*
 * The null transport: a LASER.DLL that only receives. It counts what it is
 * given and, when asked to, keeps a small picture memory like a scanner's so
 * that the picture writers have something to read back. It never allocates:
 * every byte it keeps lies in static storage, so a program that counts heap
 * allocations sees only the library's own.
 */
#ifndef KALVOR_NULL_TRANSPORT_H
#define KALVOR_NULL_TRANSPORT_H

#include <stdint.h>

#define NULL_TRANSPORT_FUNCTIONS(X)                                   \
  X(void, null_reset, (void))                                         \
  X(uint64_t, null_commands, (void))                                  \
  X(uint64_t, null_bytes, (void))                                     \
  X(void, null_keep_pictures, (int on))

#endif
