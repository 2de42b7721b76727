/*
 * The virtual scanner: a LASER.DLL that behaves like a projector. It keeps,
 * for each of scanners 1 to 20, a picture memory, the palette and geometry net
 * last received, DMX levels, the frame it is showing, and answers every query
 * that kalvor sends (docs/virtual-scanner.md lists the answers).
 *
 * Besides the four transport entries it exports the functions below, through
 * which a host or a test can look inside the projector. A host reaches them
 * by linking against LASER.DLL (its soname is LASER.DLL, so kalvor's later
 * load by name yields the same module) or by loading "LASER.DLL" itself.
 */
#ifndef KALVOR_VIRTUAL_SCANNER_H
#define KALVOR_VIRTUAL_SCANNER_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Switches every scanner off and on again: all state is forgotten. */
void virtual_scanner_reset(void);

/* Number of pictures with at least one point in the scanner's memory. */
uint32_t virtual_scanner_pictures(uint32_t scanner);

/* Copies the 64 six-byte entries of the palette last received into entries
 * (384 bytes); returns the opcode that carried it (0x05 or 0x1B), 0 if none. */
uint32_t virtual_scanner_palette(uint32_t scanner, uint8_t* entries);

/* Copies up to capacity bytes of the last command received with the opcode
 * (any but the picture command); returns its full length, 0 if none. */
uint32_t virtual_scanner_last_command(uint32_t scanner, uint8_t opcode, uint8_t* bytes, uint32_t capacity);

/* The last file copied to the scanner, once all its blocks have arrived:
 * copies its name (256 bytes, zero-terminated) and up to capacity data bytes;
 * returns the number of data bytes received. */
uint32_t virtual_scanner_file(uint32_t scanner, char* name, uint8_t* data, uint32_t capacity);

#ifdef __cplusplus
}
#endif

#endif
