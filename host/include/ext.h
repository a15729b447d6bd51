// The one header an external includes first: the Max API without dictobj, critical regions and signals.
#ifndef _EXT_H_
#define _EXT_H_

#define C74_MAX_SDK_VERSION 0x0820

#include "commonsyms.h"
#include "ext_assist.h"
#include "ext_atomarray.h"
#include "ext_byteorder.h"
#include "ext_common.h"
#include "ext_dictionary.h"
#include "ext_mess.h"
#include "ext_obex.h"
#include "ext_obex_util.h"
#include "ext_path.h"
#include "ext_post.h"
#include "ext_prefix.h"
#include "ext_proto.h"
#include "ext_strings.h"
#include "ext_sysmem.h"
#include "ext_systhread.h"
#include "max_types.h"

#define MM_UNIFIED 1
#define getbytes(size) ((char*)sysmem_newptr(size))
#define freebytes(p, size) sysmem_freeptr(p)
#define clock_free freeobject

BEGIN_USING_C_LINKAGE

void C74_EXPORT ext_main(void* r);

#ifdef NO_TRANSLATION_SUPPORT
#define gensym_tr gensym
#define str_tr(s) (s)
#endif

END_USING_C_LINKAGE

#endif
