// The classes of characters of Darwin's C library, as its C++ library names them.
#pragma once

typedef unsigned int __uint32_t;

#define _CTYPE_A 0x00000100L // alphabetic
#define _CTYPE_C 0x00000200L // control
#define _CTYPE_D 0x00000400L // digit
#define _CTYPE_G 0x00000800L // graphic
#define _CTYPE_L 0x00001000L // lower case
#define _CTYPE_P 0x00002000L // punctuation
#define _CTYPE_S 0x00004000L // space
#define _CTYPE_U 0x00008000L // upper case
#define _CTYPE_X 0x00010000L // hexadecimal digit
#define _CTYPE_B 0x00020000L // blank
#define _CTYPE_R 0x00040000L // printable
