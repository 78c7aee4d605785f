// What the system declares, compared with what our own declarations say. Compiled on a Mac it meets the real headers.
#include <CoreFoundation/CoreFoundation.h>
