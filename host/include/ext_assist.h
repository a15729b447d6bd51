// Kinds of the assist message.
#ifndef _EXT_ASSIST_H_
#define _EXT_ASSIST_H_

#define ASSIST_INLET 1
#define ASSIST_OUTLET 2
#define ASSIST_MAX_STRING_LEN 500

#endif
