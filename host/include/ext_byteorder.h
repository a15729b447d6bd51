// Four-character codes: little-endian targets write them as multi-character literals.
#ifndef _EXT_BYTEORDER_H_
#define _EXT_BYTEORDER_H_

#define FOUR_CHAR_CODE(x) (x)
#define C74_LITTLE_ENDIAN 1

#endif
