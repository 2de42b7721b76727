// The C host built by a C++ compiler: the header read as C++ must give the
// same unmangled names, and the host must pass alike.
#include "host.c"
