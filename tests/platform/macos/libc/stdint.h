#pragma once

#include_next <stdint.h>

#undef INT64_C
#undef UINT64_C

// Sixty-four bits are a long long there.
#define INT64_C(constant) constant##LL
#define UINT64_C(constant) constant##ULL
