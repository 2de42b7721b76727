# Flags of every 32-bit x86 build (the i686 DLL and the -m32 Linux build).
# Double arithmetic runs in SSE2 registers, as on x86_64, not on the x87 unit:
# x87 keeps intermediates at the precision the host process happens to set
# (often 64-bit mantissas), so scaling, sums and truncations could differ from
# the 64-bit build's, and from one host to the next. With SSE2 each operation
# rounds to a double, and every build computes the same bytes.
set(KALVOR_I686_FLAGS "-msse2 -mfpmath=sse")
