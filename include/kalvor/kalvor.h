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
/**
 * @defgroup slots Slot transforms
 * The 8 transform slots of each track: pivot, angles, pre-move, post-move and
 * scale. Every export that writes slot s raises the track's slot count to at
 * least s + 1 so that the slot is sent with the next track upload; getters
 * never change it. Nothing is sent at once.
 * @{
 */

/**
 * @defgroup slots_ang Slot rotation angle
 * @ingroup slots
 * The slot fields angleX, angleY and angleZ (degrees).
 * @{
 */

/**
 * Stores the rotation angle angleX of one slot unchanged, raising the track's
 * slot count to at least slot + 1.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @param value     the new angleX, degrees
 */
KALVOR_API void KALVOR_CALL displayangx(uint32_t scanner, uint16_t track, uint8_t slot, double value);

/**
 * Stores the rotation angle angleY of one slot unchanged, raising the track's
 * slot count to at least slot + 1.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @param value     the new angleY, degrees
 */
KALVOR_API void KALVOR_CALL displayangy(uint32_t scanner, uint16_t track, uint8_t slot, double value);

/**
 * Stores the rotation angle angleZ of one slot unchanged, raising the track's
 * slot count to at least slot + 1.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @param value     the new angleZ, degrees
 */
KALVOR_API void KALVOR_CALL displayangz(uint32_t scanner, uint16_t track, uint8_t slot, double value);

/**
 * Stores the three rotation angle fields angleX, angleY and angleZ of one slot
 * unchanged, raising the track's slot count to at least slot + 1.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @param x         the new angleX, degrees
 * @param y         the new angleY, degrees
 * @param z         the new angleZ, degrees
 */
KALVOR_API void KALVOR_CALL displayang(uint32_t scanner, uint16_t track, uint8_t slot, double x, double y, double z);

/**
 * Reads the rotation angle angleX of one slot; the slot count is not changed.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @return the stored angleX, or 0 for an out-of-range scanner, track or slot
 */
KALVOR_API double KALVOR_CALL displaygetangx(uint32_t scanner, uint16_t track, uint8_t slot);

/**
 * Reads the rotation angle angleY of one slot; the slot count is not changed.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @return the stored angleY, or 0 for an out-of-range scanner, track or slot
 */
KALVOR_API double KALVOR_CALL displaygetangy(uint32_t scanner, uint16_t track, uint8_t slot);

/**
 * Reads the rotation angle angleZ of one slot; the slot count is not changed.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @return the stored angleZ, or 0 for an out-of-range scanner, track or slot
 */
KALVOR_API double KALVOR_CALL displaygetangz(uint32_t scanner, uint16_t track, uint8_t slot);

/**
 * For every selected slot of every selected track, adds value x 360 (value is
 * a fraction of a full turn, the field holds degrees), and raises the track's
 * slot count to at least s + 1 for each slot s visited.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  bit s selects slot s (0 to 7); bits 8 to 31 are ignored
 * @param reserved  not read
 * @param value     a fraction of a full turn
 */
