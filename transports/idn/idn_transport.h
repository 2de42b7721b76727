/*
 * The IDN transport: a LASER.DLL that keeps every scanner's state in the
 * projector engine, answers queries as the virtual scanner does, and streams
 * the frame of each scanner that has an Output in the transport configuration
 * file to an IDN projector (docs/idn.md).
 *
 * Besides the four transport entries it exports the function below, through
 * which a host or a test can see how a scanner's stream fares.
 */
#ifndef KALVOR_IDN_TRANSPORT_H
#define KALVOR_IDN_TRANSPORT_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct IdnTransportCounters {
  uint32_t datagrams;        /* datagrams sent whole */
  uint32_t failedSends;      /* datagrams refused or not taken by the system */
  uint32_t frames;           /* frames sent, blank ones included */
  uint32_t keepalives;       /* void channel messages that kept the channel open */
  uint32_t acknowledgements; /* well-formed acknowledgements received */
  uint32_t dropped;          /* other datagrams received and ignored */
} IdnTransportCounters;

/* Copies the scanner's counters since its stream was opened (at
 * NetScanConstructor) into out; returns 1 when the scanner streams, 0 (and
 * zeroes) when it has no output. */
uint32_t idn_transport_counters(uint32_t scanner, IdnTransportCounters* out);

#ifdef __cplusplus
}
#endif

#endif
