// The functions with a locale of Darwin's C library (xlocale(3)) that the C++ library calls.
#pragma once

#include <locale.h>
#include <stdarg.h>
#include <stddef.h>
#include <stdio.h>
#include <time.h>
#include <wchar.h>
#include <wctype.h>

#ifdef __cplusplus
extern "C" {
#endif
wint_t btowc_l(int, locale_t);
int wctob_l(wint_t, locale_t);
size_t wcsnrtombs_l(char*, const wchar_t**, size_t, size_t, mbstate_t*, locale_t);
size_t wcrtomb_l(char*, wchar_t, mbstate_t*, locale_t);
size_t mbsnrtowcs_l(wchar_t*, const char**, size_t, size_t, mbstate_t*, locale_t);
size_t mbrtowc_l(wchar_t*, const char*, size_t, mbstate_t*, locale_t);
int mbtowc_l(wchar_t*, const char*, size_t, locale_t);
size_t mbrlen_l(const char*, size_t, mbstate_t*, locale_t);
size_t mbsrtowcs_l(wchar_t*, const char**, size_t, mbstate_t*, locale_t);
struct lconv* localeconv_l(locale_t);
int ___mb_cur_max_l(locale_t);
int snprintf_l(char*, size_t, locale_t, const char*, ...);
int asprintf_l(char**, locale_t, const char*, ...);
int vasprintf_l(char**, locale_t, const char*, va_list);
int vsnprintf_l(char*, size_t, locale_t, const char*, va_list);
int sscanf_l(const char*, locale_t, const char*, ...);
int vsscanf_l(const char*, locale_t, const char*, va_list);
long double strtold_l(const char*, char**, locale_t);
double strtod_l(const char*, char**, locale_t);
float strtof_l(const char*, char**, locale_t);
long long strtoll_l(const char*, char**, int, locale_t);
unsigned long long strtoull_l(const char*, char**, int, locale_t);
int isdigit_l(int, locale_t);
int isxdigit_l(int, locale_t);
#ifdef __cplusplus
}
#endif
