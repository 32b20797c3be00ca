#include "platform/base/file_types.h"

#include <sys/xattr.h>

static const char kTypeAttribute[] = "user.filetype";
static const char kCreatorAttribute[] = "user.creator";

bool SetFileTypeAndCreator(const char* path, const char type[4], const char creator[4])
{
    if (!path)
        return false;
    bool typeSet = setxattr(path, kTypeAttribute, type, 4, 0) == 0;
    bool creatorSet = setxattr(path, kCreatorAttribute, creator, 4, 0) == 0;
    return typeSet && creatorSet;
}

bool GetFileTypeAndCreator(const char* path, char type[4], char creator[4])
{
    if (!path)
        return false;
    return getxattr(path, kTypeAttribute, type, 4) == 4 &&
           getxattr(path, kCreatorAttribute, creator, 4) == 4;
}
