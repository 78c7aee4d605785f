// What the C++ library prints and reads in a locale of its own with.
#pragma once

#include <locale.h>
#include <stdio.h>
#include <stdlib.h>
#include <time.h>
#include <wchar.h>
#include <wctype.h>

#ifdef __cplusplus
extern "C" {
#endif

int asprintf_l(char **text, locale_t locale, const char *format, ...) __attribute__((format(printf, 3, 4)));
int snprintf_l(char *text, size_t size, locale_t locale, const char *format, ...) __attribute__((format(printf, 4, 5)));
int sscanf_l(const char *text, locale_t locale, const char *format, ...) __attribute__((format(scanf, 3, 4)));

#ifdef __cplusplus
}
#endif
