/*
 * kalvor: drive up to 20 laser scanners through a transport library.
 *
 * The whole interface is a set of flat C functions. A host calls DisplayInit
 * once, which loads the transport library "LASER.DLL" and initialises the
 * state of scanners 1 to 20. Every other export works on one scanner's state
 * record or sends one command byte string to the scanner through the
 * transport.
 *
 * Conventions shared by every export:
 * - A scanner number above 20, a track index above 31 or a slot index above 7
 *   makes the call do nothing; a getter then returns 0. Scanner 0 addresses a
 *   record that exists but is never initialised.
 * - Masked (capitalised) exports take a track mask (bit i selects track i) and
 *   a slot mask (bit s selects slot s, s = 0..7). MAKEMASK builds one bit.
 * - Angles given to masked exports are fractions of a full turn (times 360);
 *   positions and clip values are fractions of the coordinate range (times
 *   65535, truncated toward zero). Immediate lower-case setters store values
 *   unchanged.
 * - No export reports errors. A file that cannot be opened ends the call.
 */
#ifndef KALVOR_KALVOR_H
#define KALVOR_KALVOR_H

#include <stdint.h>

#if defined(_WIN32)
#  define KALVOR_CALL __cdecl
#  if defined(KALVOR_BUILDING)
#    define KALVOR_VISIBLE __declspec(dllexport)
#  else
#    define KALVOR_VISIBLE __declspec(dllimport)
#  endif
#else
#  define KALVOR_CALL
#  define KALVOR_VISIBLE __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
#  define KALVOR_EXTERN_C extern "C"
#else
#  define KALVOR_EXTERN_C
#endif

/** Marks an exported function, on its declaration and its definition. */
#define KALVOR_API KALVOR_EXTERN_C KALVOR_VISIBLE

/**
 * @defgroup lifecycle Library lifecycle
 * Binding the transport library and initialising the scanner table.
 * @{
 */

/**
 * Loads "LASER.DLL", binds its four entries, constructs the transport and
 * initialises the records of scanners 1 to 20. Each entry that cannot be
 * found is reported in a message box (caption "Error"). Does nothing while a
 * transport is already bound.
 */
KALVOR_API void KALVOR_CALL DisplayInit(void);

/**
 * Destroys the transport and releases "LASER.DLL". The scanner records keep
 * their contents; does nothing when no transport is loaded.
 */
KALVOR_API void KALVOR_CALL DisplayExit(void);

/**
 * Sends the two bytes 0x35, value to a scanner.
 * @param scanner scanner number, 1 to 20
 * @param value   the byte sent after the opcode
 */
KALVOR_API void KALVOR_CALL DisplaySetMaxScanner(uint32_t scanner, uint8_t value);

/**
 * Builds one bit of a track or slot mask.
 * @param n bit number; taken modulo 32
 * @return 1 shifted left by (n modulo 32)
 */
KALVOR_API uint32_t KALVOR_CALL MAKEMASK(int32_t n);

/** @} */

/**
 * @defgroup tracks Track records and track upload
 * The 32 tracks of a scanner and their serialisation for output.
 * @{
 */

/**
 * Writes the defaults into all 32 tracks of a scanner: one slot in use, unit
 * scales and sizes, full clip range, surface 1, rotation order 3. The track
 * UGC values and the prism mode keep their values.
 * @param scanner scanner number, 1 to 20
 */
KALVOR_API void KALVOR_CALL displayinittrack(uint32_t scanner);

/**
 * Sets the picture number of all 32 tracks to 0, so that the next upload
 * sends no track. Every other track field keeps its value.
 * @param scanner scanner number, 1 to 20
 */
KALVOR_API void KALVOR_CALL displaycleartrack(uint32_t scanner);

/**
 * Sends the track upload (opcode 0x01): the track count, then tracks 0 up to
 * the highest one with a nonzero picture number, each with the slots in use.
 * Then refreshes the full preview (0x7B) and, while Vistrel output is on,
 * the Vistrel preview (0x7E).
 * @param scanner scanner number, 1 to 20
 * @return the wait value that the scanner's answer left in the preview buffer
 */
KALVOR_API uint32_t KALVOR_CALL displayupdate(uint32_t scanner);

/**
 * The track upload of displayupdate with the opcode 0x16.
 * @param scanner scanner number, 1 to 20
 * @return the wait value that the scanner's answer left in the preview buffer
 */
KALVOR_API uint32_t KALVOR_CALL displayvisualupdate(uint32_t scanner);

/** @} */

/* ---- Slot transforms, track geometry, geometry commands (src/state) ---- */
/* @@anchor:state@@ */

/* ---- Colour effects, timeline, UGC and hierarchy (src/colour) ---- */
/* @@anchor:colour-effects@@ */

/* ---- Session, profile, device commands, previews (src/core) ---- */
/* @@anchor:core@@ */

/* ---- Colour buffers, palettes, DMX, geometry net (src/colour) ---- */
/* @@anchor:colour@@ */

/* ---- Pictures and picture files (src/pictures) ---- */
/* @@anchor:pictures@@ */

#endif /* KALVOR_KALVOR_H */
