/*
 * The recording transport: a LASER.DLL for tests. It records every command
 * it is given, answers queries with replies that a test sets, and can keep a
 * picture memory like a scanner's. Tests reach these functions by loading
 * "LASER.DLL" themselves, which yields the same module that kalvor bound.
 */
#ifndef KALVOR_RECORDER_H
#define KALVOR_RECORDER_H

#include <stdint.h>

#define RECORDER_FUNCTIONS(X)                                                     \
  X(int, recorder_count, (void))                                                  \
  X(uint32_t, recorder_scanner, (int index))                                      \
  X(uint32_t, recorder_length, (int index))                                       \
  X(const uint8_t*, recorder_bytes, (int index))                                  \
  X(int, recorder_had_reply, (int index))                                         \
  X(void, recorder_clear, (void))                                                 \
  X(void, recorder_set_reply, (uint8_t opcode, const uint8_t* bytes, uint32_t length)) \
  X(void, recorder_emulate_pictures, (int on))                                    \
  X(int, recorder_constructor_calls, (void))                                      \
  X(int, recorder_destructor_calls, (void))                                       \
  X(uint32_t, recorder_last_print, (void))                                        \
  X(void, recorder_set_print_result, (uint32_t result))

#endif
