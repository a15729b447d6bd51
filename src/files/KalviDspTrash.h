#pragma once

#include "files/KalviDspFile.h"

namespace vlk {

// The user's Trash in the freedesktop.org layout: $XDG_DATA_HOME/Trash, by default ~/.local/share/Trash,
// the item in files/NAME and where it came from and when in info/NAME.trashinfo, so that a file manager can
// put it back.
class Trash
{
public:
    // Moves file into the Trash under the first free name of "NAME", "NAME.2", "NAME.3"... False when the
    // Trash cannot be made or lies on another file system: the file then stays where it was.
    static bool recycle(const File& file);
    // Under an absolute XDG_DATA_HOME, else under the home folder.
    static File getDirectory();

    // The path as a URL path: bytes other than letters, digits, "-._~/" become "%XX".
    static String encodePath(const String& path);
    static String getInfoText(const String& originalPath);

private:
    static bool createFolders(const String& trashPath);
    static bool moveUnderFreeName(const File& file, const String& trashPath);
};

} // namespace vlk
