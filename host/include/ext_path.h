// Path ids, the search path and file location.
#ifndef _EXT_PATH_H_
#define _EXT_PATH_H_

#include "ext_mess.h"

BEGIN_USING_C_LINKAGE

#define MAX_PATH_CHARS 2048
#define MAX_FILENAME_CHARS 512
#define PATH_SEPARATOR_CHAR '/'
#define PATH_SEPARATOR_STRING "/"

enum
{
    PATH_READ_PERM = 1,
    PATH_WRITE_PERM = 2,
    PATH_RW_PERM = 3
};
#define READ_PERM PATH_READ_PERM
#define WRITE_PERM PATH_WRITE_PERM
#define RW_PERM PATH_RW_PERM

typedef enum
{
    PATH_STYLE_MAX = 0,
    PATH_STYLE_NATIVE,
    PATH_STYLE_COLON,
    PATH_STYLE_SLASH,
    PATH_STYLE_NATIVE_WIN
} e_max_path_styles;

typedef enum
{
    PATH_TYPE_IGNORE = 0,
    PATH_TYPE_ABSOLUTE,
    PATH_TYPE_RELATIVE,
    PATH_TYPE_BOOT,
    PATH_TYPE_C74,
    PATH_TYPE_PATH,
    PATH_TYPE_DESKTOP,
    PATH_TYPE_TILDE,
    PATH_TYPE_TEMPFOLDER,
    PATH_TYPE_USERMAX,
    PATH_TYPE_MAXDB,
    PATH_TYPE_PLUGIN,
    PATH_TYPE_PACKAGE
} e_max_path_types;

short locatefile_extended(char* name, short* outvol, t_fourcc* outtype, const t_fourcc* filetypelist,
                          short numtypes);
short path_topathname(const short path, const char* file, char* name);
short path_topotentialname(const short path, const char* file, char* name, short check);
t_max_err path_toabsolutesystempath(const short in_path, const char* in_filename, char* out_filepath);
short path_nameconform(const char* src, char* dst, long style, long type);
short path_frompathname(const char* name, short* path, char* filename);
short path_getdefault(void);

END_USING_C_LINKAGE

#endif