KALVOR_API void KALVOR_CALL DisplayAngleX(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * For every selected slot of every selected track, adds value x 360 (value is
 * a fraction of a full turn, the field holds degrees), and raises the track's
 * slot count to at least s + 1 for each slot s visited.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  bit s selects slot s (0 to 7); bits 8 to 31 are ignored
 * @param reserved  not read
 * @param value     a fraction of a full turn
 */
KALVOR_API void KALVOR_CALL DisplayAngleY(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * For every selected slot of every selected track, adds value x 360 (value is
 * a fraction of a full turn, the field holds degrees), and raises the track's
 * slot count to at least s + 1 for each slot s visited.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  bit s selects slot s (0 to 7); bits 8 to 31 are ignored
 * @param reserved  not read
 * @param value     a fraction of a full turn
 */
KALVOR_API void KALVOR_CALL DisplayAngleZ(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * The three-axis form of DisplayAngleX: for every selected slot of every
 * selected track raises the slot count once, then updates angleX, angleY and
 * angleZ in this order, each with its own value: adds value x 360 (value is a
 * fraction of a full turn, the field holds degrees).
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  bit s selects slot s (0 to 7); bits 8 to 31 are ignored
 * @param reserved  not read
 * @param x         for angleX, a fraction of a full turn
 * @param y         for angleY, a fraction of a full turn
 * @param z         for angleZ, a fraction of a full turn
 */
KALVOR_API void KALVOR_CALL DisplayAngleXYZ(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double x, double y, double z);

/** @} */

/**
 * @defgroup slots_pivot Slot pivot point
 * @ingroup slots
 * The slot fields pivotX, pivotY and pivotZ (coordinate units).
 * @{
 */

/**
 * Stores the pivot point pivotX of one slot unchanged, raising the track's
 * slot count to at least slot + 1.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @param value     the new pivotX, coordinate units
 */
KALVOR_API void KALVOR_CALL displaypivotx(uint32_t scanner, uint16_t track, uint8_t slot, int32_t value);

/**
 * Stores the pivot point pivotY of one slot unchanged, raising the track's
 * slot count to at least slot + 1.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @param value     the new pivotY, coordinate units
 */
KALVOR_API void KALVOR_CALL displaypivoty(uint32_t scanner, uint16_t track, uint8_t slot, int32_t value);

/**
 * Stores the pivot point pivotZ of one slot unchanged, raising the track's
 * slot count to at least slot + 1.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @param value     the new pivotZ, coordinate units
 */
KALVOR_API void KALVOR_CALL displaypivotz(uint32_t scanner, uint16_t track, uint8_t slot, int32_t value);

/**
 * Stores the three pivot point fields pivotX, pivotY and pivotZ of one slot
 * unchanged, raising the track's slot count to at least slot + 1.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @param x         the new pivotX, coordinate units
 * @param y         the new pivotY, coordinate units
 * @param z         the new pivotZ, coordinate units
 */
KALVOR_API void KALVOR_CALL displaypivot(uint32_t scanner, uint16_t track, uint8_t slot, int32_t x, int32_t y, int32_t z);

/**
 * Reads the pivot point pivotX of one slot; the slot count is not changed.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @return the stored pivotX, or 0 for an out-of-range scanner, track or slot
 */
KALVOR_API int32_t KALVOR_CALL displaygetpivotx(uint32_t scanner, uint16_t track, uint8_t slot);

/**
 * Reads the pivot point pivotY of one slot; the slot count is not changed.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @return the stored pivotY, or 0 for an out-of-range scanner, track or slot
 */
KALVOR_API int32_t KALVOR_CALL displaygetpivoty(uint32_t scanner, uint16_t track, uint8_t slot);

/**
 * Reads the pivot point pivotZ of one slot; the slot count is not changed.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @return the stored pivotZ, or 0 for an out-of-range scanner, track or slot
 */
KALVOR_API int32_t KALVOR_CALL displaygetpivotz(uint32_t scanner, uint16_t track, uint8_t slot);

/**
 * For every selected slot of every selected track, adds value x 65535 to the
 * stored value and truncates the sum toward zero (a sum beyond the 32-bit
 * range gives the nearest end; NaN gives 0), and raises the track's slot count
 * to at least s + 1 for each slot s visited.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  bit s selects slot s (0 to 7); bits 8 to 31 are ignored
 * @param reserved  not read
 * @param value     a fraction of the coordinate range
 */
KALVOR_API void KALVOR_CALL DisplayPivotX(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * For every selected slot of every selected track, adds value x 65535 to the
 * stored value and truncates the sum toward zero (a sum beyond the 32-bit
 * range gives the nearest end; NaN gives 0), and raises the track's slot count
 * to at least s + 1 for each slot s visited.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  bit s selects slot s (0 to 7); bits 8 to 31 are ignored
 * @param reserved  not read
 * @param value     a fraction of the coordinate range
 */
KALVOR_API void KALVOR_CALL DisplayPivotY(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * For every selected slot of every selected track, adds value x 65535 to the
 * stored value and truncates the sum toward zero (a sum beyond the 32-bit
 * range gives the nearest end; NaN gives 0), and raises the track's slot count
 * to at least s + 1 for each slot s visited.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  bit s selects slot s (0 to 7); bits 8 to 31 are ignored
 * @param reserved  not read
 * @param value     a fraction of the coordinate range
 */
KALVOR_API void KALVOR_CALL DisplayPivotZ(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * The three-axis form of DisplayPivotX: for every selected slot of every
 * selected track raises the slot count once, then updates pivotX, pivotY and
 * pivotZ in this order, each with its own value: adds value x 65535 to the
 * stored value and truncates the sum toward zero (a sum beyond the 32-bit
 * range gives the nearest end; NaN gives 0).
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  bit s selects slot s (0 to 7); bits 8 to 31 are ignored
 * @param reserved  not read
 * @param x         for pivotX, a fraction of the coordinate range
 * @param y         for pivotY, a fraction of the coordinate range
 * @param z         for pivotZ, a fraction of the coordinate range
 */
KALVOR_API void KALVOR_CALL DisplayPivotXYZ(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double x, double y, double z);

/** @} */

/**
 * @defgroup slots_pre Slot pre-move offset
 * @ingroup slots
 * The slot fields preMoveX, preMoveY and preMoveZ (coordinate units).
 * @{
 */

/**
 * Stores the pre-move offset preMoveX of one slot unchanged, raising the
 * track's slot count to at least slot + 1.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @param value     the new preMoveX, coordinate units
 */
KALVOR_API void KALVOR_CALL displayprex(uint32_t scanner, uint16_t track, uint8_t slot, int32_t value);

/**
 * Stores the pre-move offset preMoveY of one slot unchanged, raising the
 * track's slot count to at least slot + 1.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @param value     the new preMoveY, coordinate units
 */
KALVOR_API void KALVOR_CALL displayprey(uint32_t scanner, uint16_t track, uint8_t slot, int32_t value);

/**
 * Stores the pre-move offset preMoveZ of one slot unchanged, raising the
 * track's slot count to at least slot + 1.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @param value     the new preMoveZ, coordinate units
 */
KALVOR_API void KALVOR_CALL displayprez(uint32_t scanner, uint16_t track, uint8_t slot, int32_t value);

/**
 * Stores the three pre-move offset fields preMoveX, preMoveY and preMoveZ of
 * one slot unchanged, raising the track's slot count to at least slot + 1.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @param x         the new preMoveX, coordinate units
 * @param y         the new preMoveY, coordinate units
 * @param z         the new preMoveZ, coordinate units
 */
KALVOR_API void KALVOR_CALL displaypre(uint32_t scanner, uint16_t track, uint8_t slot, int32_t x, int32_t y, int32_t z);

/**
 * Reads the pre-move offset preMoveX of one slot; the slot count is not
 * changed.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @return the stored preMoveX, or 0 for an out-of-range scanner, track or slot
 */
KALVOR_API int32_t KALVOR_CALL displaygetprex(uint32_t scanner, uint16_t track, uint8_t slot);

/**
 * Reads the pre-move offset preMoveY of one slot; the slot count is not
 * changed.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @return the stored preMoveY, or 0 for an out-of-range scanner, track or slot
 */
KALVOR_API int32_t KALVOR_CALL displaygetprey(uint32_t scanner, uint16_t track, uint8_t slot);

/**
 * Reads the pre-move offset preMoveZ of one slot; the slot count is not
 * changed.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @return the stored preMoveZ, or 0 for an out-of-range scanner, track or slot
 */
KALVOR_API int32_t KALVOR_CALL displaygetprez(uint32_t scanner, uint16_t track, uint8_t slot);

/**
 * For every selected slot of every selected track, adds value x 65535 to the
 * stored value and truncates the sum toward zero (a sum beyond the 32-bit
 * range gives the nearest end; NaN gives 0), and raises the track's slot count
 * to at least s + 1 for each slot s visited.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  bit s selects slot s (0 to 7); bits 8 to 31 are ignored
 * @param reserved  not read
 * @param value     a fraction of the coordinate range
 */
KALVOR_API void KALVOR_CALL DisplayPreMoveX(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * For every selected slot of every selected track, adds value x 65535 to the
 * stored value and truncates the sum toward zero (a sum beyond the 32-bit
 * range gives the nearest end; NaN gives 0), and raises the track's slot count
 * to at least s + 1 for each slot s visited.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  bit s selects slot s (0 to 7); bits 8 to 31 are ignored
 * @param reserved  not read
 * @param value     a fraction of the coordinate range
 */
KALVOR_API void KALVOR_CALL DisplayPreMoveY(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * For every selected slot of every selected track, adds value x 65535 to the
 * stored value and truncates the sum toward zero (a sum beyond the 32-bit
 * range gives the nearest end; NaN gives 0), and raises the track's slot count
 * to at least s + 1 for each slot s visited.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  bit s selects slot s (0 to 7); bits 8 to 31 are ignored
 * @param reserved  not read
 * @param value     a fraction of the coordinate range
 */
KALVOR_API void KALVOR_CALL DisplayPreMoveZ(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * The three-axis form of DisplayPreMoveX: for every selected slot of every
 * selected track raises the slot count once, then updates preMoveX, preMoveY
 * and preMoveZ in this order, each with its own value: adds value x 65535 to
 * the stored value and truncates the sum toward zero (a sum beyond the 32-bit
 * range gives the nearest end; NaN gives 0).
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  bit s selects slot s (0 to 7); bits 8 to 31 are ignored
 * @param reserved  not read
 * @param x         for preMoveX, a fraction of the coordinate range
 * @param y         for preMoveY, a fraction of the coordinate range
 * @param z         for preMoveZ, a fraction of the coordinate range
 */
KALVOR_API void KALVOR_CALL DisplayPreMoveXYZ(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double x, double y, double z);

/** @} */

/**
 * @defgroup slots_post Slot post-move offset
 * @ingroup slots
 * The slot fields postMoveX, postMoveY and postMoveZ (coordinate units).
 * @{
 */

/**
 * Stores the post-move offset postMoveX of one slot unchanged, raising the
 * track's slot count to at least slot + 1.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @param value     the new postMoveX, coordinate units
 */
KALVOR_API void KALVOR_CALL displaypostx(uint32_t scanner, uint16_t track, uint8_t slot, int32_t value);

/**
 * Stores the post-move offset postMoveY of one slot unchanged, raising the
 * track's slot count to at least slot + 1.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @param value     the new postMoveY, coordinate units
 */
KALVOR_API void KALVOR_CALL displayposty(uint32_t scanner, uint16_t track, uint8_t slot, int32_t value);

/**
 * Stores the post-move offset postMoveZ of one slot unchanged, raising the
 * track's slot count to at least slot + 1.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @param value     the new postMoveZ, coordinate units
 */
KALVOR_API void KALVOR_CALL displaypostz(uint32_t scanner, uint16_t track, uint8_t slot, int32_t value);

/**
 * Stores the three post-move offset fields postMoveX, postMoveY and postMoveZ
 * of one slot unchanged, raising the track's slot count to at least slot + 1.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @param x         the new postMoveX, coordinate units
 * @param y         the new postMoveY, coordinate units
 * @param z         the new postMoveZ, coordinate units
 */
KALVOR_API void KALVOR_CALL displaypost(uint32_t scanner, uint16_t track, uint8_t slot, int32_t x, int32_t y, int32_t z);

/**
 * Reads the post-move offset postMoveX of one slot; the slot count is not
 * changed.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @return the stored postMoveX, or 0 for an out-of-range scanner, track or slot
 */
KALVOR_API int32_t KALVOR_CALL displaygetpostx(uint32_t scanner, uint16_t track, uint8_t slot);

/**
 * Reads the post-move offset postMoveY of one slot; the slot count is not
 * changed.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @return the stored postMoveY, or 0 for an out-of-range scanner, track or slot
 */
KALVOR_API int32_t KALVOR_CALL displaygetposty(uint32_t scanner, uint16_t track, uint8_t slot);

/**
 * Reads the post-move offset postMoveZ of one slot; the slot count is not
 * changed.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @return the stored postMoveZ, or 0 for an out-of-range scanner, track or slot
 */
KALVOR_API int32_t KALVOR_CALL displaygetpostz(uint32_t scanner, uint16_t track, uint8_t slot);

/**
 * For every selected slot of every selected track, adds value x 65535 to the
 * stored value and truncates the sum toward zero (a sum beyond the 32-bit
 * range gives the nearest end; NaN gives 0), and raises the track's slot count
 * to at least s + 1 for each slot s visited.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  bit s selects slot s (0 to 7); bits 8 to 31 are ignored
 * @param reserved  not read
 * @param value     a fraction of the coordinate range
 */
KALVOR_API void KALVOR_CALL DisplayPostMoveX(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * For every selected slot of every selected track, adds value x 65535 to the
 * stored value and truncates the sum toward zero (a sum beyond the 32-bit
 * range gives the nearest end; NaN gives 0), and raises the track's slot count
 * to at least s + 1 for each slot s visited.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  bit s selects slot s (0 to 7); bits 8 to 31 are ignored
 * @param reserved  not read
 * @param value     a fraction of the coordinate range
 */
KALVOR_API void KALVOR_CALL DisplayPostMoveY(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * For every selected slot of every selected track, adds value x 65535 to the
 * stored value and truncates the sum toward zero (a sum beyond the 32-bit
 * range gives the nearest end; NaN gives 0), and raises the track's slot count
 * to at least s + 1 for each slot s visited.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  bit s selects slot s (0 to 7); bits 8 to 31 are ignored
 * @param reserved  not read
 * @param value     a fraction of the coordinate range
 */
KALVOR_API void KALVOR_CALL DisplayPostMoveZ(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * The three-axis form of DisplayPostMoveX: for every selected slot of every
 * selected track raises the slot count once, then updates postMoveX, postMoveY
 * and postMoveZ in this order, each with its own value: adds value x 65535 to
 * the stored value and truncates the sum toward zero (a sum beyond the 32-bit
 * range gives the nearest end; NaN gives 0).
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  bit s selects slot s (0 to 7); bits 8 to 31 are ignored
 * @param reserved  not read
 * @param x         for postMoveX, a fraction of the coordinate range
 * @param y         for postMoveY, a fraction of the coordinate range
 * @param z         for postMoveZ, a fraction of the coordinate range
 */
KALVOR_API void KALVOR_CALL DisplayPostMoveXYZ(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double x, double y, double z);

/** @} */

/**
 * @defgroup slots_scale Slot scale factor
 * @ingroup slots
 * The slot fields scaleX, scaleY and scaleZ (1.0 leaves the size unchanged).
 * @{
 */

/**
 * Stores the scale factor scaleX of one slot unchanged, raising the track's
 * slot count to at least slot + 1.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @param value     the new scaleX, 1.0 leaves the size unchanged
 */
KALVOR_API void KALVOR_CALL displayscalex(uint32_t scanner, uint16_t track, uint8_t slot, double value);

/**
 * Stores the scale factor scaleY of one slot unchanged, raising the track's
 * slot count to at least slot + 1.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @param value     the new scaleY, 1.0 leaves the size unchanged
 */
KALVOR_API void KALVOR_CALL displayscaley(uint32_t scanner, uint16_t track, uint8_t slot, double value);

/**
 * Stores the scale factor scaleZ of one slot unchanged, raising the track's
 * slot count to at least slot + 1.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @param value     the new scaleZ, 1.0 leaves the size unchanged
 */
KALVOR_API void KALVOR_CALL displayscalez(uint32_t scanner, uint16_t track, uint8_t slot, double value);

/**
 * Stores the three scale factor fields scaleX, scaleY and scaleZ of one slot
 * unchanged, raising the track's slot count to at least slot + 1.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @param x         the new scaleX, 1.0 leaves the size unchanged
 * @param y         the new scaleY, 1.0 leaves the size unchanged
 * @param z         the new scaleZ, 1.0 leaves the size unchanged
 */
KALVOR_API void KALVOR_CALL displayscale(uint32_t scanner, uint16_t track, uint8_t slot, double x, double y, double z);

/**
 * Reads the scale factor scaleX of one slot; the slot count is not changed.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @return the stored scaleX, or 0 for an out-of-range scanner, track or slot
 */
KALVOR_API double KALVOR_CALL displaygetscalex(uint32_t scanner, uint16_t track, uint8_t slot);

/**
 * Reads the scale factor scaleY of one slot; the slot count is not changed.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @return the stored scaleY, or 0 for an out-of-range scanner, track or slot
 */
KALVOR_API double KALVOR_CALL displaygetscaley(uint32_t scanner, uint16_t track, uint8_t slot);

/**
 * Reads the scale factor scaleZ of one slot; the slot count is not changed.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param slot      slot index, 0 to 7 (low 8 bits used)
 * @return the stored scaleZ, or 0 for an out-of-range scanner, track or slot
 */
KALVOR_API double KALVOR_CALL displaygetscalez(uint32_t scanner, uint16_t track, uint8_t slot);

/**
 * For every selected slot of every selected track, multiplies the stored
 * factor by value, and raises the track's slot count to at least s + 1 for
 * each slot s visited.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  bit s selects slot s (0 to 7); bits 8 to 31 are ignored
 * @param reserved  not read
 * @param value     a factor
 */
KALVOR_API void KALVOR_CALL DisplayScaleX(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * For every selected slot of every selected track, multiplies the stored
 * factor by value, and raises the track's slot count to at least s + 1 for
 * each slot s visited.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  bit s selects slot s (0 to 7); bits 8 to 31 are ignored
 * @param reserved  not read
 * @param value     a factor
 */
KALVOR_API void KALVOR_CALL DisplayScaleY(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * For every selected slot of every selected track, multiplies the stored
 * factor by value, and raises the track's slot count to at least s + 1 for
 * each slot s visited.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  bit s selects slot s (0 to 7); bits 8 to 31 are ignored
 * @param reserved  not read
 * @param value     a factor
 */
KALVOR_API void KALVOR_CALL DisplayScaleZ(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * The three-axis form of DisplayScaleX: for every selected slot of every
 * selected track raises the slot count once, then updates scaleX, scaleY and
 * scaleZ in this order, each with its own value: multiplies the stored factor
 * by value.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  bit s selects slot s (0 to 7); bits 8 to 31 are ignored
 * @param reserved  not read
 * @param x         for scaleX, a factor
 * @param y         for scaleY, a factor
 * @param z         for scaleZ, a factor
 */
KALVOR_API void KALVOR_CALL DisplayScaleXYZ(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double x, double y, double z);

/** @} */

/** @} */

/**
 * @defgroup track_geometry Track geometry
 * World angles, rotation, size, shift, view, shear, clip box, depth cue, scan
 * limits, code fields, prism and the picture shown, per track. Immediate
 * setters store their values unchanged; the change is sent with the next
 * track upload.
 * @{
 */

/**
 * Stores the world angle worldAngleX of one track.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param value     degrees
 */
KALVOR_API void KALVOR_CALL displayworldangx(uint32_t scanner, uint16_t track, double value);

/**
 * Stores the world angle worldAngleY of one track.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param value     degrees
 */
KALVOR_API void KALVOR_CALL displayworldangy(uint32_t scanner, uint16_t track, double value);

/**
 * Stores the world angle worldAngleZ of one track.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param value     degrees
 */
KALVOR_API void KALVOR_CALL displayworldangz(uint32_t scanner, uint16_t track, double value);

/**
 * Stores the three world angles of one track.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param x         worldAngleX, degrees
 * @param y         worldAngleY, degrees
 * @param z         worldAngleZ, degrees
 */
KALVOR_API void KALVOR_CALL displayworldang(uint32_t scanner, uint16_t track, double x, double y, double z);

/**
 * Stores the size factor sizeX of one track.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param value     factor; 1.0 leaves the size unchanged
 */
KALVOR_API void KALVOR_CALL displaysizex(uint32_t scanner, uint16_t track, double value);

/**
 * Stores the size factor sizeY of one track.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param value     factor; 1.0 leaves the size unchanged
 */
KALVOR_API void KALVOR_CALL displaysizey(uint32_t scanner, uint16_t track, double value);

/**
 * Stores both size factors of one track.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param x         sizeX factor
 * @param y         sizeY factor
 */
KALVOR_API void KALVOR_CALL displaysize(uint32_t scanner, uint16_t track, double x, double y);

/**
 * Reads the size factor sizeX of one track.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @return the factor, or 0 for an out-of-range scanner or track
 */
KALVOR_API double KALVOR_CALL displaygetsizex(uint32_t scanner, uint16_t track);

/**
 * Reads the size factor sizeY of one track.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @return the factor, or 0 for an out-of-range scanner or track
 */
KALVOR_API double KALVOR_CALL displaygetsizey(uint32_t scanner, uint16_t track);

/**
 * Stores the whole clip box of one track.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param x1        clipX1, 0 to 65535 across the coordinate range
 * @param y1        clipY1, 0 to 65535
 * @param z1        clipZ1, near depth in coordinate units
 * @param x2        clipX2, 0 to 65535
 * @param y2        clipY2, 0 to 65535
 * @param z2        clipZ2, far depth in coordinate units
 */
KALVOR_API void KALVOR_CALL displayclip(uint32_t scanner, uint16_t track, uint16_t x1, uint16_t y1, int32_t z1, uint16_t x2, uint16_t y2, int32_t z2);

/**
 * Stores the clip rectangle field clipX1 of one track.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param value     0 to 65535 across the coordinate range
 */
KALVOR_API void KALVOR_CALL displayclipx1(uint32_t scanner, uint16_t track, uint16_t value);

/**
 * Stores the clip rectangle field clipY1 of one track.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param value     0 to 65535 across the coordinate range
 */
KALVOR_API void KALVOR_CALL displayclipy1(uint32_t scanner, uint16_t track, uint16_t value);

/**
 * Stores the clip rectangle field clipX2 of one track.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param value     0 to 65535 across the coordinate range
 */
KALVOR_API void KALVOR_CALL displayclipx2(uint32_t scanner, uint16_t track, uint16_t value);

/**
 * Stores the clip rectangle field clipY2 of one track.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param value     0 to 65535 across the coordinate range
 */
KALVOR_API void KALVOR_CALL displayclipy2(uint32_t scanner, uint16_t track, uint16_t value);

/**
 * Stores the near clip depth clipZ1 of one track.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param value     coordinate units
 */
KALVOR_API void KALVOR_CALL displayclipz1(uint32_t scanner, uint16_t track, int32_t value);

/**
 * Stores the far clip depth clipZ2 of one track.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param value     coordinate units
 */
KALVOR_API void KALVOR_CALL displayclipz2(uint32_t scanner, uint16_t track, int32_t value);

/**
 * Stores the two depth-cue values of one track; the scanner interprets them.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param first     depthCue1
 * @param second    depthCue2
 */
KALVOR_API void KALVOR_CALL displaydepthcue(uint32_t scanner, uint16_t track, uint32_t first, uint32_t second);

/**
 * Stores the two scan limits of one track. The track is taken as a full 32-bit
 * value: 65,536 + 3 is out of range, not track 3.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (all 32 bits used)
 * @param low       scanLimitLow
 * @param high      scanLimitHigh
 */
KALVOR_API void KALVOR_CALL displayscanlimits(uint32_t scanner, uint32_t track, double low, double high);

/**
 * Stores rotationOrder of one track: the code for the order in which the
 * scanner applies rotations.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param value     the new rotationOrder
 */
KALVOR_API void KALVOR_CALL displayrotationorder(uint32_t scanner, uint16_t track, uint8_t value);

/**
 * Stores pipeline of one track: the pipeline value.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param value     the new pipeline
 */
KALVOR_API void KALVOR_CALL displaypipeline(uint32_t scanner, uint16_t track, uint32_t value);

/**
 * Stores surface of one track: the surface code.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param value     the new surface
 */
KALVOR_API void KALVOR_CALL displaysurface(uint32_t scanner, uint16_t track, uint8_t value);

/**
 * Stores flags of one track: the whole flag word (0 clears every bit).
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param value     the new flags
 */
KALVOR_API void KALVOR_CALL displayflags(uint32_t scanner, uint16_t track, uint16_t value);

/**
 * Stores world of one track: the world number of the track.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param value     the new world
 */
KALVOR_API void KALVOR_CALL displayworld(uint32_t scanner, uint16_t track, uint8_t value);

/**
 * Sets flag bits of one track: flags becomes flags OR bits.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param bits      the bits to set
 */
KALVOR_API void KALVOR_CALL displaysetflag(uint32_t scanner, uint16_t track, uint16_t bits);

/**
 * Sets the picture a track shows. A nonzero picture makes the track active, so
 * the next upload sends it; 0 makes it inactive.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param picture   picture number, 0 for none
 */
KALVOR_API void KALVOR_CALL displayframe(uint32_t scanner, uint16_t track, uint16_t picture);

/**
 * Stores a morph in one track: the picture shown (which makes the track active
 * when nonzero), the second picture and the amount, unchanged (no limit).
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param picture   pictureNumber
 * @param second    morphPicture
 * @param amount    morph amount, stored unchanged
 */
KALVOR_API void KALVOR_CALL displaymorphing(uint32_t scanner, uint16_t track, uint16_t picture, uint16_t second, double amount);

/** @} */

/**
 * @defgroup track_geometry_masked Track geometry through masks
 * Exports that change every track selected by a track mask. They ignore the
 * slot mask and never read the reserved argument. Angles are fractions of a
 * full turn (x 360); shift, view and clip values fractions of the
 * coordinate range (x 65535). The argument is converted once, before the
 * loop.
 * @{
 */

/**
 * Adds value x 360 to worldAngleX of every selected track; the sum is not
 * reduced modulo 360.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     a fraction of a full turn
 */
KALVOR_API void KALVOR_CALL DisplayWorldAngleX(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Adds value x 360 to worldAngleY of every selected track; the sum is not
 * reduced modulo 360.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     a fraction of a full turn
 */
KALVOR_API void KALVOR_CALL DisplayWorldAngleY(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Adds value x 360 to worldAngleZ of every selected track; the sum is not
 * reduced modulo 360.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     a fraction of a full turn
 */
KALVOR_API void KALVOR_CALL DisplayWorldAngleZ(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Adds x x 360, y x 360 and z x 360 to the three world angles of every
 * selected track.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param x         for worldAngleX, a fraction of a full turn
 * @param y         for worldAngleY, a fraction of a full turn
 * @param z         for worldAngleZ, a fraction of a full turn
 */
KALVOR_API void KALVOR_CALL DisplayWorldAngleXYZ(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double x, double y, double z);

/**
 * Adds value x 360 to rotateX of every selected track; the sum is not reduced
 * modulo 360.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     a fraction of a full turn
 */
KALVOR_API void KALVOR_CALL DisplayRotateX(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Adds value x 360 to rotateY of every selected track; the sum is not reduced
 * modulo 360.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     a fraction of a full turn
 */
KALVOR_API void KALVOR_CALL DisplayRotateY(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Adds value x 360 to rotateZ of every selected track; the sum is not reduced
 * modulo 360.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     a fraction of a full turn
 */
KALVOR_API void KALVOR_CALL DisplayRotateZ(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Multiplies sizeX of every selected track by value.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     factor
 */
KALVOR_API void KALVOR_CALL DisplaySizeX(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Multiplies sizeY of every selected track by value.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     factor
 */
KALVOR_API void KALVOR_CALL DisplaySizeY(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Multiplies sizeX of every selected track by value. The same as DisplaySizeX.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     factor
 */
KALVOR_API void KALVOR_CALL TDisplaySizeX(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Multiplies sizeY of every selected track by value. The same as DisplaySizeY.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     factor
 */
KALVOR_API void KALVOR_CALL TDisplaySizeY(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Multiplies sizeX by x and sizeY by y in every selected track.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param x         factor for sizeX
 * @param y         factor for sizeY
 */
KALVOR_API void KALVOR_CALL DisplaySizeXY(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double x, double y);

/**
 * Adds n = trunc(value x 65535) to shiftX of every selected track, with 32-bit
 * wrap-around. The increment is truncated before it is added, so 0.5 always
 * moves the field by 32767 whatever its sign.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     a fraction of the coordinate range
 */
KALVOR_API void KALVOR_CALL DisplayShiftX(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Adds n = trunc(value x 65535) to shiftY of every selected track, with 32-bit
 * wrap-around. The increment is truncated before it is added, so 0.5 always
 * moves the field by 32767 whatever its sign.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     a fraction of the coordinate range
 */
KALVOR_API void KALVOR_CALL DisplayShiftY(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Adds n = trunc(value x 65535) to shiftX of every selected track, with 32-bit
 * wrap-around. The increment is truncated before it is added, so 0.5 always
 * moves the field by 32767 whatever its sign. The same as DisplayShiftX.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     a fraction of the coordinate range
 */
KALVOR_API void KALVOR_CALL TDisplayShiftX(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Adds n = trunc(value x 65535) to shiftY of every selected track, with 32-bit
 * wrap-around. The increment is truncated before it is added, so 0.5 always
 * moves the field by 32767 whatever its sign. The same as DisplayShiftY.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     a fraction of the coordinate range
 */
KALVOR_API void KALVOR_CALL TDisplayShiftY(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Adds trunc(x x 65535) to shiftX and trunc(y x 65535) to shiftY of every
 * selected track, with 32-bit wrap-around.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param x         for shiftX, a fraction of the coordinate range
 * @param y         for shiftY, a fraction of the coordinate range
 */
KALVOR_API void KALVOR_CALL DisplayShiftXY(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double x, double y);

/**
 * Adds n = trunc(value x 65535) to viewX of every selected track, with 32-bit
 * wrap-around. The increment is truncated before it is added, so 0.5 always
 * moves the field by 32767 whatever its sign.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     a fraction of the coordinate range
 */
KALVOR_API void KALVOR_CALL DisplayViewX(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Adds n = trunc(value x 65535) to viewY of every selected track, with 32-bit
 * wrap-around. The increment is truncated before it is added, so 0.5 always
 * moves the field by 32767 whatever its sign.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     a fraction of the coordinate range
 */
KALVOR_API void KALVOR_CALL DisplayViewY(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Adds n = trunc(value x 65535) to viewZ of every selected track, with 32-bit
 * wrap-around. The increment is truncated before it is added, so 0.5 always
 * moves the field by 32767 whatever its sign.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     a fraction of the coordinate range
 */
KALVOR_API void KALVOR_CALL DisplayViewZ(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Adds trunc(x x 65535), trunc(y x 65535) and trunc(z x 65535) to viewX, viewY
 * and viewZ of every selected track, with 32-bit wrap-around.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param x         for viewX, a fraction of the coordinate range
 * @param y         for viewY, a fraction of the coordinate range
 * @param z         for viewZ, a fraction of the coordinate range
 */
KALVOR_API void KALVOR_CALL DisplayViewXYZ(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double x, double y, double z);

/**
 * Replaces the shear factor shearXByY of every selected track by value.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     shear factor
 */
KALVOR_API void KALVOR_CALL DisplayShearXByY(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Replaces the shear factor shearXByZ of every selected track by value.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     shear factor
 */
KALVOR_API void KALVOR_CALL DisplayShearXByZ(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Replaces the shear factor shearYByX of every selected track by value.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     shear factor
 */
KALVOR_API void KALVOR_CALL DisplayShearYByX(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Replaces the shear factor shearYByZ of every selected track by value.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     shear factor
 */
KALVOR_API void KALVOR_CALL DisplayShearYByZ(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Replaces the shear factor shearZByX of every selected track by value.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     shear factor
 */
KALVOR_API void KALVOR_CALL DisplayShearZByX(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Replaces the shear factor shearZByY of every selected track by value.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     shear factor
 */
KALVOR_API void KALVOR_CALL DisplayShearZByY(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Replaces the six shear factors of every selected track.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param xByY      shearXByY
 * @param xByZ      shearXByZ
 * @param yByX      shearYByX
 * @param yByZ      shearYByZ
 * @param zByX      shearZByX
 * @param zByY      shearZByY
 */
KALVOR_API void KALVOR_CALL DisplayShear(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double xByY, double xByZ, double yByX, double yByZ, double zByX, double zByY);

/**
 * Replaces clipX1 of every selected track by the low 16 bits of trunc(value x
 * 65535), i.e. modulo 65536: 1.0 gives 65535, 1.5 gives 32766, -0.5 gives
 * 32769.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     a fraction of the coordinate range
 */
KALVOR_API void KALVOR_CALL DisplayClipX1(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Replaces clipY1 of every selected track by the low 16 bits of trunc(value x
 * 65535), i.e. modulo 65536: 1.0 gives 65535, 1.5 gives 32766, -0.5 gives
 * 32769.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     a fraction of the coordinate range
 */
KALVOR_API void KALVOR_CALL DisplayClipY1(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Replaces clipX2 of every selected track by the low 16 bits of trunc(value x
 * 65535), i.e. modulo 65536: 1.0 gives 65535, 1.5 gives 32766, -0.5 gives
 * 32769.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     a fraction of the coordinate range
 */
KALVOR_API void KALVOR_CALL DisplayClipX2(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Replaces clipY2 of every selected track by the low 16 bits of trunc(value x
 * 65535), i.e. modulo 65536: 1.0 gives 65535, 1.5 gives 32766, -0.5 gives
 * 32769.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     a fraction of the coordinate range
 */
KALVOR_API void KALVOR_CALL DisplayClipY2(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Replaces clipZ1 of every selected track by trunc(value x 65535), all 32
 * bits.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     a fraction of the coordinate range; -2.0 gives -131070
 */
KALVOR_API void KALVOR_CALL DisplayClipZ1(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Replaces clipZ2 of every selected track by trunc(value x 65535), all 32
 * bits.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     a fraction of the coordinate range; -2.0 gives -131070
 */
KALVOR_API void KALVOR_CALL DisplayClipZ2(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Replaces the whole clip box of every selected track, each value converted as
 * by DisplayClipX1 (rectangle) or DisplayClipZ1 (depth).
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param x1        clipX1, a fraction of the coordinate range
 * @param y1        clipY1, a fraction of the coordinate range
 * @param z1        clipZ1, a fraction of the coordinate range
 * @param x2        clipX2, a fraction of the coordinate range
 * @param y2        clipY2, a fraction of the coordinate range
 * @param z2        clipZ2, a fraction of the coordinate range
 */
KALVOR_API void KALVOR_CALL DisplayClipCube(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double x1, double y1, double z1, double x2, double y2, double z2);

/**
 * Replaces pipeline of every selected track by trunc(value x 65535), where a
 * negative product is raised to 0 first; there is no upper limit.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     a fraction of the coordinate range
 */
KALVOR_API void KALVOR_CALL DisplayPipeline(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Stores the prism settings of every selected track: the factor limited to
 * -4..4, then the count limited to 0..24, and the mode unchanged.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param count     prism count; below 0 gives 0, above 24 gives 24
 * @param factor    prism factor; below -4 gives -4, otherwise above 4 gives 4 (NaN passes)
 * @param mode      prism mode, stored unchanged
 */
KALVOR_API void KALVOR_CALL DisplayPrism(uint32_t scanner, uint32_t trackMask, int32_t count, double factor, uint8_t mode);

/** @} */

/**
 * @defgroup geometry_commands Geometry commands
 * Commands built from their arguments and sent at once; nothing is stored.
 * The queries clear their answer area first, so with no transport bound their
 * out-values become 0; a null out-pointer is skipped.
 * @{
 */

/**
 * Sends a morph at once: 0x07, track u16, picture u16, second picture u16,
 * amount f64 limited to 0..1 (15 bytes).
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param picture   first picture
 * @param second    second picture
 * @param amount    morph amount; below 0 gives 0, otherwise above 1 gives 1 (NaN passes)
 */
KALVOR_API void KALVOR_CALL displaymorph(uint32_t scanner, uint16_t track, uint16_t picture, uint16_t second, double amount);

/**
 * Camera query: sends 0x09, index u16, fraction f64 limited to 0..1, mode u8
 * (12 bytes) with a 36-byte answer area, then copies the six answer values to
 * the out-pointers.
 *
 * @param scanner   scanner number, 1 to 20
 * @param index     camera index
 * @param fraction  fraction; below 0 gives 0, otherwise above 1 gives 1
 * @param mode      mode byte, sent unchanged
 * @param v1        receives the first 32-bit value of the answer (offset 0)
 * @param v2        receives the second 32-bit value (offset 4)
 * @param v3        receives the third 32-bit value (offset 8)
 * @param d1        receives the first double (offset 12)
 * @param d2        receives the second double (offset 20)
 * @param d3        receives the third double (offset 28)
 */
KALVOR_API void KALVOR_CALL displaycamera(uint32_t scanner, uint16_t index, double fraction, uint8_t mode, int32_t* v1, int32_t* v2, int32_t* v3, double* d1, double* d2, double* d3);

/**
 * Second camera query: sends 0x1E, index u16, second index u16, fraction f64
 * limited to 0..1 (13 bytes) with a 36-byte answer area, then copies the six
 * answer values as displaycamera does.
 *
 * @param scanner   scanner number, 1 to 20
 * @param index     first index
 * @param second    second index
 * @param fraction  fraction; below 0 gives 0, otherwise above 1 gives 1
 * @param v1        receives the first 32-bit value of the answer (offset 0)
 * @param v2        receives the second 32-bit value (offset 4)
 * @param v3        receives the third 32-bit value (offset 8)
 * @param d1        receives the first double (offset 12)
 * @param d2        receives the second double (offset 20)
 * @param d3        receives the third double (offset 28)
 */
KALVOR_API void KALVOR_CALL displaycamera2(uint32_t scanner, uint16_t index, uint16_t second, double fraction, int32_t* v1, int32_t* v2, int32_t* v3, double* d1, double* d2, double* d3);

/**
 * Sends the skew value: 0x1A, value u16 (3 bytes).
 *
 * @param scanner   scanner number, 1 to 20
 * @param value     skew value
 */
KALVOR_API void KALVOR_CALL displayskew(uint32_t scanner, uint16_t value);

/**
 * Sends the shift and size of the whole scanner: 0x1D, shift x i32, shift y
 * i32, size x f64, size y f64 (25 bytes), all unchanged.
 *
 * @param scanner   scanner number, 1 to 20
 * @param shiftX    shift x, coordinate units
 * @param shiftY    shift y, coordinate units
 * @param sizeX     size factor x
 * @param sizeY     size factor y
 */
KALVOR_API void KALVOR_CALL displayglobalshiftsize(uint32_t scanner, int32_t shiftX, int32_t shiftY, double sizeX, double sizeY);

/**
 * Sends the geometry of one world: 0x0E, world u16, shift x i32, shift y i32,
 * size x f64, size y f64, then f1..f4 each as the low 16 bits of trunc(f x
 * 65535), then angle x 360 as f64 (43 bytes).
 *
 * @param scanner   scanner number, 1 to 20
 * @param world     world number
 * @param shiftX    shift x, coordinate units
 * @param shiftY    shift y, coordinate units
 * @param sizeX     size factor x
 * @param sizeY     size factor y
 * @param f1        first fraction (offset 27)
 * @param f2        second fraction (offset 29)
 * @param f3        third fraction (offset 31)
 * @param f4        fourth fraction (offset 33)
 * @param angle     a fraction of a full turn, sent in degrees
 */
KALVOR_API void KALVOR_CALL displayworldsetshiftsize(uint32_t scanner, uint16_t world, int32_t shiftX, int32_t shiftY, double sizeX, double sizeY, double f1, double f2, double f3, double f4, double angle);

/**
 * Reads the shift and size of one world: sends 0x14, world u16 and 24 zero
 * bytes in a 27-byte buffer that also receives the answer, then copies the
 * values at offsets 3, 7, 11 and 19 of that buffer.
 *
 * @param scanner   scanner number, 1 to 20
 * @param world     world number
 * @param shiftX    receives shift x (i32 at offset 3)
 * @param shiftY    receives shift y (i32 at offset 7)
 * @param sizeX     receives size x (f64 at offset 11)
 * @param sizeY     receives size y (f64 at offset 19)
 */
KALVOR_API void KALVOR_CALL displayworldgetshiftsize(uint32_t scanner, uint16_t world, int32_t* shiftX, int32_t* shiftY, double* sizeX, double* sizeY);

/** @} */

/* @@anchor:state@@ */

/* ---- Colour effects, timeline, UGC and hierarchy (src/colour) ---- */
/**
 * @defgroup colour_effects Track colour effects
 * The colour controls of each track. They are sent with the next track
 * upload. Limits: a value below the lower bound becomes the lower bound,
 * otherwise one above the upper bound becomes the upper bound; NaN passes.
 * @{
 */

/**
 * Stores the intensity of one track, limited to 0..1.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param value     intensity; below 0 gives 0, above 1 gives 1
 */
KALVOR_API void KALVOR_CALL displayintensity(uint32_t scanner, uint16_t track, double value);

/**
 * Stores the colour byte of one track.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param value     colour
 */
KALVOR_API void KALVOR_CALL displaycolor(uint32_t scanner, uint16_t track, uint8_t value);

/**
 * Stores the RGB colour value of one track unchanged.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param value     RGB colour value
 */
KALVOR_API void KALVOR_CALL displayrgbcolor(uint32_t scanner, uint16_t track, double value);

/**
 * Stores the colour shift of one track unchanged.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param value     colour shift
 */
KALVOR_API void KALVOR_CALL displaycolorshift(uint32_t scanner, uint16_t track, double value);

/**
 * Stores the two sparkling values of one track.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31 (low 16 bits used)
 * @param first     sparkling1
 * @param second    sparkling2
 */
KALVOR_API void KALVOR_CALL displaysparkling(uint32_t scanner, uint16_t track, uint16_t first, uint8_t second);

/**
 * Stores the red channel's four parameters and two bytes into every selected
 * track, unchanged. There is no slot mask and no reserved argument.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param p1        rParam1
 * @param p2        rParam2
 * @param p3        rParam3
 * @param p4        rParam4
 * @param b1        rByte1
 * @param b2        rByte2
 */
KALVOR_API void KALVOR_CALL DisplayR(uint32_t scanner, uint32_t trackMask, double p1, double p2, double p3, double p4, uint8_t b1, uint8_t b2);

/**
 * Stores the green channel's four parameters and two bytes into every selected
 * track, unchanged. There is no slot mask and no reserved argument.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param p1        gParam1
 * @param p2        gParam2
 * @param p3        gParam3
 * @param p4        gParam4
 * @param b1        gByte1
 * @param b2        gByte2
 */
KALVOR_API void KALVOR_CALL DisplayG(uint32_t scanner, uint32_t trackMask, double p1, double p2, double p3, double p4, uint8_t b1, uint8_t b2);

/**
 * Stores the blue channel's four parameters and two bytes into every selected
 * track, unchanged. There is no slot mask and no reserved argument.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param p1        bParam1
 * @param p2        bParam2
 * @param p3        bParam3
 * @param p4        bParam4
 * @param b1        bByte1
 * @param b2        bByte2
 */
KALVOR_API void KALVOR_CALL DisplayB(uint32_t scanner, uint32_t trackMask, double p1, double p2, double p3, double p4, uint8_t b1, uint8_t b2);

/**
 * Multiplies intensity of every selected track by value limited to 0..1.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     factor; below 0 gives 0, otherwise above 1 gives 1 (NaN passes)
 */
KALVOR_API void KALVOR_CALL DisplayIntensity(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Multiplies intensity of every selected track by value limited to 0..1. The
 * same as DisplayIntensity.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     factor; below 0 gives 0, otherwise above 1 gives 1 (NaN passes)
 */
KALVOR_API void KALVOR_CALL TDisplayIntensity(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Multiplies rotR of every selected track by value limited to 0..1.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     factor; below 0 gives 0, otherwise above 1 gives 1 (NaN passes)
 */
KALVOR_API void KALVOR_CALL DisplayRotR(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Multiplies rotG of every selected track by value limited to 0..1.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     factor; below 0 gives 0, otherwise above 1 gives 1 (NaN passes)
 */
KALVOR_API void KALVOR_CALL DisplayRotG(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Multiplies rotB of every selected track by value limited to 0..1.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     factor; below 0 gives 0, otherwise above 1 gives 1 (NaN passes)
 */
KALVOR_API void KALVOR_CALL DisplayRotB(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Multiplies centerRecolorR of every selected track by value limited to 0..1.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     factor; below 0 gives 0, otherwise above 1 gives 1 (NaN passes)
 */
KALVOR_API void KALVOR_CALL DisplayCenterRecolorR(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Multiplies centerRecolorG of every selected track by value limited to 0..1.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     factor; below 0 gives 0, otherwise above 1 gives 1 (NaN passes)
 */
KALVOR_API void KALVOR_CALL DisplayCenterRecolorG(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Multiplies centerRecolorB of every selected track by value limited to 0..1.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     factor; below 0 gives 0, otherwise above 1 gives 1 (NaN passes)
 */
KALVOR_API void KALVOR_CALL DisplayCenterRecolorB(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Multiplies hue of every selected track by value limited to 0..2.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     factor; below 0 gives 0, otherwise above 2 gives 2 (NaN passes)
 */
KALVOR_API void KALVOR_CALL DisplayHue(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Multiplies saturation of every selected track by value limited to 0..2.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     factor; below 0 gives 0, otherwise above 2 gives 2 (NaN passes)
 */
KALVOR_API void KALVOR_CALL DisplaySaturation(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Multiplies lightness of every selected track by value limited to 0..2.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     factor; below 0 gives 0, otherwise above 2 gives 2 (NaN passes)
 */
KALVOR_API void KALVOR_CALL DisplayLightness(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Replaces hotSpot of every selected track by value limited to 0..3.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param slotMask  not read (the fields belong to the track)
 * @param reserved  not read
 * @param value     hot spot; below 0 gives 0, otherwise above 3 gives 3 (NaN passes)
 */
KALVOR_API void KALVOR_CALL DisplayHotSpot(uint32_t scanner, uint32_t trackMask, uint32_t slotMask, uint32_t reserved, double value);

/**
 * Sends sparkle at once: 0x20, w1, w2, w3 (u16 each), then the level limited
 * to 0..1, times 15, truncated: one byte 0..15 (8 bytes).
 *
 * @param scanner   scanner number, 1 to 20
 * @param w1        first word
 * @param w2        second word
 * @param w3        third word
 * @param level     0 to 1; NaN is sent as 0
 */
KALVOR_API void KALVOR_CALL displaysparkle(uint32_t scanner, uint16_t w1, uint16_t w2, uint16_t w3, double level);

/**
 * Sends equalize at once: 0x1F, w1, w2, w3 (u16 each, 7 bytes).
 *
 * @param scanner   scanner number, 1 to 20
 * @param w1        first word
 * @param w2        second word
 * @param w3        third word
 */
KALVOR_API void KALVOR_CALL displayequalize(uint32_t scanner, uint16_t w1, uint16_t w2, uint16_t w3);

/**
 * Sends dynamic intensity at once: 0x17, b1..b5 (one byte each), w1, w2 (u16
 * each), 10 bytes.
 *
 * @param scanner   scanner number, 1 to 20
 * @param b1        sent unchanged
 * @param b2        at most 15 (larger is sent as 15)
 * @param b3        sent unchanged
 * @param b4        at most 15
 * @param b5        at most 15
 * @param w1        at least 100 (smaller is sent as 100)
 * @param w2        at least 100
 */
KALVOR_API void KALVOR_CALL displaydynamicint(uint32_t scanner, uint8_t b1, uint8_t b2, uint8_t b3, uint8_t b4, uint8_t b5, uint16_t w1, uint16_t w2);

/** @} */

/**
 * @defgroup timeline Timeline
 * One start time for the whole library and the time elapsed since it, in
 * milliseconds modulo 2^32.
 * @{
 */

/**
 * Starts (or restarts) the timeline: the start becomes the current time of the
 * library's millisecond clock.
 *
 * @return the new start time stamp, milliseconds
 */
KALVOR_API uint32_t KALVOR_CALL displaystarttimeline(void);

/**
 * Milliseconds since the timeline start, modulo 2^32.
 *
 * @return the elapsed time, milliseconds
 */
KALVOR_API uint32_t KALVOR_CALL displaygettimelinetime(void);

/**
 * Interpolates a value over a time interval. With E the elapsed time: when
 * start <= E <= end (start and end signed) and D = end - start, computed with
 * 32-bit wrap-around, is positive, writes from + (to - from) x (E - start) / D
 * to out and returns 1; otherwise returns 0 and leaves out untouched.
 *
 * @param start     start of the interval, milliseconds since the timeline start
 * @param end       end of the interval, milliseconds
 * @param from      value at the start
 * @param to        value at the end
 * @param out       receives the value; may be null
 * @return 1 inside the interval, 0 outside it or for an empty or reversed interval
 */
KALVOR_API uint8_t KALVOR_CALL displaygettimeline(int32_t start, int32_t end, double from, double to, double* out);

/** @} */

/**
 * @defgroup ugc UGC values
 * Ten values and a byte, stored per track or sent to the scanner at once.
 * @{
 */

/**
 * Stores u1..u10 unchanged into ugc1..ugc10 and b into the UGC byte of every
 * selected track. Track initialisation keeps these values.
 *
 * @param scanner   scanner number, 1 to 20
 * @param trackMask bit i selects track i (0 to 31)
 * @param u1        ugc1
 * @param u2        ugc2
 * @param u3        ugc3
 * @param u4        ugc4
 * @param u5        ugc5
 * @param u6        ugc6
 * @param u7        ugc7
 * @param u8        ugc8
 * @param u9        ugc9
 * @param u10       ugc10
 * @param b         UGC byte
 */
KALVOR_API void KALVOR_CALL displaytrackugc(uint32_t scanner, uint32_t trackMask, double u1, double u2, double u3, double u4, double u5, double u6, double u7, double u8, double u9, double u10, uint8_t b);

/**
 * Sends the UGC command at once: 0x2C, u1..u8 each times 65535 as f64, u9 and
 * u10 unchanged as f64, then b (82 bytes). Nothing is stored.
 *
 * @param scanner   scanner number, 1 to 20
 * @param u1        a fraction of the coordinate range, sent times 65535
 * @param u2        a fraction of the coordinate range, sent times 65535
 * @param u3        a fraction of the coordinate range, sent times 65535
 * @param u4        a fraction of the coordinate range, sent times 65535
 * @param u5        a fraction of the coordinate range, sent times 65535
 * @param u6        a fraction of the coordinate range, sent times 65535
 * @param u7        a fraction of the coordinate range, sent times 65535
 * @param u8        a fraction of the coordinate range, sent times 65535
 * @param u9        sent unchanged
 * @param u10       sent unchanged
 * @param b         UGC byte
 */
KALVOR_API void KALVOR_CALL displaysetugc(uint32_t scanner, double u1, double u2, double u3, double u4, double u5, double u6, double u7, double u8, double u9, double u10, uint8_t b);

/** @} */

/**
 * @defgroup hierarchy Slot hierarchy
 * Composition of a track's slots along a parent table of eight signed
 * 32-bit entries: entry i is the parent slot of slot i, negative for none.
 * @{
 */

/**
 * Sets all eight entries of a hierarchy table to -1 (no parent).
 *
 * @param hierarchy the table of eight entries; null is ignored
 */
KALVOR_API void KALVOR_CALL displayinithierarchy(int32_t* hierarchy);

/**
 * Composes the slots of one track along the hierarchy: each slot adds the
 * pivots, angles, pre-moves and post-moves of every ancestor on its chain and
 * multiplies its scales by theirs, all read from the track as it was before
 * the call. A chain ends at an entry outside 0..7 or after eight ancestors.
 * The slot count is not changed and nothing is sent.
 *
 * @param scanner   scanner number, 1 to 20
 * @param track     track index, 0 to 31
 * @param hierarchy the table of eight parent entries; null is ignored
 */
KALVOR_API void KALVOR_CALL displayhierarchy(uint32_t scanner, uint32_t track, const int32_t* hierarchy);

/** @} */

/* @@anchor:colour-effects@@ */

/* ---- Session, profile, device commands, previews (src/core) ---- */
/**
 * @defgroup session Session and output
 * Beginning and ending a scanner's use, switching its output, its rates and
 * the parameters passed through to it.
 * @{
 */

/**
 * Begins a scanner's session: reads its profile section (getscannerprofile),
 * sends the version query 0x22 (answer discarded), sends 0x24 with the output
 * signal, and loads the default contents into colour buffers 0 to 7 (nothing
 * is sent for them). The output switch is not changed.
 * @param scanner scanner number, 1 to 20
 */
KALVOR_API void KALVOR_CALL displaybeginsession(uint32_t scanner);

/**
 * Ends a scanner's session: sends the single byte 0xFF. The record keeps
 * every value.
 * @param scanner scanner number, 1 to 20
 */
KALVOR_API void KALVOR_CALL displayendsession(uint32_t scanner);

/**
 * Sends 0x24, signal and stores the signal as the scanner's output signal.
 * The output switch is not changed.
 * @param scanner scanner number, 1 to 20
 * @param signal  output signal number; 0 switches the output off
 */
KALVOR_API void KALVOR_CALL displaysignal(uint32_t scanner, uint8_t signal);

/**
 * @param scanner scanner number, 1 to 20
 * @return the output signal number (2 after DisplayInit)
 */
KALVOR_API uint8_t KALVOR_CALL displaygetsignal(uint32_t scanner);

/**
 * Switches a scanner's output: sends 0x24 with the output signal when on is
 * 1, and 0x24, 0 for any other value; then stores on unchanged (so 2 sends 0
 * and is read back as 2).
 * @param scanner scanner number, 1 to 20
 * @param on      1 switches on; anything else switches off
 */
KALVOR_API void KALVOR_CALL displayoutput(uint32_t scanner, uint8_t on);

/**
 * @param scanner scanner number, 1 to 20
 * @return the output switch as last set (1 after DisplayInit)
 */
KALVOR_API uint8_t KALVOR_CALL displaygetoutput(uint32_t scanner);

/**
 * Switches every scanner off: for scanners 1 to 20 in order, sends 0x24, 0
 * and sets the output switch to 0. No other call may overlap it.
 */
KALVOR_API void KALVOR_CALL displaystopoutput(void);

/**
 * Switches every scanner on: for scanners 1 to 20 in order, sends 0x24 with
 * that scanner's output signal and sets the output switch to 1. No other call
 * may overlap it.
 */
KALVOR_API void KALVOR_CALL displayenableoutput(void);

/**
 * Sends 0x28, value.
 * @param scanner scanner number, 1 to 20
 * @param value   shutter value, interpreted by the scanner
 */
KALVOR_API void KALVOR_CALL displayshutter(uint32_t scanner, uint8_t value);

/**
 * Sends 0x02 and the point frequency (u32).
 * @param scanner         scanner number, 1 to 20
 * @param pointsPerSecond point frequency in points per second
 */
KALVOR_API void KALVOR_CALL displayfreq(uint32_t scanner, uint32_t pointsPerSecond);

/**
 * Sends 0x02 and thousands × 1000 (u32): 30 sends 30,000.
 * @param scanner   scanner number, 1 to 20
 * @param thousands point frequency in thousands of points per second
 */
KALVOR_API void KALVOR_CALL displaypointrate(uint32_t scanner, uint8_t thousands);

/**
 * Sends 0x15 and the eight bytes of the double.
 * @param scanner           scanner number, 1 to 20
 * @param picturesPerSecond pictures per second
 */
KALVOR_API void KALVOR_CALL displaypicpersec(uint32_t scanner, double picturesPerSecond);

/**
 * Sends the 19-byte scan-parameter command 0x25: p1..p4 (u8), p5, p6 (u16),
 * p7, p8 (u8), p9..p12 (u16), packed little-endian in this order. A value of
 * 0 in p5, p6, p9 or p10 is sent as 1. The scanner interprets the values.
 * @param scanner scanner number, 1 to 20
 * @param p1,p2,p3,p4 byte parameters 1 to 4 (offsets 1 to 4)
 * @param p5,p6   16-bit parameters 5 and 6 (offsets 5 and 7); 0 is sent as 1
 * @param p7,p8   byte parameters 7 and 8 (offsets 9 and 10)
 * @param p9,p10  16-bit parameters 9 and 10 (offsets 11 and 13); 0 is sent as 1
 * @param p11,p12 16-bit parameters 11 and 12 (offsets 15 and 17), sent unchanged
 */
KALVOR_API void KALVOR_CALL displayscanpar(uint32_t scanner, uint8_t p1, uint8_t p2, uint8_t p3, uint8_t p4,
                                           uint16_t p5, uint16_t p6, uint8_t p7, uint8_t p8, uint16_t p9,
                                           uint16_t p10, uint16_t p11, uint16_t p12);

/**
 * Sends the 408-byte global-parameter command 0x32, packed without gaps:
 * v1..v38 as doubles from offset 1, v39..v43 as bytes from offset 305,
 * v44..v53 as doubles from offset 310, v54 (u16) at offset 390 and the 16
 * bytes v55 points to at offset 392. The scanner interprets the values.
 * @param scanner scanner number, 1 to 20
 * @param v1,v2,v3,v4,v5,v6,v7,v8,v9,v10,v11,v12,v13,v14,v15,v16,v17,v18,v19 doubles 1 to 19
 * @param v20,v21,v22,v23,v24,v25,v26,v27,v28,v29,v30,v31,v32,v33,v34,v35,v36,v37,v38 doubles 20 to 38
 * @param v39,v40,v41,v42,v43 bytes 39 to 43
 * @param v44,v45,v46,v47,v48,v49,v50,v51,v52,v53 doubles 44 to 53
 * @param v54 16-bit value 54
 * @param v55 16 bytes copied unchanged; null sends 16 zero bytes
 */
KALVOR_API void KALVOR_CALL displayglobal(
    uint32_t scanner, double v1, double v2, double v3, double v4, double v5, double v6, double v7, double v8,
    double v9, double v10, double v11, double v12, double v13, double v14, double v15, double v16, double v17,
    double v18, double v19, double v20, double v21, double v22, double v23, double v24, double v25, double v26,
    double v27, double v28, double v29, double v30, double v31, double v32, double v33, double v34, double v35,
    double v36, double v37, double v38, uint8_t v39, uint8_t v40, uint8_t v41, uint8_t v42, uint8_t v43,
    double v44, double v45, double v46, double v47, double v48, double v49, double v50, double v51, double v52,
    double v53, uint16_t v54, const uint8_t* v55);

/**
 * Sends the single byte 0x26.
 * @param scanner scanner number, 1 to 20
 */
KALVOR_API void KALVOR_CALL displayenablewait(uint32_t scanner);

/**
 * Reads the wait value that the scanner's last answer into the preview
 * buffer (a track upload, a preview refresh, direct points or a raster
 * frame) left there. Sends nothing.
 * @param scanner scanner number, 1 to 20
 * @return the wait value; 0 after DisplayInit
 */
KALVOR_API uint32_t KALVOR_CALL DisplayGetTimeToWait(uint32_t scanner);

/**
 * @return the millisecond clock: the high-resolution counter in
 *         milliseconds, low 32 bits
 */
KALVOR_API uint32_t KALVOR_CALL displaygettime(void);

/**
 * Sends the version query 0x22 with a 4-byte answer area preset to 0.
 * @param scanner scanner number, 1 to 20
 * @return the scanner's answer (u32); 0 when nothing answers
 */
KALVOR_API uint32_t KALVOR_CALL displaygetversion(uint32_t scanner);

/**
 * Sets the point counts of the preview and full-preview buffers to 0 (the
 * Vistrel buffer keeps its count) and sends the channel entries of a colour
 * buffer as the 386-byte command 0x1B, 0x40, then 64 × c0..c5. A buffer
 * number above 7 makes the call do nothing.
 * @param scanner scanner number, 1 to 20
 * @param buffer  colour buffer, 0 to 7
 */
KALVOR_API void KALVOR_CALL displayreset(uint32_t scanner, uint8_t buffer);

/**
 * Sends 0x0D, value.
 * @param scanner scanner number, 1 to 20
 * @param value   beam-parking value, interpreted by the scanner
 */
KALVOR_API void KALVOR_CALL displaybeamparking(uint32_t scanner, uint8_t value);

/**
 * Sends 0x1C and the value, at most 50 (larger values are sent as 50).
 * @param scanner scanner number, 1 to 20
 * @param value   start-point value, interpreted by the scanner
 */
KALVOR_API void KALVOR_CALL displaytostartpoint(uint32_t scanner, uint8_t value);

/** @} */

/**
 * @defgroup profile Scanner profile and identity
 * The scanner's profile section, its two names, the last-error class and the
 * transport's print entry.
 * @{
 */

/**
 * Reads the scanner's section (named by the scanner number in decimal) of the
 * profile file named by the environment variable KALVOR_PROFILE when
 * DisplayInit ran. "Signal" (integer, default 2) sets the output signal (low
 * 8 bits); "C0ToR".."C5ToB" (decimal text, default 1.0 for C0ToR, C1ToG and
 * C2ToB, else 0.0) set all 18 colour-matrix weights. When both "MasterName"
 * and "SlaveName" are present and not empty, they are applied as by
 * setsendname and setreceivename. Sends nothing. The file is read by
 * Windows's profile rules on every system; a file in UTF-8 or UTF-16 (with
 * its byte-order mark) gives its names in Windows-1252.
 * @param scanner scanner number, 1 to 20
 * @return 1 when both names were found (even if too long to be stored), else 0
 */
KALVOR_API uint8_t KALVOR_CALL getscannerprofile(uint32_t scanner);

/**
 * Stores the scanner's send name. A name of 16 characters or more is ignored.
 * @param scanner scanner number, 1 to 20
 * @param name    zero-terminated name of at most 15 characters
 */
KALVOR_API void KALVOR_CALL setsendname(uint32_t scanner, const char* name);

/**
 * Stores the scanner's receive name. A name of 16 characters or more is
 * ignored.
 * @param scanner scanner number, 1 to 20
 * @param name    zero-terminated name of at most 15 characters
 */
KALVOR_API void KALVOR_CALL setreceivename(uint32_t scanner, const char* name);

/**
 * Copies the send name ("MASTER" after DisplayInit) with its terminating zero.
 * @param scanner     scanner number, 1 to 20
 * @param destination buffer of at least 16 bytes
 */
KALVOR_API void KALVOR_CALL getsendname(uint32_t scanner, char* destination);

/**
 * Copies the receive name ("SLAVE" after DisplayInit) with its terminating
 * zero.
 * @param scanner     scanner number, 1 to 20
 * @param destination buffer of at least 16 bytes
 */
KALVOR_API void KALVOR_CALL getreceivename(uint32_t scanner, char* destination);

/**
 * Stores the network debug switch; nothing in the library reads it.
 * @param scanner scanner number, 1 to 20
 * @param value   the switch
 */
KALVOR_API void KALVOR_CALL setnetworkdebug(uint32_t scanner, uint8_t value);

/**
 * Classifies the scanner's last NetBIOS return code (0 after DisplayInit).
 * @param scanner scanner number, 1 to 20
 * @return 0 success or duplicate name; 1 NetBIOS not loaded; 3 resources
 *         exhausted; 4 session closed, session table full or name conflict;
 *         5 name in use elsewhere; 6 too many commands; 7 session number out
 *         of range or no answer; 2 any other code
 */
KALVOR_API uint8_t KALVOR_CALL getlasterror(uint32_t scanner);

/**
 * Passes a value to the transport's NetScanPrint.
 * @param value passed unchanged
 * @return NetScanPrint's result; 0 when the transport has no such entry
 */
KALVOR_API uint32_t KALVOR_CALL displayprint(uint32_t value);

/** Does nothing; kept for hosts that call it. */
KALVOR_API void KALVOR_CALL DumpAdapterStatus(void);

/** @} */

/**
 * @defgroup device Device queries and host-tool commands
 * Commands for the scanner's own equipment: hardware manager, ILDA output,
 * routing and inversion, firmware upload and file copy.
 * @{
 */

/**
 * @defgroup device_bytes One-byte commands
 * Each sends its single opcode byte with no answer.
 * @{
 */
/** Sends 0x63 ("c"). @param scanner scanner number, 1 to 20 */
KALVOR_API void KALVOR_CALL ZRKErzeugeFormular(uint32_t scanner);
/** Sends 0x64 ("d"): ILDA output on. @param scanner scanner number, 1 to 20 */
KALVOR_API void KALVOR_CALL EnableILDAOutput(uint32_t scanner);
/** Sends 0x65 ("e"): ILDA output off. @param scanner scanner number, 1 to 20 */
KALVOR_API void KALVOR_CALL DisableILDAOutput(uint32_t scanner);
/** Sends 0x66 ("f"): show the hardware manager. @param scanner scanner number, 1 to 20 */
KALVOR_API void KALVOR_CALL ShowHWManager(uint32_t scanner);
/** Sends 0x67 ("g"): hide the hardware manager. @param scanner scanner number, 1 to 20 */
KALVOR_API void KALVOR_CALL HideHWManager(uint32_t scanner);
/** Sends 0x6F ("o"): check for an update. @param scanner scanner number, 1 to 20 */
KALVOR_API void KALVOR_CALL CheckforUpdate(uint32_t scanner);
/** Sends 0x77 ("w"): start the hardware manager. @param scanner scanner number, 1 to 20 */
KALVOR_API void KALVOR_CALL StartHWManager(uint32_t scanner);
/** Sends 0x79 ("y"): ILDA output once. @param scanner scanner number, 1 to 20 */
KALVOR_API void KALVOR_CALL EnableILDAOutputonce(uint32_t scanner);
/** Sends 0x66 ("f"), the same byte as ShowHWManager. @param scanner scanner number, 1 to 20 */
KALVOR_API void KALVOR_CALL Display_Invert_Y(uint32_t scanner);
/** @} */

/**
 * @defgroup device_queries Device queries
 * Each sends its opcode and the low byte of the scanner number, with an
 * answer area that reads 0 when nothing answers.
 * @{
 */
/** Sends 0x71 ("q"). @param scanner scanner number, 1 to 20 @return the routing byte */
KALVOR_API uint8_t KALVOR_CALL GetRouting(uint32_t scanner);
/** Sends 0x72 ("r"). @param scanner scanner number, 1 to 20 @return the x-inversion byte */
KALVOR_API uint8_t KALVOR_CALL GetInvertX(uint32_t scanner);
/** Sends 0x73 ("s"). @param scanner scanner number, 1 to 20 @return the y-inversion byte */
KALVOR_API uint8_t KALVOR_CALL GetInvertY(uint32_t scanner);
/** Sends 0x74 ("t"). @param scanner scanner number, 1 to 20 @return the x/y-swap byte */
KALVOR_API uint8_t KALVOR_CALL GetSwapXY(uint32_t scanner);
/** Sends 0x75 ("u"). @param scanner scanner number, 1 to 20 @return the 16-bit answer */
KALVOR_API uint16_t KALVOR_CALL GetInterpolatedPointCnt(uint32_t scanner);

/**
 * Sends 0x7C and the scanner byte, and spreads the 23-byte answer over the
 * outs: three bytes, then five u32. Null outs are skipped; every out reads 0
 * when nothing answers.
 * @param scanner scanner number, 1 to 20
 * @param v1,v2,v3 answer bytes 0, 1 and 2
 * @param v4,v5,v6,v7,v8 answer u32 at offsets 3, 7, 11, 15 and 19
 */
KALVOR_API void KALVOR_CALL GetDeviceSettings(uint32_t scanner, uint8_t* v1, uint8_t* v2, uint8_t* v3,
                                              uint32_t* v4, uint32_t* v5, uint32_t* v6, uint32_t* v7,
                                              uint32_t* v8);
/** @} */

/**
 * Sends 0x78 ("x") with a one-byte answer area preset to 99.
 * @param scanner scanner number, 1 to 20
 * @return the hardware manager's status; 99 when nothing answers
 */
KALVOR_API uint8_t KALVOR_CALL HWManagerGetStatus(uint32_t scanner);

/**
 * Sends 0x70 ("p") with a 4-byte answer area preset to 0.
 * @param scanner scanner number, 1 to 20
 * @return the software CRC; 0 when nothing answers
 */
KALVOR_API uint32_t KALVOR_CALL SoftwareGetCRC(uint32_t scanner);

/**
 * Switches Vistrel output for every scanner (a positive flag, taken as a
 * signed byte, makes each track upload refresh the Vistrel buffer with 0x7E)
 * and sends 0x7D, flag to the given scanner.
 * @param scanner scanner number, 1 to 20; above 20 the call does nothing
 * @param flag    Vistrel output switch
 */
KALVOR_API void KALVOR_CALL SetVistrel(uint32_t scanner, uint8_t flag);

/**
 * Sends the 256-byte command 0x76 with the name in the 255 bytes after the
 * opcode, with its terminating zero and zero-filled; a name of 255 characters
 * or more is cut to 255 bytes without terminator.
 * @param scanner scanner number, 1 to 20
 * @param name    zero-terminated name; null sends an empty name
 */
KALVOR_API void KALVOR_CALL SetExportILDAName(uint32_t scanner, const char* name);

/**
 * Sends 0x6E ("n") and the scanner number as u32.
 * @param scanner scanner number, 1 to 20
 */
KALVOR_API void KALVOR_CALL Showhelp(uint32_t scanner);

/**
 * Sends 0x11, first (u8), second (u16).
 * @param scanner scanner number, 1 to 20
 * @param first   first value
 * @param second  second value
 */
KALVOR_API void KALVOR_CALL displaywritelpt(uint32_t scanner, uint8_t first, uint16_t second);

/**
 * Uploads a firmware file: sends 0x23 ("#"), n (u16) and n bytes of the file,
 * where n is the low 16 bits of the file's length, cut to 65,001 (so a file
 * of 65,536 bytes sends n = 0). A file that cannot be opened sends nothing.
 * @param scanner scanner number, 1 to 20
 * @param path    the file to upload
 */
KALVOR_API void KALVOR_CALL softwareupdate(uint32_t scanner, const char* path);

/**
 * Copies a file to the scanner: sends the 263-byte header 0x2A ("*"), the
 * file name with extension (256 bytes, zero-filled), the size (u32) and the
 * block count (u16); then one 1,026-byte block per 1,024 bytes of the file,
 * each a u16 count of valid bytes and 1,024 data bytes (the last block holds
 * the remainder, zero-filled). The block count keeps its low 16 bits: of a
 * file of 64 MiB or more only the blocks the count announces are sent. A file
 * that cannot be opened sends nothing.
 * @param scanner scanner number, 1 to 20
 * @param path    the file to copy
 */
KALVOR_API void KALVOR_CALL displaycopyfile(uint32_t scanner, const char* path);

/** @} */

/**
 * @defgroup preview Preview buffers
 * The points a scanner answers with, read back with their colours turned
 * into RGB through the colour matrix, and the host's preview flags.
 *
 * Colour conversion: R = sum over n of CnToR × cn for the six channel bytes
 * c0..c5, likewise G and B; a sum above 255 gives 255, any other sum is
 * truncated toward zero and keeps its low 8 bits. A point index of 16,000 or
 * more is ignored and leaves every out untouched; null outs are skipped.
 * @{
 */

/**
 * Sends 0x06 with the preview buffer as answer area, then reports its point
 * count and wait value (also when nothing answered).
 * @param scanner scanner number, 1 to 20
 * @param count   out: point count
 * @param value   out: wait value
 */
KALVOR_API void KALVOR_CALL displayupdatepreviewbuffer(uint32_t scanner, uint16_t* count, uint32_t* value);
/**
 * Sends 0x7B ("{") with the full-preview buffer as answer area, then reports
 * its point count and the value after it.
 * @param scanner scanner number, 1 to 20
 * @param count   out: point count
 * @param value   out: the u32 after the count
 */
KALVOR_API void KALVOR_CALL displayupdatefullpreviewbuffer(uint32_t scanner, uint16_t* count, uint32_t* value);
/**
 * Sends 0x7E ("~") with the Vistrel buffer as answer area, then reports its
 * point count and the value after it.
 * @param scanner scanner number, 1 to 20
 * @param count   out: point count
 * @param value   out: the u32 after the count
 */
KALVOR_API void KALVOR_CALL displayupdatevistrelbuffer(uint32_t scanner, uint16_t* count, uint32_t* value);

/** Reads the preview buffer's point count. @param scanner scanner number, 1 to 20 @param count out: point count */
KALVOR_API void KALVOR_CALL displaygetpreviewbuffercnt(uint32_t scanner, uint16_t* count);
/** Reads the full-preview buffer's point count. @param scanner scanner number, 1 to 20 @param count out: point count */
KALVOR_API void KALVOR_CALL displaygetfullpreviewbuffercnt(uint32_t scanner, uint16_t* count);
/** Reads the Vistrel buffer's point count. @param scanner scanner number, 1 to 20 @param count out: point count */
KALVOR_API void KALVOR_CALL displaygetvistrelbuffercnt(uint32_t scanner, uint16_t* count);

/**
 * Reads one point of the preview buffer (11-byte points).
 * @param scanner scanner number, 1 to 20
 * @param index   point index, below 16,000
 * @param x,y     out: coordinates, u16
 * @param status  out: status byte
 * @param r,g,b   out: colour through the colour matrix
 */
KALVOR_API void KALVOR_CALL displaygetpreviewbuffervector(uint32_t scanner, uint16_t index, uint16_t* x, uint16_t* y,
                                                          uint8_t* status, uint8_t* r, uint8_t* g, uint8_t* b);
/**
 * Reads one point of the full-preview buffer (15-byte points).
 * @param scanner scanner number, 1 to 20
 * @param index   point index, below 16,000
 * @param x,y     out: coordinates, signed 32 bits
 * @param status  out: status byte
 * @param r,g,b   out: colour through the colour matrix
 */
KALVOR_API void KALVOR_CALL displaygetfullpreviewbuffervector(uint32_t scanner, uint16_t index, int32_t* x,
                                                              int32_t* y, uint8_t* status, uint8_t* r, uint8_t* g,
                                                              uint8_t* b);
/**
 * Reads one point of the Vistrel buffer (15-byte points).
 * @param scanner scanner number, 1 to 20
 * @param index   point index, below 16,000
 * @param x,y     out: coordinates, signed 32 bits
 * @param status  out: status byte
 * @param r,g,b   out: colour through the colour matrix
 */
KALVOR_API void KALVOR_CALL displaygetvistrelbuffervector(uint32_t scanner, uint16_t index, int32_t* x, int32_t* y,
                                                          uint8_t* status, uint8_t* r, uint8_t* g, uint8_t* b);

/** Stores the preview flag (0 after DisplayInit). @param scanner scanner number, 1 to 20 @param value the flag */
KALVOR_API void KALVOR_CALL displaysetpreviewflag(uint32_t scanner, uint8_t value);
/** Stores the beam-show flag (1 after DisplayInit). @param scanner scanner number, 1 to 20 @param value the flag */
KALVOR_API void KALVOR_CALL displaysetbeamshowflag(uint32_t scanner, uint8_t value);
/** Stores the graphic flag (1 after DisplayInit). @param scanner scanner number, 1 to 20 @param value the flag */
KALVOR_API void KALVOR_CALL displaysetgraficflag(uint32_t scanner, uint8_t value);
/** @param scanner scanner number, 1 to 20 @return the preview flag */
KALVOR_API uint8_t KALVOR_CALL displaygetpreviewflag(uint32_t scanner);
/** @param scanner scanner number, 1 to 20 @return the beam-show flag */
KALVOR_API uint8_t KALVOR_CALL displaygetbeamshowflag(uint32_t scanner);
/** @param scanner scanner number, 1 to 20 @return the graphic flag */
KALVOR_API uint8_t KALVOR_CALL displaygetgraficflag(uint32_t scanner);

/**
 * Sets the red row of the colour matrix: the weights C0ToR..C5ToR.
 * @param scanner scanner number, 1 to 20
 * @param c0,c1,c2,c3,c4,c5 weights of channels 0 to 5
 */
KALVOR_API void KALVOR_CALL DisplaySetPreviewR(uint32_t scanner, double c0, double c1, double c2, double c3,
                                               double c4, double c5);
/**
 * Sets the green row of the colour matrix: the weights C0ToG..C5ToG.
 * @param scanner scanner number, 1 to 20
 * @param c0,c1,c2,c3,c4,c5 weights of channels 0 to 5
 */
KALVOR_API void KALVOR_CALL DisplaySetPreviewG(uint32_t scanner, double c0, double c1, double c2, double c3,
                                               double c4, double c5);
/**
 * Sets the blue row of the colour matrix: the weights C0ToB..C5ToB.
 * @param scanner scanner number, 1 to 20
 * @param c0,c1,c2,c3,c4,c5 weights of channels 0 to 5
 */
KALVOR_API void KALVOR_CALL DisplaySetPreviewB(uint32_t scanner, double c0, double c1, double c2, double c3,
                                               double c4, double c5);

/**
 * Stores a scanner's entry of the scanner mapping table (1 shifted left by
 * the scanner number after DisplayInit); nothing in the library reads it.
 * @param scanner scanner number; outside 1 to 20 the call does nothing
 * @param mask    the new entry
 */
KALVOR_API void KALVOR_CALL displayscannermapping(uint32_t scanner, uint32_t mask);

/** @} */

/* @@anchor:core@@ */

/* ---- Colour buffers, palettes, DMX, geometry net (src/colour) ---- */
/**
 * @defgroup colourbuffers Colour buffers and palettes
 * Eight colour buffers per scanner, each with 64 six-channel entries (what
 * the projector receives) and 64 RGB entries (the host's view); the palette
 * command, rotation and cross-fade, palette and RGB files, the true-colour
 * table and the colour scale. A buffer number above 7 makes any call do
 * nothing; an entry index of 64 or more makes the entry exports do nothing
 * (getters leave their outs untouched; null outs are skipped). Only the
 * senders and loaders send anything.
 * @{
 */

/**
 * Sets every byte of a colour buffer (both halves) to value.
 * @param scanner scanner number, 1 to 20
 * @param buffer  colour buffer, 0 to 7
 * @param value   the byte written
 */
KALVOR_API void KALVOR_CALL displayinitcolorbuffer(uint32_t scanner, uint8_t buffer, uint8_t value);

/**
 * Writes the default colours into entries 0 to 15 of both halves of a colour
 * buffer (white, pastels, red, orange, yellow, greens, cyan, blues, violet,
 * magenta); entries 16 to 63 keep their values.
 * @param scanner scanner number, 1 to 20
 * @param buffer  colour buffer, 0 to 7
 */
KALVOR_API void KALVOR_CALL displaydefaultcolorbuffer(uint32_t scanner, uint8_t buffer);

/**
 * Sets the six channel bytes of one entry.
 * @param scanner scanner number, 1 to 20
 * @param buffer  colour buffer, 0 to 7
 * @param index   entry, 0 to 63
 * @param c0,c1,c2,c3,c4,c5 channel levels 0 to 255
 */
KALVOR_API void KALVOR_CALL displaysetcolorbuffer(uint32_t scanner, uint8_t buffer, uint8_t index, uint8_t c0,
                                                  uint8_t c1, uint8_t c2, uint8_t c3, uint8_t c4, uint8_t c5);

/**
 * Reads the six channel bytes of one entry.
 * @param scanner scanner number, 1 to 20
 * @param buffer  colour buffer, 0 to 7
 * @param index   entry, 0 to 63
 * @param c0,c1,c2,c3,c4,c5 out: channel levels
 */
KALVOR_API void KALVOR_CALL displaygetcolorbuffer(uint32_t scanner, uint8_t buffer, uint8_t index, uint8_t* c0,
                                                  uint8_t* c1, uint8_t* c2, uint8_t* c3, uint8_t* c4, uint8_t* c5);

/**
 * Sets the RGB half of one entry.
 * @param scanner scanner number, 1 to 20
 * @param buffer  colour buffer, 0 to 7
 * @param index   entry, 0 to 63
 * @param r,g,b   levels 0 to 255
 */
KALVOR_API void KALVOR_CALL displaysetcolorbufferrgb(uint32_t scanner, uint8_t buffer, uint8_t index, uint8_t r,
                                                     uint8_t g, uint8_t b);

/**
 * Reads the RGB half of one entry.
 * @param scanner scanner number, 1 to 20
 * @param buffer  colour buffer, 0 to 7
 * @param index   entry, 0 to 63
 * @param r,g,b   out: levels
 */
KALVOR_API void KALVOR_CALL displaygetcolorbufferrgb(uint32_t scanner, uint8_t buffer, uint8_t index, uint8_t* r,
                                                     uint8_t* g, uint8_t* b);

/**
 * Rotates colours: fills the channel entries first..last of the destination
 * from the source's entries 0..n-1 (n = last - first + 1), shifted by
 * x = n × phase entries with linear blending. For entry i, with s = x
 * truncated and f = its fractional part (sign of x), a = (i + s) mod n and
 * b = (i + s + 1) mod n (always in 0..n-1, for any phase), each byte becomes
 * source[a] + (source[b] - source[a]) × f, truncated, low 8 bits. first and
 * last are limited to 0..63; first > last does nothing. When source and
 * destination are the same buffer, entries written earlier in the call are
 * read with their new values. A phase that is not a number zeroes the range.
 * @param scanner     scanner number, 1 to 20
 * @param phase       shift as a fraction of the range; 1.0 is a full turn
 * @param source      colour buffer read, 0 to 7
 * @param destination colour buffer written, 0 to 7
 * @param first       first entry written
 * @param last        last entry written
 */
KALVOR_API void KALVOR_CALL displaycolorrotation(uint32_t scanner, double phase, uint32_t source,
                                                 uint32_t destination, int32_t first, int32_t last);

/**
 * Cross-fades channel entries first..last: each byte of the destination
 * becomes from + (to - from) × t, truncated, low 8 bits. t is not limited
 * (outside 0..1 it extrapolates and wraps). first and last are limited to
 * 0..63; first > last does nothing. The destination may be from or to.
 * @param scanner     scanner number, 1 to 20
 * @param t           fade position: 0 gives from, 1 gives to
 * @param from        colour buffer at t = 0, 0 to 7
 * @param to          colour buffer at t = 1, 0 to 7
 * @param destination colour buffer written, 0 to 7
 * @param first       first entry written
 * @param last        last entry written
 */
KALVOR_API void KALVOR_CALL displaycolorcrossfade(uint32_t scanner, double t, uint8_t from, uint8_t to,
                                                  uint8_t destination, int32_t first, int32_t last);

/**
 * Sets one entry of the palette command, the scanner's copy of the palette
 * last sent. It lasts until the next palette is sent.
 * @param scanner scanner number, 1 to 20
 * @param index   entry, 0 to 63
 * @param c0,c1,c2,c3,c4,c5 channel levels
 */
KALVOR_API void KALVOR_CALL displaysetpal(uint32_t scanner, uint8_t index, uint8_t c0, uint8_t c1, uint8_t c2,
                                          uint8_t c3, uint8_t c4, uint8_t c5);

/**
 * Reads one entry of the palette command.
 * @param scanner scanner number, 1 to 20
 * @param index   entry, 0 to 63
 * @param c0,c1,c2,c3,c4,c5 out: channel levels
 */
KALVOR_API void KALVOR_CALL displaygetpal(uint32_t scanner, uint8_t index, uint8_t* c0, uint8_t* c1, uint8_t* c2,
                                          uint8_t* c3, uint8_t* c4, uint8_t* c5);

/**
 * Sends a colour buffer as palette: the 386-byte command 0x05, 0x40, then the
 * 64 channel entries c0..c5.
 * @param scanner scanner number, 1 to 20
 * @param buffer  colour buffer, 0 to 7
 */
KALVOR_API void KALVOR_CALL displayupdatepal(uint32_t scanner, uint8_t buffer);

/**
 * Loads a palette file into a colour buffer and sends it as displayupdatepal
 * does. A name ending in ".pal" (any case) is read as 64 nine-byte records
 * r, g, b, c0..c5; any other name is read as an RGB file (displayloadRGB).
 * Entries past the end of a short file keep their values. A file that cannot
 * be opened changes and sends nothing.
 * @param scanner scanner number, 1 to 20
 * @param buffer  colour buffer, 0 to 7
 * @param file    path of the file
 */
KALVOR_API void KALVOR_CALL displayloadpal(uint32_t scanner, uint8_t buffer, const char* file);

/**
 * Loads an RGB file (64 three-byte records r, g, b) into a colour buffer:
 * entry i gets r, g, b and the channels r, g, b, 0, 0, 0. Then sends the
 * buffer as displayupdatepal does. Entries past the end of a short file keep
 * their values. A file that cannot be opened changes and sends nothing.
 * @param scanner scanner number, 1 to 20
 * @param buffer  colour buffer, 0 to 7
 * @param file    path of the file
 */
KALVOR_API void KALVOR_CALL displayloadRGB(uint32_t scanner, uint8_t buffer, const char* file);

/**
 * Writes a colour buffer as a 576-byte palette file (64 records r, g, b,
 * c0..c5). The file is replaced only once completely written. Sends nothing.
 * @param scanner scanner number, 1 to 20
 * @param buffer  colour buffer, 0 to 7
 * @param file    path of the file
 */
KALVOR_API void KALVOR_CALL displaysavepal(uint32_t scanner, uint8_t buffer, const char* file);

/**
 * Sets one entry of the true-colour table; the first three bytes are the
 * entry's r, g, b. An index above 28 does nothing.
 * @param scanner scanner number, 1 to 20
 * @param index   entry, 0 to 28
 * @param v1,v2,v3,v4,v5,v6,v7,v8,v9 the entry's nine bytes
 */
KALVOR_API void KALVOR_CALL displaysettruecolor(uint32_t scanner, uint32_t index, uint8_t v1, uint8_t v2,
                                                uint8_t v3, uint8_t v4, uint8_t v5, uint8_t v6, uint8_t v7,
                                                uint8_t v8, uint8_t v9);

/**
 * Sends the true-colour table: the 263-byte command 0x34, value, then the 29
 * nine-byte entries.
 * @param scanner scanner number, 1 to 20
 * @param value   byte sent after the opcode
 */
KALVOR_API void KALVOR_CALL displayupdatetruecolor(uint32_t scanner, uint8_t value);

/**
 * Sends the 49-byte colour-scale command 0x18 with the six values as doubles,
 * each limited to 0.0..1.0 (a value that is not a number passes unchanged).
 * @param scanner scanner number, 1 to 20
 * @param s1,s2,s3,s4,s5,s6 scale values
 */
KALVOR_API void KALVOR_CALL displaycscale(uint32_t scanner, double s1, double s2, double s3, double s4,
                                          double s5, double s6);

/** @} */

/**
 * @defgroup dmx DMX channels
 * Levels of a 512-channel DMX universe, sent and read at once through the
 * scanner's two channel maps (the identity after DisplayInit). A host channel
 * keeps its low 16 bits; 0 stands for channel 1 and anything above 512 for
 * channel 512.
 * @{
 */

/**
 * Sends 0x2D, the output map's entry for the channel (u16), level.
 * @param scanner scanner number, 1 to 20
 * @param channel host channel, 1 to 512
 * @param level   DMX level
 */
KALVOR_API void KALVOR_CALL displaysetdmx(uint32_t scanner, uint32_t channel, uint8_t level);

/**
 * Sends 0x2E and the input map's entry for the channel (u16), with a one-byte
 * answer area.
 * @param scanner scanner number, 1 to 20
 * @param channel host channel, 1 to 512
 * @return the channel's input level; 0 when nothing answers
 */
KALVOR_API uint8_t KALVOR_CALL displaygetdmx(uint32_t scanner, uint32_t channel);

/**
 * Sends the single byte 0x30.
 * @param scanner scanner number, 1 to 20
 */
KALVOR_API void KALVOR_CALL displayupdatedmx(uint32_t scanner);

/**
 * Sends 0x31, enable, then stores enable (also when nothing was sent).
 * @param scanner scanner number, 1 to 20
 * @param enable  DMX input switch
 */
KALVOR_API void KALVOR_CALL displayenabledmxin(uint32_t scanner, uint8_t enable);

/**
 * @param scanner scanner number, 1 to 20
 * @return the value last passed to displayenabledmxin (0 after DisplayInit)
 */
KALVOR_API uint8_t KALVOR_CALL displaygetenabledmxin(uint32_t scanner);

/**
 * Replaces both channel maps: element k - 1 of a table is the wire channel
 * for host channel k. A null table leaves its map unchanged.
 * @param scanner  scanner number, 1 to 20
 * @param inTable  512 wire channels for displaygetdmx
 * @param outTable 512 wire channels for displaysetdmx
 */
KALVOR_API void KALVOR_CALL displaymapdmx(uint32_t scanner, const uint16_t* inTable, const uint16_t* outTable);

/** @} */

/**
 * @defgroup geonet Geometry net
 * A 9 × 9 grid of points (x, y, z as doubles in the 0..65535 coordinate
 * range) that corrects the projector's geometry; all zero until
 * displayinitgeonet.
 * @{
 */

/**
 * Writes the even grid: point (a, b) = (a × 8191.875, b × 8191.875, 0).
 * @param scanner scanner number, 1 to 20
 */
KALVOR_API void KALVOR_CALL displayinitgeonet(uint32_t scanner);

/**
 * Sets point (a, b) to (x, y, z) × 65535.0, unlimited. Indices above 8 do
 * nothing. Sends nothing.
 * @param scanner scanner number, 1 to 20
 * @param a       first index (along x), 0 to 8
 * @param b       second index (along y), 0 to 8
 * @param x,y,z   coordinates as fractions of the field
 */
KALVOR_API void KALVOR_CALL displaysetgeonet(uint32_t scanner, uint32_t a, uint32_t b, double x, double y,
                                             double z);

/**
 * Sends the grid: the 1,946-byte command 0x29, value, then the 81 points
 * (row a after row a - 1, b = 0..8 within a row) as three doubles each.
 * @param scanner scanner number, 1 to 20
 * @param value   byte sent after the opcode
 */
KALVOR_API void KALVOR_CALL displayupdategeonet(uint32_t scanner, uint8_t value);

/**
 * Sends the 11-byte command 0x27 and the five values (u16). Stores nothing.
 * @param scanner scanner number, 1 to 20
 * @param w1,w2,w3,w4,w5 the values, interpreted by the projector
 */
KALVOR_API void KALVOR_CALL displayworldgeonet(uint32_t scanner, uint16_t w1, uint16_t w2, uint16_t w3,
                                               uint16_t w4, uint16_t w5);

/** @} */

/* @@anchor:colour@@ */

/* ---- Pictures and picture files (src/pictures) ---- */
/**
 * @defgroup picture_points Picture points
 * Building a picture point by point in the scanner's picture upload area.
 * A picture holds at most 8192 points (index 0 to 8191); the upload area
 * keeps its points between sends, so every writer overwrites only the points
 * it fills. A point is 11 bytes on the wire: x, y, z (16 bits each, two's
 * complement, 0 at the centre), status byte (bits 0..5 colour index, bit 6
 * blank, bit 7 flag7), repeat byte (bits 0..3 repeat, bits 4..7 high nibble),
 * red, green, blue. None of these exports sends anything.
 * @{
 */

/**
 * Writes a point of the upload area from its unpacked fields; each field is
 * masked to its width (colour index 6 bits, blank and flag7 1 bit, repeat and
 * high nibble 4 bits).
 * @param scanner     scanner number, 1 to 20
 * @param index       point index, 0 to 8191; a larger index is ignored
 * @param x           horizontal coordinate, two's complement
 * @param y           vertical coordinate, two's complement
 * @param z           depth coordinate, two's complement
 * @param colourIndex entry of colour buffer 0, 0 to 63
 * @param blank       1: the beam is off on the way to this point
 * @param flag7       bit 7 of the status byte
 * @param repeat      the point is output 1 + repeat times, 0 to 15
 * @param highNibble  bits 4..7 of the repeat byte, 0 to 15
 * @param red         red level, 0 to 255
 * @param green       green level, 0 to 255
 * @param blue        blue level, 0 to 255
 */
KALVOR_API void KALVOR_CALL displaysetpicstruct(uint32_t scanner, uint16_t index, uint16_t x, uint16_t y, uint16_t z,
                                                uint8_t colourIndex, uint8_t blank, uint8_t flag7, uint8_t repeat,
                                                uint8_t highNibble, uint8_t red, uint8_t green, uint8_t blue);

/**
 * Writes a point of the upload area from its raw bytes, unchanged.
 * @param scanner    scanner number, 1 to 20
 * @param index      point index, 0 to 8191; a larger index is ignored
 * @param x          horizontal coordinate, two's complement
 * @param y          vertical coordinate, two's complement
 * @param z          depth coordinate, two's complement
 * @param statusByte colour index, blank and flag7 packed
 * @param repeatByte repeat and high nibble packed
 * @param red        red level, 0 to 255
 * @param green      green level, 0 to 255
 * @param blue       blue level, 0 to 255
 */
KALVOR_API void KALVOR_CALL DisplaySetPicPoint(uint32_t scanner, uint16_t index, uint16_t x, uint16_t y, uint16_t z,
                                               uint8_t statusByte, uint8_t repeatByte, uint8_t red, uint8_t green,
                                               uint8_t blue);

/**
 * Writes a point as displaysetpicstruct does, with flag7 1, repeat 0 and high
 * nibble 0. Each argument is taken at the width displaysetpicstruct gives it
 * (index and coordinates 16 bits, the rest 8 bits).
 * @param scanner     scanner number, 1 to 20
 * @param index       point index; its low 16 bits must be 0 to 8191
 * @param x           horizontal coordinate (low 16 bits)
 * @param y           vertical coordinate (low 16 bits)
 * @param z           depth coordinate (low 16 bits)
 * @param colourIndex entry of colour buffer 0, 0 to 63
 * @param blank       1: the beam is off on the way to this point
 * @param red         red level, 0 to 255
 * @param green       green level, 0 to 255
 * @param blue        blue level, 0 to 255
 */
KALVOR_API void KALVOR_CALL displaysetpoint(uint32_t scanner, uint32_t index, uint32_t x, uint32_t y, uint32_t z,
                                            uint32_t colourIndex, uint32_t blank, uint32_t red, uint32_t green,
                                            uint32_t blue);

/** @} */

/**
 * @defgroup picture_transfer Picture transfer and picture memory
 * Sending the upload area as a picture, reading pictures back into the
 * scanner's picture reply area, and the commands on the scanner's picture
 * memory. A reply that claims more than 8192 points counts as 8192 points.
 * @{
 */

/**
 * Sends the upload area as a picture: 0x00, pictureNumber (16 bits),
 * pointCount (16 bits), then the first pointCount points, 5 + 11 x pointCount
 * bytes in all.
 * @param scanner       scanner number, 1 to 20
 * @param pictureNumber number under which the scanner stores the picture
 * @param pointCount    number of points sent, 0 to 8192 (a larger count is
 *                      sent as 8192)
 */
KALVOR_API void KALVOR_CALL displaysetpic(uint32_t scanner, uint16_t pictureNumber, uint16_t pointCount);

/**
 * Reads a picture back: sends 0x04, pictureNumber (16 bits) with the picture
 * reply area as answer area.
 * @param scanner       scanner number, 1 to 20
 * @param pictureNumber the picture to read back
 * @return the reply area's point count (at most 8192); without a transport,
 *         the count of the previous reply
 */
KALVOR_API uint16_t KALVOR_CALL displaygetpic(uint32_t scanner, uint16_t pictureNumber);

/**
 * Copies the point count of the last picture read back. Sends nothing.
 * @param scanner    scanner number, 1 to 20
 * @param pointCount receives the count, at most 8192 (0 for a scanner out of
 *                   range); may be null
 */
KALVOR_API void KALVOR_CALL displaygetpiccnt(uint32_t scanner, uint16_t* pointCount);

/**
 * Copies the unpacked fields of a point of the last picture read back, the
 * inverse of displaysetpicstruct. Sends nothing. An index of 8192 or more
 * leaves every variable untouched; a null pointer is skipped.
 * @param scanner     scanner number, 1 to 20
 * @param index       point index, 0 to 8191
 * @param x           receives the horizontal coordinate
 * @param y           receives the vertical coordinate
 * @param z           receives the depth coordinate
 * @param colourIndex receives the colour index, 0 to 63
 * @param blank       receives the blank bit
 * @param flag7       receives flag7
 * @param repeat      receives the repeat count, 0 to 15
 * @param highNibble  receives the high nibble of the repeat byte
 * @param red         receives the red level
 * @param green       receives the green level
 * @param blue        receives the blue level
 */
KALVOR_API void KALVOR_CALL displaygetpicstruct(uint32_t scanner, uint16_t index, uint16_t* x, uint16_t* y,
                                                uint16_t* z, uint8_t* colourIndex, uint8_t* blank, uint8_t* flag7,
                                                uint8_t* repeat, uint8_t* highNibble, uint8_t* red, uint8_t* green,
                                                uint8_t* blue);

/**
 * Copies the raw bytes of a point of the last picture read back. Sends
 * nothing. An index of 8192 or more leaves every variable untouched; a null
 * pointer is skipped.
 * @param scanner    scanner number, 1 to 20
 * @param index      point index, 0 to 8191
 * @param x          receives the horizontal coordinate
 * @param y          receives the vertical coordinate
 * @param z          receives the depth coordinate
 * @param statusByte receives the status byte
 * @param repeatByte receives the repeat byte
 * @param red        receives the red level
 * @param green      receives the green level
 * @param blue       receives the blue level
 */
KALVOR_API void KALVOR_CALL DisplayGetPicPoint(uint32_t scanner, uint16_t index, uint16_t* x, uint16_t* y,
                                               uint16_t* z, uint8_t* statusByte, uint8_t* repeatByte, uint8_t* red,
                                               uint8_t* green, uint8_t* blue);

/**
 * Clears the scanner's picture memory: sends the byte 0x21.
 * @param scanner scanner number, 1 to 20
 */
KALVOR_API void KALVOR_CALL clearpicmem(uint32_t scanner);

/**
 * Asks for the scanner's picture total: sends the byte 0x2B with a zeroed
 * four-byte answer area.
 * @param scanner scanner number, 1 to 20
 * @return the first two answer bytes (little-endian); 0 without a transport
 */
KALVOR_API uint16_t KALVOR_CALL GetMaxPic(uint32_t scanner);

/**
 * Sends the test picture: 29 horizontal lines from the top edge (y 32767) to
 * the bottom edge (y -32768), line i in the colour of true-colour table entry
 * i, each a blanked jump to x -32768 and a drawn stroke to x 32767. The 58
 * points go through the upload area; 643 bytes are sent.
 * @param scanner       scanner number, 1 to 20
 * @param pictureNumber number under which the scanner stores the picture
 */
KALVOR_API void KALVOR_CALL displaytestpic(uint32_t scanner, uint16_t pictureNumber);

/** @} */

/**
 * @defgroup direct_output Direct points and raster frames
 * Output that bypasses picture memory. The scanner answers both commands with
 * its preview point list, which lands in the preview buffer.
 * @{
 */

/**
 * Writes one point of the direct-point buffer (x, y, then d0..d6). Sends
 * nothing.
 * @param scanner scanner number, 1 to 20
 * @param index   point index, 0 to 15999; a larger index is ignored
 * @param x       horizontal coordinate
 * @param y       vertical coordinate
 * @param d0      data byte 0, passed through
 * @param d1      data byte 1, passed through
 * @param d2      data byte 2, passed through
 * @param d3      data byte 3, passed through
 * @param d4      data byte 4, passed through
 * @param d5      data byte 5, passed through
 * @param d6      data byte 6, passed through
 */
KALVOR_API void KALVOR_CALL displaydirectpoint(uint32_t scanner, uint32_t index, uint16_t x, uint16_t y, uint8_t d0,
                                               uint8_t d1, uint8_t d2, uint8_t d3, uint8_t d4, uint8_t d5,
                                               uint8_t d6);

/**
 * Sends the whole direct-point buffer, always 176,007 bytes: 0x33, the three
 * parameters (16 bits each), then 16,000 points of 11 bytes. The preview
 * buffer receives the answer.
 * @param scanner      scanner number, 1 to 20
 * @param directParam1 first parameter, passed through
 * @param directParam2 second parameter, passed through
 * @param directParam3 third parameter, passed through
 */
KALVOR_API void KALVOR_CALL displaydirect(uint32_t scanner, uint16_t directParam1, uint16_t directParam2,
                                          uint16_t directParam3);

/**
 * Sends the 72-byte raster-frame command: 0x2F, then the arguments in their
 * order and widths, packed little-endian without gaps (doubles bit for bit).
 * The preview buffer receives the answer. Every argument is passed through.
 * @param scanner  scanner number, 1 to 20
 * @param raster1  16 bits, at offset 1
 * @param raster2  16 bits, at offset 3
 * @param raster3  16 bits, at offset 5
 * @param raster4  16 bits, at offset 7
 * @param raster5  double, at offset 9
 * @param raster6  16 bits, at offset 17
 * @param raster7  16 bits, at offset 19
 * @param raster8  16 bits, at offset 21
 * @param raster9  8 bits, at offset 23
 * @param raster10 16 bits, at offset 24
 * @param raster11 16 bits, at offset 26
 * @param raster12 16 bits, at offset 28
 * @param raster13 double, at offset 30
 * @param raster14 double, at offset 38
 * @param raster15 double, at offset 46
 * @param raster16 double, at offset 54
 * @param raster17 double, at offset 62
 * @param raster18 16 bits, at offset 70
 */
KALVOR_API void KALVOR_CALL displayrasterframe(uint32_t scanner, uint16_t raster1, uint16_t raster2, uint16_t raster3,
                                               uint16_t raster4, double raster5, uint16_t raster6, uint16_t raster7,
                                               uint16_t raster8, uint8_t raster9, uint16_t raster10,
                                               uint16_t raster11, uint16_t raster12, double raster13, double raster14,
                                               double raster15, double raster16, double raster17, uint16_t raster18);

/** @} */

/**
 * @defgroup picture_files Picture files and glyph names
 * Picture files (".pic") hold one picture: a 14-byte header of seven
 * big-endian words (version 1024, 0, 0, point count, 1, then a 32-bit count
 * of bytes to skip before the records, low word first) and the points as 11-byte
 * records. Files of a version below 1024 hold 8-byte big-endian records
 * (repeat byte x 2, status byte of the line leaving the point, x, mirrored y,
 * z), which are converted on loading.
 * @{
 */

/**
 * Reads picture pictureNumber back (0x04, pictureNumber, answer into the
 * picture reply area) and then writes it to a picture file. A file that
 * cannot be created ends the call after the query; the file is replaced only
 * once it is written completely.
 * @param scanner       scanner number, 1 to 20
 * @param path          file to write, zero-terminated
 * @param pictureNumber the picture to save
 */
KALVOR_API void KALVOR_CALL displaysavepic(uint32_t scanner, const char* path, uint16_t pictureNumber);

/**
 * Reads a picture file into the upload area and sends it as picture
 * pictureNumber (0x00, number, count, points). Nothing is sent when the file
 * cannot be opened, is shorter than its header or has a version above 1024.
 * At most 8192 points are read; points the file announces but does not hold
 * are sent as blanked points at the centre.
 * @param scanner       scanner number, 1 to 20
 * @param path          file to read, zero-terminated
 * @param pictureNumber number under which the scanner stores the picture
 */
KALVOR_API void KALVOR_CALL displayloadpic(uint32_t scanner, const char* path, uint16_t pictureNumber);

/**
 * Appends the glyph file name of a character to a text: "#", the glyph name,
 * ".pic". Letters are named "lo_" or "up_" and the letter, punctuation by a
 * word ("space", "comma", ...), every other byte by itself; byte 0 appends
 * just "#.pic". Sends nothing.
 * @param character the character, a Windows-1252 byte
 * @param text      zero-terminated text, extended in place; it must have room
 *                  for 16 more characters and the terminating zero. Null is
 *                  ignored.
 */
KALVOR_API void KALVOR_CALL DisplayCharToFont(uint8_t character, char* text);

/** @} */

/**
 * @defgroup ilda ILDA files
 * Reading and writing files in the ILDA image data transfer format. Each
 * frame section becomes one picture (at most 8191 points), sent as soon as
 * the section ends; y is mirrored (-1 - y) both ways. Palette sections fill
 * the first 64 entries of colour buffer 0 (both halves; nothing is sent).
 * Reading stops at a section header that the file cuts short; a frame whose
 * records the file cuts short is still sent with its announced count, the
 * missing points blanked at the centre.
 * @{
 */

/**
 * Imports an ILDA file, sending frame sections as pictures startPicture,
 * startPicture + 1, ... (from 1 when startPicture is 0). Sends nothing when
 * the file cannot be opened.
 * @param scanner      scanner number, 1 to 20
 * @param path         file to read, zero-terminated
 * @param startPicture number of the first picture; 0 means 1
 */
KALVOR_API void KALVOR_CALL displayimportilda(uint32_t scanner, const char* path, uint16_t startPicture);

/**
 * Imports an ILDA file as displayimportilda does, but folds runs of
 * identical records (formats 0, 1 and 4) into the point's repeat count (up to
 * 15), and sends format-5 frames under their picture number plus index.
 * @param scanner      scanner number, 1 to 20
 * @param index        added to the picture number of format-5 frames
 * @param path         file to read, zero-terminated
 * @param startPicture number of the first picture; 0 means 1
 */
KALVOR_API void KALVOR_CALL displayimportildafromindex(uint32_t scanner, uint32_t index, const char* path,
                                                       uint16_t startPicture);

/**
 * Writes pictures first..last of the scanner as an ILDA file of format-5
 * frames, closed by a header without records. Each picture is read back
 * (0x04, number) before it is written; a point is written 1 + repeat times.
 * A frame is cut at 65,535 records. Nothing is sent when the file cannot be
 * created; the file is replaced only once it is written completely.
 * @param scanner scanner number, 1 to 20
 * @param path    file to write, zero-terminated
 * @param first   first picture number
 * @param last    last picture number; below first, only the closing header is
 *                written
 */
KALVOR_API void KALVOR_CALL displayexportilda(uint32_t scanner, const char* path, uint16_t first, uint16_t last);

/** @} */

/**
 * @defgroup catalogues Catalogue and show files
 * A catalogue (".cat") stores the scanner's pictures 1..N as records: a type
 * byte (0, 1, 2 or 3), a point count and the points. A show (".lds") stores
 * pictures 0..N-1 behind a six-byte header. Loading a whole catalogue or show
 * first clears the picture memory (0x21); saving asks for the picture total
 * (0x2B) and reads each picture back (0x04). The dispatching exports choose
 * by extension in any letter case and look for a catalogue or show that does
 * not exist in the folder "/CAT/" (on Windows "\CAT\" of the current drive).
 * @{
 */

/**
 * Loads a file chosen by its extension: ".cat" as loadCAT, ".lds" as loadLDS,
 * ".ild" as displayimportilda from picture 1; any other extension loads
 * nothing.
 * @param scanner scanner number, 1 to 20
 * @param path    file to read, zero-terminated
 */
KALVOR_API void KALVOR_CALL loadcat(uint32_t scanner, const char* path);

/**
 * Loads part of a file chosen by its extension: ".cat" as loadCATpart, ".lds"
 * as loadLDS, ".ild" as displayimportildafromindex with index first.
 * @param scanner scanner number, 1 to 20
 * @param first   first picture number (catalogues) or index (ILDA files)
 * @param count   catalogues: number of pictures after the first
 * @param path    file to read, zero-terminated
 */
KALVOR_API void KALVOR_CALL loadcatpart(uint32_t scanner, int32_t first, uint32_t count, const char* path);

/**
 * Clears the picture memory (0x21, also when the file cannot be opened) and
 * sends the catalogue's records as pictures 1, 2, ... (at most 32,768). A
 * record of 0 points, of more than 8192 points or of an unknown type sends
 * nothing but uses up its number.
 * @param scanner scanner number, 1 to 20
 * @param path    file to read, zero-terminated
 */
KALVOR_API void KALVOR_CALL loadCAT(uint32_t scanner, const char* path);

/**
 * Sends the first count + 1 records of a catalogue as pictures first ..
 * first + count, without clearing the picture memory.
 * @param scanner scanner number, 1 to 20
 * @param first   number of the first picture (low 16 bits)
 * @param count   number of pictures after the first
 * @param path    file to read, zero-terminated
 */
KALVOR_API void KALVOR_CALL loadCATpart(uint32_t scanner, int32_t first, uint32_t count, const char* path);

/**
 * Clears the picture memory (0x21) and sends the show's pictures as pictures
 * 0, 1, 2, ..., empty ones included. A picture of more than 8192 points is
 * sent with its first 8192.
 * @param scanner scanner number, 1 to 20
 * @param path    file to read, zero-terminated
 */
KALVOR_API void KALVOR_CALL loadLDS(uint32_t scanner, const char* path);

/**
 * Saves by extension: ".cat" as saveCAT, ".lds" as saveLDS; any other
 * extension writes nothing.
 * @param scanner scanner number, 1 to 20
 * @param path    file to write, zero-terminated
 */
KALVOR_API void KALVOR_CALL savecat(uint32_t scanner, const char* path);

/**
 * Writes the scanner's pictures 1..N (N from the picture total) as a
 * catalogue of type-1 records, whatever the extension. Nothing is sent when
 * the file cannot be created.
 * @param scanner scanner number, 1 to 20
 * @param path    file to write, zero-terminated
 */
KALVOR_API void KALVOR_CALL saveCAT(uint32_t scanner, const char* path);

/**
 * Writes the scanner's pictures 0..N-1 (N from the picture total) as a show.
 * Nothing is sent when the file cannot be created.
 * @param scanner scanner number, 1 to 20
 * @param path    file to write, zero-terminated
 */
KALVOR_API void KALVOR_CALL saveLDS(uint32_t scanner, const char* path);

/** @} */

/**
 * @defgroup animations LAS and FLX files
 * Animation files of other laser systems: every picture of the file is sent
 * under consecutive numbers from startPicture (0 included), flat (z 0) and
 * white. A picture keeps at most 8192 points; a picture the file cuts short
 * is still sent with its announced count, the missing points blanked at the
 * centre.
 * @{
 */

/**
 * Imports a LAS file (12-bit coordinates, each point output twice).
 * @param scanner      scanner number, 1 to 20
 * @param path         file to read, zero-terminated
 * @param startPicture number of the first picture (low 16 bits count)
 */
KALVOR_API void KALVOR_CALL displayimportlas(uint32_t scanner, const char* path, uint32_t startPicture);

/**
 * Imports an FLX file (16-bit unsigned coordinates).
 * @param scanner      scanner number, 1 to 20
 * @param path         file to read, zero-terminated
 * @param startPicture number of the first picture (low 16 bits count)
 */
KALVOR_API void KALVOR_CALL displayimportflx(uint32_t scanner, const char* path, uint32_t startPicture);

/** @} */

/* @@anchor:pictures@@ */

#endif /* KALVOR_KALVOR_H */
